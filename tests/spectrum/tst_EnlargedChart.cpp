// One chart on the whole page, and what its keys do, as the operator touches them.
#include "spectrum/CardFixture.h"
#include "spectrum/ChartKeys.h"
#include "spectrum/ChartLook.h"
#include "spectrum/MeasurementPanel.h"
#include "spectrum/SpectrumChart.h"
#include "spectrum/Waterfall.h"
#include "support/Screen.h"
#include "support/TestMain.h"

#include <QGridLayout>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

constexpr int Points = 1000;

// A carrier with steep edges between 40 % and 60 % of the span, over even noise.
QByteArray channel(double level = -30.0, double noise = -100.0)
{
    QByteArray points(Points, cardSide::level(noise));
    for (int i = Points * 2 / 5; i < Points * 3 / 5; ++i) {
        points[i] = cardSide::level(level);
    }
    return points;
}

} // namespace

class tst_EnlargedChart : public QObject, private CardFixture
{
    Q_OBJECT

private slots:
    void init()
    {
        start();
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }

    void cleanup() { stop(); }

    // enlarging

    void a_touch_on_a_title_enlarges_the_chart_and_a_second_brings_the_others_back_data()
    {
        QTest::addColumn<int>("channel");
        for (int channel = 0; channel < 3; ++channel) {
            QTest::addRow("channel %d", channel) << channel;
        }
    }

    void a_touch_on_a_title_enlarges_the_chart_and_a_second_brings_the_others_back()
    {
        QFETCH(int, channel);
        const QSize before = m_card->chart(channel)->size();
        touchTitle(channel);
        QCOMPARE(m_card->enlarged(), channel);
        for (int other = 0; other < 3; ++other) {
            QCOMPARE(m_card->chart(other)->isVisible(), other == channel);
        }
        QTRY_VERIFY(m_card->chart(channel)->height() > before.height());
        QVERIFY(waterfall()->isVisible() && keys()->isVisible() && spanBox(channel)->isVisible());
        touchTitle(channel);
        QCOMPARE(m_card->enlarged(), -1);
        QVERIFY(waterfall() == nullptr);
        for (int other = 0; other < 3; ++other) {
            QVERIFY(m_card->chart(other)->isVisible());
        }
        QTRY_COMPARE(m_card->chart(channel)->size(), before);
    }

    void the_key_Tools_enlarges_and_the_key_Close_ends_it()
    {
        clickOn(m_card->findChild<QPushButton*>(u"toolsButton2"_s));
        QCOMPARE(m_card->enlarged(), 1);
        touchKeys({u"Close"_s});
        QCOMPARE(m_card->enlarged(), -1);
    }

    void everything_lies_inside_the_page_data()
    {
        QTest::addColumn<QStringList>("pressed");
        QTest::newRow("first page") << QStringList{};
        QTest::newRow("trace") << QStringList{u"Trace"_s};
        QTest::newRow("scale") << QStringList{u"Scale"_s};
        QTest::newRow("markers") << QStringList{u"Markers"_s};
        QTest::newRow("measure") << QStringList{u"Measure"_s, u"C/N"_s};
    }

    void everything_lies_inside_the_page()
    {
        QFETCH(QStringList, pressed);
        enlarge(0);
        touchKeys(pressed);
        QTest::qWait(1);
        QCOMPARE(m_window->size(), QSize(800, 430));
        for (const QWidget* widget : m_card->findChildren<QWidget*>()) {
            if (widget->isVisible() && widget->window() == m_window.get()) {
                const QRect at(widget->mapTo(m_card, QPoint(0, 0)), widget->size());
                QVERIFY2(m_card->rect().contains(at), qPrintable(widget->objectName()));
            }
        }
        for (const QPushButton* key : keys()->findChildren<QPushButton*>()) {
            QVERIFY2(!key->isVisible() || key->height() >= 47, qPrintable(key->text()));
        }
    }

    // what the main unit says meanwhile

    void a_hidden_channel_stays_hidden_when_the_others_come_back()
    {
        m_card->SetChartAreaVisible(1, false);
        enlarge(0);
        touchTitle(0);
        QVERIFY(m_card->chart(0)->isVisible() && m_card->chart(2)->isVisible());
        QVERIFY(!m_card->chart(1)->isVisible());
    }

    void what_is_shown_while_another_is_enlarged_waits()
    {
        m_card->SetChartAreaVisible(1, false);
        enlarge(0);
        m_card->SetChartAreaVisible(1, true);
        QCOMPARE(m_card->enlarged(), 0);
        QVERIFY(!m_card->chart(1)->isVisible() && m_card->chartAreaVisible(1));
        touchTitle(0);
        QVERIFY(m_card->chart(1)->isVisible());
    }

