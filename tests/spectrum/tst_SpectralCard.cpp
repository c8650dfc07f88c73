#include "spectrum/CardDesk.h"
#include "spectrum/SpectrumChart.h"
#include "support/Screen.h"
#include "support/TestMain.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QGridLayout>
#include <QSignalSpy>

namespace {

using Requests = QList<QByteArray>;

// answers spectrum polls with a byte, once for each request
void answerPolls(Pty& pty, int& answered, const QByteArray& reply)
{
    const auto polls = cardSide::only(pty, "RFFT").size();
    while (answered < polls) {
        ++answered;
        pty.write(reply);
    }
}

} // namespace

class tst_SpectralCard : public QObject, private CardDesk
{
    Q_OBJECT

private slots:
    void init() { sitDown(); }
    void cleanup() { standUp(); }

    // construction

    void the_table_is_the_unit_s()
    {
        QCOMPARE(SpectralCard::m_spanTable.size(), 10);
        QCOMPARE(QString(SpectralCard::m_spanTable.at(3).label), QString("7.5 Mhz"));
        const SpectralCard::SPANINFO info("a", "b", "c", 2.0, {1.0});
        QCOMPARE(info.spanMHz, 2.0);
    }

    void the_card_is_asked_for_its_name_once()
    {
        QVERIFY(m_card->isOpen());
        QTRY_COMPARE(cardSide::requests(*m_pty), Requests{"0190RNME000000"});
        QCOMPARE(testClock::intervals(bus()), QList<int>{450});
        testClock::expire(bus());
        QVERIFY(testClock::timers(bus()).isEmpty());
        QTest::qWait(50);
        QCOMPARE(cardSide::requests(*m_pty), Requests{"0190RNME000000"});
    }

    void a_card_on_an_absent_port_is_quiet()
    {
        SpectralCard card(nullptr, 0, "absent");
        QVERIFY(!card.isOpen());
        card.show();
        card.SetSpan(0, 3);
        card.UpdateCmds();
        card.timerTimeOut();
        QCOMPARE(card.getSpan(0), 3);
    }

    void a_card_whose_port_comes_later_is_asked_for_its_name()
    {
        SpectralCard card(nullptr, 0, "ttyUSB12");
        Pty& pty = m_devices->add("ttyUSB12");
        QTRY_COMPARE_WITH_TIMEOUT(
            cardSide::requests(pty).value(0), QByteArray("0190RNME000000"), 10000);
        QSignalSpy detected(&card, &SpectralCard::cardDetected);
        pty.write(cardSide::text("RNME", "Late"));
        QTRY_COMPARE(detected.count(), 1);
    }

    void the_span_boxes_have_all_labels_in_24_points_data()
    {
        QTest::addColumn<int>("channel");
        QTest::newRow("0") << 0;
        QTest::newRow("1") << 1;
        QTest::newRow("2") << 2;
    }

    void the_span_boxes_have_all_labels_in_24_points()
    {
        QFETCH(int, channel);
        const QStringList labels{"1 MHz  ", "3 MHz  ", "5 MHz  ", "7.5 Mhz", "10 MHz ", "15 MHz ",
            "20 MHz ", "25 MHz ", "30 MHz ", "40 MHz "};
        QCOMPARE(m_card->getSpanList(), labels);
        QCOMPARE(m_card->cboSpanItems(channel), labels);
        auto* box = spanBox(channel);
        QCOMPARE(box->font().pointSize(), 24);
        QVERIFY(box->height() >= 47 || !box->isVisible());
        QCOMPARE(m_card->getSpan(channel), 0);
    }

    void the_titles_name_the_receivers_and_the_channel()
    {
        QCOMPARE(m_card->chart(0)->title(), QString("SpectralCard CH.1/CH.2/CMB.1 (CH.1)"));
        QCOMPARE(m_card->chart(1)->title(), QString("SpectralCard CH.1/CH.2/CMB.1 (CH.2)"));
        QCOMPARE(m_card->chart(2)->title(), QString("SpectralCard CH.1/CH.2/CMB.1 (CH.3)"));
        const SpectralCard second(nullptr, 1, "absent");
        QCOMPARE(second.chart(0)->title(), QString("SpectralCard CH.3/CH.4/CMB.2 (CH.1)"));
        m_card->SetChartAreaName(1, "Demod 2");
        QCOMPARE(m_card->chart(1)->title(), QString("Demod 2 (CH.2)"));
        m_card->WindowName("Window");
        QCOMPARE(m_card->chart(2)->title(), QString("Window (CH.3)"));
        QCOMPARE(m_card->windowTitle(), QString("Window"));
    }

