// The conversation with a card of the K7150 type: three ports, demodulators that are told their
// spans, replies that name their channel.
#include "spectrum/SessionFixture.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

using Requests = QList<QByteArray>;

// The messages without their frame characters.
QStringList texts(const QSignalSpy& told)
{
    QStringList list;
    for (const auto& one : told) {
        list += one.at(0).toString().mid(1).chopped(1);
    }
    return list;
}

} // namespace

class tst_K7150Session : public QObject, private SessionFixture
{
    Q_OBJECT

private slots:
    void init() { start(); }
    void cleanup() { stop(); }

    void a_spectrum_of_another_port_does_not_end_the_poll_of_the_first_port()
    {
        Pty& pty = switchToK7150();
        cardKnowsItsSpans(pty);
        pollByHand();
        QSignalSpy spectra(m_session.get(), &CardSession::spectrumReceived);
        m_session->pollIfDue();
        QTRY_COMPARE(cardSide::requests(pty).size(), 1);
        m_second->write(cardSide::k7150Spectrum(0, "ab"));
        m_third->write(cardSide::k7150Spectrum(1, "cd"));
        QTRY_COMPARE(spectra.count(), 2);
        m_session->pollIfDue();
        QTest::qWait(20);
        QCOMPARE(cardSide::requests(pty).size(), 1);
        QCOMPARE(bus()->txCount(), 0);
        pty.write(cardSide::k7150Spectrum(0, "ef"));
        QTRY_COMPARE(spectra.count(), 3);
        m_session->pollIfDue();
        QTRY_COMPARE(cardSide::requests(pty).size(), 2);
    }

    void a_k7150_that_names_no_channel_is_reported_once()
    {
        switchToK7150();
        QSignalSpy spectra(m_session.get(), &CardSession::spectrumReceived);
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        QTest::ignoreMessage(
            QtWarningMsg, QRegularExpression(u"does not name the channel.* 200 "_s));
        for (const char* data : {"\xc8\x01\x02", "\xc9\x03\x04", "\x03\x05\x06"}) {
            m_session->takeReply(cardSide::message(data));
        }
        QCOMPARE(spectra.count(), 3);
        QCOMPARE(spectra.at(1).at(0).toByteArray(), QByteArray("\xc9\x03"));
        QCOMPARE(spectra.at(1).at(1).toInt(), 0);
    }

