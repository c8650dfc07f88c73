// How a scope shows what it has received.
#include "scopes/ScopeFixture.h"
#include "spectrum/Clock.h"
#include "support/Contrast.h"
#include "support/Screen.h"
#include "support/TestMain.h"

#include <QScreen>

#include <cmath>

using namespace Qt::StringLiterals;

using namespace scopeFixture;

namespace {

// How many pixels of the plot are of the line colour 1.
int greenPixels(PlotView& view)
{
    const QImage picture = view.grab().toImage();
    int green = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QColor color = picture.pixelColor(x, y);
            green += color.green() > color.red() + 40 ? 1 : 0;
        }
    }
    return green;
}

bool hasText(const QImage& picture, const QRect& place)
{
    int bright = 0;
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x) {
            bright += picture.pixelColor(x, y).lightness() > 128 ? 1 : 0;
        }
    }
    return bright > 5;
}

// How many pixels have the colour of a badge.
int yellowPixels(const QImage& picture, const QRect& place)
{
    int found = 0;
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x) {
            const QColor color = picture.pixelColor(x, y);
            found += color.red() > 200 && color.green() > 120 && color.blue() < 40 ? 1 : 0;
        }
    }
    return found;
}

} // namespace

class tst_ScopePlots : public QObject
{
    Q_OBJECT

private slots:
    void the_plot_type_toggles_between_eye_and_constellation()
    {
        ScopeFixture fixture;
        fixture.scope.togglePlotType();
        QCOMPARE(fixture.scope.plotType(), 2);
        QVERIFY(!plot(fixture.scope, "plotQ")->isVisible());
        fixture.scope.togglePlotType();
        QCOMPARE(fixture.scope.plotType(), 1);
        QVERIFY(plot(fixture.scope, "plotQ")->isVisible());
        fixture.scope.setPlotType(0);
        QVERIFY(!plot(fixture.scope, "plotQ")->isVisible());
        fixture.scope.togglePlotType();
        QCOMPARE(fixture.scope.plotType(), 1);
    }

    void a_change_of_the_plot_type_empties_the_plots()
    {
        ScopeFixture fixture;
        fixture.scope.setPlotType(Scope::Constellation);
        QVector<double> loud(256, 1.0);
        QVector<double> half(256, 0.5);
        fixture.scope.plotEyeConsData(loud, half);
        QVERIFY(!fixture.scope.constellation().plotted().isEmpty());
        fixture.scope.setPlotType(Scope::Constellation); // the same type
        QVERIFY(!fixture.scope.constellation().plotted().isEmpty());
        fixture.scope.setPlotType(Scope::EyePattern);
        QVERIFY(fixture.scope.constellation().plotted().isEmpty());
        fixture.scope.setPlotType(Scope::Constellation);
        PlotView* view = plot(fixture.scope, "plotI");
        QVERIFY(view->content()->badge().isEmpty());
        fixture.scope.setLineColor(1);
        QCOMPARE(greenPixels(*view), 0);

        fixture.scope.setPlotType(Scope::EyePattern);
        fixture.scope.plotEyeConsData(half, half);
        QVERIFY(greenPixels(*view) > 100);
        fixture.scope.clearPlots();
        QCOMPARE(greenPixels(*view), 0);
        fixture.scope.plotEyeConsData(half, half);
        QVERIFY(greenPixels(*view) > 100);

        fixture.scope.setPlotType(Scope::Sdi);
        QByteArray record("abcde");
        fixture.scope.plotSdiData(record);
        QCOMPARE(shownRecords(fixture.scope).size(), size_t(1));
        fixture.scope.togglePlotType();
        fixture.scope.setPlotType(Scope::Sdi);
        QVERIFY(shownRecords(fixture.scope).empty());
    }

    void a_constellation_is_square_and_stays_in_the_middle()
    {
        ScopeFixture fixture;
        fixture.scope.setPlotType(Scope::Constellation);
        fixture.scope.grab();
        const PlotView* view = plot(fixture.scope, "plotI");
        QTRY_COMPARE(view->size(), QSize(262, 262));
        fixture.scope.grab();
        QCOMPARE(view->dataArea().width(), view->dataArea().height());
        QCOMPARE(view->y(), 24);
        fixture.scope.setDisableFixIsize(true);
        QVERIFY(fixture.scope.disableFixIsize());
        QTRY_COMPARE(view->size(), QSize(262, 310));
        fixture.scope.grab();
        QCOMPARE(view->dataArea().width(), view->dataArea().height());
    }