    void numbers_that_name_nothing_are_ignored()
    {
        for (const int channel : {-1, 3, 1000000}) {
            QCOMPARE(m_card->chart(channel), nullptr);
            QCOMPARE(m_card->getSpan(channel), -1);
            QCOMPARE(m_card->centre(channel), 0.0);
            QVERIFY(m_card->cboSpanItems(channel).isEmpty());
            m_card->SetSpan(channel, 1);
            m_card->setSpanComboBox(channel, 1);
            m_card->setRf(100.0, channel);
            m_card->setHMarkers(channel, {1.0});
            m_card->setLineColor(1, channel == -1 ? 7 : channel);
            m_card->setTrim(channel, 1);
            QCOMPARE(m_card->trim(channel), -1);
            m_card->returnChartToVbox(channel);
            m_card->SetChartAreaName(channel, "x");
            m_card->SetChartAreaVisible(channel, false);
            QVERIFY(!m_card->chartAreaVisible(channel));
        }
        for (const int span : {-1, 10, 1000000}) {
            m_card->SetSpan(0, span);
            QCOMPARE(m_card->getSpan(0), 0);
            QVERIFY(m_card->spanTicks(span).isEmpty());
        }
        QCOMPARE(m_card->spanTicks(9), QVector<double>({50, 60, 70, 80, 90}));
        m_card->setTrim(0, 10);
        m_card->setTrim(0, -1);
        QCOMPARE(m_card->trim(0), 0);
        QTRY_COMPARE(cardSide::requests(*m_pty), Requests{"0190RNME000000"});
    }

    void the_charts_are_built_once()
    {
        m_card->initCharts();
        QCOMPARE(m_card->findChildren<SpectrumChart*>().size(), 3);
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
        nameKnown();
        m_card->sendSerialCmd(command, timeout);
        QTRY_VERIFY(cardSide::requests(*m_pty).contains(request));
    }

    // detection

    void the_name_is_announced_and_the_version_asked()
    {
        QSignalSpy detected(m_card, &SpectralCard::cardDetected);
        QSignalSpy version(m_card, &SpectralCard::cardVersionUpdated);
        QSignalSpy told(m_card, &SpectralCard::updateDemodCh);
        QTRY_COMPARE(cardSide::requests(*m_pty).size(), 1);
        m_pty->write(cardSide::text("RNME", "SpectralSweep"));
        QTRY_COMPARE(detected.count(), 1);
        QCOMPARE(detected.at(0).at(0).toString(), QString("SpectralSweep"));
        testClock::expire(bus());
        QTRY_COMPARE(cardSide::requests(*m_pty).value(1), QByteArray("0190RVER000000"));
        m_pty->write(cardSide::text("RVER", "1.02"));
        QTRY_COMPARE(version.count(), 1);
        QCOMPARE(version.at(0).at(0).toString(), QString("SpectralSweep Ver:1.02"));
        QCOMPARE(told.count(), 2);
        QCOMPARE(told.at(0).at(0).toString(), QString("\x02U0:CLST:0170 SpectralSWeep 0\r\x04"));
        QCOMPARE(told.at(1).at(0).toString(), QString("\x02U0:VER:01.02\r\x04"));
        testClock::expire(bus());
        QTRY_COMPARE(cardSide::requests(*m_pty).mid(2), Requests{"0190RNFT000000"});
        testClock::expire(bus());
        QTRY_COMPARE(
            cardSide::requests(*m_pty).mid(2), Requests({"0190RNFT000000", "0190RTRM000000"}));
    }

    void a_card_that_says_its_name_all_the_time_does_not_fill_the_queue()
    {
        for (int i = 0; i < 1000; ++i) {
            m_card->CommSpectral_Command({"0190", "RNME", "again"});
        }
        QVERIFY2(bus()->txCount() <= 3, qPrintable(QString::number(bus()->txCount())));
    }