    void an_unnamed_spectrum_without_a_point_is_none_but_ends_the_poll()
    {
        Pty& pty = switchToK7150();
        cardKnowsItsSpans(pty);
        pollByHand();
        QSignalSpy spectra(m_session.get(), &CardSession::spectrumReceived);
        m_session->pollIfDue();
        QTRY_COMPARE(cardSide::requests(pty).size(), 1);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"does not name the channel"_s));
        pty.write("[0190RFFT" + QByteArray(2, '\0') + '\x09');
        QTRY_VERIFY(testClock::timers(bus()).isEmpty());
        QCOMPARE(spectra.count(), 0);
        m_session->pollIfDue();
        QTRY_COMPARE(cardSide::requests(pty).size(), 2);
    }

    void an_unnamed_spectrum_of_another_port_is_of_no_channel()
    {
        switchToK7150();
        QSignalSpy spectra(m_session.get(), &CardSession::spectrumReceived);
        m_session->poll();
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"does not name the channel"_s));
        m_second->write(cardSide::k7150Spectrum(7, "ab"));
        m_third->write(cardSide::k7150Spectrum(2, "cd"));
        QTRY_COMPARE(spectra.count(), 1);
        QCOMPARE(spectra.at(0).at(1).toInt(), 2);
    }

    void demodulators_are_told_their_spans_again()
    {
        switchToK7150();
        m_session->setSpan(1, 4);
        QSignalSpy told(m_session.get(), &CardSession::demodulatorMessage);
        m_session->tellDemodulatorsAgain();
        QCOMPARE(texts(told), QStringList({u"D1:NFFT:12"_s, u"D2:NFFT:11"_s, u"D3:NFFT:12"_s}));
    }

    void the_demodulators_of_an_older_card_are_told_no_span()
    {
        QSignalSpy told(m_session.get(), &CardSession::demodulatorMessage);
        m_session->tellDemodulatorsAgain();
        QCOMPARE(told.count(), 0);
    }

    void a_k7150_span_change_ends_when_its_marker_passes()
    {
        switchToK7150();
        QSignalSpy outdated(m_session.get(), &CardSession::averageOutdated);
        m_session->setSpan(1, 4);
        testClock::expire(bus());
        QCOMPARE(outdated.count(), 1);
        QSignalSpy spectra(m_session.get(), &CardSession::spectrumReceived);
        m_session->takeReply(cardSide::message("\x01" + QByteArray(8, 'x')));
        QCOMPARE(spectra.count(), 1);
    }

    void a_span_change_under_way_ends_with_the_older_card()
    {
        endNameRequest();
        m_session->poll(); // The change waits behind this request.
        m_session->setSpan(0, 4);
        switchToK7150();
        QSignalSpy spectra(m_session.get(), &CardSession::spectrumReceived);
        m_session->takeReply(cardSide::message('\0' + QByteArray(8, 'x')));
        QCOMPARE(spectra.count(), 1);
    }

    void a_lost_reply_of_a_k7150_is_not_asked_for_again_by_the_bus()
    {
        Pty& pty = switchToK7150();
        m_session->poll();
        QTRY_COMPARE(cardSide::requests(pty).size(), 1);
        testClock::expire(bus());
        QTest::qWait(50);
        QCOMPARE(cardSide::requests(pty).size(), 1);
    }

    void demodulators_and_card_are_told_their_spans_before_the_first_poll()
    {
        Pty& pty = switchToK7150();
        m_session->setSpan(1, 9);
        QTRY_COMPARE(cardSide::requests(pty), Requests{"0190CNFT190000"});
        testClock::expire(bus());
        pty.takeReceived();
        pollByHand();
        QSignalSpy told(m_session.get(), &CardSession::demodulatorMessage);
        // Each channel is told once, the second one was told already, whether or not the card
        // answers.
        m_session->pollIfDue();
        QCOMPARE(texts(told), QStringList({u"D1:NFFT:12"_s, u"D3:NFFT:12"_s}));
        QTRY_COMPARE(cardSide::requests(pty), Requests{"0190CNFT000000"});
        testClock::expire(bus());
        QTRY_COMPARE(cardSide::requests(pty), Requests({"0190CNFT000000", "0190RFFT000000"}));
        pty.takeReceived();
        QSignalSpy spectra(m_session.get(), &CardSession::spectrumReceived);
        const QList<Requests> turns{{"0190RFFT100000"}, {"0190CNFT200000", "0190RFFT200000"},
            {"0190RFFT010000"}, {"0190RFFT110000"}, {"0190RFFT210000"}};
        int last = 0;
        for (const Requests& turn : turns) {
            pty.write(cardSide::k7150Spectrum(last++ % 3, "x"));
            QTRY_COMPARE(spectra.count(), last);
            m_session->pollIfDue();
            if (turn.size() == 2) {
                QTRY_COMPARE(cardSide::requests(pty), turn.mid(0, 1));
                testClock::expire(bus());
            }
            QTRY_COMPARE(cardSide::requests(pty), turn);
            pty.takeReceived();
        }
        QCOMPARE(told.count(), 2);
    }

    void a_spectrum_asked_for_directly_tells_no_span()
    {
        Pty& pty = switchToK7150();
        QSignalSpy told(m_session.get(), &CardSession::demodulatorMessage);
        m_session->poll();
        QTRY_COMPARE(cardSide::requests(pty), Requests{"0190RFFT000000"});
        QCOMPARE(told.count(), 0);
    }

    void a_hidden_channel_is_not_told_before_it_is_polled()
    {
        Pty& pty = switchToK7150();
        m_session->setShown(0, false);
        pollByHand();
        m_session->pollIfDue();
        testClock::expire(bus());
        QTRY_COMPARE(cardSide::requests(pty), Requests({"0190CNFT100000", "0190RFFT100000"}));
    }

    void demodulator_and_card_are_told_a_span()
    {
        Pty& pty = switchToK7150();
        QSignalSpy told(m_session.get(), &CardSession::demodulatorMessage);
        m_session->setSpan(1, 9);
        QCOMPARE(told.count(), 1);
        QCOMPARE(told.at(0).at(0).toString(),
            u"\x02"_s
            u"D2:NFFT:10\x04"_s);
        QTRY_COMPARE(cardSide::requests(pty), Requests{"0190CNFT190000"});
        QCOMPARE(testClock::intervals(bus()), QList<int>{450});
    }

    void spans_with_the_same_fft_parameter_are_told_apart()
    {
        Pty& pty = switchToK7150();
        QSignalSpy told(m_session.get(), &CardSession::demodulatorMessage);
        Requests card;
        for (const int span : {6, 7, 8, 9}) {
            m_session->setSpan(0, span);
            testClock::expire(bus());
            card += "0190CNFT0" + QByteArray::number(span) + "0000";
        }
        QTRY_COMPARE(cardSide::requests(pty), card);
        QCOMPARE(texts(told), QStringList(4, u"D1:NFFT:10"_s));
    }

    void of_spans_chosen_fast_the_card_is_told_the_first_and_the_last()
    {
        Pty& pty = switchToK7150();
        for (int span = 1; span < 10; ++span) {
            m_session->setSpan(2, span);
        }
        QTRY_COMPARE(cardSide::requests(pty), Requests{"0190CNFT210000"});
        testClock::expire(bus());
        QTRY_COMPARE(cardSide::requests(pty), Requests({"0190CNFT210000", "0190CNFT290000"}));
        testClock::expire(bus());
        QVERIFY(testClock::timers(bus()).isEmpty());
    }

private:
    Pty& switchToK7150()
    {
        Pty& pty = m_devices->add(u"ttyUSB12"_s);
        m_second = &m_devices->add(u"ttyUSB13"_s);
        m_third = &m_devices->add(u"ttyUSB14"_s);
        m_session->setK7150(u"ttyUSB12"_s, u"ttyUSB13"_s, u"ttyUSB14"_s);
        return pty;
    }

    // Tells all channels their spans and lets the requests end.
    void cardKnowsItsSpans(Pty& pty)
    {
        m_session->setUpCard();
        for (int channel = 0; channel < 3; ++channel) {
            QTRY_COMPARE(cardSide::requests(pty).size(), channel + 1);
            testClock::expire(bus());
        }
        QVERIFY(testClock::timers(bus()).isEmpty());
        pty.takeReceived();
    }

    Pty* m_second = nullptr;
    Pty* m_third = nullptr;
};

QTEST_GUILESS_MAIN(tst_K7150Session)
#include "tst_K7150Session.moc"