    void the_getters_return_what_was_set()
    {
        ScopeFixture fixture;
        QCOMPARE(fixture.scope.numOfPlots(), 2);
        QVERIFY(fixture.scope.showQPlot());
        QCOMPARE(fixture.scope.sdiStripCount(), 5);
        fixture.scope.setShowQPlot(false);
        QVERIFY(!fixture.scope.showQPlot());
        QVERIFY(!plot(fixture.scope, "plotQ")->isVisible());
        fixture.scope.setShowQPlot(true);
        QVERIFY(plot(fixture.scope, "plotQ")->isVisible());
        fixture.scope.setNumOfPlots(1);
        QCOMPARE(fixture.scope.numOfPlots(), 1);
        QVERIFY(!plot(fixture.scope, "plotQ")->isVisible());
        fixture.scope.setNumOfPlots(0);
        QCOMPARE(fixture.scope.numOfPlots(), 0);
        QVERIFY(!plot(fixture.scope, "plotI")->isVisible());
        QVERIFY(!plot(fixture.scope, "plotQ")->isVisible());
        fixture.scope.setNumOfPlots(2);
        QVERIFY(plot(fixture.scope, "plotI")->isVisible());
        QVERIFY(plot(fixture.scope, "plotQ")->isVisible());
        fixture.scope.setSdiStripCount(3);
        QCOMPARE(fixture.scope.sdiStripCount(), 3);
    }

    void a_line_colour_is_chosen_by_its_number_data()
    {
        QTest::addColumn<int>("number");
        QTest::addColumn<QColor>("color");
        QTest::newRow("0 red") << 0 << QColor(255, 0, 0);
        QTest::newRow("1 green") << 1 << QColor(0, 255, 0);
        QTest::newRow("2 blue, light enough to be read on black") << 2 << QColor(0x60, 0x90, 0xff);
        QTest::newRow("3 cyan") << 3 << QColor(0, 255, 255);
        QTest::newRow("4 magenta") << 4 << QColor(255, 0, 255);
        QTest::newRow("5 yellow") << 5 << QColor(255, 255, 0);
        QTest::newRow("6 white") << 6 << QColor(255, 255, 255);
        QTest::newRow("7 grey") << 7 << QColor(160, 160, 164);
        QTest::newRow("8 is no colour") << 8 << QColor(255, 0, 0);
        QTest::newRow("-1 is no colour") << -1 << QColor(255, 0, 0);
    }

    void a_line_colour_is_chosen_by_its_number()
    {
        QFETCH(int, number);
        QFETCH(QColor, color);
        ScopeFixture fixture;
        fixture.scope.setLineColor(number);
        QCOMPARE(fixture.scope.lineColor(), color);
        fixture.scope.setPlotType(Scope::Constellation);
        QVector<double> zero(256, 0.25);
        fixture.scope.plotEyeConsData(zero, zero);
        PlotView* view = plot(fixture.scope, "plotI");
        const QImage picture = view->grab().toImage();
        const QRect area = view->dataArea();
        const auto at = [&](double part) {
            return static_cast<int>(std::lround((area.width() - 1) * part));
        };
        const QColor dot =
            picture.pixelColor(area.left() + at(0.625), area.top() + at(1.0 - 0.625));
        // A dot that was hit 256 times has the line colour, mixed with white.
        for (const auto& [part, full] : {std::pair{dot.red(), color.red()},
                 {dot.green(), color.green()}, {dot.blue(), color.blue()}}) {
            QVERIFY(part >= full - 2);
        }
    }

    void hidden_plots_are_not_painted_but_blocks_are_passed_on()
    {
        ScopeFixture fixture(false);
        QVERIFY(fixture.line.write(steady(1, 2) + steady(3, 4)));
        QTRY_COMPARE(fixture.blocks.size(), 2);
        QTest::qWait(100); // longer than the pause before a painting
        QCOMPARE(plot(fixture.scope, "plotI")->paintCount(), 0);
        QCOMPARE(plot(fixture.scope, "plotQ")->paintCount(), 0);
    }

