// How spans are told to a card, and which spectra are dropped meanwhile.
#include "spectrum/SessionFixture.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

using Requests = QList<QByteArray>;

} // namespace

class tst_CardSessionSpans : public QObject, private SessionFixture
{
    Q_OBJECT

private slots:
    void init() { start(); }
    void cleanup() { stop(); }

    void of_spans_chosen_fast_the_first_and_the_last_are_told()
    {
        endNameRequest();
        for (int span = 1; span < 10; ++span) {
            m_session->setSpan(1, span);
        }
        QTRY_COMPARE(cardSide::requests(*m_pty), Requests{"0190CNFT110000"});
        testClock::expire(bus());
        QTRY_COMPARE(cardSide::requests(*m_pty), Requests({"0190CNFT110000", "0190CNFT190000"}));
        testClock::expire(bus());
        QVERIFY(testClock::timers(bus()).isEmpty());
        // The next choice goes out at once.
        m_session->setSpan(1, 0);
        QTRY_COMPARE(cardSide::requests(*m_pty).value(2), QByteArray("0190CNFT100000"));
        QTest::qWait(20);
        QCOMPARE(cardSide::requests(*m_pty).size(), 3);
    }

    void a_choice_that_waited_is_told_on_an_absent_port_too()
    {
        CardSession session(u"absent"_s);
        auto* bus = session.findChild<Rs422Bus*>();
        QVERIFY(!bus->isOpen());
        session.setSpan(0, 1);
        session.setSpan(0, 2);
        QCOMPARE(bus->lastRequest(), u"0190CNFT010000"_s);
        testClock::expire(bus);
        QCOMPARE(bus->lastRequest(), u"0190CNFT020000"_s);
    }

    void a_flood_of_spans_does_not_fill_the_queue_data()
    {
        QTest::addColumn<QString>("port");
        QTest::addColumn<bool>("k7150");
        QTest::newRow("silent card") << "ttyUSB11" << false;
        QTest::newRow("no card") << "absent" << false;
        QTest::newRow("silent K7150") << "ttyUSB11" << true;
        QTest::newRow("no K7150") << "absent" << true;
    }

    void a_flood_of_spans_does_not_fill_the_queue()
    {
        QFETCH(QString, port);
        QFETCH(bool, k7150);
        CardSession session(port);
        if (k7150) {
            session.setK7150(port, u"none"_s, u"nowhere"_s);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        session.poll();
        const Rs422Bus* queue = cardSide::busOn(&session, port);
        for (int i = 0; i < 10000; ++i) {
            session.setSpan(i % 3, i % 10);
        }
        // one poll, and for each channel a request and the marker behind it
        QVERIFY2(queue->txCount() <= 7, qPrintable(QString::number(queue->txCount())));
    }

    void a_marker_of_no_channel_clears_nothing_data()
    {
        QTest::addColumn<QString>("flag");
        QTest::newRow("3") << "ClrAvg3";
        QTest::newRow("a letter") << "ClrAvgx";
        QTest::newRow("alone") << "ClrAvg";
        QTest::newRow("another channel") << "ClrAvg1";
        QTest::newRow("another word") << "Other00";
    }

    void a_marker_of_no_channel_clears_nothing()
    {
        QFETCH(QString, flag);
        endNameRequest();
        QSignalSpy spectra(m_session.get(), &CardSession::spectrumReceived);
        m_session->poll(); // keeps the bus busy, so that the real marker waits
        m_session->setSpan(0, 9);
        m_session->takeMarker(flag);
        m_session->takeReply(cardSide::message("old"));
        QCOMPARE(spectra.count(), 0);
        m_session->takeMarker(u"ClrAvg0"_s);
        m_session->takeReply(cardSide::message("new"));
        QCOMPARE(spectra.count(), 1);
    }

    void a_spectrum_measured_with_the_span_before_is_dropped()
    {
        endNameRequest();
        QSignalSpy spectra(m_session.get(), &CardSession::spectrumReceived);
        m_session->poll();
        QTRY_COMPARE(cardSide::requests(*m_pty), Requests{"0190RFFT000000"});
        m_session->setSpan(0, 9);
        m_session->poll(); // of the next channel, whose span is as it was
        m_pty->write(cardSide::spectrum("old"));
        QTRY_COMPARE(cardSide::requests(*m_pty), Requests({"0190RFFT000000", "0190CNFT090000"}));
        QCOMPARE(spectra.count(), 0);
        testClock::expire(bus());
        QTRY_COMPARE(cardSide::requests(*m_pty).value(2), QByteArray("0190RFFT100000"));
        m_pty->write(cardSide::spectrum("other"));
        QTRY_COMPARE(spectra.count(), 1);
        QCOMPARE(spectra.at(0).at(1).toInt(), 1);
    }

    // The second of two choices waits for the first one's marker, and a poll is queued between
    // them: its spectrum has the first span, while the channel has the second one by then.
    void a_spectrum_between_two_choices_is_dropped()
    {
        endNameRequest();
        pollByHand();
        QSignalSpy spectra(m_session.get(), &CardSession::spectrumReceived);
        m_session->setSpan(0, 1);
        m_session->setSpan(0, 2);
        m_session->pollIfDue();
        QTRY_COMPARE(cardSide::requests(*m_pty), Requests{"0190CNFT010000"});
        testClock::expire(bus());
        QTRY_COMPARE(cardSide::requests(*m_pty), Requests({"0190CNFT010000", "0190RFFT000000"}));
        m_pty->write(cardSide::spectrum("of span 1"));
        QTRY_COMPARE(cardSide::requests(*m_pty).value(2), QByteArray("0190CNFT020000"));
        QCOMPARE(spectra.count(), 0);
        testClock::expire(bus());
        m_session->setShown(1, false);
        m_session->setShown(2, false);
        m_session->pollIfDue();
        QTRY_COMPARE(cardSide::requests(*m_pty).value(3), QByteArray("0190RFFT010000"));
        m_pty->write(cardSide::spectrum("of span 2"));
        QTRY_COMPARE(spectra.count(), 1);
        QCOMPARE(spectra.at(0).at(0).toByteArray(), QByteArray("of span 2"));
    }

    void a_span_is_reported_when_it_changes_and_confirmed_each_time()
    {
        QSignalSpy changed(m_session.get(), &CardSession::spanChanged);
        QSignalSpy confirmed(m_session.get(), &CardSession::spanConfirmed);
        m_session->setSpan(1, 4);
        m_session->setSpan(1, 4);
        QCOMPARE(m_session->span(1), 4);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.at(0), QVariantList({1, 4}));
        QCOMPARE(confirmed.count(), 2);
        QCOMPARE(confirmed.at(1), QVariantList({1, 4}));
        m_session->setSpan(1, 10);
        m_session->setSpan(1, -1);
        QCOMPARE(m_session->span(1), 4);
        QCOMPARE(confirmed.count(), 2);
    }

