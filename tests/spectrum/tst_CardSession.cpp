#include "spectrum/SessionFixture.h"

#include <QApplication>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

using Requests = QList<QByteArray>;

} // namespace

class tst_CardSession : public QObject, private SessionFixture
{
    Q_OBJECT

private slots:
    void init() { start(); }
    void cleanup() { stop(); }

    // the card and its name

    void the_card_is_asked_for_its_name_once()
    {
        QVERIFY(m_session->isOpen());
        QTRY_COMPARE(cardSide::requests(*m_pty), Requests{"0190RNME000000"});
        QCOMPARE(testClock::intervals(bus()), QList<int>{450});
        testClock::expire(bus());
        QVERIFY(testClock::timers(bus()).isEmpty());
        QTest::qWait(50);
        QCOMPARE(cardSide::requests(*m_pty), Requests{"0190RNME000000"});
    }

    void a_card_whose_port_comes_later_is_asked_for_its_name()
    {
        CardSession session(u"ttyUSB12"_s);
        Pty& pty = m_devices->add(u"ttyUSB12"_s);
        QTRY_COMPARE_WITH_TIMEOUT(
            cardSide::requests(pty).value(0), QByteArray("0190RNME000000"), 10000);
        QSignalSpy detected(&session, &CardSession::detected);
        pty.write(cardSide::text("RNME", "Late"));
        QTRY_COMPARE(detected.count(), 1);
    }

    void the_name_is_announced_and_the_version_asked()
    {
        QSignalSpy detected(m_session.get(), &CardSession::detected);
        QSignalSpy version(m_session.get(), &CardSession::versionKnown);
        QSignalSpy told(m_session.get(), &CardSession::demodulatorMessage);
        QTRY_COMPARE(cardSide::requests(*m_pty).size(), 1);
        m_pty->write(cardSide::text("RNME", "SpectralSweep"));
        QTRY_COMPARE(detected.count(), 1);
        QCOMPARE(detected.at(0).at(0).toString(), u"SpectralSweep"_s);
        testClock::expire(bus());
        QTRY_COMPARE(cardSide::requests(*m_pty).value(1), QByteArray("0190RVER000000"));
        m_pty->write(cardSide::text("RVER", "1.02"));
        QTRY_COMPARE(version.count(), 1);
        QCOMPARE(version.at(0).at(0).toString(), u"SpectralSweep Ver:1.02"_s);
        QCOMPARE(told.count(), 2);
        QCOMPARE(told.at(0).at(0).toString(), u"\x02U0:CLST:0170 SpectralSWeep 0\r\x04"_s);
        QCOMPARE(told.at(1).at(0).toString(), u"\x02U0:VER:01.02\r\x04"_s);
        testClock::expire(bus());
        QTRY_COMPARE(cardSide::requests(*m_pty).mid(2), Requests{"0190RNFT000000"});
        testClock::expire(bus());
        QTRY_COMPARE(
            cardSide::requests(*m_pty).mid(2), Requests({"0190RNFT000000", "0190RTRM000000"}));
    }

    void a_card_that_repeats_its_name_does_not_fill_the_queue()
    {
        for (int i = 0; i < 1000; ++i) {
            m_session->takeReply({u"0190"_s, u"RNME"_s, u"again"_s});
        }
        QVERIFY2(bus()->txCount() <= 3, qPrintable(QString::number(bus()->txCount())));
    }

    void replies_of_another_address_are_ignored()
    {
        QSignalSpy detected(m_session.get(), &CardSession::detected);
        QSignalSpy spectra(m_session.get(), &CardSession::spectrumReceived);
        m_session->takeReply({u"0180"_s, u"RNME"_s, u"x"_s});
        m_session->takeReply({u"AB90"_s, u"RFFT"_s, u"x"_s});
        QCOMPARE(detected.count() + spectra.count(), 0);
    }