    void hiding_the_enlarged_chart_gives_the_page_to_the_others()
    {
        enlarge(2);
        m_card->SetChartAreaVisible(2, false);
        QCOMPARE(m_card->enlarged(), -1);
        QVERIFY(m_card->chart(0)->isVisible() && m_card->chart(1)->isVisible());
        QVERIFY(!m_card->chart(2)->isVisible());
        m_card->SetChartAreaVisible(2, true);
        QCOMPARE(m_card->enlarged(), -1);
        QVERIFY(m_card->chart(2)->isVisible());
    }

    void a_channel_that_is_hidden_or_does_not_exist_is_not_enlarged()
    {
        m_card->SetChartAreaVisible(1, false);
        for (const int channel : {1, -1, 3, 1000}) {
            m_card->setEnlarged(channel);
            QCOMPARE(m_card->enlarged(), -1);
        }
    }

    void the_others_are_polled_while_one_is_enlarged()
    {
        stop();
        start();
        endNameRequest(); // before the page is shown, which begins to poll at once
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        enlarge(1);
        const int painted = m_card->chart(0)->paintCount();
        int answered = 0;
        QTRY_VERIFY((
            cardSide::answerPolls(*m_pty, answered, cardSide::spectrum(channel())), answered >= 3));
        for (int channel = 0; channel < 3; ++channel) {
            QTRY_VERIFY(m_card->chart(channel)->peak().valid);
        }
        QCOMPARE(m_card->chart(0)->paintCount(), painted);
    }

    void frequency_span_markers_and_colour_reach_the_enlarged_chart()
    {
        enlarge(0);
        m_card->setRf(2250.5, 0);
        m_card->SetSpan(0, 6);
        m_card->setHMarkers(0, {-30.0});
        m_card->setLineColor(1, 0);
        QCOMPARE(m_card->chart(0)->centre(), 2250.5);
        QCOMPARE(m_card->chart(0)->spanMHz(), SpectralCard::m_spanTable.at(6).spanMHz);
        QCOMPARE(m_card->chart(0)->hMarkers(), QList<double>{-30.0});
        QCOMPARE(m_card->chart(0)->lineColor(), SpectralCard::lineColor(1));
    }

    // waterfall

    void each_spectrum_becomes_a_line_under_its_frequencies()
    {
        enlarge(0);
        m_card->chart(0)->addSpectrum(channel());
        m_card->chart(0)->addSpectrum(channel());
        QCOMPARE(waterfall()->picture().lines(), 2);
        QTest::qWait(1);
        const QRect plot = m_card->chart(0)->axisRect()->rect();
        const QImage image = waterfall()->grab().toImage();
        QVERIFY(image.pixel(plot.center().x(), 0) != image.pixel(plot.left() + 10, 0));
        QCOMPARE(image.pixel(plot.left() - 1, 20), chartLook::Background.rgb());
        QVERIFY(image.pixel(plot.left(), 0) != chartLook::Background.rgb());
        QVERIFY(image.pixel(plot.right(), 0) != chartLook::Background.rgb());
    }

    void another_span_or_centre_begins_anew_data()
    {
        QTest::addColumn<int>("span");
        QTest::addColumn<double>("centre");
        QTest::addColumn<int>("lines");
        QTest::newRow("span") << 4 << 70.0 << 0;
        QTest::newRow("centre") << 0 << 71.0 << 0;
        QTest::newRow("centre as it was") << 0 << 70.0 << 1;
    }

    void another_span_or_centre_begins_anew()
    {
        QFETCH(int, span);
        QFETCH(double, centre);
        QFETCH(int, lines);
        enlarge(0);
        m_card->chart(0)->addSpectrum(channel());
        if (span != 0) {
            m_card->SetSpan(0, span);
        }
        m_card->setRf(centre, 0);
        QCOMPARE(waterfall()->picture().lines(), lines);
    }

    void the_colours_follow_the_scale_of_the_chart()
    {
        enlarge(0);
        m_card->chart(0)->addSpectrum(channel());
        const int column = m_card->chart(0)->axisRect()->left() + 5;
        const QRgb before = waterfall()->grab().toImage().pixel(column, 0);
        m_card->chart(0)->setScale(-40.0, 5);
        QVERIFY(waterfall()->grab().toImage().pixel(column, 0) != before);
    }

    void a_page_that_is_hidden_adds_no_lines()
    {
        enlarge(0);
        m_window->hide();
        m_card->chart(0)->addSpectrum(channel());
        QCOMPARE(waterfall()->picture().lines(), 0);
    }

