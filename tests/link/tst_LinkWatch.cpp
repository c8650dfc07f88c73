// These tests use a real line, with the test at its other end, and real time.
#include "link/LinkWatch.h"

#include "link/Limits.h"
#include "link/keySerial.h"
#include "support/Pty.h"
#include "support/TestMain.h"

#include <QRegularExpression>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

constexpr int IntervalMs = 150;
constexpr int SilenceMs = 3000;
constexpr int LongMs = 20000;

} // namespace

class tst_LinkWatch : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_devices = std::make_unique<DeviceDirectory>();
        m_unit = &m_devices->add(u"ttyO1"_s);
        m_serial = std::make_unique<keySerial>();
        m_watch = std::make_unique<LinkWatch>(*m_serial);
        connect(m_serial.get(), &keySerial::valid_mess_in, m_watch.get(), [this](const QString& m) {
            if (m.contains(u"PING"_s)) {
                m_watch->notePing();
            }
        });
        m_states.clear();
        connect(m_watch.get(), &LinkWatch::changed, this,
            [this](LinkState state) { m_states += state; });
    }

    void cleanup()
    {
        m_watch.reset();
        m_serial.reset();
        m_devices.reset();
    }

    void a_line_that_was_never_opened_is_closed()
    {
        QCOMPARE(m_watch->state(), LinkState::Closed);
        m_devices->remove(u"ttyO1"_s);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^ttyO1 was not opened: "_s));
        QVERIFY(!m_serial->open_serial(u"ttyO1"_s));
        QCOMPARE(m_watch->state(), LinkState::Closed);
        QVERIFY(m_states.isEmpty());
    }

    void an_open_line_is_alive_until_it_is_lost()
    {
        QVERIFY(m_serial->open_serial(u"ttyO1"_s));
        QCOMPARE(m_watch->state(), LinkState::Alive);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^ttyO1 was lost: "_s));
        m_unit->close();
        QTRY_COMPARE(m_watch->state(), LinkState::Closed);
        QCOMPARE(m_states, (QList<LinkState>{LinkState::Alive, LinkState::Closed}));
    }

    void a_unit_that_pings_and_stops_is_silent_until_anything_arrives_data()
    {
        QTest::addColumn<QByteArray>("sign");
        QTest::newRow("a message") << framed("SB,0,Hello");
        QTest::newRow("half a message") << QByteArray("\x02SB,0");
        QTest::newRow("one byte of noise") << QByteArray("\x7f");
    }

    void a_unit_that_pings_and_stops_is_silent_until_anything_arrives()
    {
        QFETCH(QByteArray, sign);
        QVERIFY(m_serial->open_serial(u"ttyO1"_s));
        ping(4);
        QElapsedTimer since;
        since.start();
        QTRY_COMPARE_WITH_TIMEOUT(m_watch->state(), LinkState::Silent, LongMs);
        QVERIFY2(since.elapsed() >= SilenceMs - IntervalMs, QByteArray::number(since.elapsed()));
        QVERIFY(m_unit->write(sign));
        QTRY_COMPARE(m_watch->state(), LinkState::Alive);
        // The link becomes silent again, because the unit is still expected to go on sending
        // "PING".
        QTRY_COMPARE_WITH_TIMEOUT(m_watch->state(), LinkState::Silent, LongMs);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^ttyO1 was lost: "_s));
        m_unit->close();
        QTRY_COMPARE(m_watch->state(), LinkState::Closed);
    }

    void a_unit_that_never_pings_is_not_called_silent()
    {
        QVERIFY(m_serial->open_serial(u"ttyO1"_s));
        for (int i = 0; i < 4; ++i) {
            QVERIFY(m_unit->write(framed("SB,0,Hello")));
            QTest::qWait(IntervalMs);
        }
        QTest::qWait(SilenceMs + 1000);
        QCOMPARE(m_watch->state(), LinkState::Alive);
    }

    void no_timer_runs_before_pings_are_expected()
    {
        const auto running = [this] {
            const QTimer* timer = m_watch->findChild<QTimer*>();
            return timer != nullptr && timer->isActive();
        };
        QVERIFY(m_serial->open_serial(u"ttyO1"_s));
        ping(2);
        QVERIFY(m_unit->write(framed("SB,0,Hello")));
        QTest::qWait(IntervalMs);
        QVERIFY(!running());
        ping(3);
        QVERIFY(running());
        QTRY_COMPARE_WITH_TIMEOUT(m_watch->state(), LinkState::Silent, LongMs);
        QVERIFY(!running());
    }

    void an_interval_that_gets_shorter_makes_silence_come_sooner()
    {
        constexpr int SlowMs = 2000;
        constexpr int ShortestSilenceMs = 3000;
        QVERIFY(m_serial->open_serial(u"ttyO1"_s));
        for (int i = 0; i < 3; ++i) {
            QVERIFY(m_unit->write(framed("PING")));
            QTest::qWait(SlowMs);
        }
        const auto* timer = m_watch->findChild<QTimer*>();
        QVERIFY(timer->isActive() && timer->remainingTime() > ShortestSilenceMs);
        ping(4);
        QVERIFY(timer->isActive() && timer->remainingTime() <= ShortestSilenceMs);
    }

    // When the unit has asked for an editor, the editor keeps the line waiting. The unit itself is
    // not silent.
    void what_waits_in_the_port_is_a_sign_of_life()
    {
        QVERIFY(m_serial->open_serial(u"ttyO1"_s));
        ping(4);
        bool done = false;
        connect(m_serial.get(), &keySerial::valid_mess_in, this, [&](const QString& message) {
            if (!message.contains(u"IK"_s) || done) {
                return;
            }
            done = true;
            for (int i = 0; i < 9; ++i) {
                QVERIFY(m_unit->write(framed("PING")));
                QTest::qWait(500);
                QCOMPARE(m_watch->state(), LinkState::Alive);
            }
            QTRY_COMPARE_WITH_TIMEOUT(m_watch->state(), LinkState::Silent, LongMs);
            QVERIFY(m_unit->write(framed("PING")));
            QTRY_COMPARE(m_watch->state(), LinkState::Alive);
        });
        QVERIFY(m_unit->write(framed("IK")));
        QTRY_VERIFY_WITH_TIMEOUT(done && !m_serial->isBusy(), LongMs);
    }

    // More than the port takes tells nothing about the unit's silence, and the kernel drops what
    // comes then.
    void a_full_port_is_a_sign_of_life_and_is_logged()
    {
        QVERIFY(m_serial->open_serial(u"ttyO1"_s));
        ping(4);
        bool done = false;
        connect(m_serial.get(), &keySerial::valid_mess_in, this, [&](const QString& message) {
            if (!message.contains(u"IK"_s)) {
                return;
            }
            QTest::ignoreMessage(QtWarningMsg,
                QRegularExpression(
                    u"^1048576 bytes wait for an editor to close: further ones may be lost"_s));
            QElapsedTimer since;
            since.start();
            const QByteArray piece(4096, 'x');
            while (m_serial->unread() < linkLimits::MaxBytesWaiting && m_unit->write(piece)) {
            }
            QCOMPARE(m_serial->unread(), linkLimits::MaxBytesWaiting);
            // What came at first is a sign of life for one such time, in which it was looked at.
            QTest::qWait(2 * SilenceMs + 3 * IntervalMs - static_cast<int>(since.elapsed()));
            QCOMPARE(m_serial->unread(), linkLimits::MaxBytesWaiting);
            QCOMPARE(m_watch->state(), LinkState::Alive);
            done = true;
        });
        QVERIFY(m_unit->write(framed("IK")));
        QTRY_VERIFY_WITH_TIMEOUT(done && !m_serial->isBusy() && m_serial->unread() == 0, LongMs);
        QSignalSpy messages(m_serial.get(), &keySerial::valid_mess_in);
        QVERIFY(m_unit->write(framed("PING"))); // the line is read again
        QTRY_COMPARE(messages.size(), 1);
    }

private:
    void ping(int count)
    {
        for (int i = 0; i < count; ++i) {
            QVERIFY(m_unit->write(framed("PING")));
            QTest::qWait(IntervalMs);
        }
    }

    std::unique_ptr<DeviceDirectory> m_devices;
    Pty* m_unit = nullptr;
    std::unique_ptr<keySerial> m_serial;
    std::unique_ptr<LinkWatch> m_watch;
    QList<LinkState> m_states;
};

QN740_TEST_MAIN(tst_LinkWatch)
#include "tst_LinkWatch.moc"
