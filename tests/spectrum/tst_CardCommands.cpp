#include "spectrum/CardCommands.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

class tst_CardCommands : public QObject
{
    Q_OBJECT

private slots:
    void a_request_is_the_address_and_ten_characters_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("request");
        QTest::newRow("short") << "RNME"
                               << "0190RNME000000";
        QTest::newRow("empty") << ""
                               << "01900000000000";
        QTest::newRow("ten") << "ABCDEFGHIJ"
                             << "0190ABCDEFGHIJ";
        QTest::newRow("longer is cut") << "ABCDEFGHIJKLM"
                                       << "0190ABCDEFGHIJ";
    }

    void a_request_is_the_address_and_ten_characters()
    {
        QFETCH(QString, command);
        QTEST(card::request(u"0190"_s, command), "request");
    }

    void the_words_are_those_that_the_card_knows()
    {
        QCOMPARE(card::address(), u"0190"_s);
        QCOMPARE(card::readName(), u"RNME"_s);
        QCOMPARE(card::readVersion(), u"RVER"_s);
        QCOMPARE(card::readSpans(), u"RNFT"_s);
        QCOMPARE(card::readTrims(), u"RTRM"_s);
        QCOMPARE(card::spectrumWord(), u"RFFT"_s);
        QCOMPARE(card::readSpectrum(2, 1), u"RFFT21"_s);
        QCOMPARE(card::setSpan(0, 9), u"CNFT09"_s);
        QCOMPARE(card::setTrim(1, 4), u"CTRM14"_s);
        QCOMPARE(card::clearAverage(2), u"ClrAvg2"_s);
        QCOMPARE(card::demodulatorSpan(3, u"12"_s), u"D3:NFFT:12"_s);
        QCOMPARE(card::demodulatorSpectrumOn(1), u"D1:SPEN:1"_s);
        QCOMPARE(card::listEntry(), u"U0:CLST:0170 SpectralSWeep 0\r"_s);
        QCOMPARE(card::versionEntry(u"1.2"_s), u"U0:VER:01.2\r"_s);
        QCOMPARE(card::nameAndVersion(u"%2 name"_s, u"1.2"_s), u"%2 name Ver:1.2"_s);
        QCOMPARE(card::k7150Version(), u"SDU Ver:1.23"_s);
        QCOMPARE(card::k7150Name(), u"K7150_Spectrum"_s);
    }

    void a_request_for_a_spectrum_has_its_channel_data()
    {
        QTest::addColumn<QString>("request");
        QTest::addColumn<bool>("spectrum");
        QTest::addColumn<int>("channel");
        QTest::newRow("0") << "0190RFFT000000" << true << 0;
        QTest::newRow("2") << "0190RFFT210000" << true << 2;
        QTest::newRow("3") << "0190RFFT300000" << true << -1;
        QTest::newRow("a letter") << "0190RFFTx00000" << true << -1;
        QTest::newRow("another word") << "0190RVER000000" << false << -1;
        QTest::newRow("short") << "0190RFFT" << true << -1;
        QTest::newRow("empty") << "" << false << -1;
    }

    void a_request_for_a_spectrum_has_its_channel()
    {
        QFETCH(QString, request);
        QTEST(card::isSpectrumRequest(request), "spectrum");
        QTEST(card::spectrumChannel(request), "channel");
    }

    void a_marker_names_its_channel_data()
    {
        QTest::addColumn<QString>("marker");
        QTest::addColumn<int>("channel");
        QTest::newRow("0") << "ClrAvg0" << 0;
        QTest::newRow("2") << "ClrAvg2" << 2;
        QTest::newRow("only the seventh character counts") << "ClrAvg19" << 1;
        QTest::newRow("3") << "ClrAvg3" << -1;
        QTest::newRow("a letter") << "ClrAvgx" << -1;
        QTest::newRow("nothing") << "ClrAvg" << -1;
        QTest::newRow("another word") << "ClrMax1" << -1;
        QTest::newRow("lower case") << "clravg1" << -1;
        QTest::newRow("empty") << "" << -1;
    }

    void a_marker_names_its_channel()
    {
        QFETCH(QString, marker);
        QTEST(card::clearAverageChannel(marker), "channel");
    }

    void three_digits_are_read_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QVector<int>>("numbers");
        QTest::newRow("three") << "094" << QVector<int>{0, 9, 4};
        QTest::newRow("more") << "1230000" << QVector<int>{1, 2, 3};
        QTest::newRow("fewer") << "12" << QVector<int>();
        QTest::newRow("a letter") << "1a2" << QVector<int>();
        QTest::newRow("a sign") << "-12" << QVector<int>();
        QTest::newRow("empty") << "" << QVector<int>();
    }

    void three_digits_are_read()
    {
        QFETCH(QString, text);
        QTEST(card::digits(text), "numbers");
    }
};

QN740_TEST_MAIN(tst_CardCommands)
#include "tst_CardCommands.moc"
