#include "scopes/PortPace.h"
#include "scopes/ScopeFixture.h"
#include "support/TestMain.h"
#include "wire/Log.h"
#include "wire/SerialLine.h"

#include <poll.h>

using namespace scopeFixture;

namespace {

constexpr int TickMs = 16;       // the interval at which a serial adapter hands bytes on
constexpr qsizetype Piece = 184; // what comes in that time at 115200 baud
constexpr int PeriodMs = 100;
constexpr int MomentMs = 3; // shorter than pauses that end together may lie apart

QByteArray counted(qsizetype size)
{
    QByteArray bytes(size, '\0');
    for (qsizetype k = 0; k < size; ++k) {
        bytes[k] = static_cast<char>(k % 251);
    }
    return bytes;
}

// A port with the other end of its line, read as a scope reads its own.
struct PacedPort
{
    DeviceDirectory devices;
    Pty& far = devices.add(QStringLiteral("ttyUSB1"));
    SerialLine line{logScopes};
    std::unique_ptr<PortPace> owned = std::make_unique<PortPace>(line.port());
    PortPace& pace = *owned; // until a test deletes it
    QByteArray received;
    int reads = 0;

    explicit PacedPort(int period = PeriodMs)
    {
        pace.setPeriod(period);
        QObject::connect(&line.port(), &QSerialPort::readyRead, &pace, [this] {
            const QByteArray bytes = line.port().readAll();
            received += bytes;
            ++reads;
            pace.noteRead(bytes.size());
        });
        line.open(QStringLiteral("ttyUSB1"), 115200, SerialLine::Reopen::Never, 4096);
    }

    QTimer* timer() const { return pace.findChild<QTimer*>(QStringLiteral("readTimer")); }
    bool timerRuns() const { return timer()->isActive(); }

    // Waits until the kernel has bytes for the port, without events.
    bool bytesCome()
    {
        pollfd state{line.port().handle(), POLLIN, 0};
        return ::poll(&state, 1, 5000) > 0;
    }
};

// Two ports that are left alone, each with a piece that waits in the kernel. A moment is left of
// both pauses.
struct TwoPaused
{
    PacedPort first;
    PacedPort second;

    TwoPaused()
    {
        for (PacedPort* port : {&first, &second}) {
            QVERIFY(port->far.write(counted(PortPace::StreamBytes - 1)));
            QTRY_COMPARE(port->received.size(), PortPace::StreamBytes - 1);
        }
        QTRY_VERIFY((QCoreApplication::processEvents(), bothPause() && piecesComeInTime()));
        while (second.timer()->remainingTime() > MomentMs) {
            QTest::qSleep(1); // without events, so that no timer runs out
        }
        first.reads = 0;
        second.reads = 0;
    }

    bool bothPause()
    {
        for (PacedPort* port : {&first, &second}) {
            if (!port->pace.isPaused()) {
                port->far.write(counted(1));
                Q_UNUSED(QTest::qWaitFor([port] { return port->pace.isPaused(); }, PeriodMs));
            }
        }
        return first.pace.isPaused() && second.pace.isPaused();
    }

    // Writes a piece to each, without events. The kernel may deliver it late.
    bool piecesComeInTime()
    {
        bool inTime = true;
        for (PacedPort* port : {&first, &second}) {
            inTime = port->far.write(counted(Piece)) && port->bytesCome() && inTime;
        }
        return inTime && first.timer()->remainingTime() > MomentMs &&
            second.timer()->remainingTime() > MomentMs;
    }

    void runOutFirst() const
    {
        QTimerEvent event(first.timer()->timerId());
        QCoreApplication::sendEvent(first.timer(), &event);
    }
};

// Sends bytes as a line at 115200 baud delivers them.
void stream(Pty& line, const QByteArray& bytes)
{
    for (qsizetype at = 0; at < bytes.size(); at += Piece) {
        QVERIFY(line.write(bytes.mid(at, Piece)));
        QTest::qWait(TickMs);
    }
}

} // namespace

class tst_PortPace : public QObject
{
    Q_OBJECT

private slots:
    void a_stream_is_read_once_a_period_and_nothing_is_lost()
    {
        PacedPort port;
        const QByteArray bytes = counted(50 * Piece);
        QElapsedTimer elapsed;
        elapsed.start();
        stream(port.far, bytes);
        QTRY_COMPARE(port.received.size(), bytes.size());
        QCOMPARE(port.received, bytes);
        const auto begin = static_cast<int>(PortPace::StreamBytes / Piece) + 1;
        QVERIFY2(port.reads <= begin + elapsed.elapsed() / PeriodMs + 2,
            qPrintable(QString::number(port.reads)));
    }

