#include "spectrum/CardSide.h"
#include "spectrum/ChartLook.h"
#include "spectrum/SpectrumChart.h"
#include "support/Contrast.h"
#include "support/TestMain.h"
#include "touch/LineColors.h"

#include <QElapsedTimer>
#include <QScreen>
#include <QSignalSpy>

#include <array>
#include <functional>
#include <random>

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(std::function<void(SpectrumChart&)>)

namespace {

// Counts the pixels of about this colour.
int pixels(const QImage& picture, const QColor& color)
{
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QColor pixel = picture.pixelColor(x, y);
            count += std::abs(pixel.red() - color.red()) < 24 &&
                    std::abs(pixel.green() - color.green()) < 24 &&
                    std::abs(pixel.blue() - color.blue()) < 24
                ? 1
                : 0;
        }
    }
    return count;
}

class CountingChart : public SpectrumChart
{
public:
    int paints = 0;
    qint64 tookMs = 0;      // the last paint
    int workMs = 0;         // by which each paint takes longer
    QVector<QRect> painted; // what each paint covered

protected:
    void paintEvent(QPaintEvent* event) override
    {
        QElapsedTimer elapsed;
        elapsed.start();
        ++paints;
        painted += event->rect();
        SpectrumChart::paintEvent(event);
        tookMs = elapsed.elapsed();
    }

    void paintData(QPainter& painter, const QRect& dirty) override
    {
        SpectrumChart::paintData(painter, dirty);
        QTest::qSleep(workMs);
    }
};

// A trace that fills the rows between two levels.
QByteArray band(double low, double high)
{
    QByteArray points(1024, cardSide::level(low));
    for (qsizetype k = 0; k < points.size(); k += 2) {
        points[k] = cardSide::level(high);
    }
    return points;
}

} // namespace

