// When the charts of a card's page wait for spectra, and what they show when none come.
#include "spectrum/CardFixture.h"
#include "spectrum/SpectrumChart.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

class tst_CardNoData : public QObject, private CardFixture
{
    Q_OBJECT

private slots:
    void init() { start(); }
    void cleanup() { stop(); }

    void a_page_that_is_not_on_the_screen_waits_for_nothing()
    {
        m_card->CommSpectral_Command(cardSide::message(QByteArray(8, 'x')));
        for (int channel = 0; channel < 3; ++channel) {
            QVERIFY(!waiting(channel)->isActive() && !m_card->chart(channel)->stale());
        }
    }

    void three_seconds_start_when_the_page_comes_up()
    {
        m_window->show();
        for (int channel = 0; channel < 3; ++channel) {
            QCOMPARE(testClock::intervals(waiting(channel)), QList<int>{3000});
            testClock::expire(waiting(channel));
            QVERIFY(m_card->chart(channel)->stale());
        }
        m_window->hide();
        for (int channel = 0; channel < 3; ++channel) {
            QVERIFY(!m_card->chart(channel)->stale() && !waiting(channel)->isActive());
        }
    }

    void leaving_the_page_does_not_end_the_note()
    {
        m_window->show();
        testClock::expire(waiting(0));
        m_window->hide();
        QVERIFY(!m_card->chart(0)->stale());
        m_window->show();
        QVERIFY(m_card->chart(0)->stale() && !waiting(0)->isActive());
        QVERIFY(!m_card->chart(1)->stale()); // it was fresh: the whole time starts
        QCOMPARE(testClock::intervals(waiting(1)), QList<int>{3000});
    }

    void a_card_that_dies_is_noticed_and_one_that_comes_back_too()
    {
        m_window->show();
        endNameRequest();
        m_pty->write(cardSide::spectrum(QByteArray(64, 'x')));
        QTRY_COMPARE(m_card->chart(0)->trace().size(), 64);
        QVERIFY(!m_card->chart(0)->stale());
        // No more replies come, in real time.
        QTRY_VERIFY_WITH_TIMEOUT(m_card->chart(0)->stale(), 6000);
        QVERIFY(m_card->chart(1)->stale() && m_card->chart(2)->stale());
        QCOMPARE(m_card->chart(0)->trace().size(), 64);
        QTRY_VERIFY(!cardSide::only(*m_pty, "RFFT").isEmpty());
        const int channel = cardSide::only(*m_pty, "RFFT").last().at(8) - '0';
        m_pty->write(cardSide::spectrum(QByteArray(64, 'y')));
        QTRY_VERIFY_WITH_TIMEOUT(!m_card->chart(channel)->stale(), 6000);
    }

    void a_spectrum_counts_for_its_own_channel_only()
    {
        m_window->show();
        endNameRequest();
        for (int channel = 0; channel < 3; ++channel) {
            testClock::expire(waiting(channel));
        }
        m_card->CommSpectral_Command(cardSide::message(QByteArray(8, 'x')));
        int fresh = 0;
        for (int channel = 0; channel < 3; ++channel) {
            fresh += m_card->chart(channel)->stale() ? 0 : 1;
        }
        QCOMPARE(fresh, 1);
    }

    void a_hidden_chart_shows_no_no_data_and_hiding_does_not_restart_the_time()
    {
        m_window->show();
        testClock::expire(waiting(1));
        m_card->SetChartAreaVisible(1, false);
        QVERIFY(!m_card->chart(1)->stale() && !waiting(1)->isActive());
        m_card->SetChartAreaVisible(1, true);
        QVERIFY(m_card->chart(1)->stale());
        QTest::qWait(50);
        for (int i = 0; i < 3; ++i) {
            m_card->SetChartAreaVisible(2, true); // as it is already
        }
        m_card->SetChartAreaVisible(2, false);
        m_card->SetChartAreaVisible(2, true);
        QVERIFY(waiting(2)->isActive() && waiting(2)->remainingTime() <= 2960);
    }

    void a_span_that_is_chosen_again_does_not_end_the_note()
    {
        m_window->show();
        testClock::expire(waiting(0));
        for (const int span : {0, 5, 5}) {
            m_card->setSpanComboBox(0, span);
            QVERIFY(m_card->chart(0)->stale());
        }
        m_card->setRf(2250.5, 0);
        QVERIFY(m_card->chart(0)->stale());
        QCOMPARE(m_card->chart(0)->readout(), u"NO DATA"_s);
    }

    void a_lent_chart_waits_while_the_page_is_not_on_the_screen()
    {
        QWidget other;
        auto* layout = new QVBoxLayout(&other);
        layout->addWidget(m_card->chart(0));
        m_card->setOverRideVisCheck(true);
        QCOMPARE(testClock::intervals(waiting(0)), QList<int>{3000});
        testClock::expire(waiting(0));
        m_card->setOverRideVisCheck(true);
        QVERIFY(m_card->chart(0)->stale());
        m_card->setOverRideVisCheck(false);
        m_card->returnChartToVbox(0);
        QVERIFY(!m_card->chart(0)->stale());
    }

    void a_chart_that_is_made_anew_waits_as_the_one_before()
    {
        auto* other = new QWidget;
        auto* layout = new QVBoxLayout(other);
        layout->addWidget(m_card->chart(0));
        m_card->setOverRideVisCheck(true);
        m_card->SetChartAreaVisible(0, false);
        delete other; // and the chart with it
        QVERIFY(!m_card->chart(0)->stale() && !waiting(0)->isActive());
        m_card->SetChartAreaVisible(0, true);
        QCOMPARE(testClock::intervals(waiting(0)), QList<int>{3000});
    }

private:
    QTimer* waiting(int channel) const
    {
        return m_card->chart(channel)->findChild<QTimer*>(u"noDataTimer"_s);
    }
};

QN740_TEST_MAIN(tst_CardNoData)
#include "tst_CardNoData.moc"
