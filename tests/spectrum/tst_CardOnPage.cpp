// What a card sends and what the operator chooses, as the page shows it.
#include "spectrum/CardFixture.h"
#include "spectrum/SpectrumChart.h"
#include "support/TestMain.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

using Requests = QList<QByteArray>;

} // namespace

class tst_CardOnPage : public QObject, private CardFixture
{
    Q_OBJECT

private slots:
    void init() { start(); }
    void cleanup() { stop(); }

    // polling

    void a_page_on_the_screen_is_polled_and_a_hidden_one_is_not()
    {
        endNameRequest();
        QTest::qWait(150);
        QVERIFY(cardSide::only(*m_pty, "RFFT").isEmpty());
        m_window->show();
        int answered = 0;
        QTRY_VERIFY(
            (cardSide::answerPolls(*m_pty, answered, cardSide::spectrum("x")), answered >= 6));
        m_window->hide();
        QTest::qWait(100);
        cardSide::answerPolls(*m_pty, answered, cardSide::spectrum("x"));
        const auto then = cardSide::only(*m_pty, "RFFT").size();
        QTest::qWait(200);
        QCOMPARE(cardSide::only(*m_pty, "RFFT").size(), then);
    }

    void the_override_polls_a_hidden_page()
    {
        endNameRequest();
        QVERIFY(!m_card->getOverRideVisCheck());
        m_card->setOverRideVisCheck(true);
        QVERIFY(m_card->getOverRideVisCheck());
        int answered = 0;
        QTRY_VERIFY(
            (cardSide::answerPolls(*m_pty, answered, cardSide::spectrum("x")), answered >= 3));
        m_card->setOverRideVisCheck(false);
        QTest::qWait(100);
        const auto then = cardSide::only(*m_pty, "RFFT").size();
        QTest::qWait(200);
        QCOMPARE(cardSide::only(*m_pty, "RFFT").size(), then);
    }

    // spectra

    void a_spectrum_is_shown_in_the_chart_of_the_channel_that_was_asked()
    {
        endNameRequest();
        QSignalSpy spectra(m_card, &SpectralCard::specUpdate);
        m_card->SetChartAreaVisible(0, false);
        m_card->UpdateCmds();
        QTRY_COMPARE(cardSide::only(*m_pty, "RFFT").size(), 1);
        m_pty->write(cardSide::spectrum(cardSide::carrier(512, 100, -33)));
        QTRY_COMPARE(spectra.count(), 1);
        QCOMPARE(spectra.at(0).at(1).toInt(), 1);
        QCOMPARE(spectra.at(0).at(0).toByteArray(), cardSide::carrier(512, 100, -33));
        QCOMPARE(m_card->chart(1)->peak().level, -33.0);
        QVERIFY(!m_card->chart(0)->peak().valid);
        QVERIFY(!m_card->chart(2)->peak().valid);
    }

    void the_card_s_trims_change_no_level_on_the_charts()
    {
        QSignalSpy spectra(m_card, &SpectralCard::specUpdate);
        endNameRequest();
        m_card->CommSpectral_Command({u"0190"_s, u"RTRM"_s, u"309"_s});
        QCOMPARE(m_card->trim(0), 3);
        QCOMPARE(m_card->trim(2), 9);
        m_card->CommSpectral_Command({u"0190"_s, u"RTRM"_s, u"1x1"_s});
        QCOMPARE(m_card->trim(0), 3);
        m_card->setTrim(0, 1);
        QCOMPARE(m_card->trim(0), 1);
        QTRY_COMPARE(cardSide::requests(*m_pty), Requests{"0190CTRM010000"});
        testClock::expire(bus());
        QByteArray all;
        for (int byte = 0; byte < 256; ++byte) {
            all += static_cast<char>(byte);
        }
        for (int channel = 0; channel < 3; ++channel) {
            m_card->UpdateCmds();
            m_card->CommSpectral_Command(cardSide::message(all));
            QCOMPARE(spectra.at(channel).at(0).toByteArray(), all);
            QCOMPARE(m_card->chart(0)->trace().levels().at(10), -115.0F);
        }
    }

    void a_spectrum_measured_at_the_frequency_before_is_not_shown()
    {
        endNameRequest();
        QSignalSpy spectra(m_card, &SpectralCard::specUpdate);
        m_card->SetChartAreaVisible(1, false);
        m_card->SetChartAreaVisible(2, false);
        m_card->UpdateCmds();
        m_card->setRf(-1.0, 0);
        m_card->setRf(70.0, 0); // as it is
        m_card->CommSpectral_Command(cardSide::message("a"));
        QCOMPARE(spectra.count(), 1);
        m_card->UpdateCmds();
        m_card->setRf(2250.5, 1); // another channel's
        m_card->CommSpectral_Command(cardSide::message("b"));
        QCOMPARE(spectra.count(), 2);
        m_card->UpdateCmds();
        m_card->setRf(2250.5, 0);
        m_card->CommSpectral_Command(cardSide::message("old"));
        QCOMPARE(spectra.count(), 2);
        QCOMPARE(m_card->chart(0)->trace().size(), 0);
        m_card->UpdateCmds();
        m_card->CommSpectral_Command(cardSide::message("new"));
        QCOMPARE(spectra.count(), 3);
        QCOMPARE(m_card->chart(0)->trace().size(), 3);
    }

    // spans