class tst_SpectrumChart : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_chart = std::make_unique<CountingChart>();
        m_chart->resize(620, 200);
        m_chart->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_chart.get()));
    }

    void the_five_ticks_of_every_span_are_shown_data()
    {
        QTest::addColumn<int>("span");
        QTest::addColumn<QStringList>("labels");
        QTest::newRow("0") << 0
                           << QStringList{
                                  u"69.50"_s, u"69.75"_s, u"70.00"_s, u"70.25"_s, u"70.50"_s};
        QTest::newRow("1") << 1
                           << QStringList{
                                  u"68.50"_s, u"69.25"_s, u"70.00"_s, u"70.75"_s, u"71.50"_s};
        QTest::newRow("2") << 2
                           << QStringList{
                                  u"67.50"_s, u"68.75"_s, u"70.00"_s, u"71.25"_s, u"72.50"_s};
        QTest::newRow("3") << 3
                           << QStringList{
                                  u"66.250"_s, u"68.125"_s, u"70.000"_s, u"71.875"_s, u"73.750"_s};
        QTest::newRow("4") << 4
                           << QStringList{u"65.0"_s, u"67.5"_s, u"70.0"_s, u"72.5"_s, u"75.0"_s};
        QTest::newRow("5") << 5
                           << QStringList{
                                  u"62.50"_s, u"66.25"_s, u"70.00"_s, u"73.75"_s, u"77.50"_s};
        QTest::newRow("6") << 6 << QStringList{u"60"_s, u"65"_s, u"70"_s, u"75"_s, u"80"_s};
        QTest::newRow("7") << 7
                           << QStringList{
                                  u"57.50"_s, u"63.75"_s, u"70.00"_s, u"76.25"_s, u"82.50"_s};
        QTest::newRow("8") << 8
                           << QStringList{u"55.0"_s, u"62.5"_s, u"70.0"_s, u"77.5"_s, u"85.0"_s};
        QTest::newRow("9") << 9 << QStringList{u"50"_s, u"60"_s, u"70"_s, u"80"_s, u"90"_s};
    }

    void the_five_ticks_of_every_span_are_shown()
    {
        QFETCH(int, span);
        QFETCH(QStringList, labels);
        m_chart->setSpan(spanTable().at(span));
        QCOMPARE(m_chart->tickPositions(), spanTable().at(span).ticks);
        QCOMPARE(m_chart->tickLabels(), labels);
        m_chart->replot(QCustomPlot::rpImmediateRefresh);
        QCOMPARE(m_chart->xAxis->tickVector(), spanTable().at(span).ticks);
        labels[2] += u" MHz"_s;
        QCOMPARE(QStringList(m_chart->xAxis->tickVectorLabels()), labels);
        QCOMPARE(m_chart->xAxis->range().size(), spanTable().at(span).spanMHz);
        QCOMPARE(m_chart->xAxis->range().center(), 70.0);
    }

    void the_rf_frequency_moves_axis_and_ticks()
    {
        m_chart->setSpan(spanTable().at(4));
        m_chart->setCentre(2250.5);
        QCOMPARE(m_chart->tickLabels(),
            QStringList({u"2245.5"_s, u"2248.0"_s, u"2250.5"_s, u"2253.0"_s, u"2255.5"_s}));
        QCOMPARE(m_chart->xAxis->range().center(), 2250.5);
        m_chart->addSpectrum(cardSide::carrier(100, 50, -20));
        QCOMPARE(m_chart->peak().frequency, 2250.5);
    }

    void an_invalid_rf_frequency_is_ignored_data()
    {
        QTest::addColumn<double>("rf");
        QTest::newRow("zero") << 0.0;
        QTest::newRow("negative") << -70.0;
        QTest::newRow("not a number") << qQNaN();
        QTest::newRow("infinite") << qInf();
        QTest::newRow("enormous") << 1e30;
    }

    void an_invalid_rf_frequency_is_ignored()
    {
        QFETCH(double, rf);
        m_chart->setCentre(rf);
        QCOMPARE(m_chart->centre(), 70.0);
    }

    void a_narrow_chart_labels_three_of_its_ticks()
    {
        m_chart->setSpan(spanTable().at(3));
        m_chart->resize(250, 200);
        m_chart->replot(QCustomPlot::rpImmediateRefresh);
        QCOMPARE(QStringList(m_chart->xAxis->tickVectorLabels()),
            QStringList({u"66.250"_s, u""_s, u"70.000 MHz"_s, u""_s, u"73.750"_s}));
        QCOMPARE(m_chart->xAxis->tickVector().size(), 5);
    }

    // Compares what is on the screen; grab() would paint once more.
    void a_change_is_on_the_screen_without_another_paint_data()
    {
        using Change = std::function<void(SpectrumChart&)>;
        QTest::addColumn<Change>("change");
        QTest::newRow("horizontal marker")
            << Change([](SpectrumChart& chart) { chart.setHMarkers({-30.0}); });
        QTest::newRow("span") << Change(
            [](SpectrumChart& chart) { chart.setSpan(spanTable().at(9)); });
        QTest::newRow("RF frequency")
            << Change([](SpectrumChart& chart) { chart.setCentre(2250.5); });
        QTest::newRow("title") << Change(
            [](SpectrumChart& chart) { chart.setTitle(u"Demod 2"_s); });
    }

    void a_change_is_on_the_screen_without_another_paint()
    {
        QFETCH(std::function<void(SpectrumChart&)>, change);
        m_chart->addSpectrum(QByteArray(512, cardSide::level(-60)));
        QTest::qWait(400); // The read-out is up to date and nothing more is painted.
        const int paints = m_chart->paints;
        change(*m_chart);
        QTRY_VERIFY(m_chart->paints > paints);
        QTest::qWait(100);
        const QImage shown = onTheScreen();
        QCOMPARE(shown.size(), m_chart->size());
        m_chart->replot(QCustomPlot::rpQueuedReplot);
        QTest::qWait(50);
        m_chart->repaint();
        QCOMPARE(shown, onTheScreen());
    }

    void level_ticks_have_fixed_decimals()
    {
        QCOMPARE(m_chart->yAxis->numberFormat(), u"f"_s);
        QCOMPARE(m_chart->yAxis->range().lower, -120.0);
        QVERIFY(m_chart->yAxis->range().upper >= 7.5);
    }

    void the_points_are_bins_that_share_the_analysed_width_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("at");
        QTest::addColumn<double>("part"); // of the width, from the left
        QTest::newRow("first") << 512 << 0 << 0.0;
        QTest::newRow("last") << 512 << 511 << 511.0 / 512.0;
        QTest::newRow("a quarter") << 400 << 100 << 0.25;
        QTest::newRow("middle") << 106 << 53 << 0.5;
        QTest::newRow("one point") << 1 << 0 << 0.0;
    }

    void the_points_are_bins_that_share_the_analysed_width()
    {
        QFETCH(int, size);
        QFETCH(int, at);
        QFETCH(double, part);
        const double width = spanTable().at(9).spanMHz;
        m_chart->setSpan(spanTable().at(9));
        m_chart->addSpectrum(cardSide::carrier(size, at, -30.5));
        QVERIFY(m_chart->peak().valid);
        QCOMPARE(m_chart->peak().frequency, 70.0 - width / 2 + part * width);
        QCOMPARE(m_chart->peak().level, -30.5);
    }

    void the_read_out_shows_the_peak()
    {
        QCOMPARE(m_chart->readout(), QString());
        m_chart->setSpan(spanTable().at(9));
        m_chart->addSpectrum(cardSide::carrier(100, 50, -42.5));
        QCOMPARE(m_chart->readout(), u"Peak 70.00 MHz -42.5 dB"_s);
    }

    void the_read_out_changes_at_a_readable_pace()
    {
        m_chart->addSpectrum(cardSide::carrier(100, 50, -42.5));
        m_chart->addSpectrum(cardSide::carrier(100, 50, -10.0));
        QCOMPARE(m_chart->readout(), u"Peak 70.000 MHz -42.5 dB"_s);
        QTRY_COMPARE(m_chart->readout(), u"Peak 70.000 MHz -10.0 dB"_s);
    }

    void the_peak_s_triangle_waits_for_its_text_and_the_diamond_does_not()
    {
        m_chart->setLineColor(Qt::green);
        m_chart->addSpectrum(cardSide::carrier(100, 20, -42.5));
        m_chart->setMarker(70.0);
        const QString text = m_chart->readout();
        const QImage before = m_chart->grab().toImage();
        m_chart->addSpectrum(cardSide::carrier(100, 80, -12.5, -60.0));
        QCOMPARE(m_chart->readout(), text);
        const QImage after = m_chart->grab().toImage();
        QCOMPARE(m_chart->readout(), text);
        // The triangle's light inside above the highest point, and the right half of the diamond.
        const auto triangle = [this](const QImage& picture, double part, double level) {
            return picture.pixelColor(pixelOf(part, level) - QPoint(0, 8)).blue() > 128;
        };
        const auto diamond = [this](const QImage& picture, double level) {
            const QRect half(pixelOf(0.5, level) + QPoint(2, -6), QSize(5, 13));
            return pixels(picture.copy(half), Qt::white) > 4;
        };
        // Number and triangle are of one reading, also while the text is delayed.
        QVERIFY(triangle(before, 0.2, -42.5) && triangle(after, 0.2, -42.5));
        QVERIFY(!triangle(before, 0.8, -12.5) && !triangle(after, 0.8, -12.5));
        QTRY_VERIFY(m_chart->readout() != text);
        const QImage later = m_chart->grab().toImage();
        QVERIFY(!triangle(later, 0.2, -42.5) && triangle(later, 0.8, -12.5));
        QVERIFY(diamond(before, -100.0) && !diamond(after, -100.0));
        QVERIFY(!diamond(before, -60.0) && diamond(after, -60.0));
    }

    void a_span_change_takes_number_and_triangle_away_together()
    {
        m_chart->addSpectrum(cardSide::carrier(100, 20, -42.5));
        const QImage before = m_chart->grab().toImage();
        m_chart->setSpan(spanTable().at(0));
        QCOMPARE(m_chart->readout(), QString());
        const QImage after = m_chart->grab().toImage();
        const QPoint inside = pixelOf(0.2, -42.5) - QPoint(0, 8);
        QVERIFY(before.pixelColor(inside).blue() > 128 && after.pixelColor(inside).blue() < 128);
    }

    void all_texts_are_at_least_14_pixels_high_and_can_be_read()
    {
        QVERIFY(chartLook::font().pixelSize() >= 14);
        for (const QCPAxis* axis : {m_chart->xAxis, m_chart->yAxis}) {
            QVERIFY(axis->tickLabelFont().pixelSize() >= 14);
            QVERIFY(contrast::ratio(axis->tickLabelColor(), chartLook::Background) >= 4.5);
        }
        for (const QColor& color : {chartLook::Text, chartLook::OldText, chartLook::Level}) {
            QVERIFY(contrast::ratio(color, chartLook::Background) >= contrast::Text);
        }
        for (const QColor& color : {chartLook::Axis, chartLook::Marked}) {
            QVERIFY(contrast::ratio(color, chartLook::Background) >= contrast::Outline);
        }
    }

    void the_trace_is_drawn_where_its_level_is()
    {
        m_chart->setLineColor(Qt::green);
        m_chart->addSpectrum(QByteArray(512, cardSide::level(-60)));
        const QImage picture = m_chart->grab().toImage();
        const QRect plot = m_chart->axisRect()->rect();
        const int y = qRound(m_chart->yAxis->coordToPixel(-60.0));
        int found = 0;
        for (int x = plot.left() + 1; x < plot.right(); ++x) {
            for (int dy = -2; dy <= 2; ++dy) {
                if (picture.pixelColor(x, y + dy) == QColor(Qt::green)) {
                    ++found;
                    break;
                }
            }
        }
        QVERIFY2(found > plot.width() - 20, qPrintable(QString::number(found)));
        QCOMPARE(picture.pixelColor(plot.center().x() + 7, plot.bottom() - 3), QColor(Qt::black));
    }

    void more_points_than_pixels_keep_every_peak()
    {
        m_chart->setLineColor(Qt::green);
        QByteArray points(4096, cardSide::level(-100));
        points[1777] = cardSide::level(-10);
        m_chart->addSpectrum(points);
        const QImage picture = m_chart->grab().toImage();
        const QRect plot = m_chart->axisRect()->rect();
        const int x = plot.left() + 1777 * plot.width() / 4096;
        const int y = qRound(m_chart->yAxis->coordToPixel(-40.0));
        int found = 0;
        for (int dx = -1; dx <= 1; ++dx) {
            found += picture.pixelColor(x + dx, y) == QColor(Qt::green) ? 1 : 0;
        }
        QVERIFY(found > 0);
    }

    void line_and_max_hold_have_their_colours()
    {
        m_chart->setLineColor(QColor(0, 255, 255));
        m_chart->setMaxHold(true);
        m_chart->addSpectrum(QByteArray(512, cardSide::level(-20)));
        m_chart->addSpectrum(QByteArray(512, cardSide::level(-80)));
        const QImage picture = m_chart->grab().toImage();
        QVERIFY(pixels(picture, QColor(0, 255, 255)) > 400);
        QVERIFY(pixels(picture, QColor(0, 255, 255).darker(200)) > 400);
    }

    void max_hold_of_a_red_line_can_be_seen()
    {
        m_chart->setLineColor(Qt::red);
        m_chart->setMaxHold(true);
        m_chart->addSpectrum(QByteArray(512, cardSide::level(-20)));
        m_chart->addSpectrum(QByteArray(512, cardSide::level(-80)));
        const QImage picture = m_chart->grab().toImage();
        QVERIFY(pixels(picture, Qt::red) > 400);
        QVERIFY(pixels(picture, lineColors::darker(Qt::red)) > 400);
        QCOMPARE(pixels(picture, QColor(Qt::red).darker(200)), 0);
    }

    void the_read_out_shows_averaging_and_max_hold()
    {
        m_chart->setAveraging(16);
        m_chart->setMaxHold(true);
        QCOMPARE(m_chart->readout(), u"Avg 16   Max Hold"_s);
        m_chart->setAveraging(1);
        m_chart->setMaxHold(false);
        QCOMPARE(m_chart->readout(), QString());
    }

    void a_span_change_clears_trace_average_and_max_hold()
    {
        m_chart->setAveraging(16);
        m_chart->setMaxHold(true);
        m_chart->addSpectrum(QByteArray(64, cardSide::level(-20)));
        m_chart->setSpan(spanTable().at(5));
        QCOMPARE(m_chart->trace().size(), 0);
        m_chart->addSpectrum(QByteArray(64, cardSide::level(-80)));
        QCOMPARE(m_chart->trace().levels().first(), -80.0F);
        QCOMPARE(m_chart->trace().held().first(), -80.0F);
        QCOMPARE(m_chart->trace().averaging(), 16);
    }

    void horizontal_markers_are_drawn()
    {
        m_chart->setHMarkers({-30.0, -90.5});
        QCOMPARE(m_chart->hMarkers(), QList<double>({-30.0, -90.5}));
        QCOMPARE(m_chart->itemCount(), 2);
        m_chart->replot(QCustomPlot::rpImmediateRefresh);
        const QImage picture = m_chart->grab().toImage();
        const int y = qRound(m_chart->yAxis->coordToPixel(-30.0));
        const QRect plot = m_chart->axisRect()->rect();
        int coloured = 0;
        for (int x = plot.left(); x < plot.right(); ++x) {
            for (int dy = -1; dy <= 1; ++dy) {
                coloured += picture.pixelColor(x, y + dy).red() > 200 ? 1 : 0;
            }
        }
        QVERIFY2(coloured > plot.width() / 3, qPrintable(QString::number(coloured)));
        m_chart->setHMarkers({});
        QCOMPARE(m_chart->itemCount(), 0);
    }

    void the_level_of_a_horizontal_marker_is_readable_over_a_trace_data()
    {
        QTest::addColumn<double>("marked");
        QTest::addColumn<double>("trace");
        QTest::newRow("above the line") << -30.0 << -24.0;
        QTest::newRow("below it at the top") << 9.0 << 3.0;
    }

    void the_level_of_a_horizontal_marker_is_readable_over_a_trace()
    {
        QFETCH(double, marked);
        QFETCH(double, trace);
        m_chart->setLineColor(Qt::green);
        m_chart->setHMarkers({marked});
        m_chart->replot(QCustomPlot::rpImmediateRefresh);
        const QRect plot = m_chart->axisRect()->rect();
        const QRect corner(plot.right() - 40, plot.top(), 40, plot.height());
        const QColor orange(0xff, 0x80, 0x40);
        const int without = pixels(m_chart->grab().toImage().copy(corner), orange);
        m_chart->addSpectrum(QByteArray(512, cardSide::level(trace)));
        const QImage with = m_chart->grab().toImage();
        QCOMPARE(pixels(with.copy(corner), orange), without);
        QVERIFY2(without > 30, qPrintable(QString::number(without))); // dashes and figures
        const int y = qRound(m_chart->yAxis->coordToPixel(trace));
        QCOMPARE(pixels(with.copy(plot.right() - 18, y - 1, 13, 3), Qt::green), 0);
        QVERIFY(pixels(with.copy(plot.left() + 20, y - 1, 1, 3), Qt::green) > 0);
        QVERIFY(pixels(with.copy(plot.right() - 2, y - 1, 1, 3), Qt::green) > 0);
    }

    void horizontal_markers_off_the_axis_are_left_out()
    {
        m_chart->setHMarkers({qQNaN(), qInf(), -1e30, 500.0, -50.0});
        QCOMPARE(m_chart->hMarkers(), QList<double>{-50.0});
        m_chart->setHMarkers(QList<double>(5000, -10.0));
        QCOMPARE(m_chart->hMarkers().size(), 64);
    }

    void a_tap_sets_a_marker_and_reads_it_out()
    {
        m_chart->setSpan(spanTable().at(9));
        m_chart->addSpectrum(cardSide::carrier(100, 50, -42.5));
        tap(0.25);
        QVERIFY(m_chart->marker().valid);
        const double width = spanTable().at(9).spanMHz;
        QVERIFY(std::abs(m_chart->marker().frequency - (70.0 - width / 4)) < width / 100);
        QCOMPARE(m_chart->marker().level, -100.0);
        QVERIFY2(m_chart->readout().contains(u"Marker 59."_s) &&
                m_chart->readout().endsWith(u"-100.0 dB"_s),
            qPrintable(m_chart->readout()));
        QVERIFY(pixels(m_chart->grab().toImage(), Qt::white) > 20);
    }

    void a_tap_near_a_marker_selects_it_and_never_removes_it_data()
    {
        QTest::addColumn<int>("away"); // pixels
        QTest::newRow("on it") << 0;
        QTest::newRow("a finger to the right") << 23;
        QTest::newRow("a finger to the left") << -23;
    }

    void a_tap_near_a_marker_selects_it_and_never_removes_it()
    {
        QFETCH(int, away);
        m_chart->addSpectrum(cardSide::carrier(100, 50, -42.5));
        const double pixel = 1.0 / (m_chart->axisRect()->rect().width() - 1);
        tap(0.5);
        tap(0.8);
        QCOMPARE(m_chart->markers().active(), 2);
        const double before = *m_chart->markers().offset(1);
        tap(0.5 + away * pixel);
        QCOMPARE(m_chart->markers().count(), 2);
        QCOMPARE(m_chart->markers().active(), 1);
        QCOMPARE(*m_chart->markers().offset(1), before);
        QCOMPARE(m_chart->marker().level, -42.5);
    }

    void a_tap_farther_away_sets_another_marker()
    {
        m_chart->addSpectrum(cardSide::carrier(100, 50, -42.5));
        const double pixel = 1.0 / (m_chart->axisRect()->rect().width() - 1);
        tap(0.5);
        tap(0.5 + 27 * pixel);
        QVERIFY(m_chart->marker().valid);
        QCOMPARE(m_chart->markers().count(), 2);
        QCOMPARE(m_chart->markers().active(), 2);
    }

    void another_tap_reads_its_own_place()
    {
        m_chart->addSpectrum(cardSide::carrier(100, 90, -42.5));
        tap(0.2);
        tap(0.9);
        QCOMPARE(m_chart->marker().level, -42.5);
    }

    void a_fifth_tap_moves_the_active_marker()
    {
        m_chart->addSpectrum(cardSide::carrier(100, 95, -42.5));
        for (const double part : {0.1, 0.3, 0.5, 0.7, 0.95}) {
            tap(part);
        }
        QCOMPARE(m_chart->markers().count(), 4);
        QCOMPARE(m_chart->markers().active(), 4);
        QCOMPARE(m_chart->marker().level, -42.5);
    }

    void a_tap_beside_the_plot_does_nothing()
    {
        m_chart->addSpectrum(cardSide::carrier(100, 50, -42.5));
        QTest::mouseClick(m_chart->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
        QVERIFY(!m_chart->marker().valid);
    }

    void the_marker_follows_the_trace()
    {
        m_chart->addSpectrum(cardSide::carrier(100, 50, -42.5));
        tap(0.5);
        QCOMPARE(m_chart->marker().level, -42.5);
        m_chart->addSpectrum(cardSide::carrier(100, 50, -12.5));
        QCOMPARE(m_chart->marker().level, -12.5);
    }

    void a_marker_outside_a_new_span_is_removed()
    {
        m_chart->setSpan(spanTable().at(9));
        m_chart->setMarker(85.0);
        m_chart->setSpan(spanTable().at(0));
        m_chart->addSpectrum(cardSide::carrier(100, 50, -42.5));
        QVERIFY(!m_chart->marker().valid);
        m_chart->setSpan(spanTable().at(9));
        m_chart->setMarker(70.2);
        m_chart->setSpan(spanTable().at(0));
        m_chart->addSpectrum(cardSide::carrier(100, 50, -42.5));
        QVERIFY(m_chart->marker().valid);
        m_chart->setMarker(qQNaN());
        QVERIFY(!m_chart->marker().valid);
    }

    void a_marker_before_the_first_spectrum_is_not_read_out()
    {
        m_chart->setMarker(70.0);
        QVERIFY(!m_chart->marker().valid);
        QCOMPARE(m_chart->readout(), QString());
    }

    // the level axis

    void the_scale_is_the_axis_of_the_plot_data()
    {
        QTest::addColumn<int>("perDivision");
        QTest::addColumn<double>("lowest");
        QTest::addColumn<double>("step"); // of the ticks, at this height
        QTest::newRow("10 dB") << 10 << -160.0 << 20.0;
        QTest::newRow("5 dB") << 5 << -95.0 << 10.0;
        QTest::newRow("2 dB") << 2 << -56.0 << 4.0;
        QTest::newRow("1 dB") << 1 << -43.0 << 2.0;
    }

    void the_scale_is_the_axis_of_the_plot()
    {
        QFETCH(int, perDivision);
        QFETCH(double, lowest);
        QFETCH(double, step);
        m_chart->setLineColor(Qt::green);
        m_chart->setScale(-30, perDivision);
        QCOMPARE(m_chart->yAxis->range().upper, -30.0);
        QCOMPARE(m_chart->yAxis->range().lower, lowest);
        QCOMPARE(m_chart->readout(), u"Ref -30 dB %1 dB/div"_s.arg(perDivision));
        m_chart->addSpectrum(QByteArray(512, cardSide::level(-36)));
        m_chart->replot(QCustomPlot::rpImmediateRefresh);
        const QImage picture = m_chart->grab().toImage();
        const QVector<double> ticks = m_chart->yAxis->tickVector();
        QCOMPARE(ticks.at(1) - ticks.at(0), step);
        QVERIFY(pixels(picture.copy(QRect(pixelOf(0.3, -36) - QPoint(0, 2), QSize(9, 5))),
                    Qt::green) > 7);
        m_chart->setScale(10, 10);
        QCOMPARE(m_chart->yAxis->range().lower, -120.0);
        QVERIFY(!m_chart->readout().contains(u"Ref"_s));
    }

    void cleared_holds_are_gone_at_once()
    {
        m_chart->setLineColor(Qt::green);
        m_chart->setMaxHold(true);
        m_chart->setPolled(false); // It does not become stale.
        m_chart->addSpectrum(QByteArray(512, cardSide::level(-20)));
        m_chart->addSpectrum(QByteArray(512, cardSide::level(-100)));
        const QRect held(pixelOf(0.3, -20) - QPoint(0, 2), QSize(9, 5));
        const QColor darker = lineColors::darker(Qt::green);
        QTRY_VERIFY(pixels(m_chart->grab().toImage().copy(held), darker) > 7);
        const auto* pace = m_chart->findChild<ReadoutPace*>();
        QTRY_VERIFY(!pace->findChild<QTimer*>()->isActive());
        QCoreApplication::processEvents();
        const int before = m_chart->paints;
        m_chart->restartAverage();
        // Without another spectrum.
        QTRY_VERIFY_WITH_TIMEOUT(m_chart->paints > before, 1000);
        QCOMPARE(pixels(m_chart->grab().toImage().copy(held), darker), 0);
    }

    void each_division_has_a_line_in_the_grid_data()
    {
        QTest::addColumn<int>("height");
        QTest::addColumn<int>("perDivision");
        QTest::newRow("low") << 140 << 5;
        QTest::newRow("middle") << 250 << 1;
        QTest::newRow("high") << 420 << 10;
    }

    void each_division_has_a_line_in_the_grid()
    {
        QFETCH(int, height);
        QFETCH(int, perDivision);
        m_chart->resize(590, height);
        m_chart->setScale(-30, perDivision);
        m_chart->replot(QCustomPlot::rpImmediateRefresh);
        const QImage picture = m_chart->grab().toImage();
        const QRect plot = m_chart->axisRect()->rect();
        int lines = 0;
        for (int y = plot.top() + 2; y < plot.bottom() - 1; ++y) {
            lines += picture.pixelColor(plot.left() + 10, y) == chartLook::Grid ? 1 : 0;
        }
        QCOMPARE(lines, ChartScale::Divisions - 1);
    }

    void a_trace_outside_the_scale_is_cut_off_at_the_plot()
    {
        m_chart->setLineColor(Qt::green);
        m_chart->setScale(-60, 1);
        QByteArray points(512, cardSide::level(-100));
        points[100] = cardSide::level(-10);
        points[400] = cardSide::level(-66);
        m_chart->addSpectrum(points);
        const QImage picture = m_chart->grab().toImage();
        const QRect plot = m_chart->axisRect()->rect();
        QVERIFY(pixels(picture.copy(plot), Qt::green) > 50);
        QImage outside = picture;
        QPainter painter(&outside);
        painter.fillRect(plot, Qt::black);
        painter.end();
        QCOMPARE(pixels(outside, Qt::green), 0);
    }

    void a_fitted_scale_shows_noise_and_peak()
    {
        m_chart->autoScale();
        QVERIFY(m_chart->scale().isDefault()); // nothing to fit
        m_chart->addSpectrum(cardSide::carrier(512, 100, -60));
        m_chart->autoScale();
        QCOMPARE(m_chart->scale().perDivision(), 5);
        QVERIFY(m_chart->scale().reference() > -60 && m_chart->scale().reference() <= -50);
        QVERIFY(m_chart->scale().lowest() < -100);
        m_chart->addSpectrum(cardSide::carrier(512, 100, -10));
        QCOMPARE(m_chart->scale().perDivision(), 5); // chosen once
    }

    void horizontal_markers_outside_the_scale_are_kept_and_not_drawn()
    {
        const QColor orange(0xff, 0x80, 0x40);
        m_chart->setHMarkers({-30.0, -80.0});
        m_chart->setScale(-90, 1);
        QCOMPARE(m_chart->hMarkers(), QList<double>({-30.0, -80.0}));
        QCOMPARE(pixels(m_chart->grab().toImage(), orange), 0);
        m_chart->setScale(-70, 1);
        m_chart->replot(QCustomPlot::rpImmediateRefresh);
        QVERIFY(pixels(m_chart->grab().toImage(), orange) > 100);
        m_chart->setHMarkers({-30.0});
        m_chart->setScale(10, 10);
        m_chart->replot(QCustomPlot::rpImmediateRefresh);
        QVERIFY(pixels(m_chart->grab().toImage(), orange) > 100);
    }

    // peak and over

    void the_peak_s_triangle_is_seen_at_the_top_of_the_plot_data()
    {
        QTest::addColumn<double>("level");
        QTest::addColumn<double>("reference");
        QTest::newRow("the highest level") << 7.5 << 10.0;
        QTest::newRow("above the scale") << -20.0 << -40.0;
    }

    void the_peak_s_triangle_is_seen_at_the_top_of_the_plot()
    {
        QFETCH(double, level);
        QFETCH(double, reference);
        m_chart->setScale(reference, 10);
        m_chart->addSpectrum(cardSide::carrier(100, 50, level));
        const QImage picture = m_chart->grab().toImage();
        const QRect plot = m_chart->axisRect()->rect();
        const QRect top(pixelOf(0.5, 0).x() - 6, plot.top(), 13, 24);
        QVERIFY(pixels(picture.copy(top), chartLook::Text) > 20);
    }

    void the_decimals_of_a_frequency_follow_the_width_of_a_point_data()
    {
        QTest::addColumn<int>("span");
        QTest::addColumn<int>("points");
        QTest::addColumn<QString>("text");
        QTest::newRow("12 kHz") << 0 << 106 << u"Peak 70.000 MHz -42.5 dB"_s;
        QTest::newRow("1.2 kHz") << 0 << 1024 << u"Peak 70.0000 MHz -42.5 dB"_s;
        QTest::newRow("45 kHz") << 9 << 958 << u"Peak 70.000 MHz -42.5 dB"_s;
        QTest::newRow("433 kHz") << 9 << 100 << u"Peak 70.00 MHz -42.5 dB"_s;
    }

    void the_decimals_of_a_frequency_follow_the_width_of_a_point()
    {
        QFETCH(int, span);
        QFETCH(int, points);
        m_chart->setSpan(spanTable().at(span));
        m_chart->addSpectrum(cardSide::carrier(points, points / 2, -42.5));
        QTEST(m_chart->readout(), "text");
    }

    void a_level_at_the_end_of_the_card_s_scale_is_over()
    {
        const auto over = [this] {
            return pixels(m_chart->grab().toImage(), chartLook::OverGround) > 300;
        };
        m_chart->addSpectrum(cardSide::carrier(100, 50, 7.0));
        QVERIFY(!m_chart->readout().contains(u"OVER"_s) && !over());
        m_chart->addSpectrum(cardSide::carrier(100, 50, 7.5));
        m_chart->addSpectrum(cardSide::carrier(100, 50, 7.0)); // One alone can be read, too.
        QTRY_COMPARE(m_chart->readout(), u"Peak 70.000 MHz 7.0 dB\nOVER"_s);
        QVERIFY(over());
        m_chart->setMarker(70.1); // The numbers are written anew without a new spectrum.
        m_chart->addSpectrum(cardSide::carrier(100, 50, 7.0));
        QTRY_VERIFY(!m_chart->readout().contains(u"OVER"_s));
        QVERIFY(!over());
        m_chart->addSpectrum(cardSide::carrier(100, 50, 7.5));
        QTRY_VERIFY(m_chart->readout().contains(u"OVER"_s));
        m_chart->setMarker(70.2);
        QVERIFY(m_chart->readout().contains(u"OVER"_s)); // The newest spectrum still is.
        m_chart->setSpan(spanTable().at(0));
        QVERIFY(!m_chart->readout().contains(u"OVER"_s));
    }

    // averages and holds

    void averages_and_holds_are_written_on_the_chart()
    {
        using Average = SpectrumTrace::Average;
        m_chart->setAverageKind(Average::Power);
        QCOMPARE(m_chart->readout(), u"Avg 16"_s);
        m_chart->setAveraging(64);
        m_chart->setAverageKind(Average::Log);
        m_chart->setMinHold(true);
        QCOMPARE(m_chart->readout(), u"Log Avg 64   Min Hold"_s);
        m_chart->setAverageKind(Average::Off);
        m_chart->setMinHold(false);
        QCOMPARE(m_chart->readout(), QString());
        QCOMPARE(m_chart->settings().depth, 64);
    }

    void min_hold_keeps_the_lowest_levels_and_clearing_starts_the_holds_anew()
    {
        m_chart->setMinHold(true);
        m_chart->setMaxHold(true);
        m_chart->setAveraging(4);
        m_chart->addSpectrum(QByteArray(10, cardSide::level(-80)));
        m_chart->addSpectrum(QByteArray(10, cardSide::level(-20)));
        QCOMPARE(m_chart->trace().heldLow().first(), -80.0F);
        QCOMPARE(m_chart->trace().held().first(), -20.0F);
        m_chart->clearHolds();
        m_chart->addSpectrum(QByteArray(10, cardSide::level(-30)));
        QCOMPARE(m_chart->trace().heldLow().first(), -30.0F);
        QCOMPARE(m_chart->trace().held().first(), -30.0F);
        QVERIFY(m_chart->trace().levels().first() > -26.0F); // The average went on.
    }

    // keys and fingers

    void keys_move_the_active_marker()
    {
        QByteArray points = cardSide::carrier(100, 20, -30);
        points[70] = cardSide::level(-50);
        m_chart->addSpectrum(points);
        m_chart->stepMarker(1);
        QCOMPARE(m_chart->markers().count(), 0);
        m_chart->markerToPeak();
        QCOMPARE(m_chart->marker().level, -30.0);
        m_chart->markerToNextPeak();
        QCOMPARE(m_chart->marker().level, -50.0);
        m_chart->stepMarker(-1);
        QCOMPARE(m_chart->marker().level, -100.0);
        m_chart->stepMarker(1);
        QCOMPARE(m_chart->marker().level, -50.0);
        m_chart->setMarkerDelta(true);
        m_chart->markerToPeak();
        QCOMPARE(m_chart->markers().active(), 2);
        const double width = m_chart->spanMHz() / 2;
        QCOMPARE(m_chart->readout().replace(u'\n', u"   "_s).section(u"   "_s, 1),
            u"M1 %1 MHz -50.0 dB   M2-M1 -%2 MHz +20.0 dB"_s
                .arg(m_chart->markerAt(1).frequency, 0, 'f', 3)
                .arg(width, 0, 'f', 3));
        m_chart->removeMarker();
        QCOMPARE(m_chart->marker().level, -50.0);
        m_chart->removeMarker();
        QVERIFY(!m_chart->marker().valid);
    }

    void a_drag_on_the_glass_moves_its_marker()
    {
        m_chart->addSpectrum(cardSide::carrier(100, 80, -42.5));
        tap(0.2);
        tap(0.5);
        const QRect plot = m_chart->axisRect()->rect();
        const auto at = [&plot](double part) {
            return QPoint(plot.left() + qRound(part * (plot.width() - 1)), plot.center().y());
        };
        QWindow* window = m_chart->windowHandle();
        QTest::mousePress(window, Qt::LeftButton, Qt::NoModifier, at(0.2));
        QCOMPARE(m_chart->markers().active(), 1);
        for (const double part : {0.3, 0.6, 0.8}) {
            QTest::mouseMove(window, at(part));
        }
        QCOMPARE(m_chart->marker().level, -42.5); // The chart follows the finger.
        QTest::mouseRelease(window, Qt::LeftButton, Qt::NoModifier, at(0.8));
        QCOMPARE(m_chart->marker().level, -42.5);
        QCOMPARE(m_chart->markers().count(), 2);
    }

    void markers_keep_their_distance_from_a_new_centre()
    {
        m_chart->setMarker(70.1);
        m_chart->addMarker(69.9);
        m_chart->setCentre(2250.5);
        m_chart->addSpectrum(QByteArray(100, cardSide::level(-42.5)));
        QVERIFY(std::abs(m_chart->markerAt(1).frequency - 2250.6) < 0.01);
        QVERIFY(std::abs(m_chart->markerAt(2).frequency - 2250.4) < 0.01);
    }

    void a_touch_on_the_title_is_announced_and_sets_no_marker()
    {
        m_chart->setTitle(u"SpectralCard CH.1/CH.2/CMB.1 (CH.1)"_s);
        m_chart->addSpectrum(cardSide::carrier(100, 50, -42.5));
        const QSignalSpy title(m_chart.get(), &SpectrumChart::titleTapped);
        for (const QPoint& at : {QPoint(100, 10), QPoint(500, 10), QPoint(100, 44)}) {
            QTest::mouseClick(m_chart->windowHandle(), Qt::LeftButton, Qt::NoModifier, at);
        }
        QCOMPARE(title.count(), 3);
        QCOMPARE(m_chart->markers().count(), 0);
        tap(0.5);
        QCOMPARE(title.count(), 3);
        QCOMPARE(m_chart->markers().count(), 1);
    }

    // settings and news

    void settings_go_over_to_another_chart()
    {
        m_chart->setAveraging(64);
        m_chart->setAverageKind(SpectrumTrace::Average::Log);
        m_chart->setMinHold(true);
        m_chart->setScale(-20, 5);
        m_chart->setMarker(70.1);
        m_chart->addMarker(69.9);
        m_chart->setMarkerDelta(true);
        m_chart->activateMarker(1);
        SpectrumChart other;
        other.resize(m_chart->size());
        other.show();
        other.setSettings(m_chart->settings());
        other.addSpectrum(cardSide::carrier(100, 50, -42.5));
        m_chart->addSpectrum(cardSide::carrier(100, 50, -42.5));
        QTRY_COMPARE_WITH_TIMEOUT(other.readout(), m_chart->readout(), 1000);
        QVERIFY(other.readout().contains(u"Log Avg 64   Min Hold"_s));
        QCOMPARE(other.yAxis->range(), m_chart->yAxis->range());
        QCOMPARE(other.markers(), m_chart->markers());
        QCOMPARE(other.trace().averaging(), 64);
        QVERIFY(!other.trace().heldLow().isEmpty());
        other.setSettings({});
        QCOMPARE(other.readout(), u"Peak 70.000 MHz -42.5 dB"_s);
    }

    void a_new_size_lays_the_read_out_out_anew()
    {
        m_chart->addSpectrum(cardSide::carrier(100, 50, -42.5));
        m_chart->setMarker(70.1);
        m_chart->addMarker(69.9);
        QTRY_COMPARE(m_chart->readout().count(u'\n'), 1);
        m_chart->resize(792, 420); // and no new spectrum
        QTRY_COMPARE(m_chart->readout().count(u'\n'), 0);
        m_chart->resize(250, 420);
        QTRY_COMPARE(m_chart->readout().count(u'\n'), 2);
    }

    void news_are_told()
    {
        const QSignalSpy spectra(m_chart.get(), &SpectrumChart::spectrumAdded);
        const QSignalSpy numbers(m_chart.get(), &SpectrumChart::readoutChanged);
        const QSignalSpy settings(m_chart.get(), &SpectrumChart::settingsChanged);
        for (int i = 0; i < 10; ++i) {
            m_chart->addSpectrum(cardSide::carrier(100, 50, -42.5));
        }
        QCOMPARE(spectra.count(), 10);
        QCOMPARE(numbers.count(), 1);
        QCOMPARE(settings.count(), 0);
        QTRY_COMPARE(numbers.count(), 2);
        tap(0.3);
        QCOMPARE(settings.count(), 1);
        QCOMPARE(numbers.count(), 3);
    }

    void marks_do_not_cost_a_new_frame_of_the_plot()
    {
        const QSignalSpy replots(m_chart.get(), &QCustomPlot::afterReplot);
        m_chart->addSpectrum(cardSide::carrier(100, 50, -42.5));
        m_chart->markerToPeak();
        QTest::qWait(20);
        const auto before = replots.count();
        m_chart->stepMarker(1);
        m_chart->markerToPeak();
        m_chart->addSpectrum(cardSide::carrier(100, 50, -22.5));
        QTest::qWait(20);
        QCOMPARE(replots.count(), before);
    }

    void many_spectra_in_one_turn_are_painted_once()
    {
        QTRY_VERIFY(m_chart->paints > 0);
        QTest::qWait(50);
        m_chart->paints = 0;
        for (int i = 0; i < 100; ++i) {
            m_chart->addSpectrum(cardSide::carrier(512, i, -20));
        }
        QTRY_VERIFY(m_chart->paints > 0);
        QVERIFY2(m_chart->paints <= 2, qPrintable(QString::number(m_chart->paints)));
    }

    void the_next_paint_waits_as_long_as_the_last_one_took()
    {
        // Painting takes long on any machine: a large chart full of lines from top to bottom.
        m_chart->resize(4000, 3000);
        QByteArray points(9000, '\0');
        for (qsizetype i = 0; i < points.size(); i += 2) {
            points[i] = '\xff';
        }
        m_chart->setMaxHold(true);
        m_chart->addSpectrum(points);
        QTest::qWait(400);
        m_chart->repaint();
        const auto* timer = m_chart->findChild<QTimer*>(u"paintTimer"_s);
        QVERIFY(timer != nullptr);
        QTRY_VERIFY(!timer->isActive()); // The numbers may have asked for one more paint.
        m_chart->addSpectrum(cardSide::carrier(512, 1, -20));
        QVERIFY(timer->isActive());
        QVERIFY2(m_chart->tookMs > 1, qPrintable(QString::number(m_chart->tookMs)));
        QVERIFY2(timer->interval() > 0 && timer->interval() <= m_chart->tookMs,
            qPrintable(u"%1 of %2"_s.arg(timer->interval()).arg(m_chart->tookMs)));
    }

    void a_spectrum_paints_only_the_plot_until_the_readout_changes()
    {
        m_chart->addSpectrum(cardSide::carrier(512, 1, -20));
        QTRY_VERIFY(m_chart->readout().contains(u"Peak"_s));
        QTest::qWait(50); // until nothing is left to be painted
        QCOMPARE(m_chart->painted.last(), m_chart->rect());
        m_chart->painted.clear();
        m_chart->addSpectrum(cardSide::carrier(512, 100, -30)); // the readout waits for its turn
        QTRY_VERIFY(!m_chart->painted.isEmpty());
        const QRect plot = m_chart->axisRect()->rect();
        const QRect part = m_chart->painted.first();
        QVERIFY(part.left() <= plot.left() && part.right() >= plot.right());
        QVERIFY(part.top() >= plot.top() && part.bottom() <= plot.bottom());
        // The old and the new trace lie inside, with little around them.
        const auto row = [this](double level) { return m_chart->yAxis->coordToPixel(level); };
        QVERIFY(part.top() <= row(-20.0) && part.bottom() >= row(-100.0));
        QVERIFY(part.top() >= row(-20.0) - 20 && part.bottom() <= row(-100.0) + 20);
        QTRY_COMPARE(m_chart->painted.last(), m_chart->rect());
        const QImage shown = m_chart->screen()->grabWindow(m_chart->winId()).toImage();
        QCOMPARE(shown, m_chart->grab().toImage().convertToFormat(shown.format()));
    }

    void paints_of_parts_leave_the_same_pixels_as_a_whole_one_data()
    {
        using Change = std::function<void(SpectrumChart&)>;
        QTest::addColumn<Change>("change");
        QTest::newRow("trace alone") << Change([](SpectrumChart&) {});
        QTest::newRow("max hold") << Change([](SpectrumChart& chart) { chart.setMaxHold(true); });
        QTest::newRow("min hold") << Change([](SpectrumChart& chart) { chart.setMinHold(true); });
        QTest::newRow("average") << Change([](SpectrumChart& chart) { chart.setAveraging(8); });
        QTest::newRow("markers") << Change([](SpectrumChart& chart) {
            chart.setMarker(69.9);
            chart.addMarker(70.2);
        });
        QTest::newRow("horizontal markers") << Change([](SpectrumChart& chart) {
            chart.setHMarkers({-30.0, -80.0});
        });
        QTest::newRow("scale") << Change([](SpectrumChart& chart) { chart.setScale(-40.0, 5); });
        QTest::newRow("colour") << Change(
            [](SpectrumChart& chart) { chart.setLineColor(Qt::green); });
        QTest::newRow("large") << Change([](SpectrumChart& chart) { chart.resize(700, 420); });
        QTest::newRow("small") << Change([](SpectrumChart& chart) { chart.resize(330, 60); });
        QTest::newRow("a picture taken in between") << Change([](SpectrumChart& chart) {
            chart.addSpectrum(cardSide::carrier(300, 40, 0.0));
            chart.grab();
        });
        QTest::newRow("hidden and shown") << Change([](SpectrumChart& chart) {
            chart.hide();
            chart.addSpectrum(cardSide::carrier(300, 40, 0.0));
            chart.show();
        });
        QTest::newRow("span") << Change(
            [](SpectrumChart& chart) { chart.setSpan(spanTable().at(3)); });
        QTest::newRow("small part painted") << Change([](SpectrumChart& chart) {
            chart.addSpectrum(cardSide::carrier(300, 40, 0.0));
            chart.repaint(QRect(100, 50, 20, 20));
        });
    }

    void paints_of_parts_leave_the_same_pixels_as_a_whole_one()
    {
        QFETCH(std::function<void(SpectrumChart&)>, change);
        std::minstd_rand random(740);
        const auto spectrum = [&random] {
            const auto upTo = [&random](int number) { return static_cast<int>(random()) % number; };
            const std::array sizes{1, 2, 300, 1024};
            QByteArray points(sizes.at(static_cast<size_t>(upTo(4))), cardSide::level(-100.0));
            const int floor = upTo(200);
            const int height = 1 + upTo(56);
            for (char& point : points) {
                point = static_cast<char>(floor + upTo(height));
            }
            points[upTo(static_cast<int>(points.size()))] = static_cast<char>(upTo(256));
            return points;
        };
        for (int i = 0; i < 24; ++i) {
            m_chart->addSpectrum(spectrum());
            if (i == 8) {
                change(*m_chart);
            }
            const int before = m_chart->paints;
            Q_UNUSED(QTest::qWaitFor([&] { return m_chart->paints > before; }, 20));
            if (i % 4 == 3) {
                const auto* timer = m_chart->findChild<QTimer*>(u"paintTimer"_s);
                QTRY_VERIFY(!timer->isActive());
                QCoreApplication::processEvents();
                const QImage shown = onTheScreen();
                QCOMPARE(shown, m_chart->grab().toImage().convertToFormat(shown.format()));
            }
        }
    }

    void a_whole_paint_before_the_due_one_leaves_no_old_pixels_data()
    {
        using Change = std::function<void(SpectrumChart&)>;
        QTest::addColumn<Change>("change");
        QTest::newRow("a picture taken in between")
            << Change([](SpectrumChart& chart) { chart.grab(); });
        QTest::newRow("large") << Change([](SpectrumChart& chart) {
            chart.resize(620, 420);
            chart.repaint();
        });
        QTest::newRow("small") << Change([](SpectrumChart& chart) {
            chart.resize(620, 100);
            chart.repaint();
        });
        QTest::newRow("hidden and shown") << Change([](SpectrumChart& chart) {
            chart.hide();
            chart.addSpectrum(band(-110.0, -5.0));
            chart.show();
            chart.repaint();
        });
    }

    void a_whole_paint_before_the_due_one_leaves_no_old_pixels()
    {
        QFETCH(std::function<void(SpectrumChart&)>, change);
        m_chart->addSpectrum(band(-70.0, -60.0));
        m_chart->workMs = 30;
        QTest::qWait(400); // until the readout is up to date
        m_chart->addSpectrum(band(-110.0, -5.0));
        m_chart->repaint();
        m_chart->addSpectrum(band(-100.0, -20.0)); // its readout waits
        const auto* timer = m_chart->findChild<QTimer*>(u"paintTimer"_s);
        QVERIFY(timer->isActive());
        change(*m_chart);
        QVERIFY(timer->isActive());
        m_chart->addSpectrum(band(-70.0, -60.0));
        while (timer->isActive()) {
            QCoreApplication::processEvents();
        }
        QCoreApplication::processEvents();
        const QImage shown = onTheScreen();
        m_chart->workMs = 0;
        QCOMPARE(shown, m_chart->grab().toImage().convertToFormat(shown.format()));
    }

    // Its whole paint is one of a part, when its parent is smaller.
    void a_chart_that_its_parent_cuts_off_shows_no_old_pixels_after_it_was_hidden()
    {
        QWidget window;
        window.resize(620, 200);
        CountingChart chart;
        chart.setParent(&window);
        chart.setGeometry(0, 0, 620, 200);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        chart.addSpectrum(band(-70.0, -60.0));
        QTest::qWait(400);
        chart.addSpectrum(band(-70.0, -60.0));
        QTest::qWait(20);
        chart.hide();
        chart.addSpectrum(band(-110.0, -5.0));
        window.resize(620, 195);
        chart.show();
        QTest::qWait(20);
        chart.addSpectrum(band(-70.0, -60.0));
        QTest::qWait(20);
        const QImage shown = window.screen()->grabWindow(window.winId()).toImage();
        QCOMPARE(shown, window.grab().toImage().convertToFormat(shown.format()));
    }

    void the_frame_is_the_same_when_it_is_drawn_anew()
    {
        const QImage before = m_chart->grab().toImage();
        m_chart->setHMarkers({-50.0});
        QTRY_VERIFY(m_chart->grab().toImage() != before);
        m_chart->setHMarkers({});
        QTRY_COMPARE(m_chart->grab().toImage(), before);
    }

    void a_hidden_chart_is_not_painted()
    {
        m_chart->hide();
        QTest::qWait(20);
        m_chart->paints = 0;
        m_chart->addSpectrum(cardSide::carrier(512, 1, -20));
        QTest::qWait(50);
        QCOMPARE(m_chart->paints, 0);
        m_chart->show();
        QTRY_VERIFY(m_chart->paints > 0);
        QVERIFY(m_chart->peak().valid);
    }

    void the_widgets_under_the_chart_are_painted_first()
    {
        QVERIFY(!m_chart->testAttribute(Qt::WA_OpaquePaintEvent));
    }

    void any_size_of_spectrum_and_of_chart_can_be_painted()
    {
        for (const QSize& size : {QSize(1, 1), QSize(60, 60), QSize(330, 120), QSize(800, 430)}) {
            m_chart->resize(size);
            for (const int points : {1, 2, 3, 512, 9999, 65535}) {
                m_chart->addSpectrum(QByteArray(points, '\xff'));
                m_chart->grab();
            }
        }
    }

private:
    // part: of the plot's width, from the left
    void tap(double part)
    {
        const QRect plot = m_chart->axisRect()->rect();
        const QPoint at(plot.left() + qRound(part * (plot.width() - 1)), plot.center().y());
        QTest::mouseClick(m_chart->windowHandle(), Qt::LeftButton, Qt::NoModifier, at);
    }

    // the backing store of the window
    QImage onTheScreen() const { return m_chart->screen()->grabWindow(m_chart->winId()).toImage(); }

    // part: of the plot's width, from the left
    QPoint pixelOf(double part, double level) const
    {
        const QRect plot = m_chart->axisRect()->rect();
        return {plot.left() + qRound(part * (plot.width() - 1)),
            qRound(m_chart->yAxis->coordToPixel(level))};
    }

    std::unique_ptr<CountingChart> m_chart;
};

QN740_TEST_MAIN(tst_SpectrumChart)
#include "tst_SpectrumChart.moc"