    void replies_of_another_address_are_ignored()
    {
        QSignalSpy detected(m_card, &SpectralCard::cardDetected);
        QSignalSpy spectra(m_card, &SpectralCard::specUpdate);
        m_card->CommSpectral_Command({"0180", "RNME", "x"});
        m_card->CommSpectral_Command({"AB90", "RFFT", "x"});
        QCOMPARE(detected.count() + spectra.count(), 0);
    }

    void unknown_replies_are_ignored()
    {
        m_card->CommSpectral_Command({"0190", "ABCD", "x"});
        m_card->CommSpectral_Command({"0190", "", ""});
        m_card->CommSpectral_Command({});
    }

    void the_card_s_own_spans_are_shown()
    {
        QSignalSpy changed(m_card, &SpectralCard::spanChanged);
        m_card->CommSpectral_Command({"0190", "RNFT", "490"});
        QCOMPARE(m_card->getSpan(0), 4);
        QCOMPARE(m_card->getSpan(1), 9);
        QCOMPARE(m_card->getSpan(2), 0);
        QCOMPARE(spanBox(1)->currentIndex(), 9);
        QCOMPARE(changed.count(), 2);
        m_card->CommSpectral_Command({"0190", "RNFT", "1x2"});
        QCOMPARE(m_card->getSpan(0), 4);
    }

