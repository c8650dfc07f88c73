#include "spectrum/CardSide.h"
#include "spectrum/Clock.h"
#include "spectrum/Rs422Bus.h"
#include "support/TestMain.h"

#include <QElapsedTimer>
#include <QSignalSpy>

#include <sys/ioctl.h>

namespace {

using Requests = QList<QByteArray>;

// longer than any test; its time passes by testClock::expire()
constexpr int Long = 10000;

// the interval of the newest timer of the bus, which is its reply timer; -1 when none runs
int replyTimer(Rs422Bus* bus)
{
    int newest = -1;
    int interval = -1;
    for (const auto& timer : testClock::timers(bus)) {
        if (timer.timerId > newest) {
            newest = timer.timerId;
            interval = timer.interval;
        }
    }
    return interval;
}

int timers(Rs422Bus* bus)
{
    return static_cast<int>(testClock::timers(bus).size());
}

// bytes that the card has not taken from the line
int onTheLine(const Pty& pty)
{
    int bytes = 0;
    ::ioctl(pty.master(), FIONREAD, &bytes);
    return bytes;
}

} // namespace

class tst_Rs422Bus : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_devices = std::make_unique<DeviceDirectory>();
        m_card = &m_devices->add("ttyUSB11");
        m_bus = std::make_unique<Rs422Bus>("ttyUSB11", '[', ']', true, 921600);
        m_received = std::make_unique<QSignalSpy>(m_bus.get(), &Rs422Bus::messageReceived);
        m_lost = std::make_unique<QSignalSpy>(m_bus.get(), &Rs422Bus::messageTxSuccess);
        m_flags = std::make_unique<QSignalSpy>(m_bus.get(), &Rs422Bus::messageQueueFlag);
    }

    void cleanup()
    {
        m_received.reset();
        m_lost.reset();
        m_flags.reset();
        m_bus.reset();
        m_devices.reset();
    }

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

    void an_absent_port_is_not_open_and_harms_nothing()
    {
        Rs422Bus bus("absent", '[', ']', true, 921600);
        QSignalSpy lost(&bus, &Rs422Bus::messageTxSuccess);
        QVERIFY(!bus.isOpen());
        bus.sendMessage("0190RNME", 1);
        QTRY_COMPARE(lost.count(), 1);
        bus.close();
    }

    void a_port_that_comes_later_is_opened()
    {
        Rs422Bus bus("ttyUSB12", '[', ']', true, 921600);
        QSignalSpy opened(&bus, &Rs422Bus::opened);
        QVERIFY(!bus.isOpen());
        Pty& pty = m_devices->add("ttyUSB12");
        QTRY_COMPARE_WITH_TIMEOUT(opened.count(), 1, 10000);
        QVERIFY(bus.isOpen());
        bus.sendMessage("0190RNME");
        QTRY_COMPARE(cardSide::requests(pty), Requests{"0190RNME"});
    }

    void a_lost_port_ends_its_transaction_by_the_timer()
    {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("ttyUSB11 was lost"));
        m_bus->sendMessage("0190RNME", Long);
        m_card->close();
        QTRY_VERIFY(!m_bus->isOpen());
        QCOMPARE(m_lost->count(), 0);
        testClock::expire(m_bus.get());
        QCOMPARE(m_lost->count(), 1);
    }

    void the_frame_characters_and_the_type_can_be_changed()
    {
        m_bus->setStartOfFrame('<');
        m_bus->setEndOFrame('>');
        m_bus->setIsK7150Type(true);
        QCOMPARE(m_bus->startOfFrame(), '<');
        QCOMPARE(m_bus->endOFrame(), '>');
        QVERIFY(m_bus->getIsK7150Type());
        m_bus->sendMessage("a");
        QTRY_COMPARE(m_card->received(), bus::frame("a", '<', '>', true));
    }

    // sending

    void a_request_is_written_with_frame_and_checksum()
    {
        m_bus->sendMessage("0190RNME");
        QTRY_COMPARE(m_card->received(), QByteArray("[0190RNME]\xb4"));
        QCOMPARE(m_bus->txCount(), 0);
    }

    void without_the_old_protocol_no_checksum_is_written()
    {
        Pty& pty = m_devices->add("ttyUSB12");
        Rs422Bus bus("ttyUSB12", '[', ']', false, 921600);
        bus.sendMessage("0190RNME");
        QTRY_COMPARE(pty.received(), QByteArray("[0190RNME]"));
    }

    void requests_go_one_at_a_time_oldest_first()
    {
        m_bus->sendMessage("first");
        m_bus->sendMessage("second");
        m_bus->sendMessage("third");
        QCOMPARE(m_bus->txCount(), 2);
        QTRY_COMPARE(cardSide::requests(*m_card), Requests{"first"});
        m_card->write(cardSide::spectrum("x"));
        QTRY_COMPARE(cardSide::requests(*m_card), Requests({"first", "second"}));
        QCOMPARE(m_bus->txCount(), 1);
    }

    void what_waits_and_what_was_sent_last_can_be_asked()
    {
        QCOMPARE(m_bus->lastRequest(), QString());
        m_bus->sendMessage("first", 10000);
        m_bus->sendMessage("second");
        m_bus->sendMessage("third one", 2000);
        QCOMPARE(m_bus->lastRequest(), QString("first"));
        QVERIFY(!m_bus->isWaiting("first"));
        QVERIFY(m_bus->isWaiting("second") && m_bus->isWaiting("third one"));
        QVERIFY(!m_bus->isWaiting("econd") && !m_bus->isWaiting("one"));
        m_card->write(cardSide::spectrum("x"));
        QTRY_COMPARE(m_bus->lastRequest(), QString("second"));
        QVERIFY(!m_bus->isWaiting("second"));
    }

    // timeouts, by the value of the timer

    void the_reply_timer_data()
    {
        QTest::addColumn<QString>("queued");
        QTest::addColumn<int>("ms");
        QTest::addColumn<QByteArray>("sent");
        const QString own(QChar(0x08));
        QTest::newRow("usual") << "0190RNME" << 450 << QByteArray("0190RNME");
        QTest::newRow("own") << own + "2000 0190RFFT" << 2000 << QByteArray("0190RFFT");
        QTest::newRow("at the cap") << own + "10000 a" << 10000 << QByteArray("a");
        QTest::newRow("above the cap") << own + "20000 a" << 10000 << QByteArray("a");
        QTest::newRow("no number") << own + "soon a" << 0 << QByteArray("a");
        QTest::newRow("too many digits") << own + "99999999999 a" << 0 << QByteArray("a");
        QTest::newRow("negative") << own + "-5 a" << 0 << QByteArray("a");
        QTest::newRow("zero") << own + "0 a" << 0 << QByteArray("a");
        QTest::newRow("blanks belong to the request")
            << own + "70 a b  c" << 70 << QByteArray("a b  c");
        QTest::newRow("no blank: an empty request") << own + "300" << 300 << QByteArray("");
    }

    void the_reply_timer()
    {
        QFETCH(QString, queued);
        QFETCH(int, ms);
        QFETCH(QByteArray, sent);
        m_bus->sendMessage(queued);
        QCOMPARE(replyTimer(m_bus.get()), ms);
        QTRY_COMPARE(cardSide::requests(*m_card).value(0), sent);
    }

    void an_own_timeout_is_queued_by_its_own_function()
    {
        m_bus->sendMessage("0190RFFT", 20000);
        QCOMPARE(replyTimer(m_bus.get()), 10000);
    }

    void a_request_without_reply_is_reported_once_and_not_repeated()
    {
        m_bus->sendMessage("0190RNME", Long);
        testClock::expire(m_bus.get());
        QCOMPARE(m_lost->count(), 1);
        QCOMPARE(m_lost->at(0).at(0).toString(), QString("0190RNME"));
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
        m_bus->sendMessage("first", Long);
        m_bus->sendMessage("second", Long);
        QTRY_COMPARE(cardSide::requests(*m_card), Requests{"first"});
        testClock::expire(m_bus.get());
        QTRY_COMPARE(cardSide::requests(*m_card), Requests({"first", "second"}));
        QCOMPARE(m_lost->count(), 1);
    }

    void a_request_s_time_passes_by_itself_too()
    {
        m_bus->sendMessage("first", 1);
        QTRY_COMPARE(m_lost->count(), 1);
    }

    void bytes_of_a_transaction_that_timed_out_are_dropped()
    {
        m_bus->sendMessage("first", Long);
        QTRY_COMPARE(cardSide::requests(*m_card), Requests{"first"});
        QVERIFY(m_card->writeUntilRead("[0190RFFT0010abc"));
        testClock::expire(m_bus.get());
        QCOMPARE(m_lost->count(), 1);
        m_bus->sendMessage("second", Long);
        m_card->write(cardSide::text("RNME", "name"));
        QTRY_COMPARE(m_received->count(), 1);
        QCOMPARE(m_received->at(0).at(0).value<CmdMsg>().command, QString("RNME"));
    }

    void an_answered_request_is_not_reported()
    {
        m_bus->sendMessage("0190RNME", Long);
        m_card->write(cardSide::text("RNME", "name"));
        QTRY_COMPARE(m_received->count(), 1);
        testClock::expire(m_bus.get());
        QCOMPARE(timers(m_bus.get()), 0);
        QCOMPARE(m_lost->count(), 0);
    }

    void without_checksums_an_answered_request_is_reported_too()
    {
        Pty& pty = m_devices->add("ttyUSB12");
        Rs422Bus bus("ttyUSB12", '[', ']', false, 921600);
        QSignalSpy received(&bus, &Rs422Bus::messageReceived);
        QSignalSpy lost(&bus, &Rs422Bus::messageTxSuccess);
        bus.sendMessage("0190RNME", Long);
        QTRY_COMPARE(pty.received(), QByteArray("[0190RNME]"));
        pty.write(cardSide::text("RNME", "name"));
        QTRY_COMPARE(received.count(), 1);
        QCOMPARE(lost.count(), 0);
        testClock::expire(&bus);
        QCOMPARE(lost.count(), 1);
        QCOMPARE(lost.at(0).at(0).toString(), QString("0190RNME"));
    }

    void the_timer_of_an_earlier_transaction_ends_nothing()
    {
        m_bus->sendMessage("first", 8000);
        m_card->write(cardSide::text("RNME", "a"));
        QTRY_COMPARE(m_received->count(), 1);
        m_bus->sendMessage("second", 9000);
        QCOMPARE(timers(m_bus.get()), 2);
        for (const auto& timer : testClock::timers(m_bus.get())) {
            if (timer.interval == 8000) {
                QTimerEvent event(timer.timerId);
                m_bus->timerEvent(&event);
            }
        }
        QCOMPARE(testClock::intervals(m_bus.get()), QList<int>{9000}); // only the second one's
        QCOMPARE(m_lost->count(), 0);
        m_card->write(cardSide::text("RVER", "b"));
        QTRY_COMPARE(m_received->count(), 2);
    }

    // a line that does not take its bytes

    void earlier_output_is_waited_for_fifty_milliseconds_at_most()
    {
        fillTheLine();
        testClock::expire(m_bus.get());
        QElapsedTimer elapsed;
        elapsed.start();
        m_bus->sendMessage("second", Long);
        QVERIFY2(elapsed.elapsed() >= 45, qPrintable(QString::number(elapsed.elapsed())));
        QCOMPARE(m_bus->lastRequest(), QString("second")); // and then it is sent
    }

    void requests_for_a_line_that_takes_nothing_do_not_gather()
    {
        constexpr int Requests = 6;
        for (int i = 0; i < Requests; ++i) {
            fillTheLine();
            testClock::expire(m_bus.get());
        }
        m_bus->sendMessage("the last one", Long);
        // once the card listens again: what stood on the line, not all that was asked
        const QByteArray last = bus::frame("the last one", '[', ']', true);
        QTRY_VERIFY(m_card->received().endsWith(last));
        const auto heard = m_card->received().size();
        QVERIFY2(heard < 2 * LargeRequest, qPrintable(QString::number(heard)));
    }

    // markers

    void markers_before_a_request_are_announced_before_it_is_written()
    {
        QStringList sentBefore;
        connect(m_bus.get(), &Rs422Bus::messageQueueFlag, this,
            [&](const QString& flag) { sentBefore += flag + " behind " + m_bus->lastRequest(); });
        m_bus->sendMessage("busy", Long);
        m_bus->setMessageQueFlag("one");
        m_bus->setMessageQueFlag("two");
        m_bus->sendMessage("request", Long);
        QCOMPARE(m_flags->count(), 0);
        testClock::expire(m_bus.get());
        QCOMPARE(sentBefore, QStringList({"one behind busy", "two behind busy"}));
        QTRY_COMPARE(cardSide::requests(*m_card), Requests({"busy", "request"}));
    }

    void a_marker_alone_starts_no_transaction()
    {
        m_bus->setMessageQueFlag("alone");
        QCOMPARE(m_flags->count(), 1);
        QCOMPARE(timers(m_bus.get()), 0);
        QCOMPARE(m_card->received(), QByteArray());
    }

    void a_request_queued_by_a_marker_goes_out_once()
    {
        connect(m_bus.get(), &Rs422Bus::messageQueueFlag, m_bus.get(),
            [this] { m_bus->sendMessage("from the marker"); });
        m_bus->setMessageQueFlag("flag");
        QTRY_COMPARE(cardSide::requests(*m_card), Requests{"from the marker"});
        QCOMPARE(timers(m_bus.get()), 1);
    }

    // status queue

    void status_requests_take_turns_when_nothing_is_queued()
    {
        QStringList status{"s0", "s1", "s2"};
        m_bus->addToStatusQueue(status);
        m_bus->run();
        for (int i = 1; i <= 4; ++i) {
            QTRY_COMPARE(cardSide::requests(*m_card).size(), i);
            m_card->write(cardSide::spectrum("x"));
        }
        QTRY_COMPARE(cardSide::requests(*m_card).mid(0, 4), Requests({"s0", "s1", "s2", "s0"}));
    }

    void a_queued_request_goes_before_the_status()
    {
        QStringList status{"s0"};
        m_bus->addToStatusQueue(status);
        m_bus->sendMessage("request", Long);
        QTRY_COMPARE(cardSide::requests(*m_card), Requests{"request"});
        testClock::expire(m_bus.get());
        QTRY_COMPARE(cardSide::requests(*m_card).mid(0, 2), Requests({"request", "s0"}));
    }

    void a_status_request_may_have_its_own_timeout()
    {
        QStringList status{QChar(0x08) + QString("7000 s0")};
        m_bus->addToStatusQueue(status);
        m_bus->run();
        QCOMPARE(replyTimer(m_bus.get()), 7000);
    }

    // replies

    void a_spectrum_is_received_data()
    {
        QTest::addColumn<bool>("k7150");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("data");
        QByteArray all;
        for (int byte = 0; byte < 256; ++byte) {
            all += static_cast<char>(byte);
        }
        QTest::newRow("decimal") << false << cardSide::spectrum(all) << all;
        QTest::newRow("decimal after ten bytes of noise")
            << false << "0123456789" + cardSide::spectrum(all) << all;
        QTest::newRow("K7150") << true << cardSide::k7150Spectrum(2, all) << '\x02' + all;
        QTest::newRow("K7150 after noise")
            << true << "[[]0123456" + cardSide::k7150Spectrum(0, all) << QByteArray(1, '\0') + all;
    }

    void a_spectrum_is_received()
    {
        QFETCH(bool, k7150);
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, data);
        m_bus->setIsK7150Type(k7150);
        m_bus->sendMessage("0190RFFT");
        QTRY_VERIFY(!m_card->received().isEmpty());
        m_card->write(bytes);
        QTRY_COMPARE(m_received->count(), 1);
        const auto message = m_received->at(0).at(0).value<CmdMsg>();
        QCOMPARE(message.data.toLatin1(), data);
        QCOMPARE(message.command, QString("RFFT"));
        QCOMPARE(message.addressValue, 190);
    }

    void a_reply_travels_in_a_queued_signal_too()
    {
        QVERIFY(QMetaType::fromName("CmdMsg").isValid());
        QList<CmdMsg> taken;
        connect(
            m_bus.get(), &Rs422Bus::messageReceived, this,
            [&taken](const CmdMsg& message) { taken += message; }, Qt::QueuedConnection);
        m_card->write(cardSide::text("RNME", "name"));
        QTRY_COMPARE(taken.size(), 1);
        QCOMPARE(taken.first().data, QString("name"));
        QCOMPARE(taken.first().addressValue, 190);
    }

    void a_spectrum_split_across_reads_is_assembled()
    {
        const QByteArray reply = cardSide::spectrum(QByteArray(600, 'p'));
        m_bus->sendMessage("0190RFFT", Long);
        for (const QByteArray& part : {reply.left(4), reply.mid(4, 7), reply.mid(11, 300)}) {
            QVERIFY(m_card->writeUntilRead(part));
            QCOMPARE(m_received->count(), 0);
        }
        m_card->write(reply.mid(311));
        QTRY_COMPARE(m_received->count(), 1);
        QCOMPARE(m_received->at(0).at(0).value<CmdMsg>().data.size(), 600);
    }

    void a_spectrum_advances_the_queue_at_once()
    {
        m_bus->sendMessage("first", 10000);
        m_bus->sendMessage("second", 10000);
        m_card->write(cardSide::spectrum("x"));
        QTRY_COMPARE(cardSide::requests(*m_card), Requests({"first", "second"}));
    }

    void a_text_reply_does_not_advance_the_queue()
    {
        m_bus->sendMessage("first", Long);
        m_bus->sendMessage("second", Long);
        m_card->write(cardSide::text("RNME", "name"));
        QTRY_COMPARE(m_received->count(), 1);
        QTRY_COMPARE(cardSide::requests(*m_card), Requests{"first"});
        QCOMPARE(m_bus->txCount(), 1);
        // but its timer does
        testClock::expire(m_bus.get());
        QTRY_COMPARE(cardSide::requests(*m_card), Requests({"first", "second"}));
        QCOMPARE(m_lost->count(), 0);
    }

    void a_request_queued_after_a_text_reply_goes_out_at_once()
    {
        m_bus->sendMessage("first", 10000);
        m_card->write(cardSide::text("RNME", "name"));
        QTRY_COMPARE(m_received->count(), 1);
        m_bus->sendMessage("second");
        QTRY_COMPARE(cardSide::requests(*m_card), Requests({"first", "second"}));
    }

    void a_second_text_reply_in_the_same_read_is_lost()
    {
        m_bus->sendMessage("first", 10000);
        m_card->write(cardSide::text("RNME", "a") + cardSide::text("RVER", "b"));
        QTRY_COMPARE(m_received->count(), 1);
        QTest::qWait(50);
        QCOMPARE(m_received->count(), 1);
        QCOMPARE(m_received->at(0).at(0).value<CmdMsg>().data, QString("a"));
    }

    void a_reply_of_another_address_ends_the_transaction_too()
    {
        m_bus->sendMessage("0190RNME", Long);
        m_card->write(cardSide::text("RNME", "x", "AB90"));
        QTRY_COMPARE(m_received->count(), 1);
        const auto message = m_received->at(0).at(0).value<CmdMsg>();
        QCOMPARE(message.addressValue, -1);
        QCOMPARE(message.getChannelAddressInt(), 0);
        QCOMPARE(message.getCardAddressInt(), -1);
        testClock::expire(m_bus.get());
        QCOMPARE(timers(m_bus.get()), 0);
        QCOMPARE(m_lost->count(), 0);
    }

    void what_the_owner_queues_on_a_text_reply_waits_for_the_timer()
    {
        connect(m_bus.get(), &Rs422Bus::messageReceived, m_bus.get(),
            [this] { m_bus->sendMessage("second"); });
        m_bus->sendMessage("first", Long);
        m_card->write(cardSide::text("RNME", "a"));
        QTRY_COMPARE(m_received->count(), 1);
        QCOMPARE(m_bus->txCount(), 1);
        testClock::expire(m_bus.get());
        QTRY_COMPARE(cardSide::requests(*m_card), Requests({"first", "second"}));
    }

    void a_reply_that_nobody_asked_for_is_passed_on_and_breaks_nothing()
    {
        m_card->write(cardSide::text("RNME", "a"));
        QTRY_COMPARE(m_received->count(), 1);
        m_card->write(cardSide::spectrum("x"));
        QTRY_COMPARE(m_received->count(), 2);
        QCOMPARE(timers(m_bus.get()), 0);
        m_bus->sendMessage("first", Long);
        testClock::expire(m_bus.get());
        QCOMPARE(m_lost->count(), 1);
    }

    void a_request_made_on_a_reply_that_nobody_asked_for_is_kept_track_of()
    {
        bool once = true;
        connect(m_bus.get(), &Rs422Bus::messageReceived, m_bus.get(), [this, &once] {
            if (std::exchange(once, false)) {
                m_bus->sendMessage("first", Long);
                m_bus->sendMessage("second", Long);
            }
        });
        m_card->write(cardSide::spectrum("x"));
        QTRY_COMPARE(cardSide::requests(*m_card), Requests{"first"});
        testClock::expire(m_bus.get());
        QTRY_COMPARE(cardSide::requests(*m_card), Requests({"first", "second"}));
        testClock::expire(m_bus.get());
        QCOMPARE(m_lost->count(), 2);
    }

    void the_bus_may_be_closed_and_deleted_in_a_reply()
    {
        Rs422Bus* bus = m_bus.release();
        connect(bus, &Rs422Bus::messageReceived, bus, [bus] {
            bus->close();
            bus->deleteLater();
        });
        const QPointer<Rs422Bus> watch(bus);
        bus->sendMessage("first");
        m_card->write(cardSide::spectrum("x") + "more");
        QTRY_VERIFY(watch.isNull());
    }

    void noise_while_idle_does_not_fill_the_memory()
    {
        for (int i = 0; i < 40; ++i) {
            QVERIFY(m_card->write(QByteArray(8000, '[')));
        }
        m_bus->sendMessage("first");
        m_card->write(cardSide::spectrum("x"));
        QTRY_COMPARE(m_received->count(), 1);
    }

private:
    static constexpr int LargeRequest = 40000; // more than a line takes that nobody reads

    // A request is on its way that does not get through.
    void fillTheLine()
    {
        m_bus->sendMessage(QString(LargeRequest, 'x'), Long);
        int before = -1;
        QTRY_VERIFY((QTest::qWait(50),
            std::exchange(before, onTheLine(*m_card)) == before && before > 1000));
        QVERIFY(before < LargeRequest);
    }

    std::unique_ptr<DeviceDirectory> m_devices;
    Pty* m_card = nullptr;
    std::unique_ptr<Rs422Bus> m_bus;
    std::unique_ptr<QSignalSpy> m_received;
    std::unique_ptr<QSignalSpy> m_lost;
    std::unique_ptr<QSignalSpy> m_flags;
};

QN740_TEST_MAIN(tst_Rs422Bus)
#include "tst_Rs422Bus.moc"
