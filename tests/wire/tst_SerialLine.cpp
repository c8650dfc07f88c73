#include "support/Pty.h"
#include "support/TestMain.h"
#include "wire/Log.h"
#include "wire/SerialLine.h"

#include <QRegularExpression>
#include <QSignalSpy>

#include <ctime>

using namespace Qt::StringLiterals;

namespace {
double cpuSeconds()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}
} // namespace

class tst_SerialLine : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_devices = std::make_unique<DeviceDirectory>(); }
    void cleanup() { m_devices.reset(); }

    void devices_are_looked_up_in_the_directory_of_the_environment()
    {
        QCOMPARE(SerialLine::devicePath(u"ttyO1"_s), m_devices->path() + u"/ttyO1"_s);
        qunsetenv("QN740_DEV");
        QCOMPARE(SerialLine::devicePath(u"ttyO1"_s), u"/dev/ttyO1"_s);
    }

    void an_open_line_has_eight_data_bits_no_parity_one_stop_bit_data()
    {
        QTest::addColumn<int>("baudRate");
        for (const int rate : {115200, 230400, 921600}) {
            QTest::addRow("%d", rate) << rate;
        }
    }

    void an_open_line_has_eight_data_bits_no_parity_one_stop_bit()
    {
        QFETCH(int, baudRate);
        m_devices->add(u"ttyX"_s);
        SerialLine line(&logLink);
        QVERIFY(line.open(u"ttyX"_s, baudRate, SerialLine::Reopen::Never, 4096));
        QCOMPARE(line.name(), u"ttyX"_s);
        QSerialPort& port = line.port();
        QCOMPARE(port.baudRate(QSerialPort::Input), baudRate);
        QCOMPARE(port.baudRate(QSerialPort::Output), baudRate);
        QCOMPARE(port.dataBits(), QSerialPort::Data8);
        QCOMPARE(port.parity(), QSerialPort::NoParity);
        QCOMPARE(port.stopBits(), QSerialPort::OneStop);
        QCOMPARE(port.flowControl(), QSerialPort::NoFlowControl);
        QCOMPARE(port.readBufferSize(), qint64(4096));
        QCOMPARE(port.openMode(), QIODevice::ReadWrite);
    }

    void all_byte_values_pass_both_ways()
    {
        Pty& pty = m_devices->add(u"ttyX"_s);
        SerialLine line(&logLink);
        QVERIFY(line.open(u"ttyX"_s, 115200));
        QByteArray all;
        for (int i = 0; i < 256; ++i) {
            all += static_cast<char>(i);
        }
        QVERIFY(pty.write(all));
        QTRY_COMPARE(line.port().bytesAvailable(), qint64(256));
        QCOMPARE(line.port().readAll(), all);
        line.port().write(all);
        QTRY_COMPARE(pty.received(), all);
    }

    void what_the_line_takes_is_sent_at_once()
    {
        Pty& pty = m_devices->add(u"ttyX"_s);
        SerialLine line(&logLink);
        QVERIFY(line.open(u"ttyX"_s, 115200));
        line.write("request");
        QCOMPARE(line.port().bytesToWrite(), qint64(0));
        QCOMPARE(pty.received(), QByteArray("request")); // without a turn of the event loop
    }

    void what_the_line_does_not_take_follows_in_its_order()
    {
        Pty& pty = m_devices->add(u"ttyX"_s);
        SerialLine line(&logLink);
        QVERIFY(line.open(u"ttyX"_s, 115200));
        QByteArray all;
        for (char letter = 'a'; letter <= 'f'; ++letter) {
            const QByteArray piece(10000, letter);
            line.write(piece);
            all += piece;
        }
        QVERIFY(line.port().bytesToWrite() > 0);
        QTRY_COMPARE(pty.received().size(), all.size());
        QCOMPARE(pty.received(), all);
    }

    void nothing_is_written_to_a_closed_line()
    {
        SerialLine line(&logLink);
        QTest::ignoreMessage(
            QtWarningMsg, QRegularExpression(u"QIODevice::write .*device not open"_s));
        line.write("request");
        QCOMPARE(line.port().bytesToWrite(), qint64(0));
    }

    void no_bytes_are_no_fault_of_a_closed_line()
    {
        QTest::failOnWarning(QRegularExpression(u"."_s));
        SerialLine line(&logLink);
        line.write(QByteArray());
        QCOMPARE(line.port().bytesToWrite(), qint64(0));
    }

    void an_absent_device_is_a_warning_where_it_is_a_fault()
    {
        SerialLine line(&logLink, nullptr, SerialLine::Absence::IsAFault);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^ttyX was not opened: ."_s));
        QVERIFY(!line.open(u"ttyX"_s, 115200));
    }

    void an_absent_device_is_not_opened()
    {
        QTest::failOnWarning(QRegularExpression(u"."_s));
        SerialLine line(&logLink);
        QVERIFY(!line.open(u"ttyX"_s, 115200));
        QVERIFY(!line.isOpen());
    }

    // A port that tries makes a lock file and has it brought to the disk, every two seconds.
    void an_absent_device_is_not_even_tried()
    {
        SerialLine line(&logLink, nullptr, SerialLine::Absence::IsAFault);
        const QSignalSpy errors(&line.port(), &QSerialPort::errorOccurred);
        QTest::ignoreMessage(
            QtWarningMsg, u"ttyX was not opened: No such file or directory"_s.toUtf8());
        QVERIFY(!line.open(u"ttyX"_s, 115200));
        QVERIFY(!line.isTaken());
        QVERIFY(errors.isEmpty());
        QCOMPARE(line.port().portName(), m_devices->path() + u"/ttyX"_s);
    }

    void a_line_whose_other_end_goes_away_is_closed_and_logged_once()
    {
        Pty& pty = m_devices->add(u"ttyX"_s);
        SerialLine line(&logLink);
        QSignalSpy lost(&line, &SerialLine::lost);
        bool wasOpen = false; // when it was about to be closed
        connect(&line, &SerialLine::losing, &line, [&] { wasOpen = line.isOpen(); });
        QVERIFY(line.open(u"ttyX"_s, 115200));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^ttyX was lost: .*"_s));
        pty.close();
        QTRY_COMPARE(lost.count(), 1);
        QVERIFY(wasOpen);
        QVERIFY(!line.isOpen());
        // A busy loop would use many times more processor time.
        const double before = cpuSeconds();
        QTest::qWait(1000);
        QVERIFY(cpuSeconds() - before < 0.3);
        QCOMPARE(lost.count(), 1);
    }

    void a_line_that_is_to_be_reopened_comes_back()
    {
        SerialLine line(&logLink);
        QSignalSpy opened(&line, &SerialLine::opened);
        QVERIFY(!line.open(u"ttyX"_s, 115200, SerialLine::Reopen::EveryTwoSeconds));
        m_devices->add(u"ttyX"_s);
        QTRY_COMPARE_WITH_TIMEOUT(opened.count(), 1, 20000);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^ttyX was lost: .*"_s));
        Pty& again = m_devices->add(u"ttyX"_s);
        QTRY_COMPARE_WITH_TIMEOUT(opened.count(), 2, 20000);
        const auto timers = line.findChildren<QTimer*>(Qt::FindDirectChildrenOnly);
        QCOMPARE(timers.size(), 1);
        QVERIFY(!timers.first()->isActive()); // nothing is left to be tried
        line.port().write("back");
        QTRY_COMPARE(again.received(), QByteArray("back"));
    }

    void a_line_that_is_closed_is_not_tried_again()
    {
        SerialLine line(&logLink);
        QVERIFY(!line.open(u"ttyX"_s, 115200, SerialLine::Reopen::EveryTwoSeconds));
        line.close();
        QSignalSpy opened(&line, &SerialLine::opened);
        m_devices->add(u"ttyX"_s);
        QTest::qWait(2500);
        QCOMPARE(opened.count(), 0);
    }

    void a_loss_is_logged_with_its_reason_data()
    {
        QTest::addColumn<bool>("isRemoved");
        QTest::addColumn<QString>("reason");
        QTest::newRow("hung up") << false << u"the other end has hung up"_s;
        QTest::newRow("device removed") << true << u"the device is gone"_s;
    }

    void a_loss_is_logged_with_its_reason()
    {
        QFETCH(bool, isRemoved);
        QFETCH(QString, reason);
        Pty& pty = m_devices->add(u"ttyX"_s);
        SerialLine line(&logLink);
        QVERIFY(line.open(u"ttyX"_s, 115200));
        QTest::ignoreMessage(QtWarningMsg, qPrintable(u"ttyX was lost: "_s + reason));
        if (isRemoved) {
            m_devices->remove(u"ttyX"_s);
        } else {
            pty.close();
        }
        QTRY_VERIFY(!line.isOpen());
    }

    void an_error_that_does_not_concern_the_device_is_no_loss()
    {
        QTest::failOnWarning(QRegularExpression(u"."_s));
        m_devices->add(u"ttyX"_s);
        SerialLine line(&logLink);
        QSignalSpy lost(&line, &SerialLine::lost);
        QVERIFY(line.open(u"ttyX"_s, 115200));
        QVERIFY(!line.port().waitForReadyRead(1));
        QCOMPARE(line.port().error(), QSerialPort::TimeoutError);
        QVERIFY(line.isOpen());
        QCOMPARE(lost.count(), 0);
    }

    void a_line_that_another_one_holds_is_taken()
    {
        m_devices->add(u"ttyX"_s);
        SerialLine first(&logLink);
        QVERIFY(first.open(u"ttyX"_s, 115200));
        QVERIFY(!first.isTaken());
        SerialLine second(&logLink);
        QVERIFY(!second.open(u"ttyX"_s, 115200));
        QVERIFY(second.isTaken());
        QVERIFY(!second.open(u"ttyAbsent"_s, 115200));
        QVERIFY(!second.isTaken());
        first.close();
        QVERIFY(second.open(u"ttyX"_s, 115200));
        QVERIFY(!second.isTaken());
    }

private:
    std::unique_ptr<DeviceDirectory> m_devices;
};

QN740_TEST_MAIN(tst_SerialLine)
#include "tst_SerialLine.moc"