    // keys

    void a_key_does_what_it_says_data()
    {
        QTest::addColumn<QStringList>("pressed");
        QTest::addColumn<QString>("readout"); // a part of it
        QTest::addColumn<QStringList>("lit"); // on the page that is open then
        const auto row = [](const QStringList& pressed, const QString& readout,
                             const QStringList& lit) {
            QTest::newRow(qPrintable(pressed.join(u", "_s))) << pressed << readout << lit;
        };
        row({u"Average"_s}, u"Avg 16"_s, {u"Average"_s});
        row({u"Average"_s, u"Average"_s}, u"Peak"_s, {});
        row({u"Max Hold"_s}, u"Max Hold"_s, {u"Max Hold"_s});
        row({u"Trace"_s, u"Power 4"_s}, u"Avg 4"_s, {u"Power 4"_s});
        row({u"Trace"_s, u"Power 16"_s}, u"Avg 16"_s, {u"Power 16"_s});
        row({u"Trace"_s, u"Power 64"_s}, u"Avg 64"_s, {u"Power 64"_s});
        row({u"Trace"_s, u"Log 4"_s}, u"Log Avg 4"_s, {u"Log 4"_s});
        row({u"Trace"_s, u"Log 16"_s}, u"Log Avg 16"_s, {u"Log 16"_s});
        row({u"Trace"_s, u"Log 64"_s}, u"Log Avg 64"_s, {u"Log 64"_s});
        row({u"Trace"_s, u"Log 64"_s, u"No Avg"_s}, u"Peak"_s, {u"No Avg"_s});
        row({u"Trace"_s, u"Log 64"_s, u"Back"_s, u"Average"_s, u"Average"_s}, u"Avg 16"_s,
            {u"Average"_s});
        row({u"Trace"_s, u"Min Hold"_s}, u"Min Hold"_s, {u"No Avg"_s, u"Min Hold"_s});
        row({u"Scale"_s, u"5 dB"_s}, u"5 dB/div"_s, {u"5 dB"_s});
        row({u"Scale"_s, u"2 dB"_s}, u"2 dB/div"_s, {u"2 dB"_s});
        row({u"Scale"_s, u"1 dB"_s}, u"1 dB/div"_s, {u"1 dB"_s});
        row({u"Scale"_s, u"1 dB"_s, u"10 dB"_s}, u"Peak"_s, {u"10 dB"_s});
        row({u"Scale"_s, u"Ref ▼"_s, u"Ref ▼"_s}, u"Ref -10 dB"_s, {u"10 dB"_s});
        row({u"Scale"_s, u"5 dB"_s, u"Ref ▲"_s}, u"Ref 15 dB"_s, {u"5 dB"_s});
        row({u"Scale"_s, u"Auto"_s, u"Full"_s}, u"Peak"_s, {u"10 dB"_s});
    }

    void a_key_does_what_it_says()
    {
        QFETCH(QStringList, pressed);
        QFETCH(QString, readout);
        QFETCH(QStringList, lit);
        enlarge(0);
        m_card->chart(0)->addSpectrum(channel());
        touchKeys(pressed);
        QVERIFY2(
            m_card->chart(0)->readout().contains(readout), qPrintable(m_card->chart(0)->readout()));
        QCOMPARE(litKeys(), lit);
    }

    void Auto_fits_the_scale_to_noise_and_peak()
    {
        enlarge(0);
        m_card->chart(0)->addSpectrum(channel(-30.0, -60.0));
        touchKeys({u"Scale"_s, u"Auto"_s});
        const ChartScale scale = m_card->chart(0)->scale();
        QVERIFY(scale.perDivision() < 10);
        QVERIFY(scale.reference() > -30 && scale.lowest() < -60);
    }

    void Clear_starts_average_and_holds_anew()
    {
        enlarge(0);
        touchKeys({u"Max Hold"_s, u"Trace"_s, u"Power 64"_s});
        m_card->chart(0)->addSpectrum(QByteArray(8, cardSide::level(-20)));
        touchKeys({u"Clear"_s});
        m_card->chart(0)->addSpectrum(QByteArray(8, cardSide::level(-60)));
        QCOMPARE(m_card->chart(0)->trace().levels().first(), -60.0F);
        QCOMPARE(m_card->chart(0)->trace().held().first(), -60.0F);
    }