    void a_scope_has_its_two_plots_in_a_layout_without_margins_before_it_is_shown()
    {
        ScopeFixture fixture(false);
        const auto* layout = qobject_cast<QVBoxLayout*>(fixture.scope.layout());
        QVERIFY(layout != nullptr);
        QCOMPARE(layout->contentsMargins(), QMargins());
        QCOMPARE(layout->count(), 2);
        QCOMPARE(layout->itemAt(0)->widget(), plot(fixture.scope, "plotI"));
        QCOMPARE(layout->itemAt(1)->widget(), plot(fixture.scope, "plotQ"));
    }

    void a_plot_that_nobody_sees_is_not_drawn_by_the_plot_library()
    {
        ScopeFixture fixture(false);
        QSignalSpy replots(plot(fixture.scope, "plotI"), &QCustomPlot::beforeReplot);
        QTest::qWait(20); // the library queues a replot of every new plot
        QCOMPARE(replots.size(), 0);
        plot(fixture.scope, "plotI")->replot();
        QCOMPARE(replots.size(), 1);
    }

    void what_is_set_before_a_scope_is_shown_counts()
    {
        ScopeFixture fixture(false);
        fixture.scope.setPlotType(Scope::Constellation);
        fixture.scope.setLineColor(1);
        fixture.scope.setFixedRange(true);
        fixture.scope.setFrozen(true);
        QCOMPARE(fixture.scope.readout(), u"FROZEN"_s);
        fixture.scope.show();
        QVERIFY(QTest::qWaitForWindowExposed(&fixture.scope));
        const PlotView* upper = plot(fixture.scope, "plotI");
        QVERIFY(upper->isVisible() && upper->isFrozen());
        QVERIFY(!plot(fixture.scope, "plotQ")->isVisible());
        QCOMPARE(upper->content(), &fixture.scope.constellation());
        QCOMPARE(upper->width(), upper->height());
    }

    void a_scope_that_became_stale_before_it_was_shown_says_so()
    {
        ScopeFixture fixture(false);
        testClock::expire(fixture.scope.findChild<QTimer*>(u"silence"_s));
        QCOMPARE(fixture.scope.readout(), u"NO DATA"_s);
        fixture.scope.show();
        QVERIFY(plot(fixture.scope, "plotI")->isStale() && plot(fixture.scope, "plotQ")->isStale());
    }

    void blocks_are_passed_on_without_plots()
    {
        ScopeFixture fixture;
        fixture.scope.setNumOfPlots(0);
        const int before = plot(fixture.scope, "plotI")->paintCount();
        QVERIFY(fixture.line.write(steady(1, 2)));
        QTRY_COMPARE(fixture.blocks.size(), 1);
        QTest::qWait(100); // longer than the pause before a painting
        QCOMPARE(plot(fixture.scope, "plotI")->paintCount(), before);
    }

    void plots_can_be_hidden_while_the_scope_goes_on_receiving()
    {
        ScopeFixture fixture;
        fixture.scope.setPlotsShown(false);
        QVERIFY(!plot(fixture.scope, "plotI")->isVisible());
        QVERIFY(!plot(fixture.scope, "plotQ")->isVisible());
        QVERIFY(fixture.scope.isVisible());
        QCOMPARE(fixture.scope.size(), QSize(262, 310));
        QVERIFY(fixture.line.write(steady(1, 2)));
        QTRY_COMPARE(fixture.blocks.size(), 1);
        // A change of the plot type does not show them.
        fixture.scope.setPlotType(2);
        QVERIFY(!plot(fixture.scope, "plotI")->isVisible());
        fixture.scope.setPlotType(1);
        fixture.scope.setPlotsShown(true);
        QVERIFY(plot(fixture.scope, "plotI")->isVisible());
        QVERIFY(plot(fixture.scope, "plotQ")->isVisible());
    }