    void a_port_that_nobody_reads_takes_what_it_has_room_for()
    {
        constexpr qint64 Room = 4096;
        DeviceDirectory devices;
        Pty& far = devices.add(QStringLiteral("ttyUSB1"));
        SerialLine line(logScopes);
        QVERIFY(line.open(QStringLiteral("ttyUSB1"), 115200, SerialLine::Reopen::Never, Room));
        const QByteArray bytes = counted(2 * Room);
        QVERIFY(far.write(bytes));
        QTRY_COMPARE(line.port().bytesAvailable(), Room);
        QTest::qWait(PeriodMs);
        QCOMPARE(line.port().bytesAvailable(), Room);
        QByteArray received;
        const auto readOn = [&] {
            received += line.port().readAll();
            return received.size() == bytes.size();
        };
        QVERIFY(QTest::qWaitFor(readOn));
        QCOMPARE(received, bytes);
    }

    void the_beginning_of_a_stream_is_read_at_once()
    {
        PacedPort port;
        QVERIFY(port.far.writeUntilRead(counted(PortPace::StreamBytes - 1)));
        QTRY_COMPARE(port.received.size(), PortPace::StreamBytes - 1);
        QVERIFY(!port.pace.isPaused());
        QVERIFY(port.far.writeUntilRead(counted(1)));
        QTRY_COMPARE(port.received.size(), PortPace::StreamBytes);
        QVERIFY(port.pace.isPaused());
    }

    void a_read_of_a_whole_block_is_followed_by_the_next_one_at_once()
    {
        PacedPort port;
        for (int k = 1; k <= 3; ++k) {
            QVERIFY(port.far.write(counted(PortPace::LargeRead)));
            QTRY_COMPARE(port.received.size(), k * PortPace::LargeRead);
            QVERIFY(port.reads > k || !port.pace.isPaused());
        }
    }

    void without_a_period_everything_is_read_as_it_comes()
    {
        PacedPort port(0);
        for (int k = 1; k <= 20; ++k) {
            QVERIFY(port.far.writeUntilRead(counted(Piece)));
            QTRY_COMPARE(port.reads, k);
            QVERIFY(!port.pace.isPaused());
        }
    }

    void a_silence_ends_the_stream()
    {
        PacedPort port;
        stream(port.far, counted(10 * Piece));
        QTRY_COMPARE(port.received.size(), 10 * Piece);
        QTRY_VERIFY(!port.timerRuns()); // no timer runs without data
        QTest::qWait(300);
        QVERIFY(!port.timerRuns());
        QVERIFY(port.far.writeUntilRead(counted(Piece)));
        QTRY_COMPARE(port.received.size(), 11 * Piece);
        QVERIFY(!port.pace.isPaused());
    }

    void pauses_that_end_together_end_with_one_timer()
    {
        TwoPaused ports;
        ports.runOutFirst();
        QCOMPARE(ports.first.reads, 1);
        QCOMPARE(ports.second.reads, 1);
        for (const PacedPort* port : {&ports.first, &ports.second}) {
            QVERIFY(port->pace.isPaused());
            // It is not read twice because the end of the period is still near.
            QVERIFY2(port->timer()->interval() > 5,
                qPrintable(QString::number(port->timer()->interval())));
        }
        QVERIFY(ports.first.far.write(counted(Piece)) && ports.second.far.write(counted(Piece)));
        QTRY_COMPARE(ports.first.reads, 2);
        QTRY_COMPARE(ports.second.reads, 2);
    }

    void the_reader_of_one_port_may_delete_the_pace_of_the_other()
    {
        TwoPaused ports;
        QObject::connect(&ports.first.line.port(), &QSerialPort::readyRead, &ports.first.pace,
            [&ports] { ports.second.owned.reset(); });
        ports.runOutFirst();
        QCOMPARE(ports.first.reads, 1);
        QVERIFY(ports.first.pace.isPaused());
    }

    void the_reader_of_a_port_may_delete_its_pace()
    {
        TwoPaused ports;
        QObject::connect(&ports.first.line.port(), &QSerialPort::readyRead, &ports.first.line,
            [&ports] { ports.first.owned.reset(); });
        ports.runOutFirst();
        QCOMPARE(ports.second.reads, 1);
    }

    void another_period_ends_a_pause()
    {
        PacedPort port(PortPace::MaxPeriodMs);
        QVERIFY(port.far.write(counted(100)));
        QTRY_COMPARE(port.received.size(), 100);
        QVERIFY(port.far.write(counted(PortPace::StreamBytes - 100)));
        QTRY_VERIFY(port.pace.isPaused());
        port.pace.setPeriod(0);
        QVERIFY(!port.pace.isPaused());
        QVERIFY(port.far.writeUntilRead(counted(Piece)));
        QTRY_COMPARE(port.received.size(), PortPace::StreamBytes + Piece);
    }