    void the_marker_keys_set_move_compare_and_remove_markers()
    {
        enlarge(0);
        SpectrumChart* chart = m_card->chart(0);
        QByteArray points = cardSide::carrier(Points, 400, -20);
        points[600] = cardSide::level(-40);
        chart->addSpectrum(points);
        touchKeys({u"Markers"_s, u"Peak"_s});
        QCOMPARE(chart->markers().count(), 1);
        QCOMPARE(chart->marker().level, -20.0);
        const double peak = chart->marker().frequency;
        touchKeys({u"▶"_s});
        QVERIFY(std::abs(chart->marker().frequency - peak - chart->spanMHz() / Points) < 1e-9);
        touchKeys({u"◀"_s, u"Delta"_s, u"Next peak"_s});
        QCOMPARE(litKeys(), QStringList{u"Delta"_s});
        QCOMPARE(chart->markers().count(), 2);
        QCOMPARE(chart->marker().level, -40.0);
        QVERIFY2(chart->readout().contains(u"-20.0 dB"_s), qPrintable(chart->readout()));
        touchKeys({u"Off"_s, u"Off"_s});
        QCOMPARE(chart->markers().count(), 0);
    }

    // measurements

    void a_measurement_is_shown_with_its_unit_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("unit");
        QTest::addColumn<double>("value");
        QTest::addColumn<double>("error");
        const double width = SpectralCard::m_spanTable.at(6).spanMHz;
        // 200 bins of -30 dB: 23.0 dB more together
        QTest::newRow("channel power")
            << u"Channel power"_s << u"Channel power"_s << u"dB"_s << -6.99 << 0.3;
        QTest::newRow("occupied") << u"Occupied BW"_s << u"Occupied BW (99 %)"_s << u"MHz"_s
                                  << 0.2 * width << 0.02 * width;
        QTest::newRow("half power")
            << u"-3 dB BW"_s << u"-3 dB BW"_s << u"MHz"_s << 0.2 * width << 0.005 * width;
        QTest::newRow("carrier to noise") << u"C/N"_s << u"C/N"_s << u"dB"_s << 70.0 << 0.5;
        QTest::newRow("frequency error") << u"Frequency error"_s << u"Frequency error"_s << u"kHz"_s
                                         << -0.5 * width * 1000 / Points << 1.0;
    }

    void a_measurement_is_shown_with_its_unit()
    {
        QFETCH(QString, key);
        QFETCH(QString, name);
        QFETCH(QString, unit);
        QFETCH(double, value);
        QFETCH(double, error);
        enlarge(0);
        m_card->SetSpan(0, 6);
        m_card->queFlag(u"ClrAvg0"_s);
        m_card->chart(0)->addSpectrum(channel());
        QVERIFY(!panel()->isVisible());
        touchKeys({u"Measure"_s, key});
        QVERIFY(panel()->isVisible());
        QVERIFY(litKeys().contains(key));
        const QStringList lines = panel()->text().split(u'\n');
        QCOMPARE(lines.at(0), name);
        QVERIFY2(lines.at(1).endsWith(u' ' + unit), qPrintable(lines.at(1)));
        const double shown = lines.at(1).section(u' ', 0, 0).toDouble();
        QVERIFY2(std::abs(shown - value) <= error, qPrintable(lines.at(1)));
        QVERIFY(!lines.at(2).isEmpty());
        touchKeys({u"Off"_s});
        QVERIFY(!panel()->isVisible());
    }

    void without_a_carrier_there_is_no_number()
    {
        enlarge(0);
        touchKeys({u"Measure"_s, u"Occupied BW"_s});
        QVERIFY2(panel()->text().contains(u"---"_s), qPrintable(panel()->text()));
        m_card->chart(0)->addSpectrum(QByteArray(Points, cardSide::level(-100)));
        QTRY_VERIFY2(panel()->text().contains(u"No carrier"_s), qPrintable(panel()->text()));
        QVERIFY(panel()->text().contains(u"---"_s));
    }

    void the_channel_is_as_wide_as_the_operator_chooses()
    {
        enlarge(0);
        m_card->SetSpan(0, 6);
        m_card->queFlag(u"ClrAvg0"_s);
        m_card->chart(0)->addSpectrum(channel());
        touchKeys({u"Measure"_s, u"Channel power"_s});
        QVERIFY2(panel()->text().contains(u"(auto)"_s), qPrintable(panel()->text()));
        QVERIFY(litKeys().contains(u"BW auto"_s));
        touchKeys({u"BW −"_s}); // from the span's nominal 20 MHz
        QVERIFY2(
            panel()->text().contains(u"in 15.000 MHz at 70.000"_s), qPrintable(panel()->text()));
        QVERIFY(!litKeys().contains(u"BW auto"_s));
        touchKeys({u"BW −"_s, u"BW −"_s, u"BW −"_s, u"BW −"_s, u"BW −"_s});
        QVERIFY2(panel()->text().contains(u"in 2.000 MHz"_s), qPrintable(panel()->text()));
        const double per = SpectralCard::m_spanTable.at(6).spanMHz / Points;
        const double power = -30.0 + 10.0 * std::log10(2.0 / per);
        const double shown = panel()->text().split(u'\n').at(1).section(u' ', 0, 0).toDouble();
        QVERIFY2(std::abs(shown - power) < 0.1, qPrintable(panel()->text()));
        touchKeys({u"BW +"_s, u"BW auto"_s});
        QVERIFY(panel()->text().contains(u"(auto)"_s));
    }

    void numbers_follow_at_a_pace_at_which_they_can_be_read()
    {
        enlarge(0);
        touchKeys({u"Measure"_s, u"Channel power"_s});
        m_card->chart(0)->addSpectrum(channel(-30.0));
        const QString first = panel()->text();
        m_card->chart(0)->addSpectrum(channel(-50.0));
        QCOMPARE(panel()->text(), first);
        QTRY_VERIFY(panel()->text() != first);
    }

    // what is kept

    void what_was_chosen_stays_when_the_chart_is_enlarged_again()
    {
        choose();
        touchTitle(0);
        QVERIFY(m_card->findChild<QPushButton*>(u"averageButton1"_s)->isChecked());
        touchTitle(0);
        checkChosen();
    }

    void what_was_chosen_stays_when_the_chart_was_lent()
    {
        choose();
        QWidget other;
        auto* grid = new QGridLayout(&other);
        grid->addWidget(m_card->chart(0), 0, 0);
        m_card->returnChartToVbox(0);
        checkChosen();
    }

    void what_was_chosen_stays_when_the_chart_was_deleted_with_another_page()
    {
        choose();
        auto other = std::make_unique<QWidget>();
        auto* grid = new QGridLayout(other.get());
        grid->addWidget(m_card->chart(0), 0, 0);
        other.reset();
        m_card->returnChartToVbox(0);
        QVERIFY(m_card->isAncestorOf(m_card->chart(0)));
        m_card->chart(0)->addSpectrum(channel());
        checkChosen();
        QVERIFY(waterfall()->picture().lines() > 0);
    }