    void the_card_s_spans_are_taken_but_for_one_that_is_being_changed()
    {
        endNameRequest();
        m_session->poll(); // keeps the bus busy, so that the marker waits
        m_session->setSpan(2, 3);
        QSignalSpy changed(m_session.get(), &CardSession::spanChanged);
        m_session->takeReply({u"0190"_s, u"RNFT"_s, u"491"_s});
        QCOMPARE(m_session->span(0), 4);
        QCOMPARE(m_session->span(1), 9);
        QCOMPARE(m_session->span(2), 3);
        QCOMPARE(changed.count(), 2);
        m_session->takeReply({u"0190"_s, u"RNFT"_s, u"1x2"_s});
        QCOMPARE(m_session->span(0), 4);
    }

    void an_average_is_outdated_once_for_each_change()
    {
        endNameRequest();
        QSignalSpy outdated(m_session.get(), &CardSession::averageOutdated);
        m_session->poll(); // keeps the bus busy, so that the real marker waits
        m_session->setSpan(0, 9);
        QCOMPARE(outdated.count(), 0);
        m_session->takeMarker(u"ClrAvg0"_s);
        m_session->takeMarker(u"ClrAvg0"_s);
        QCOMPARE(outdated.count(), 1);
        QCOMPARE(outdated.at(0).at(0).toInt(), 0);
    }

    void a_spectrum_of_the_frequency_before_is_dropped_once()
    {
        endNameRequest();
        m_session->setShown(1, false);
        m_session->setShown(2, false);
        QSignalSpy spectra(m_session.get(), &CardSession::spectrumReceived);
        m_session->poll();
        m_session->dropSpectrumUnderWay(0);
        m_session->takeReply(cardSide::message("old"));
        QCOMPARE(spectra.count(), 0);
        m_session->poll();
        m_session->dropSpectrumUnderWay(1); // another channel's
        m_session->takeReply(cardSide::message("new"));
        QCOMPARE(spectra.count(), 1);
        QCOMPARE(spectra.at(0).at(0).toByteArray(), QByteArray("new"));
    }
};

QTEST_GUILESS_MAIN(tst_CardSessionSpans)
#include "tst_CardSessionSpans.moc"
