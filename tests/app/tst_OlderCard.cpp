// These tests check the panel when it is started with the option for a card of the older type.
#include "app/Identity.h"
#include "app/MainWindow.h"
#include "app/Rooms.h"
#include "spectrum/CardSide.h"
#include "spectrum/SpectralCard.h"
#include "spectrum/SpectrumMessages.h"
#include "support/Pty.h"

#include <QtTest>

using namespace Qt::StringLiterals;

class tst_OlderCard : public QObject
{
    Q_OBJECT

private slots:
    void the_page_is_built_at_once_on_the_first_port_that_opens_data()
    {
        QTest::addColumn<QStringList>("present");
        QTest::addColumn<QString>("used");
        QTest::newRow("all") << QStringList{u"ttyUSB11"_s, u"ttyUSB12"_s, u"ttyUSB13"_s}
                             << "ttyUSB11";
        QTest::newRow("all but the first")
            << QStringList{u"ttyUSB12"_s, u"ttyUSB13"_s} << "ttyUSB12";
        QTest::newRow("the last alone") << QStringList{u"ttyUSB13"_s} << "ttyUSB13";
        QTest::newRow("none") << QStringList() << "ttyUSB11";
    }

    void the_page_is_built_at_once_on_the_first_port_that_opens()
    {
        QFETCH(QStringList, present);
        QFETCH(QString, used);
        DeviceDirectory devices;
        devices.add(u"ttyO1"_s);
        for (const QString& name : present) {
            devices.add(name);
        }
        const MainWindow window;
        QVERIFY(window.rooms().hasOlderCard);
        QVERIFY(window.rooms().spectrum->card() != nullptr &&
            !window.rooms().spectrum->card()->k7150Type());
        QCOMPARE(window.rooms().spectrum->card()->findChild<Rs422Bus*>()->portName(), used);
        QCOMPARE(window.rooms().spectrum->card()->isOpen(), !present.isEmpty());
        QVERIFY(window.rooms().views->spectrum.index() >= 0);
    }

    void the_card_is_asked_for_its_name_which_is_sent_to_the_unit()
    {
        DeviceDirectory devices;
        Pty& unit = devices.add(u"ttyO1"_s);
        Pty& card = devices.add(u"ttyUSB11"_s);
        const MainWindow window;
        QTRY_COMPARE(cardSide::requests(card).value(0), QByteArray("0190RNME000000"));
        card.write(cardSide::text("RNME", "Sweep"));
        QTRY_COMPARE(cardSide::requests(card).value(1), QByteArray("0190RVER000000"));
        card.write(cardSide::text("RVER", "1.0"));
        QTRY_COMPARE(
            unit.received(), framed("U0:CLST:0170 SpectralSWeep 0\r") + framed("U0:VER:01.0\r"));
    }

    void ST_keeps_the_older_card()
    {
        DeviceDirectory devices;
        Pty& unit = devices.add(u"ttyO1"_s);
        devices.add(u"ttyUSB11"_s);
        MainWindow window;
        SpectralCard* card = window.rooms().spectrum->card();
        window.process_mess(QString::fromLatin1(framed("ST,1")));
        QCOMPARE(window.rooms().spectrum->card(), card);
        QVERIFY(!card->k7150Type());
        QTRY_COMPARE(unit.received(), QByteArray("D1:SPEN:1D2:SPEN:1D2:SPEN:1"));
    }
};

int main(int argc, char** argv)
{
    // The option of the panel's command line follows the test's own arguments.
    QByteArray option("-noK7150");
    std::vector<char*> arguments(argv, argv + argc);
    arguments.push_back(option.data());
    arguments.push_back(nullptr);
    int count = argc + 1;
    QApplication application(count, arguments.data());
    identity::apply();
    identity::applyLook(application);
    QApplication::setQuitOnLastWindowClosed(false);
    tst_OlderCard test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_OlderCard.moc"
