#include "spectrum/CmdMsg.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

class tst_CmdMsg : public QObject
{
    Q_OBJECT

private slots:
    void the_address_gives_channel_and_card_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<int>("value");
        QTest::addColumn<int>("channel");
        QTest::addColumn<int>("card");
        QTest::addColumn<QString>("channelText");
        QTest::newRow("card 90 of channel 1") << "0190" << 190 << 1 << 90 << "01";
        QTest::newRow("channel 12") << "1234" << 1234 << 12 << 34 << "12";
        QTest::newRow("zero") << "0000" << 0 << 0 << 0 << "00";
        QTest::newRow("not a number") << "AB90" << -1 << 0 << -1 << "AB";
        QTest::newRow("empty") << "" << -1 << 0 << -1 << "";
        QTest::newRow("one character") << "7" << 7 << 0 << 7 << "7";
    }

    void the_address_gives_channel_and_card()
    {
        QFETCH(QString, address);
        const CmdMsg message(address, u"RFFT"_s, u"data"_s);
        QTEST(message.addressValue, "value");
        QTEST(message.getChannelAddressInt(), "channel");
        QTEST(message.getCardAddressInt(), "card");
        QTEST(message.getChannelAddressStr(), "channelText");
        QCOMPARE(message.address, address);
        QCOMPARE(message.command, u"RFFT"_s);
        QCOMPARE(message.data, u"data"_s);
    }

    void it_is_copied_by_value_through_a_variant()
    {
        const auto variant = QVariant::fromValue(CmdMsg(u"0190"_s, u"RNME"_s, u"a"_s));
        QCOMPARE(variant.value<CmdMsg>().command, u"RNME"_s);
        QCOMPARE(variant.value<CmdMsg>().addressValue, 190);
    }
};

QN740_TEST_MAIN(tst_CmdMsg)
#include "tst_CmdMsg.moc"