    void data_received_while_hidden_are_painted_when_shown()
    {
        ScopeFixture fixture(false);
        QVector<double> half(256, 0.5);
        fixture.scope.plotEyeConsData(half, half);
        fixture.scope.show();
        PlotView* view = plot(fixture.scope, "plotI");
        QTRY_VERIFY(view->paintCount() > 0);
        const QImage picture = view->grab().toImage();
        const QRect area = view->dataArea();
        const int row = area.top() + static_cast<int>(std::lround((area.height() - 1) * 0.25));
        QVERIFY(picture.pixelColor(area.center().x() + 30, row).red() > 200);
    }

    void a_touch_on_a_plot_changes_between_fitted_and_fixed_range()
    {
        ScopeFixture fixture;
        QVERIFY(!fixture.scope.fixedRange());
        QVector<double> quiet(256, 0.05);
        for (int k = 0; k < RangeKeeper::ShrinkAfter; ++k) {
            fixture.scope.plotEyeConsData(quiet, quiet);
        }
        PlotView* view = plot(fixture.scope, "plotI");
        view->grab();
        QCOMPARE(view->yAxis->range().upper, 6.0);
        clickOn(view);
        QVERIFY(fixture.scope.fixedRange());
        view->grab();
        QCOMPARE(view->yAxis->range().upper, 100.0);
        // The newest block is still there, in the new range.
        const QImage picture = view->grab().toImage();
        const QRect area = view->dataArea();
        const int row = area.top() + static_cast<int>(std::lround((area.height() - 1) * 0.475));
        QVERIFY(picture.pixelColor(area.center().x() + 30, row).red() > 150);
        clickOn(plot(fixture.scope, "plotQ"));
        QVERIFY(!fixture.scope.fixedRange());
        view->grab();
        QCOMPARE(view->yAxis->range().upper, 6.0);
    }

    void the_axis_texts_are_readable_and_complete_at_every_range_data()
    {
        QTest::addColumn<double>("peak");
        for (const double peak : {1.0, 0.65, 0.5, 0.33, 0.24, 0.16, 0.12, 0.08, 0.065, 0.05, 0.033,
                 0.024, 0.016, 0.012, 0.008, 0.0065, 0.005, 0.0033, 0.0024, 0.0016, 0.0001}) {
            QTest::addRow("%g", peak) << peak;
        }
    }

    void the_axis_texts_are_readable_and_complete_at_every_range()
    {
        QFETCH(double, peak);
        ScopeFixture fixture;
        QVector<double> samples(256, peak);
        for (int k = 0; k < RangeKeeper::ShrinkAfter; ++k) {
            fixture.scope.plotEyeConsData(samples, samples);
        }
        for (const int type : {Scope::EyePattern, Scope::Constellation}) {
            fixture.scope.setPlotType(type);
            PlotView* view = plot(fixture.scope, "plotI");
            const QImage picture = view->grab().toImage();
            QVERIFY(view->yAxis->tickLabelFont().pixelSize() >= 16);
            // A text that does not fit would run over the edge.
            for (int y = 0; y < picture.height(); ++y) {
                QCOMPARE(picture.pixelColor(0, y), QColor(Qt::black));
                QCOMPARE(picture.pixelColor(picture.width() - 1, y), QColor(Qt::black));
            }
            // The labels of both ends of the range are there.
            const QRect area = view->dataArea();
            for (const int end : {area.top(), area.bottom()}) {
                QVERIFY(hasText(picture, QRect(area.left() - 30, end - 4, 22, 9)));
            }
            for (const int end : {area.left(), area.right()}) {
                QVERIFY(hasText(picture, QRect(end - 10, area.bottom() + 8, 21, 16)));
            }
        }
    }

    void clipping_is_shown_by_a_badge()
    {
        ScopeFixture fixture;
        QVector<double> loud(256, 0.5);
        loud[77] = -1.0;
        QVector<double> fine(256, 0.5);
        fixture.scope.plotEyeConsData(loud, fine);
        QCOMPARE(plot(fixture.scope, "plotI")->content()->badge(), QStringLiteral("CLIP"));
        QVERIFY(plot(fixture.scope, "plotQ")->content()->badge().isEmpty());
        fixture.scope.plotEyeConsData(fine, fine);
        QVERIFY(plot(fixture.scope, "plotI")->content()->badge().isEmpty());
    }