    void the_card_s_own_spans_are_shown()
    {
        QSignalSpy changed(m_card, &SpectralCard::spanChanged);
        m_card->CommSpectral_Command({u"0190"_s, u"RNFT"_s, u"490"_s});
        QCOMPARE(m_card->getSpan(0), 4);
        QCOMPARE(m_card->getSpan(1), 9);
        QCOMPARE(m_card->getSpan(2), 0);
        QCOMPARE(spanBox(1)->currentIndex(), 9);
        QCOMPARE(changed.count(), 2);
        m_card->CommSpectral_Command({u"0190"_s, u"RNFT"_s, u"1x2"_s});
        QCOMPARE(m_card->getSpan(0), 4);
    }

    void a_span_is_told_to_the_card_and_shown_data()
    {
        QTest::addColumn<int>("channel");
        QTest::addColumn<int>("span");
        QTest::addColumn<QByteArray>("request");
        QTest::newRow("narrowest to widest") << 0 << 9 << QByteArray("0190CNFT090000");
        QTest::newRow("channel 1") << 1 << 4 << QByteArray("0190CNFT140000");
        QTest::newRow("channel 2") << 2 << 3 << QByteArray("0190CNFT230000");
    }

    void a_span_is_told_to_the_card_and_shown()
    {
        QFETCH(int, channel);
        QFETCH(int, span);
        QFETCH(QByteArray, request);
        endNameRequest();
        QSignalSpy changed(m_card, &SpectralCard::spanChanged);
        m_card->setSpanComboBox(channel, span);
        QTRY_VERIFY(cardSide::requests(*m_pty).contains(request));
        QCOMPARE(m_card->getSpan(channel), span);
        QCOMPARE(spanBox(channel)->currentIndex(), span);
        QCOMPARE(m_card->chart(channel)->spanMHz(), SpectralCard::m_spanTable.at(span).spanMHz);
        QCOMPARE(m_card->chart(channel)->tickPositions(), m_card->spanTicks(span));
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.at(0).at(0).toInt(), channel);
        QCOMPARE(changed.at(0).at(1).toInt(), span);
    }

    void the_operator_chooses_a_span_in_the_box()
    {
        endNameRequest();
        for (int channel = 0; channel < 3; ++channel) {
            spanBox(channel)->setCurrentIndex(5 + channel);
            emit spanBox(channel)->activated(5 + channel);
            QCOMPARE(m_card->getSpan(channel), 5 + channel);
        }
        QTRY_COMPARE(cardSide::only(*m_pty, "CNFT").value(0), QByteArray("0190CNFT050000"));
    }

    void a_span_change_clears_the_average_when_the_card_has_been_told()
    {
        endNameRequest();
        m_card->chart(0)->setAveraging(16);
        m_card->chart(0)->setMaxHold(true);
        m_card->UpdateCmds();
        m_card->CommSpectral_Command(cardSide::message(QByteArray(64, cardSide::level(-20))));
        QCOMPARE(m_card->chart(0)->trace().held().first(), -20.0F);
        m_card->SetSpan(0, 9);
        QCOMPARE(m_card->chart(0)->trace().size(), 0);
        QVERIFY(m_card->chart(0)->trace().held().isEmpty());
        // While the change waits in the queue, nothing is shown.
        QSignalSpy spectra(m_card, &SpectralCard::specUpdate);
        m_card->CommSpectral_Command(cardSide::message(QByteArray(64, cardSide::level(-20))));
        QCOMPARE(spectra.count(), 0);
        QCOMPARE(m_card->chart(0)->trace().size(), 0);
        m_card->queFlag(u"ClrAvg0"_s);
        m_card->CommSpectral_Command(cardSide::message(QByteArray(64, cardSide::level(-80))));
        m_card->CommSpectral_Command(cardSide::message(QByteArray(64, cardSide::level(-60))));
        QCOMPARE(m_card->chart(0)->trace().levels().first(), -62.9671F);
        QCOMPARE(m_card->chart(0)->trace().held().first(), -60.0F);
        QCOMPARE(spectra.count(), 2);
    }

    void the_same_span_again_restarts_the_average_behind_its_marker()
    {
        endNameRequest();
        m_card->chart(0)->setAveraging(16);
        m_card->UpdateCmds();
        m_card->CommSpectral_Command(cardSide::message(QByteArray(8, cardSide::level(-20))));
        m_card->SetSpan(0, 0);
        m_card->queFlag(u"ClrAvg0"_s);
        m_card->CommSpectral_Command(cardSide::message(QByteArray(8, cardSide::level(-80))));
        QCOMPARE(m_card->chart(0)->trace().levels().first(), -80.0F);
        // A marker without a change of the span clears nothing.
        m_card->queFlag(u"ClrAvg0"_s);
        m_card->CommSpectral_Command(cardSide::message(QByteArray(8, cardSide::level(-60))));
        QCOMPARE(m_card->chart(0)->trace().levels().first(), -62.9671F);
    }

    void the_charts_show_no_spectrum_measured_with_another_span()
    {
        endNameRequest();
        m_card->UpdateCmds();
        QTRY_COMPARE(cardSide::requests(*m_pty), Requests{"0190RFFT000000"});
        m_card->SetSpan(0, 9);
        m_pty->write(cardSide::spectrum("old"));
        QTRY_COMPARE(cardSide::requests(*m_pty), Requests({"0190RFFT000000", "0190CNFT090000"}));
        QCOMPARE(m_card->chart(0)->trace().size(), 0);
    }
};

QN740_TEST_MAIN(tst_CardOnPage)
#include "tst_CardOnPage.moc"