    void a_period_is_bounded_data()
    {
        QTest::addColumn<int>("wanted");
        QTest::addColumn<int>("taken");
        QTest::newRow("below 0") << -1 << 0;
        QTest::newRow("0") << 0 << 0;
        QTest::newRow("the longest") << 150 << 150;
        QTest::newRow("too long") << 151 << 150;
    }

    void a_period_is_bounded()
    {
        QFETCH(int, wanted);
        QFETCH(int, taken);
        PacedPort port(wanted);
        QCOMPARE(port.pace.period(), taken);
    }

    void a_line_that_is_lost_in_a_pause_is_still_noticed()
    {
        PacedPort port;
        QSignalSpy lost(&port.line, &SerialLine::lost);
        QVERIFY(port.far.write(counted(100)));
        QTRY_COMPARE(port.received.size(), 100);
        QVERIFY(port.far.write(counted(PortPace::StreamBytes - 100)));
        QTRY_VERIFY(port.pace.isPaused());
        QVERIFY(port.far.write(counted(Piece)) && port.bytesCome());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("ttyUSB1 was lost")));
        port.devices.remove(QStringLiteral("ttyUSB1"));
        QTRY_COMPARE(lost.size(), 1);
        QTRY_VERIFY(!port.timerRuns());
        QCOMPARE(port.received.size(), PortPace::StreamBytes);
        QCoreApplication::processEvents();
        QCOMPARE(lost.size(), 1);
    }

    // Whoever follows the loss may do as he likes; the other ports are read before.
    void a_line_that_was_lost_in_a_pause_is_reported_when_it_is_listened_to_again()
    {
        TwoPaused ports;
        const QSignalSpy lost(&ports.first.line, &SerialLine::lost);
        ports.first.devices.remove(QStringLiteral("ttyUSB1"));
        ports.runOutFirst();
        QCOMPARE(lost.size(), 0);
        QVERIFY(!ports.first.pace.isPaused());
        QCOMPARE(ports.second.reads, 1);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("ttyUSB1 was lost")));
        QTRY_COMPARE(lost.size(), 1);
        QVERIFY(!ports.first.timerRuns());
    }

    void a_scope_reads_blocks_in_large_pieces_and_loses_none_data()
    {
        QTest::addColumn<bool>("shown");
        QTest::addColumn<int>("period");
        QTest::newRow("hidden") << false << Scope::HiddenReadMs;
        QTest::newRow("shown") << true << Scope::ShownReadMs;
    }

    void a_scope_reads_blocks_in_large_pieces_and_loses_none()
    {
        QFETCH(bool, shown);
        QFETCH(int, period);
        ScopeFixture fixture(shown);
        const QSignalSpy reads(&fixture.scope.port(), &QSerialPort::readyRead);
        QByteArray bytes;
        for (int k = 1; k <= 6; ++k) {
            bytes += steady(k * 100, -k);
        }
        QElapsedTimer elapsed;
        elapsed.start();
        stream(fixture.line, bytes);
        QTRY_COMPARE(fixture.blocks.size(), 6);
        for (int k = 1; k <= 6; ++k) {
            QCOMPARE(
                fixture.blocks.at(k - 1).at(0).value<QVector<double>>().at(1), k * 100 / 32768.0);
        }
        QVERIFY2(reads.size() <= PortPace::StreamBytes / Piece + 3 + elapsed.elapsed() / period,
            qPrintable(QString::number(reads.size())));
    }

    void no_timer_of_a_hidden_scope_runs_when_nothing_comes()
    {
        ScopeFixture fixture(false);
        stream(fixture.line, steady(1, 2) + steady(1, 2));
        QTRY_COMPARE(fixture.blocks.size(), 2);
        const auto isIdle = [&fixture] {
            const auto timers = fixture.scope.findChildren<QTimer*>();
            return std::none_of(timers.cbegin(), timers.cend(),
                [](const QTimer* timer) { return timer->isActive(); });
        };
        QVERIFY(!isIdle()); // "NO DATA" is due when nothing follows
        QTRY_VERIFY_WITH_TIMEOUT(isIdle(), Scope::StaleMs + 3000);
        QVERIFY(fixture.scope.stale());
    }

    // The unit of the decoder is one read: two records in one would be one.
    void a_hidden_scope_reads_records_as_they_come()
    {
        ScopeFixture fixture(false);
        stream(fixture.line, steady(1, 2) + steady(1, 2)); // a pause is under way now
        QTRY_COMPARE(fixture.blocks.size(), 2);
        fixture.scope.setPlotType(Scope::Sdi);
        for (int k = 1; k <= 20; ++k) {
            QVERIFY(fixture.line.writeUntilRead(QByteArray("\x00\xff"
                                                           "abcde",
                7)));
            QTRY_COMPARE(fixture.records.size(), k);
        }
    }
};

QN740_TEST_MAIN(tst_PortPace)

#include "tst_PortPace.moc"
