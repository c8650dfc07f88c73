#include "link/ResendLine.h"
#include "support/Pty.h"
#include "support/TestMain.h"

#include <QRegularExpression>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

class tst_ResendLine : public QObject
{
    Q_OBJECT

private slots:
    void each_message_is_handed_on_whole()
    {
        DeviceDirectory devices;
        Pty& unit = devices.add(u"ttyUSB4"_s);
        ResendLine line;
        const QSignalSpy received(&line, &ResendLine::received);
        line.open();
        QVERIFY(unit.write("junk\x02"
                           "D1:A"));
        QVERIFY(unit.write(QByteArray("BC,1\x04\x04more\x02"
                                      "D2:DSDM:1\x04")));
        QTRY_COMPARE(received.size(), 2);
        QCOMPARE(received.at(0).at(0).toString(),
            u"\x02"_s
            u"D1:ABC,1\x04"_s);
        QCOMPARE(received.at(1).at(0).toString(),
            u"\x02"_s
            u"D2:DSDM:1\x04"_s);
    }

    void an_error_drops_the_unfinished_message()
    {
        DeviceDirectory devices;
        Pty& unit = devices.add(u"ttyUSB4"_s);
        ResendLine line;
        const QSignalSpy received(&line, &ResendLine::received);
        line.open();
        // When the first message arrives, the beginning of the second has been read as well.
        QVERIFY(unit.write(framed("A") +
            "\x02"
            "B"));
        QTRY_COMPARE(received.size(), 1);
        line.takeError(QSerialPort::NoError);
        QVERIFY(unit.write(QByteArray("C\x04\x02"
                                      "D")));
        QTRY_COMPARE(received.size(), 2);
        QCOMPARE(received.at(1).at(0).toString(),
            u"\x02"_s
            u"BC\x04"_s);
        line.takeError(QSerialPort::ReadError);
        QVERIFY(unit.write(QByteArray("E\x04") + framed("F")));
        QTRY_COMPARE(received.size(), 3);
        QCOMPARE(received.at(2).at(0).toString(),
            u"\x02"_s
            u"F\x04"_s);
    }

    void a_missing_line_is_opened_when_it_appears()
    {
        DeviceDirectory devices;
        ResendLine line;
        const QSignalSpy received(&line, &ResendLine::received);
        line.open();
        Pty& unit = devices.add(u"ttyUSB4"_s);
        QTRY_VERIFY_WITH_TIMEOUT(line.findChild<SerialLine*>()->isOpen(), 20000);
        QVERIFY(unit.write(framed("A")));
        QTRY_COMPARE(received.size(), 1);
    }

    void a_lost_line_can_be_deleted_and_opened_anew()
    {
        DeviceDirectory devices;
        Pty& unit = devices.add(u"ttyUSB4"_s);
        auto line = std::make_unique<ResendLine>();
        line->open();
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^ttyUSB4 was lost"_s));
        unit.close();
        QTRY_VERIFY(!line->findChild<SerialLine*>()->isOpen());
        line.reset();
        devices.add(u"ttyUSB4"_s);
        ResendLine open;
        open.open();
        QVERIFY(open.findChild<SerialLine*>()->isOpen());
    }
};

QN740_TEST_MAIN(tst_ResendLine)
#include "tst_ResendLine.moc"