private:
    void touchTitle(int channel)
    {
        const QPoint title(60, 8);
        QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, Qt::NoModifier,
            m_card->chart(channel)->mapTo(m_window.get(), title));
    }

    void enlarge(int channel)
    {
        touchTitle(channel);
        QCOMPARE(m_card->enlarged(), channel);
        QTRY_VERIFY(m_card->chart(channel)->paintCount() > 0);
    }

    void touchKeys(const QStringList& texts)
    {
        for (const QString& text : texts) {
            QPushButton* key = buttonWithText(keys(), text);
            QVERIFY2(key != nullptr, qPrintable(text));
            clickOn(key);
        }
    }

    void choose()
    {
        enlarge(0);
        m_card->chart(0)->addSpectrum(channel());
        touchKeys({u"Trace"_s, u"Log 4"_s, u"Min Hold"_s, u"Back"_s, u"Scale"_s, u"5 dB"_s,
            u"Back"_s, u"Markers"_s, u"Peak"_s, u"Back"_s, u"Measure"_s, u"C/N"_s});
    }

    void checkChosen()
    {
        const ChartSettings& settings = m_card->chart(0)->settings();
        QCOMPARE(settings.averageKind, SpectrumTrace::Average::Log);
        QCOMPARE(settings.depth, 4);
        QVERIFY(settings.minHold && !settings.maxHold);
        QCOMPARE(settings.scale.perDivision(), 5);
        QCOMPARE(settings.markers.count(), 1);
        QCOMPARE(panel()->text().section(u'\n', 0, 0), u"C/N"_s);
        QVERIFY(panel()->isVisible());
    }

    QStringList litKeys() const
    {
        QStringList texts;
        for (const QPushButton* button : keys()->findChildren<QPushButton*>()) {
            if (button->isVisible() && button->isChecked()) {
                texts += button->text();
            }
        }
        return texts;
    }

    ChartKeys* keys() const { return m_card->findChild<ChartKeys*>(); }
    Waterfall* waterfall() const { return m_card->findChild<Waterfall*>(); }
    MeasurementPanel* panel() const { return m_card->findChild<MeasurementPanel*>(); }
};

QN740_TEST_MAIN(tst_EnlargedChart)
#include "tst_EnlargedChart.moc"
