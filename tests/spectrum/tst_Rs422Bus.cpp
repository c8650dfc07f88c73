#include "spectrum/BusFixture.h"
#include "support/TestMain.h"

#include <QElapsedTimer>

#include <sys/ioctl.h>

using namespace Qt::StringLiterals;

namespace {

// the bytes that the card has not taken from the line
int unreadBytes(const Pty& pty)
{
    int bytes = 0;
    ::ioctl(pty.master(), FIONREAD, &bytes);
    return bytes;
}

} // namespace

class tst_Rs422Bus : public QObject, private BusFixture
{
    Q_OBJECT

private slots:
    void init() { start(); }
    void cleanup() { stop(); }

    // opening

    void the_port_is_open_after_construction()
    {
        QVERIFY(m_bus->isOpen());
        QCOMPARE(m_bus->startOfFrame(), '[');
        QCOMPARE(m_bus->endOFrame(), ']');
        QVERIFY(m_bus->isOldProtocol());
        QVERIFY(!m_bus->getIsK7150Type());
        QCOMPARE(m_bus->txCount(), 0);
        QCOMPARE(timers(m_bus.get()), 0);
        QCOMPARE(m_card->received(), QByteArray());
    }

    void close_closes_the_port()
    {
        m_bus->close();
        QVERIFY(!m_bus->isOpen());
    }

    void an_absent_port_is_not_open_and_requests_to_it_time_out()
    {
        Rs422Bus bus(u"absent"_s, '[', ']', true, 921600);
        QSignalSpy lost(&bus, &Rs422Bus::messageTxSuccess);
        QVERIFY(!bus.isOpen());
        bus.sendMessage(u"0190RNME"_s, 1);
        QTRY_COMPARE(lost.count(), 1);
        bus.close();
    }

    void a_port_that_comes_later_is_opened()
    {
        Rs422Bus bus(u"ttyUSB12"_s, '[', ']', true, 921600);
        QSignalSpy opened(&bus, &Rs422Bus::opened);
        QVERIFY(!bus.isOpen());
        Pty& pty = m_devices->add(u"ttyUSB12"_s);
        QTRY_COMPARE_WITH_TIMEOUT(opened.count(), 1, 10000);
        QVERIFY(bus.isOpen());
        bus.sendMessage(u"0190RNME"_s);
        QTRY_COMPARE(cardSide::requests(pty), Requests{"0190RNME"});
    }