    void unknown_replies_are_ignored()
    {
        QSignalSpy detected(m_session.get(), &CardSession::detected);
        QSignalSpy version(m_session.get(), &CardSession::versionKnown);
        QSignalSpy spectra(m_session.get(), &CardSession::spectrumReceived);
        QSignalSpy spans(m_session.get(), &CardSession::spanConfirmed);
        m_session->takeReply({u"0190"_s, u"ABCD"_s, u"x"_s});
        m_session->takeReply({u"0190"_s, u""_s, u""_s});
        m_session->takeReply({});
        QCOMPARE(detected.count() + version.count() + spectra.count() + spans.count(), 0);
        QCOMPARE(bus()->txCount(), 0);
    }

    // requests

    void a_command_is_filled_up_or_cut_to_ten_characters_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<int>("timeout");
        QTest::addColumn<QByteArray>("request");
        QTest::newRow("short") << "RVER" << 0 << QByteArray("0190RVER000000");
        QTest::newRow("long") << "ABCDEFGHIJKLM" << 0 << QByteArray("0190ABCDEFGHIJ");
        QTest::newRow("with a timeout") << "RVER" << 1 << QByteArray("0190RVER000000");
        QTest::newRow("negative timeout") << "RVER" << -7 << QByteArray("0190RVER000000");
    }

    void a_command_is_filled_up_or_cut_to_ten_characters()
    {
        QFETCH(QString, command);
        QFETCH(int, timeout);
        QFETCH(QByteArray, request);
        endNameRequest();
        m_session->send(command, timeout);
        QTRY_VERIFY(cardSide::requests(*m_pty).contains(request));
    }

    // polling

    void the_counters_walk_over_the_channels()
    {
        endNameRequest();
        int answered = 0;
        for (int i = 0; i < 10; ++i) {
            m_session->poll();
            QTRY_COMPARE(cardSide::only(*m_pty, "RFFT").size(), i + 1);
            cardSide::answerPolls(*m_pty, answered, cardSide::spectrum("x"));
        }
        QCOMPARE(cardSide::only(*m_pty, "RFFT"),
            Requests({"0190RFFT000000", "0190RFFT100000", "0190RFFT200000", "0190RFFT010000",
                "0190RFFT110000", "0190RFFT210000", "0190RFFT020000", "0190RFFT120000",
                "0190RFFT220000", "0190RFFT000000"}));
    }

    void hidden_channels_are_skipped()
    {
        endNameRequest();
        m_session->setShown(1, false);
        int answered = 0;
        for (int i = 0; i < 4; ++i) {
            m_session->poll();
            QTRY_COMPARE(cardSide::only(*m_pty, "RFFT").size(), i + 1);
            cardSide::answerPolls(*m_pty, answered, cardSide::spectrum("x"));
        }
        QCOMPARE(cardSide::only(*m_pty, "RFFT"),
            Requests({"0190RFFT000000", "0190RFFT200000", "0190RFFT010000", "0190RFFT210000"}));
    }

    void without_a_shown_channel_there_is_no_poll()
    {
        endNameRequest();
        for (int channel = 0; channel < 3; ++channel) {
            m_session->setShown(channel, false);
        }
        m_session->poll();
        QTest::qWait(100);
        QVERIFY(cardSide::only(*m_pty, "RFFT").isEmpty());
    }

    void a_spectrum_poll_waits_two_seconds_for_its_reply()
    {
        endNameRequest();
        m_session->poll();
        QCOMPARE(m_session->findChildren<Rs422Bus*>().size(), 1);
        QCOMPARE(testClock::intervals(bus()), QList<int>{2000});
    }

    void the_card_is_polled_twenty_times_per_second_at_most()
    {
        endNameRequest();
        m_session->setPolling(true);
        auto* poll = timer("pollTimer");
        QVERIFY(poll->isActive());
        QCOMPARE(poll->interval(), 50);
        QCOMPARE(poll->timerType(), Qt::PreciseTimer);
        poll->stop();
        // A reply starts no poll; a turn of the timer starts one.
        m_session->pollIfDue();
        for (int turn = 1; turn <= 3; ++turn) {
            QTRY_COMPARE(cardSide::only(*m_pty, "RFFT").size(), turn);
            QSignalSpy spectra(m_session.get(), &CardSession::spectrumReceived);
            m_pty->write(cardSide::spectrum("x"));
            QTRY_COMPARE(spectra.count(), 1);
            QTest::qWait(20);
            QCOMPARE(cardSide::only(*m_pty, "RFFT").size(), turn);
            m_session->pollIfDue();
        }
    }

    void the_poll_timer_runs_only_while_a_channel_is_shown()
    {
        m_session->setPolling(true);
        for (int channel = 0; channel < card::Channels; ++channel) {
            QVERIFY(timer("pollTimer")->isActive());
            m_session->setShown(channel, false);
        }
        QVERIFY(!timer("pollTimer")->isActive());
        m_session->setShown(1, true);
        QVERIFY(timer("pollTimer")->isActive());
        m_session->setPolling(false);
        m_session->setShown(2, true);
        QVERIFY(!timer("pollTimer")->isActive());
    }

    void the_poll_timer_runs_only_while_the_port_is_open()
    {
        CardSession session(u"ttyUSB12"_s);
        session.setPolling(true);
        const auto* poll = session.findChild<QTimer*>(u"pollTimer"_s);
        QVERIFY(!poll->isActive());
        Pty& pty = m_devices->add(u"ttyUSB12"_s);
        QTRY_VERIFY_WITH_TIMEOUT(poll->isActive(), 10000);
        QTRY_VERIFY(cardSide::requests(pty).contains("0190RNME000000"));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"ttyUSB12 was lost"_s));
        m_devices->remove(u"ttyUSB12"_s);
        QTRY_VERIFY(!session.isOpen());
        QTRY_VERIFY(!poll->isActive());
    }

    void a_poll_that_still_waits_to_be_sent_is_under_way()
    {
        endNameRequest();
        pollByHand();
        m_session->send(u"BUSY"_s, 10000);
        m_session->pollIfDue();
        QCOMPARE(bus()->txCount(), 1);
        for (int i = 0; i < 100; ++i) {
            testClock::expire(timer("replyDueTimer"));
            m_session->pollIfDue();
        }
        QCOMPARE(bus()->txCount(), 1);
    }

    void one_poll_is_under_way_at_a_time()
    {
        endNameRequest();
        m_session->setPolling(true);
        QTRY_COMPARE(cardSide::only(*m_pty, "RFFT").size(), 1);
        for (int i = 0; i < 20; ++i) {
            m_session->pollIfDue();
        }
        QCOMPARE(m_session->findChild<Rs422Bus*>()->txCount(), 0); // and none waits
        QTest::qWait(200);
        QCOMPARE(cardSide::only(*m_pty, "RFFT").size(), 1);
    }

    // lost replies

    void a_lost_spectrum_is_asked_for_again_data()
    {
        QTest::addColumn<QString>("request");
        QTest::addColumn<int>("result");
        QTest::addColumn<bool>("again");
        QTest::newRow("spectrum") << "0190RFFT000000" << 2 << true;
        QTest::newRow("another address") << "0180RFFT000000" << 2 << false;
        QTest::newRow("another command") << "0190RVER000000" << 2 << false;
        QTest::newRow("another result") << "0190RFFT000000" << 1 << false;
        QTest::newRow("too short") << "0190" << 2 << false;
        QTest::newRow("empty") << "" << 2 << false;
    }

    void a_lost_spectrum_is_asked_for_again()
    {
        QFETCH(QString, request);
        QFETCH(int, result);
        QFETCH(bool, again);
        endNameRequest();
        m_session->takeTimeout(request, static_cast<Rs422Bus::Results>(result));
        if (again) {
            QTRY_COMPARE(cardSide::only(*m_pty, "RFFT").size(), 1);
        } else {
            QTest::qWait(50);
            QVERIFY(cardSide::only(*m_pty, "RFFT").isEmpty());
        }
    }

    void polling_goes_on_after_a_lost_reply()
    {
        endNameRequest();
        m_session->poll();
        QTRY_COMPARE(cardSide::only(*m_pty, "RFFT").size(), 1);
        testClock::expire(bus());
        QTRY_COMPARE(cardSide::only(*m_pty, "RFFT").size(), 2);
        QCOMPARE(cardSide::only(*m_pty, "RFFT").at(1), QByteArray("0190RFFT100000"));
    }

    // spectra

    void a_spectrum_belongs_to_the_request_that_was_sent_last()
    {
        endNameRequest();
        QSignalSpy spectra(m_session.get(), &CardSession::spectrumReceived);
        m_session->poll();
        m_session->poll();
        m_session->poll();
        for (int channel = 0; channel < 3; ++channel) {
            QTRY_COMPARE(cardSide::only(*m_pty, "RFFT").size(), channel + 1);
            m_pty->write(cardSide::spectrum("x"));
            QTRY_COMPARE(spectra.count(), channel + 1);
            QCOMPARE(spectra.last().at(1).toInt(), channel);
        }
    }

    void an_empty_spectrum_is_not_passed_on()
    {
        QSignalSpy spectra(m_session.get(), &CardSession::spectrumReceived);
        m_session->takeReply(cardSide::message(""));
        QCOMPARE(spectra.count(), 0);
    }

    // beyond what the page's tests see

    void it_needs_no_widgets()
    {
        QVERIFY(qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr);
    }

    void a_session_on_an_absent_port_is_quiet()
    {
        CardSession session(u"absent"_s);
        QVERIFY(!session.isOpen());
        session.setPolling(true);
        session.setSpan(0, 3);
        session.poll();
        session.pollIfDue();
        QCOMPARE(session.span(0), 3);
    }

    void channels_that_do_not_exist_are_ignored()
    {
        endNameRequest();
        for (const int channel : {-1, 3, 1000000}) {
            QVERIFY(!CardSession::isChannel(channel));
            QCOMPARE(m_session->span(channel), -1);
            QCOMPARE(m_session->trim(channel), -1);
            m_session->setSpan(channel, 1);
            m_session->setTrim(channel, 1);
            m_session->setShown(channel, true);
            m_session->dropSpectrumUnderWay(channel);
            QVERIFY(!m_session->isShown(channel));
        }
        QTest::qWait(50);
        QVERIFY(cardSide::requests(*m_pty).isEmpty());
    }

    void trims_are_read_and_told()
    {
        endNameRequest();
        m_session->takeReply({u"0190"_s, u"RTRM"_s, u"309"_s});
        QCOMPARE(m_session->trim(0), 3);
        QCOMPARE(m_session->trim(1), 0);
        QCOMPARE(m_session->trim(2), 9);
        m_session->takeReply({u"0190"_s, u"RTRM"_s, u"1x1"_s});
        QCOMPARE(m_session->trim(0), 3);
        m_session->setTrim(0, 10);
        m_session->setTrim(0, -1);
        QCOMPARE(m_session->trim(0), 3);
        m_session->setTrim(0, 1);
        QCOMPARE(m_session->trim(0), 1);
        QTRY_COMPARE(cardSide::requests(*m_pty), Requests{"0190CTRM010000"});
    }

    void polling_can_be_switched_off()
    {
        endNameRequest();
        m_session->setPolling(true);
        int answered = 0;
        QTRY_VERIFY(
            (cardSide::answerPolls(*m_pty, answered, cardSide::spectrum("x")), answered >= 3));
        m_session->setPolling(false);
        QVERIFY(!timer("pollTimer")->isActive());
        QTest::qWait(100);
        const auto then = cardSide::only(*m_pty, "RFFT").size();
        m_session->pollIfDue();
        QTest::qWait(100);
        QCOMPARE(cardSide::only(*m_pty, "RFFT").size(), then);
    }

    void a_session_may_end_while_a_reply_is_due()
    {
        endNameRequest();
        QSignalSpy spectra(m_session.get(), &CardSession::spectrumReceived);
        m_session->poll();
        QTRY_COMPARE(cardSide::only(*m_pty, "RFFT").size(), 1);
        m_session.reset();
        m_pty->write(cardSide::spectrum("x"));
        QTest::qWait(50);
        QCOMPARE(spectra.count(), 0);
    }
};

QTEST_GUILESS_MAIN(tst_CardSession)
#include "tst_CardSession.moc"