    void texts_are_at_least_14_pixels_high_and_can_be_read()
    {
        ScopeFixture fixture;
        const PlotView& view = *plot(fixture.scope, "plotI");
        for (const QCPAxis* axis : {view.xAxis, view.yAxis}) {
            QVERIFY(axis->tickLabelFont().pixelSize() >= 14 && axis->labelFont().pixelSize() >= 14);
            QVERIFY(contrast::ratio(axis->tickLabelColor(), Qt::black) >= contrast::Text);
            QVERIFY(contrast::ratio(axis->labelColor(), Qt::black) >= contrast::Text);
            QVERIFY(contrast::ratio(axis->basePen().color(), Qt::black) >= contrast::Outline);
        }
    }

    void hidden_plots_leave_a_note_that_says_why()
    {
        ScopeFixture fixture;
        const auto words = [&] {
            const QImage picture = fixture.scope.grab().toImage();
            int light = 0;
            for (int y = 0; y < picture.height(); ++y) {
                for (int x = 0; x < picture.width(); ++x) {
                    light += picture.pixelColor(x, y).lightness() > 80 ? 1 : 0;
                }
            }
            return light;
        };
        fixture.scope.setPlotsShown(false);
        QTRY_VERIFY(!plot(fixture.scope, "plotI")->isVisible());
        const int letters = words();
        QVERIFY2(letters > 100 && letters < 3000, qPrintable(QString::number(letters)));
        fixture.scope.setPlotsShown(true);
        QVERIFY(words() > 3000); // the plots instead
    }

    void a_clipped_block_only_fades_what_came_before_it()
    {
        ScopeFixture fixture;
        fixture.scope.setPlotType(Scope::Constellation);
        PlotView* view = plot(fixture.scope, "plotI");
        const DensityImage& image = fixture.scope.constellation().image();
        const auto show = [&](double level) {
            QVector<double> samples(256, level);
            fixture.scope.plotEyeConsData(samples, samples);
            view->grab();
        };
        const auto density = [&](double level) {
            const double middle = (image.size().width() - 1) / 2.0;
            const auto away = static_cast<int>(std::lround(level * middle * 2.0));
            return image.density(
                (image.size().width() - 1 + away) / 2, (image.size().height() - 1 - away) / 2);
        };
        show(0.5);
        show(-0.25);
        const int once = density(0.5);
        QVERIFY(once > 200);
        show(1.0);
        QCOMPARE(view->content()->badge(), QStringLiteral("CLIP"));
        QVERIFY(density(0.5) > 180 && density(0.5) < once);
        QVERIFY(density(-0.25) > 200);
        const int twice = density(0.5);
        show(0.75);
        QVERIFY(view->content()->badge().isEmpty());
        QVERIFY(density(0.5) > 160 && density(0.5) < twice);
        QVERIFY(density(1.0) > 200);
    }

    void a_clipped_block_only_fades_the_eye_before_it()
    {
        ScopeFixture fixture;
        PlotView* view = plot(fixture.scope, "plotI");
        const auto show = [&](double level) {
            QVector<double> samples(256, level);
            samples[77] = level > 0.9 ? 1.0 : level;
            fixture.scope.plotEyeConsData(samples, samples);
            return view->grab().toImage();
        };
        const auto redAt = [&](const QImage& picture, double level) {
            const QRect area = view->dataArea();
            const double row = (area.height() - 1) * (1.0 - level) / 2.0;
            const QPoint at(
                area.center().x() + 30, area.top() + static_cast<int>(std::lround(row)));
            return picture.pixelColor(at).red();
        };
        show(0.5);
        QVERIFY(redAt(show(-0.25), 0.5) > 150);
        QVERIFY(redAt(show(0.95), 0.5) > 150);
        const QImage after = show(0.75);
        QVERIFY(redAt(after, 0.5) > 130);
        QVERIFY(redAt(after, -0.25) > 150);
        QVERIFY(redAt(after, 0.95) > 150);
    }