    void a_lost_port_ends_its_transaction_by_the_timer()
    {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"ttyUSB11 was lost"_s));
        m_bus->sendMessage(u"0190RNME"_s, Long);
        m_card->close();
        QTRY_VERIFY(!m_bus->isOpen());
        QCOMPARE(m_lost->count(), 0);
        testClock::expire(m_bus.get());
        QCOMPARE(m_lost->count(), 1);
    }

    // Until it has answered, its owner may close the port in the turn of a request.
    void a_card_that_comes_back_has_not_answered_yet()
    {
        m_card->write(cardSide::spectrum("x"));
        QTRY_COMPARE(m_received->count(), 1);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"ttyUSB11 was lost"_s));
        m_card = &m_devices->add(u"ttyUSB11"_s);
        const QSignalSpy opened(m_bus.get(), &Rs422Bus::opened);
        connect(m_bus.get(), &Rs422Bus::opened, m_bus.get(), [this] {
            m_bus->sendMessage(u"0190RNME"_s, Long);
            m_bus->close();
        });
        QTRY_COMPARE_WITH_TIMEOUT(opened.count(), 1, 10000);
        QCOMPARE(m_card->received(), QByteArray());
    }

    void the_frame_characters_and_the_type_can_be_changed()
    {
        m_bus->setStartOfFrame('<');
        m_bus->setEndOFrame('>');
        m_bus->setIsK7150Type(true);
        QCOMPARE(m_bus->startOfFrame(), '<');
        QCOMPARE(m_bus->endOFrame(), '>');
        QVERIFY(m_bus->getIsK7150Type());
        m_bus->sendMessage(u"a"_s);
        QTRY_COMPARE(m_card->received(), bus::frame(u"a"_s, '<', '>', true));
    }

    // sending

    void a_request_is_written_with_frame_and_checksum()
    {
        m_bus->sendMessage(u"0190RNME"_s);
        QTRY_COMPARE(m_card->received(), QByteArray("[0190RNME]\xb4"));
        QCOMPARE(m_bus->txCount(), 0);
    }

    void without_the_old_protocol_no_checksum_is_written()
    {
        Pty& pty = m_devices->add(u"ttyUSB12"_s);
        Rs422Bus bus(u"ttyUSB12"_s, '[', ']', false, 921600);
        bus.sendMessage(u"0190RNME"_s);
        QTRY_COMPARE(pty.received(), QByteArray("[0190RNME]"));
    }

    void requests_go_one_at_a_time_oldest_first()
    {
        m_bus->sendMessage(u"first"_s);
        m_bus->sendMessage(u"second"_s);
        m_bus->sendMessage(u"third"_s);
        QCOMPARE(m_bus->txCount(), 2);
        QTRY_COMPARE(cardSide::requests(*m_card), Requests{"first"});
        m_card->write(cardSide::spectrum("x"));
        QTRY_COMPARE(cardSide::requests(*m_card), Requests({"first", "second"}));
        QCOMPARE(m_bus->txCount(), 1);
    }

    void the_bus_knows_what_waits_and_what_was_sent_last()
    {
        QCOMPARE(m_bus->lastRequest(), QString());
        m_bus->sendMessage(u"first"_s, 10000);
        m_bus->sendMessage(u"second"_s);
        m_bus->sendMessage(u"third one"_s, 2000);
        QCOMPARE(m_bus->lastRequest(), u"first"_s);
        QVERIFY(!m_bus->isWaiting(u"first"_s));
        QVERIFY(m_bus->isWaiting(u"second"_s) && m_bus->isWaiting(u"third one"_s));
        QVERIFY(!m_bus->isWaiting(u"econd"_s) && !m_bus->isWaiting(u"one"_s));
        m_card->write(cardSide::spectrum("x"));
        QTRY_COMPARE(m_bus->lastRequest(), u"second"_s);
        QVERIFY(!m_bus->isWaiting(u"second"_s));
    }

    // timeouts, by the value of the timer

    void a_request_has_its_reply_timer_data()
    {
        QTest::addColumn<QString>("queued");
        QTest::addColumn<int>("ms");
        QTest::addColumn<QByteArray>("sent");
        const QString own(QChar(0x08));
        QTest::newRow("usual") << "0190RNME" << 450 << QByteArray("0190RNME");
        QTest::newRow("own") << own + u"2000 0190RFFT"_s << 2000 << QByteArray("0190RFFT");
        QTest::newRow("at the cap") << own + u"10000 a"_s << 10000 << QByteArray("a");
        QTest::newRow("above the cap") << own + u"20000 a"_s << 10000 << QByteArray("a");
        QTest::newRow("not a number") << own + u"soon a"_s << 0 << QByteArray("a");
        QTest::newRow("too many digits") << own + u"99999999999 a"_s << 0 << QByteArray("a");
        QTest::newRow("negative") << own + u"-5 a"_s << 0 << QByteArray("a");
        QTest::newRow("zero") << own + u"0 a"_s << 0 << QByteArray("a");
        QTest::newRow("blanks belong to the request")
            << own + u"70 a b  c"_s << 70 << QByteArray("a b  c");
        QTest::newRow("no blank: an empty request") << own + u"300"_s << 300 << QByteArray("");
    }

    void a_request_has_its_reply_timer()
    {
        QFETCH(QString, queued);
        QFETCH(int, ms);
        QFETCH(QByteArray, sent);
        m_bus->sendMessage(queued);
        QCOMPARE(replyTimer(m_bus.get()), ms);
        QTRY_COMPARE(cardSide::requests(*m_card).value(0), sent);
    }

    void a_timeout_can_be_given_as_an_argument()
    {
        m_bus->sendMessage(u"0190RFFT"_s, 20000);
        QCOMPARE(replyTimer(m_bus.get()), 10000);
    }

    void a_request_without_reply_is_reported_once_and_not_repeated()
    {
        m_bus->sendMessage(u"0190RNME"_s, Long);
        testClock::expire(m_bus.get());
        QCOMPARE(m_lost->count(), 1);
        QCOMPARE(m_lost->at(0).at(0).toString(), u"0190RNME"_s);
        QCOMPARE(m_lost->at(0).at(1).value<Rs422Bus::Results>(), Rs422Bus::NoReply);
        QCOMPARE(int(Rs422Bus::NoReply), 2);
        QCOMPARE(timers(m_bus.get()), 0);
        QTRY_COMPARE(cardSide::requests(*m_card), Requests{"0190RNME"});
        QTest::qWait(100);
        QCOMPARE(m_lost->count(), 1);
        QCOMPARE(cardSide::requests(*m_card), Requests{"0190RNME"});
    }

    void the_next_request_goes_out_after_a_timeout()
    {
        m_bus->sendMessage(u"first"_s, Long);
        m_bus->sendMessage(u"second"_s, Long);
        QTRY_COMPARE(cardSide::requests(*m_card), Requests{"first"});
        testClock::expire(m_bus.get());
        QTRY_COMPARE(cardSide::requests(*m_card), Requests({"first", "second"}));
        QCOMPARE(m_lost->count(), 1);
    }

    void a_reply_timer_runs_out_by_itself()
    {
        m_bus->sendMessage(u"first"_s, 1);
        QTRY_COMPARE(m_lost->count(), 1);
    }

    void bytes_of_a_transaction_that_timed_out_are_dropped()
    {
        m_bus->sendMessage(u"first"_s, Long);
        QTRY_COMPARE(cardSide::requests(*m_card), Requests{"first"});
        QVERIFY(m_card->writeUntilRead("[0190RFFT0010abc"));
        testClock::expire(m_bus.get());
        QCOMPARE(m_lost->count(), 1);
        m_bus->sendMessage(u"second"_s, Long);
        m_card->write(cardSide::text("RNME", "name"));
        QTRY_COMPARE(m_received->count(), 1);
        QCOMPARE(m_received->at(0).at(0).value<CmdMsg>().command, u"RNME"_s);
    }

    void an_answered_request_is_not_reported()
    {
        m_bus->sendMessage(u"0190RNME"_s, Long);
        m_card->write(cardSide::text("RNME", "name"));
        QTRY_COMPARE(m_received->count(), 1);
        testClock::expire(m_bus.get());
        QCOMPARE(timers(m_bus.get()), 0);
        QCOMPARE(m_lost->count(), 0);
    }

    void without_checksums_an_answered_request_is_reported_too()
    {
        Pty& pty = m_devices->add(u"ttyUSB12"_s);
        Rs422Bus bus(u"ttyUSB12"_s, '[', ']', false, 921600);
        QSignalSpy received(&bus, &Rs422Bus::messageReceived);
        QSignalSpy lost(&bus, &Rs422Bus::messageTxSuccess);
        bus.sendMessage(u"0190RNME"_s, Long);
        QTRY_COMPARE(pty.received(), QByteArray("[0190RNME]"));
        pty.write(cardSide::text("RNME", "name"));
        QTRY_COMPARE(received.count(), 1);
        QCOMPARE(lost.count(), 0);
        testClock::expire(&bus);
        QCOMPARE(lost.count(), 1);
        QCOMPARE(lost.at(0).at(0).toString(), u"0190RNME"_s);
    }

    void the_timer_of_an_earlier_transaction_ends_nothing()
    {
        m_bus->sendMessage(u"first"_s, 8000);
        m_card->write(cardSide::text("RNME", "a"));
        QTRY_COMPARE(m_received->count(), 1);
        m_bus->sendMessage(u"second"_s, 9000);
        QCOMPARE(timers(m_bus.get()), 2);
        for (const auto& timer : testClock::timers(m_bus.get())) {
            if (timer.interval == 8000) {
                QTimerEvent event(timer.timerId);
                m_bus->timerEvent(&event);
            }
        }
        QCOMPARE(testClock::intervals(m_bus.get()), QList<int>{9000}); // only the second timer
        QCOMPARE(m_lost->count(), 0);
        m_card->write(cardSide::text("RVER", "b"));
        QTRY_COMPARE(m_received->count(), 2);
    }

    void spectra_leave_no_timers_of_earlier_requests_behind()
    {
        for (int i = 0; i < 5; ++i) {
            m_bus->sendMessage(u"0190RFFT000000"_s, 9000 + i);
            QCOMPARE(testClock::intervals(m_bus.get()), QList<int>{9000 + i});
            m_card->write(cardSide::spectrum("points"));
            QTRY_COMPARE(m_received->count(), i + 1);
        }
        testClock::expire(m_bus.get());
        QCOMPARE(timers(m_bus.get()), 0);
        QCOMPARE(m_lost->count(), 0);
    }

    // a line that does not take its bytes

    void earlier_output_is_waited_for_fifty_milliseconds_at_most()
    {
        fillTheLine();
        testClock::expire(m_bus.get());
        QElapsedTimer elapsed;
        elapsed.start();
        m_bus->sendMessage(u"second"_s, Long);
        QVERIFY2(elapsed.elapsed() >= 45, qPrintable(QString::number(elapsed.elapsed())));
        QCOMPARE(m_bus->lastRequest(), u"second"_s); // and then the request is sent
    }

    // A spectrum that is read while the bus waits for the line makes its receiver ask for more.
    void a_request_that_comes_while_another_one_is_written_waits_for_its_turn()
    {
        fillTheLine();
        testClock::expire(m_bus.get());
        connect(m_bus.get(), &Rs422Bus::messageReceived, m_bus.get(),
            [this] { m_bus->sendMessage(u"third"_s, Long); });
        m_card->write(cardSide::spectrum("points"));
        m_bus->sendMessage(u"second"_s, Long);
        QCOMPARE(m_received->count(), 1);
        QCOMPARE(m_bus->lastRequest(), u"second"_s);
        QVERIFY(m_bus->isWaiting(u"third"_s));
        QCOMPARE(timers(m_bus.get()), 1);
    }

    void requests_for_a_line_that_takes_nothing_do_not_accumulate()
    {
        constexpr int Count = 6;
        for (int i = 0; i < Count; ++i) {
            fillTheLine();
            testClock::expire(m_bus.get());
        }
        m_bus->sendMessage(u"the last one"_s, Long);
        // Once the card reads again it gets what stood on the line, not all that was requested.
        const QByteArray last = bus::frame(u"the last one"_s, '[', ']', true);
        QTRY_VERIFY(m_card->received().endsWith(last));
        const auto bytes = m_card->received().size();
        QVERIFY2(bytes < 2 * LargeRequest, qPrintable(QString::number(bytes)));
    }

    // markers

    void markers_before_a_request_are_announced_before_it_is_written()
    {
        QStringList sentBefore;
        connect(m_bus.get(), &Rs422Bus::messageQueueFlag, this, [&](const QString& flag) {
            sentBefore += flag + u" behind "_s + m_bus->lastRequest();
        });
        m_bus->sendMessage(u"busy"_s, Long);
        m_bus->setMessageQueFlag(u"one"_s);
        m_bus->setMessageQueFlag(u"two"_s);
        m_bus->sendMessage(u"request"_s, Long);
        QCOMPARE(m_flags->count(), 0);
        testClock::expire(m_bus.get());
        QCOMPARE(sentBefore, QStringList({u"one behind busy"_s, u"two behind busy"_s}));
        QTRY_COMPARE(cardSide::requests(*m_card), Requests({"busy", "request"}));
    }

    void a_marker_alone_starts_no_transaction()
    {
        m_bus->setMessageQueFlag(u"alone"_s);
        QCOMPARE(m_flags->count(), 1);
        QCOMPARE(timers(m_bus.get()), 0);
        QCOMPARE(m_card->received(), QByteArray());
    }

    void a_request_queued_by_a_marker_goes_out_once()
    {
        connect(m_bus.get(), &Rs422Bus::messageQueueFlag, m_bus.get(),
            [this] { m_bus->sendMessage(u"from the marker"_s); });
        m_bus->setMessageQueFlag(u"flag"_s);
        QTRY_COMPARE(cardSide::requests(*m_card), Requests{"from the marker"});
        QCOMPARE(timers(m_bus.get()), 1);
    }

    // status queue

    void status_requests_take_turns_when_nothing_is_queued()
    {
        QStringList status{u"s0"_s, u"s1"_s, u"s2"_s};
        m_bus->addToStatusQueue(status);
        m_bus->run();
        for (int i = 1; i <= 4; ++i) {
            QTRY_COMPARE(cardSide::requests(*m_card).size(), i);
            m_card->write(cardSide::spectrum("x"));
        }
        QTRY_COMPARE(cardSide::requests(*m_card).mid(0, 4), Requests({"s0", "s1", "s2", "s0"}));
    }

    void queued_requests_go_before_status_requests()
    {
        QStringList status{u"s0"_s};
        m_bus->addToStatusQueue(status);
        m_bus->sendMessage(u"request"_s, Long);
        QTRY_COMPARE(cardSide::requests(*m_card), Requests{"request"});
        testClock::expire(m_bus.get());
        QTRY_COMPARE(cardSide::requests(*m_card).mid(0, 2), Requests({"request", "s0"}));
    }

    void a_status_request_may_have_its_own_timeout()
    {
        QStringList status{QChar(0x08) + u"7000 s0"_s};
        m_bus->addToStatusQueue(status);
        m_bus->run();
        QCOMPARE(replyTimer(m_bus.get()), 7000);
    }

    void a_status_request_is_never_a_marker()
    {
        QStringList status{QChar(0x07) + u"flag"_s};
        m_bus->addToStatusQueue(status);
        m_bus->run();
        QTRY_COMPARE(cardSide::requests(*m_card),
            Requests{"\x07"
                     "flag"});
        QCOMPARE(m_flags->count(), 0);
    }

    void a_marker_can_be_queued_as_text()
    {
        m_bus->sendMessage(QChar(0x07) + u"flag"_s);
        QCOMPARE(m_flags->count(), 1);
        QCOMPARE(m_flags->at(0).at(0).toString(), u"flag"_s);
        QCOMPARE(timers(m_bus.get()), 0);
    }

    void control_characters_behind_a_timeout_of_its_own_are_sent()
    {
        m_bus->sendMessage(QChar(0x07) + u"text"_s, 2000);
        QCOMPARE(m_flags->count(), 0);
        QCOMPARE(replyTimer(m_bus.get()), 2000);
        QTRY_COMPARE(cardSide::requests(*m_card),
            Requests{"\x07"
                     "text"});
    }

    void a_marker_that_waits_is_not_a_request_that_waits()
    {
        m_bus->sendMessage(u"busy"_s, Long);
        m_bus->setMessageQueFlag(u"flag"_s);
        QCOMPARE(m_bus->txCount(), 1);
        QVERIFY(!m_bus->isWaiting(u"flag"_s));
    }

private:
    static constexpr int LargeRequest = 40000; // more bytes than a line takes that nobody reads

    // Sends a request that the line takes only in part.
    void fillTheLine()
    {
        m_bus->sendMessage(QString(LargeRequest, u'x'), Long);
        int before = -1;
        QTRY_VERIFY((QTest::qWait(50),
            std::exchange(before, unreadBytes(*m_card)) == before && before > 1000));
        QVERIFY(before < LargeRequest);
    }
};

QN740_TEST_MAIN(tst_Rs422Bus)
#include "tst_Rs422Bus.moc"