    void the_card_s_trims_are_its_own_and_change_no_level()
    {
        QSignalSpy spectra(m_card, &SpectralCard::specUpdate);
        nameKnown();
        m_card->CommSpectral_Command({"0190", "RTRM", "309"});
        QCOMPARE(m_card->trim(0), 3);
        QCOMPARE(m_card->trim(2), 9);
        m_card->CommSpectral_Command({"0190", "RTRM", "1x1"});
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

    // polling

    void the_counters_walk_over_the_channels()
    {
        nameKnown();
        int answered = 0;
        for (int i = 0; i < 10; ++i) {
            m_card->UpdateCmds();
            QTRY_COMPARE(cardSide::only(*m_pty, "RFFT").size(), i + 1);
            answerPolls(*m_pty, answered, cardSide::spectrum("x"));
        }
        QCOMPARE(cardSide::only(*m_pty, "RFFT"),
            Requests({"0190RFFT000000", "0190RFFT100000", "0190RFFT200000", "0190RFFT010000",
                "0190RFFT110000", "0190RFFT210000", "0190RFFT020000", "0190RFFT120000",
                "0190RFFT220000", "0190RFFT000000"}));
    }

    void hidden_charts_are_skipped()
    {
        nameKnown();
        m_card->SetChartAreaVisible(1, false);
        int answered = 0;
        for (int i = 0; i < 4; ++i) {
            m_card->UpdateCmds();
            QTRY_COMPARE(cardSide::only(*m_pty, "RFFT").size(), i + 1);
            answerPolls(*m_pty, answered, cardSide::spectrum("x"));
        }
        QCOMPARE(cardSide::only(*m_pty, "RFFT"),
            Requests({"0190RFFT000000", "0190RFFT200000", "0190RFFT010000", "0190RFFT210000"}));
    }

    void without_a_shown_chart_there_is_no_poll()
    {
        nameKnown();
        for (int channel = 0; channel < 3; ++channel) {
            m_card->SetChartAreaVisible(channel, false);
        }
        m_card->UpdateCmds();
        QTest::qWait(100);
        QVERIFY(cardSide::only(*m_pty, "RFFT").isEmpty());
    }

    void a_spectrum_poll_waits_two_seconds_for_its_reply()
    {
        nameKnown();
        m_card->UpdateCmds();
        QCOMPARE(m_card->findChildren<Rs422Bus*>().size(), 1);
        QCOMPARE(testClock::intervals(bus()), QList<int>{2000});
    }

    void a_page_on_the_screen_is_polled_and_a_hidden_one_is_not()
    {
        nameKnown();
        QTest::qWait(150);
        QVERIFY(cardSide::only(*m_pty, "RFFT").isEmpty());
        m_window->show();
        int answered = 0;
        QTRY_VERIFY((answerPolls(*m_pty, answered, cardSide::spectrum("x")), answered >= 6));
        m_window->hide();
        QTest::qWait(100);
        answerPolls(*m_pty, answered, cardSide::spectrum("x"));
        const auto then = cardSide::only(*m_pty, "RFFT").size();
        QTest::qWait(200);
        QCOMPARE(cardSide::only(*m_pty, "RFFT").size(), then);
    }

    void the_override_polls_a_hidden_page()
    {
        nameKnown();
        QVERIFY(!m_card->getOverRideVisCheck());
        m_card->setOverRideVisCheck(true);
        QVERIFY(m_card->getOverRideVisCheck());
        int answered = 0;
        QTRY_VERIFY((answerPolls(*m_pty, answered, cardSide::spectrum("x")), answered >= 3));
        m_card->setOverRideVisCheck(false);
        QTest::qWait(100);
        const auto then = cardSide::only(*m_pty, "RFFT").size();
        QTest::qWait(200);
        QCOMPARE(cardSide::only(*m_pty, "RFFT").size(), then);
    }

    void twenty_spectra_a_second_at_most()
    {
        nameKnown();
        m_window->show();
        auto* poll = timer("pollTimer");
        QVERIFY(poll->isActive());
        QCOMPARE(poll->interval(), 50);
        QCOMPARE(poll->timerType(), Qt::PreciseTimer);
        poll->stop();
        // a reply starts no poll, a turn of the timer starts one
        m_card->timerTimeOut();
        for (int turn = 1; turn <= 3; ++turn) {
            QTRY_COMPARE(cardSide::only(*m_pty, "RFFT").size(), turn);
            QSignalSpy spectra(m_card, &SpectralCard::specUpdate);
            m_pty->write(cardSide::spectrum("x"));
            QTRY_COMPARE(spectra.count(), 1);
            QTest::qWait(20);
            QCOMPARE(cardSide::only(*m_pty, "RFFT").size(), turn);
            m_card->timerTimeOut();
        }
    }

    void a_poll_that_still_waits_to_be_sent_is_under_way()
    {
        nameKnown();
        m_card->setOverRideVisCheck(true);
        timer("pollTimer")->stop();
        m_card->sendSerialCmd("BUSY", 10000);
        m_card->timerTimeOut();
        QCOMPARE(bus()->txCount(), 1);
        for (int i = 0; i < 100; ++i) {
            testClock::expire(timer("replyDueTimer"));
            m_card->timerTimeOut();
        }
        QCOMPARE(bus()->txCount(), 1);
    }

    void one_poll_is_under_way_at_a_time()
    {
        nameKnown();
        m_window->show();
        QTRY_COMPARE(cardSide::only(*m_pty, "RFFT").size(), 1);
        for (int i = 0; i < 20; ++i) {
            m_card->timerTimeOut();
        }
        QCOMPARE(m_card->findChild<Rs422Bus*>()->txCount(), 0); // and none waits
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
        nameKnown();
        m_card->ComPortTimeOut(request, static_cast<Rs422Bus::Results>(result));
        if (again) {
            QTRY_COMPARE(cardSide::only(*m_pty, "RFFT").size(), 1);
        } else {
            QTest::qWait(50);
            QVERIFY(cardSide::only(*m_pty, "RFFT").isEmpty());
        }
    }

    void polling_goes_on_after_a_lost_reply()
    {
        nameKnown();
        m_card->UpdateCmds();
        QTRY_COMPARE(cardSide::only(*m_pty, "RFFT").size(), 1);
        testClock::expire(bus());
        QTRY_COMPARE(cardSide::only(*m_pty, "RFFT").size(), 2);
        QCOMPARE(cardSide::only(*m_pty, "RFFT").at(1), QByteArray("0190RFFT100000"));
    }

    // spectra

    void a_spectrum_goes_to_the_channel_last_asked()
    {
        nameKnown();
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

    void a_spectrum_belongs_to_the_request_on_the_line_not_to_one_that_waits()
    {
        nameKnown();
        QSignalSpy spectra(m_card, &SpectralCard::specUpdate);
        m_card->UpdateCmds();
        m_card->UpdateCmds();
        m_card->UpdateCmds();
        for (int channel = 0; channel < 3; ++channel) {
            QTRY_COMPARE(cardSide::only(*m_pty, "RFFT").size(), channel + 1);
            m_pty->write(cardSide::spectrum("x"));
            QTRY_COMPARE(spectra.count(), channel + 1);
            QCOMPARE(spectra.last().at(1).toInt(), channel);
        }
    }

    void an_empty_spectrum_changes_nothing()
    {
        QSignalSpy spectra(m_card, &SpectralCard::specUpdate);
        m_card->CommSpectral_Command(cardSide::message(""));
        QCOMPARE(spectra.count(), 0);
    }

    // spans

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
        nameKnown();
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
        nameKnown();
        for (int channel = 0; channel < 3; ++channel) {
            spanBox(channel)->setCurrentIndex(5 + channel);
            emit spanBox(channel)->activated(5 + channel);
            QCOMPARE(m_card->getSpan(channel), 5 + channel);
        }
        QTRY_COMPARE(cardSide::only(*m_pty, "CNFT").value(0), QByteArray("0190CNFT050000"));
    }

    void a_span_change_clears_the_average_when_the_card_has_been_told()
    {
        nameKnown();
        m_card->chart(0)->setAveraging(16);
        m_card->chart(0)->setMaxHold(true);
        m_card->UpdateCmds();
        m_card->CommSpectral_Command(cardSide::message(QByteArray(64, cardSide::level(-20))));
        QCOMPARE(m_card->chart(0)->trace().held().first(), -20.0F);
        m_card->SetSpan(0, 9);
        QCOMPARE(m_card->chart(0)->trace().size(), 0);
        QVERIFY(m_card->chart(0)->trace().held().isEmpty());
        // while the change waits in the queue, nothing is shown
        QSignalSpy spectra(m_card, &SpectralCard::specUpdate);
        m_card->CommSpectral_Command(cardSide::message(QByteArray(64, cardSide::level(-20))));
        QCOMPARE(spectra.count(), 0);
        QCOMPARE(m_card->chart(0)->trace().size(), 0);
        m_card->queFlag("ClrAvg0");
        m_card->CommSpectral_Command(cardSide::message(QByteArray(64, cardSide::level(-80))));
        m_card->CommSpectral_Command(cardSide::message(QByteArray(64, cardSide::level(-60))));
        QCOMPARE(m_card->chart(0)->trace().levels().first(), -70.0F);
        QCOMPARE(m_card->chart(0)->trace().held().first(), -60.0F);
        QCOMPARE(spectra.count(), 2);
    }

    void the_same_span_again_averages_anew_behind_its_marker()
    {
        nameKnown();
        m_card->chart(0)->setAveraging(16);
        m_card->UpdateCmds();
        m_card->CommSpectral_Command(cardSide::message(QByteArray(8, cardSide::level(-20))));
        m_card->SetSpan(0, 0);
        m_card->queFlag("ClrAvg0");
        m_card->CommSpectral_Command(cardSide::message(QByteArray(8, cardSide::level(-80))));
        QCOMPARE(m_card->chart(0)->trace().levels().first(), -80.0F);
        // a marker without a change of the span clears nothing
        m_card->queFlag("ClrAvg0");
        m_card->CommSpectral_Command(cardSide::message(QByteArray(8, cardSide::level(-60))));
        QCOMPARE(m_card->chart(0)->trace().levels().first(), -70.0F);
    }

    void spans_chosen_fast_are_told_one_at_a_time_and_the_last_one_in_the_end()
    {
        nameKnown();
        for (int span = 1; span < 10; ++span) {
            m_card->SetSpan(1, span);
        }
        QTRY_COMPARE(cardSide::requests(*m_pty), Requests{"0190CNFT110000"});
        testClock::expire(bus());
        QTRY_COMPARE(cardSide::requests(*m_pty), Requests({"0190CNFT110000", "0190CNFT190000"}));
        testClock::expire(bus());
        QVERIFY(testClock::timers(bus()).isEmpty());
        // and the next choice goes out at once
        m_card->SetSpan(1, 0);
        QTRY_COMPARE(cardSide::requests(*m_pty).value(2), QByteArray("0190CNFT100000"));
        QTest::qWait(20);
        QCOMPARE(cardSide::requests(*m_pty).size(), 3);
    }

    void a_choice_that_waited_is_told_on_a_port_that_is_not_there_too()
    {
        SpectralCard card(nullptr, 0, "absent");
        auto* bus = card.findChild<Rs422Bus*>();
        QVERIFY(!bus->isOpen());
        card.SetSpan(0, 1);
        card.SetSpan(0, 2);
        QCOMPARE(bus->lastRequest(), QString("0190CNFT010000"));
        testClock::expire(bus);
        QCOMPARE(bus->lastRequest(), QString("0190CNFT020000"));
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
        SpectralCard card(nullptr, 0, port);
        if (k7150) {
            card.setK7150(port, "none", "nowhere");
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        card.UpdateCmds();
        const Rs422Bus* queue = nullptr;
        for (const Rs422Bus* one : card.findChildren<Rs422Bus*>()) {
            queue = one->portName() == port ? one : queue;
        }
        for (int i = 0; i < 10000; ++i) {
            card.SetSpan(i % 3, i % 10);
        }
        // of each channel, the request and the marker behind it, and one poll
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
        nameKnown();
        QSignalSpy spectra(m_card, &SpectralCard::specUpdate);
        m_card->UpdateCmds(); // keeps the bus busy, so that the real marker waits
        m_card->SetSpan(0, 9);
        m_card->queFlag(flag);
        m_card->CommSpectral_Command(cardSide::message("old"));
        QCOMPARE(spectra.count(), 0);
        m_card->queFlag("ClrAvg0");
        m_card->CommSpectral_Command(cardSide::message("new"));
        QCOMPARE(spectra.count(), 1);
    }

    void a_spectrum_measured_with_the_span_before_is_not_shown()
    {
        nameKnown();
        QSignalSpy spectra(m_card, &SpectralCard::specUpdate);
        m_card->UpdateCmds();
        QTRY_COMPARE(cardSide::requests(*m_pty), Requests{"0190RFFT000000"});
        m_card->SetSpan(0, 9);
        m_card->UpdateCmds(); // of the next channel, whose span is as it was
        m_pty->write(cardSide::spectrum("old"));
        QTRY_COMPARE(cardSide::requests(*m_pty), Requests({"0190RFFT000000", "0190CNFT090000"}));
        QCOMPARE(spectra.count(), 0);
        QCOMPARE(m_card->chart(0)->trace().size(), 0);
        testClock::expire(bus());
        QTRY_COMPARE(cardSide::requests(*m_pty).value(2), QByteArray("0190RFFT100000"));
        m_pty->write(cardSide::spectrum("other"));
        QTRY_COMPARE(spectra.count(), 1);
        QCOMPARE(spectra.at(0).at(1).toInt(), 1);
    }

    // The second of two choices waits for the first one's marker, and a poll is queued between
    // them: it is measured with the first span, and the chart has the second one by then.
    void a_spectrum_between_two_choices_is_not_shown()
    {
        nameKnown();
        m_card->setOverRideVisCheck(true);
        timer("pollTimer")->stop();
        QSignalSpy spectra(m_card, &SpectralCard::specUpdate);
        m_card->SetSpan(0, 1);
        m_card->SetSpan(0, 2);
        m_card->timerTimeOut();
        QTRY_COMPARE(cardSide::requests(*m_pty), Requests{"0190CNFT010000"});
        testClock::expire(bus());
        QTRY_COMPARE(cardSide::requests(*m_pty), Requests({"0190CNFT010000", "0190RFFT000000"}));
        m_pty->write(cardSide::spectrum("of span 1"));
        QTRY_COMPARE(cardSide::requests(*m_pty).value(2), QByteArray("0190CNFT020000"));
        QCOMPARE(spectra.count(), 0);
        QCOMPARE(m_card->chart(0)->trace().size(), 0);
        testClock::expire(bus());
        m_card->SetChartAreaVisible(1, false);
        m_card->SetChartAreaVisible(2, false);
        m_card->timerTimeOut();
        QTRY_COMPARE(cardSide::requests(*m_pty).value(3), QByteArray("0190RFFT010000"));
        m_pty->write(cardSide::spectrum("of span 2"));
        QTRY_COMPARE(spectra.count(), 1);
        QCOMPARE(m_card->chart(0)->trace().size(), 9);
    }

    void a_spectrum_measured_at_the_frequency_before_is_not_shown()
    {
        nameKnown();
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

    // the look

    void rf_markers_and_colours_reach_their_chart()
    {
        m_card->setRf(2250.5, 1);
        QCOMPARE(m_card->centre(1), 2250.5);
        QCOMPARE(m_card->centre(0), 70.0);
        m_card->setHMarkers(2, {-30.0, -60.0});
        QCOMPARE(m_card->chart(2)->hMarkers(), QList<double>({-30.0, -60.0}));
        m_card->setLineColor(1, 0);
        QCOMPARE(m_card->chart(0)->lineColor(), SpectralCard::lineColor(1));
        m_card->setLineColor(6, -1);
        for (int channel = 0; channel < 3; ++channel) {
            QCOMPARE(m_card->chart(channel)->lineColor(), QColor(Qt::white));
        }
        m_card->setLineColor(8, 0);
        m_card->setLineColor(-1, 0);
        QCOMPARE(m_card->chart(0)->lineColor(), QColor(Qt::white));
    }

    void every_colour_can_be_told_from_black_data()
    {
        QTest::addColumn<QColor>("pure");
        QTest::newRow("0") << QColor(Qt::red);
        QTest::newRow("1") << QColor(Qt::green);
        QTest::newRow("2") << QColor(Qt::blue);
        QTest::newRow("3") << QColor(Qt::cyan);
        QTest::newRow("4") << QColor(Qt::magenta);
        QTest::newRow("5") << QColor(Qt::yellow);
        QTest::newRow("6") << QColor(Qt::white);
        QTest::newRow("7") << QColor(Qt::gray);
    }

    void every_colour_can_be_told_from_black()
    {
        QFETCH(QColor, pure);
        const QColor color = SpectralCard::lineColor(QString(QTest::currentDataTag()).toInt());
        const auto linear = [](double part) {
            return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        };
        const double luminance = 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
            0.0722 * linear(color.blueF());
        QVERIFY((luminance + 0.05) / 0.05 > 4.5);
        if (pure.saturation() > 0) {
            QVERIFY(std::abs(color.hue() - pure.hue()) < 30);
        }
    }

    // areas

    void a_hidden_area_gives_its_room_to_the_others()
    {
        m_window->show();
        const int third = m_card->chart(0)->height();
        m_card->SetChartAreaVisible(1, false);
        QVERIFY(!m_card->chartAreaVisible(1));
        QTRY_VERIFY(m_card->chart(0)->height() > third);
        m_card->SetChartAreaVisible(1, true);
        QTRY_COMPARE(m_card->chart(0)->height(), third);
    }

    void everything_lies_inside_the_page()
    {
        m_window->show();
        const auto widgets = m_card->findChildren<QWidget*>();
        QVERIFY(widgets.size() > 12);
        for (const QWidget* widget : widgets) {
            if (widget->isVisible() && widget->window() == m_window.get()) {
                const QRect at(widget->mapTo(m_card, QPoint(0, 0)), widget->size());
                QVERIFY2(m_card->rect().contains(at), qPrintable(widget->objectName()));
            }
        }
        for (const char* name : {"averageButton1", "maxHoldButton2", "cboSpan3"}) {
            const auto* control = m_card->findChild<QWidget*>(name);
            QVERIFY(control != nullptr);
            QVERIFY2(control->height() >= 47 && control->width() >= 47, name);
        }
    }

    void the_open_span_list_lies_inside_the_screen_data()
    {
        QTest::addColumn<int>("channel");
        QTest::newRow("top") << 0;
        QTest::newRow("middle") << 1;
        QTest::newRow("bottom") << 2;
    }

    void the_open_span_list_lies_inside_the_screen()
    {
        QFETCH(int, channel);
        m_window->move(0, 0);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        auto* box = spanBox(channel);
        clickOn(box);
        QTRY_VERIFY(box->view()->isVisible());
        const QWidget* list = box->view()->window();
        QVERIFY(list != m_window.get());
        const QRect screen(0, 0, 800, 480);
        QVERIFY2(screen.contains(list->geometry()),
            qPrintable(QString("%1 to %2").arg(list->y()).arg(list->geometry().bottom())));
        const QModelIndex last = box->model()->index(9, 0);
        for (const QModelIndex& row : {box->model()->index(0, 0), last}) {
            const QRect at = box->view()->visualRect(row);
            QVERIFY(at.top() >= 0 && at.bottom() < box->view()->viewport()->height());
            QVERIFY2(at.height() >= 45, qPrintable(QString::number(at.height())));
        }
        // and a touch on the last one chooses it
        const QPoint at(20, box->view()->visualRect(last).center().y());
        QTest::qWait(QApplication::doubleClickInterval() + 50); // not the click that opened it
        QTest::mouseClick(list->windowHandle(), Qt::LeftButton, Qt::NoModifier,
            box->view()->viewport()->mapTo(list, at));
        QTRY_COMPARE(m_card->getSpan(channel), 9);
        QTRY_VERIFY(!box->view()->isVisible());
    }

    void the_switches_average_and_hold()
    {
        m_window->show();
        clickOn(m_card->findChild<QWidget*>("averageButton2"));
        QCOMPARE(m_card->chart(1)->trace().averaging(), 16);
        clickOn(m_card->findChild<QWidget*>("maxHoldButton3"));
        QVERIFY(m_card->chart(2)->trace().maxHold());
        clickOn(m_card->findChild<QWidget*>("averageButton2"));
        QCOMPARE(m_card->chart(1)->trace().averaging(), 1);
    }

    void a_chart_is_lent_to_another_page_and_comes_back()
    {
        m_window->show();
        QWidget other;
        auto* grid = new QGridLayout(&other);
        SpectrumChart* chart = m_card->chart(0);
        grid->addWidget(chart, 0, 0);
        other.resize(330, 200);
        other.show();
        QCOMPARE(chart->window(), &other);
        m_card->UpdateCmds();
        m_card->CommSpectral_Command(cardSide::message(cardSide::carrier(512, 9, -10)));
        QCOMPARE(chart->peak().level, -10.0);
        m_card->returnChartToVbox(0);
        QCOMPARE(chart->window(), m_window.get());
        QVERIFY(chart->isVisible());
        QCOMPARE(m_card->chart(0), chart);
    }

    void a_lent_chart_goes_down_with_its_card()
    {
        QWidget other;
        auto* grid = new QGridLayout(&other);
        const QPointer<SpectrumChart> chart(m_card->chart(0));
        grid->addWidget(chart, 0, 0);
        m_window.reset();
        QVERIFY(chart.isNull());
    }

    void a_chart_that_went_down_with_another_page_is_made_anew()
    {
        m_window->show();
        m_card->SetSpan(0, 7);
        m_card->setRf(2250.5, 0);
        m_card->setLineColor(4, 0);
        m_card->setHMarkers(0, {-30.0, -60.0});
        clickOn(m_card->findChild<QWidget*>("averageButton1"));
        clickOn(m_card->findChild<QWidget*>("maxHoldButton1"));
        {
            QWidget other;
            auto* grid = new QGridLayout(&other);
            grid->addWidget(m_card->chart(0), 0, 0);
        }
        QVERIFY(m_card->chart(0) != nullptr);
        QCOMPARE(m_card->chart(0)->title(), QString("SpectralCard CH.1/CH.2/CMB.1 (CH.1)"));
        QCOMPARE(m_card->chart(0)->spanMHz(), SpectralCard::m_spanTable.at(7).spanMHz);
        QCOMPARE(m_card->centre(0), 2250.5);
        QCOMPARE(m_card->chart(0)->lineColor(), SpectralCard::lineColor(4));
        QCOMPARE(m_card->chart(0)->hMarkers(), QList<double>({-30.0, -60.0}));
        QCOMPARE(m_card->chart(0)->trace().averaging(), 16);
        QVERIFY(m_card->chart(0)->trace().maxHold());
        m_card->returnChartToVbox(0);
    }

private:
    QComboBox* spanBox(int channel) const
    {
        return m_card->findChild<QComboBox*>(QString("cboSpan%1").arg(channel + 1));
    }
};

QN740_TEST_MAIN(tst_SpectralCard)
#include "tst_SpectralCard.moc"