    void the_badge_appears_and_disappears_on_the_screen_with_the_blocks()
    {
        ScopeFixture fixture;
        fixture.scope.setPlotType(Scope::Constellation);
        PlotView* view = plot(fixture.scope, "plotI");
        const auto shown = [&] {
            // What the window really shows, not a new picture.
            const QImage screen =
                fixture.scope.screen()->grabWindow(fixture.scope.winId()).toImage();
            const QPoint corner = view->mapTo(&fixture.scope, QPoint());
            const QRect area = view->dataArea().translated(corner);
            const QPoint besideTicks(area.left() + 20, corner.y());
            return yellowPixels(screen, QRect(besideTicks, area.topRight() - QPoint(0, 2))) > 20;
        };
        QVector<double> full(256, 1.0);
        QVector<double> half(256, 0.5);
        fixture.scope.plotEyeConsData(half, half);
        QTRY_VERIFY(!shown());
        fixture.scope.plotEyeConsData(full, full);
        QTRY_VERIFY(shown());
        fixture.scope.plotEyeConsData(half, half);
        QTRY_VERIFY(!shown());
    }

    void both_eyes_have_data_areas_of_the_same_size_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("the scopes page") << QSize(262, 322);
        QTest::newRow("an odd height") << QSize(262, 323);
        QTest::newRow("a wide and low one") << QSize(400, 211);
        QTest::newRow("a low one") << QSize(262, 140);
    }

    void both_eyes_have_data_areas_of_the_same_size()
    {
        QFETCH(QSize, size);
        ScopeFixture fixture;
        const auto areaOf = [&](const char* name) {
            PlotView* view = plot(fixture.scope, name);
            view->grab();
            return view->dataArea().translated(view->mapTo(&fixture.scope, QPoint()));
        };
        const auto areAlike = [&] {
            const QRect one = areaOf("plotI");
            const QRect other = areaOf("plotQ");
            return one.size() == other.size() && one.height() > 15 && one.left() == other.left();
        };
        QVERIFY(areAlike());
        fixture.scope.resize(size);
        QTRY_VERIFY(areAlike());
        fixture.scope.setPlotType(Scope::Constellation);
        fixture.scope.setPlotType(Scope::EyePattern);
        QTRY_VERIFY(areAlike());
        fixture.scope.setShowQPlot(false);
        QTRY_VERIFY(areaOf("plotI").height() > size.height() - 70);
        fixture.scope.setShowQPlot(true);
        QTRY_VERIFY(areAlike());
    }

    void plots_of_different_sizes_do_not_disturb_each_other()
    {
        EyePlot eye(QStringLiteral("I (% FS)"));
        ConstellationPlot constellation;
        QVector<double> samples(256);
        for (qsizetype k = 0; k < samples.size(); ++k) {
            samples[k] = std::sin(static_cast<double>(k));
        }
        eye.addBlock(samples);
        constellation.addBlock(samples, samples);
        PlotView small;
        PlotView large;
        small.setContent(&eye);
        large.setContent(&constellation);
        small.resize(200, 150);
        large.resize(500, 400);
        const QImage first = small.grab().toImage();
        const QImage second = large.grab().toImage();
        QCOMPARE(small.grab().toImage(), first);
        QCOMPARE(large.grab().toImage(), second);
        small.setContent(nullptr);
        large.setContent(nullptr);
    }

    void the_clip_badge_stands_beside_the_points_of_a_constellation()
    {
        ScopeFixture fixture;
        fixture.scope.setPlotType(Scope::Constellation);
        fixture.scope.setLineColor(1);
        QVector<double> full(256, 32767.0 / 32768.0);
        QVector<double> half(256, 0.5);
        PlotView* view = plot(fixture.scope, "plotI");
        const auto badgePixels = [view](QRect place) {
            return yellowPixels(view->grab().toImage(), place);
        };
        fixture.scope.plotEyeConsData(full, full);
        view->grab();
        const QRect area = view->dataArea();
        const QRect aboveArea(0, 0, view->width(), area.top());
        QVERIFY(badgePixels(aboveArea) > 20);
        QCOMPARE(badgePixels(area), 0);
        fixture.scope.plotEyeConsData(half, half);
        QCOMPARE(badgePixels(aboveArea), 0);
    }
};

QN740_TEST_MAIN(tst_ScopePlots)
#include "tst_ScopePlots.moc"
