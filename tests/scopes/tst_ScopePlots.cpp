// How a scope shows what it has received.
#include "scopes/ScopeBench.h"
#include "spectrum/Clock.h"
#include "support/Screen.h"
#include "support/TestMain.h"

#include <QScreen>

#include <cmath>

using namespace scopeBench;

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
        Bench bench;
        bench.scope.togglePlotType();
        QCOMPARE(bench.scope.plotType(), 2);
        QVERIFY(!plot(bench.scope, "plotQ")->isVisible());
        bench.scope.togglePlotType();
        QCOMPARE(bench.scope.plotType(), 1);
        QVERIFY(plot(bench.scope, "plotQ")->isVisible());
        bench.scope.setPlotType(0);
        QVERIFY(!plot(bench.scope, "plotQ")->isVisible());
        bench.scope.togglePlotType();
        QCOMPARE(bench.scope.plotType(), 1);
    }

    void a_change_of_the_plot_type_empties_the_plots()
    {
        Bench bench;
        bench.scope.setPlotType(Scope::Constellation);
        QVector<double> loud(256, 1.0);
        QVector<double> half(256, 0.5);
        bench.scope.plotEyeConsData(loud, half);
        QVERIFY(!bench.scope.constellation().plotted().isEmpty());
        bench.scope.setPlotType(Scope::Constellation); // none
        QVERIFY(!bench.scope.constellation().plotted().isEmpty());
        bench.scope.setPlotType(Scope::EyePattern);
        QVERIFY(bench.scope.constellation().plotted().isEmpty());
        bench.scope.setPlotType(Scope::Constellation);
        PlotView* view = plot(bench.scope, "plotI");
        QVERIFY(view->content()->badge().isEmpty());
        bench.scope.setLineColor(1);
        QCOMPARE(greenPixels(*view), 0);

        bench.scope.setPlotType(Scope::EyePattern);
        bench.scope.plotEyeConsData(half, half);
        QVERIFY(greenPixels(*view) > 100);
        bench.scope.clearPlots();
        QCOMPARE(greenPixels(*view), 0);
        bench.scope.plotEyeConsData(half, half);
        QVERIFY(greenPixels(*view) > 100);

        bench.scope.setPlotType(Scope::Sdi);
        QByteArray record("abcde");
        bench.scope.plotSdiData(record);
        QCOMPARE(shownRecords(bench.scope).size(), size_t(1));
        bench.scope.togglePlotType();
        bench.scope.setPlotType(Scope::Sdi);
        QVERIFY(shownRecords(bench.scope).empty());
    }

    void a_constellation_is_square_and_stays_in_the_middle()
    {
        Bench bench;
        bench.scope.setPlotType(Scope::Constellation);
        bench.scope.grab();
        const PlotView* view = plot(bench.scope, "plotI");
        QTRY_COMPARE(view->size(), QSize(262, 262));
        bench.scope.grab();
        QCOMPARE(view->dataArea().width(), view->dataArea().height());
        QCOMPARE(view->y(), 24);
        bench.scope.setDisableFixIsize(true);
        QVERIFY(bench.scope.disableFixIsize());
        QTRY_COMPARE(view->size(), QSize(262, 310));
        bench.scope.grab();
        QCOMPARE(view->dataArea().width(), view->dataArea().height());
    }

    void the_settings_answer_what_was_set()
    {
        Bench bench;
        QCOMPARE(bench.scope.numOfPlots(), 2);
        QVERIFY(bench.scope.showQPlot());
        QCOMPARE(bench.scope.sdiStripCount(), 5);
        bench.scope.setShowQPlot(false);
        QVERIFY(!bench.scope.showQPlot());
        QVERIFY(!plot(bench.scope, "plotQ")->isVisible());
        bench.scope.setShowQPlot(true);
        QVERIFY(plot(bench.scope, "plotQ")->isVisible());
        bench.scope.setNumOfPlots(1);
        QCOMPARE(bench.scope.numOfPlots(), 1);
        QVERIFY(!plot(bench.scope, "plotQ")->isVisible());
        bench.scope.setNumOfPlots(0);
        QCOMPARE(bench.scope.numOfPlots(), 0);
        QVERIFY(!plot(bench.scope, "plotI")->isVisible());
        QVERIFY(!plot(bench.scope, "plotQ")->isVisible());
        bench.scope.setNumOfPlots(2);
        QVERIFY(plot(bench.scope, "plotI")->isVisible());
        QVERIFY(plot(bench.scope, "plotQ")->isVisible());
        bench.scope.setSdiStripCount(3);
        QCOMPARE(bench.scope.sdiStripCount(), 3);
    }

    void a_line_colour_is_taken_by_its_number_data()
    {
        QTest::addColumn<int>("number");
        QTest::addColumn<QColor>("color");
        QTest::newRow("0 red") << 0 << QColor(255, 0, 0);
        QTest::newRow("1 green") << 1 << QColor(0, 255, 0);
        QTest::newRow("2 blue, light enough for black") << 2 << QColor(64, 64, 255);
        QTest::newRow("3 cyan") << 3 << QColor(0, 255, 255);
        QTest::newRow("4 magenta") << 4 << QColor(255, 0, 255);
        QTest::newRow("5 yellow") << 5 << QColor(255, 255, 0);
        QTest::newRow("6 white") << 6 << QColor(255, 255, 255);
        QTest::newRow("7 grey") << 7 << QColor(160, 160, 160);
        QTest::newRow("8 is none") << 8 << QColor(255, 0, 0);
        QTest::newRow("-1 is none") << -1 << QColor(255, 0, 0);
    }

    void a_line_colour_is_taken_by_its_number()
    {
        QFETCH(int, number);
        QFETCH(QColor, color);
        Bench bench;
        bench.scope.setLineColor(number);
        QCOMPARE(bench.scope.lineColor(), color);
        bench.scope.setPlotType(Scope::Constellation);
        QVector<double> zero(256, 0.25);
        bench.scope.plotEyeConsData(zero, zero);
        PlotView* view = plot(bench.scope, "plotI");
        const QImage picture = view->grab().toImage();
        const QRect area = view->dataArea();
        const auto at = [&](double part) {
            return static_cast<int>(std::lround((area.width() - 1) * part));
        };
        const QColor dot =
            picture.pixelColor(area.left() + at(0.625), area.top() + at(1.0 - 0.625));
        // a dot that was hit 256 times shines in its colour, mixed with white
        for (const auto& [part, full] : {std::pair{dot.red(), color.red()},
                 {dot.green(), color.green()}, {dot.blue(), color.blue()}}) {
            QVERIFY(part >= full - 2);
        }
    }

    void hidden_plots_are_not_painted_but_blocks_are_passed_on()
    {
        Bench bench(false);
        QVERIFY(bench.line.write(steady(1, 2) + steady(3, 4)));
        QTRY_COMPARE(bench.blocks.size(), 2);
        QTest::qWait(100); // longer than the pause before a painting
        QCOMPARE(plot(bench.scope, "plotI")->paintCount(), 0);
        QCOMPARE(plot(bench.scope, "plotQ")->paintCount(), 0);
    }

    void without_plots_blocks_are_passed_on_all_the_same()
    {
        Bench bench;
        bench.scope.setNumOfPlots(0);
        const int before = plot(bench.scope, "plotI")->paintCount();
        QVERIFY(bench.line.write(steady(1, 2)));
        QTRY_COMPARE(bench.blocks.size(), 1);
        QTest::qWait(100); // longer than the pause before a painting
        QCOMPARE(plot(bench.scope, "plotI")->paintCount(), before);
    }

    void plots_can_be_hidden_while_the_scope_goes_on_receiving()
    {
        Bench bench;
        bench.scope.setPlotsShown(false);
        QVERIFY(!plot(bench.scope, "plotI")->isVisible());
        QVERIFY(!plot(bench.scope, "plotQ")->isVisible());
        QVERIFY(bench.scope.isVisible());
        QCOMPARE(bench.scope.size(), QSize(262, 310));
        QVERIFY(bench.line.write(steady(1, 2)));
        QTRY_COMPARE(bench.blocks.size(), 1);
        // a change of type shows none of them
        bench.scope.setPlotType(2);
        QVERIFY(!plot(bench.scope, "plotI")->isVisible());
        bench.scope.setPlotType(1);
        bench.scope.setPlotsShown(true);
        QVERIFY(plot(bench.scope, "plotI")->isVisible());
        QVERIFY(plot(bench.scope, "plotQ")->isVisible());
    }

    void what_came_while_hidden_is_there_when_it_is_shown()
    {
        Bench bench(false);
        QVector<double> half(256, 0.5);
        bench.scope.plotEyeConsData(half, half);
        bench.scope.show();
        PlotView* view = plot(bench.scope, "plotI");
        QTRY_VERIFY(view->paintCount() > 0);
        const QImage picture = view->grab().toImage();
        const QRect area = view->dataArea();
        const int row = area.top() + static_cast<int>(std::lround((area.height() - 1) * 0.25));
        QVERIFY(picture.pixelColor(area.center().x() + 30, row).red() > 200);
    }

    void a_touch_on_a_plot_changes_between_fitted_and_fixed_range()
    {
        Bench bench;
        QVERIFY(!bench.scope.fixedRange());
        QVector<double> quiet(256, 0.05);
        for (int k = 0; k < RangeKeeper::ShrinkAfter; ++k) {
            bench.scope.plotEyeConsData(quiet, quiet);
        }
        PlotView* view = plot(bench.scope, "plotI");
        view->grab();
        QCOMPARE(view->yAxis->range().upper, 6.0);
        clickOn(view);
        QVERIFY(bench.scope.fixedRange());
        view->grab();
        QCOMPARE(view->yAxis->range().upper, 100.0);
        // the newest block is still there, in the new range
        const QImage picture = view->grab().toImage();
        const QRect area = view->dataArea();
        const int row = area.top() + static_cast<int>(std::lround((area.height() - 1) * 0.475));
        QVERIFY(picture.pixelColor(area.center().x() + 30, row).red() > 150);
        clickOn(plot(bench.scope, "plotQ"));
        QVERIFY(!bench.scope.fixedRange());
        view->grab();
        QCOMPARE(view->yAxis->range().upper, 6.0);
    }

    void the_axes_are_readable_and_whole_at_every_range_data()
    {
        QTest::addColumn<double>("peak");
        for (const double peak : {1.0, 0.65, 0.5, 0.33, 0.24, 0.16, 0.12, 0.08, 0.065, 0.05, 0.033,
                 0.024, 0.016, 0.012, 0.008, 0.0065, 0.005, 0.0033, 0.0024, 0.0016, 0.0001}) {
            QTest::addRow("%g", peak) << peak;
        }
    }

    void the_axes_are_readable_and_whole_at_every_range()
    {
        QFETCH(double, peak);
        Bench bench;
        QVector<double> samples(256, peak);
        for (int k = 0; k < RangeKeeper::ShrinkAfter; ++k) {
            bench.scope.plotEyeConsData(samples, samples);
        }
        for (const int type : {Scope::EyePattern, Scope::Constellation}) {
            bench.scope.setPlotType(type);
            PlotView* view = plot(bench.scope, "plotI");
            const QImage picture = view->grab().toImage();
            QVERIFY(view->yAxis->tickLabelFont().pixelSize() >= 16);
            // what does not fit would run over the edge
            for (int y = 0; y < picture.height(); ++y) {
                QCOMPARE(picture.pixelColor(0, y), QColor(Qt::black));
                QCOMPARE(picture.pixelColor(picture.width() - 1, y), QColor(Qt::black));
            }
            // and the labels of the ranges' ends are there
            const QRect area = view->dataArea();
            for (const int end : {area.top(), area.bottom()}) {
                QVERIFY(hasText(picture, QRect(area.left() - 30, end - 4, 22, 9)));
            }
            for (const int end : {area.left(), area.right()}) {
                QVERIFY(hasText(picture, QRect(end - 10, area.bottom() + 8, 21, 16)));
            }
        }
    }

    void clipping_is_told_on_the_plot()
    {
        Bench bench;
        QVector<double> loud(256, 0.5);
        loud[77] = -1.0;
        QVector<double> fine(256, 0.5);
        bench.scope.plotEyeConsData(loud, fine);
        QCOMPARE(plot(bench.scope, "plotI")->content()->badge(), QStringLiteral("CLIP"));
        QVERIFY(plot(bench.scope, "plotQ")->content()->badge().isEmpty());
        bench.scope.plotEyeConsData(fine, fine);
        QVERIFY(plot(bench.scope, "plotI")->content()->badge().isEmpty());
    }

    void a_plot_that_gets_no_more_data_says_so_data()
    {
        QTest::addColumn<int>("plotType");
        QTest::addColumn<bool>("withQ");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("eye pattern") << int(Scope::EyePattern) << true << steady(16000, 16000);
        QTest::newRow("constellation") << int(Scope::Constellation) << false << steady(16000, 0);
        QTest::newRow("SDI") << int(Scope::Sdi) << false
                             << QByteArray("\x01\xff"
                                           "12345");
    }

    void a_plot_that_gets_no_more_data_says_so()
    {
        QFETCH(int, plotType);
        QFETCH(bool, withQ);
        QFETCH(QByteArray, bytes);
        Bench bench;
        bench.scope.setPlotType(plotType);
        auto* silence = bench.scope.findChild<QTimer*>("silence");
        QVERIFY(silence != nullptr && !silence->isActive());
        const auto badges = [&] {
            return QStringList{plot(bench.scope, "plotI")->content()->badge(),
                withQ ? plot(bench.scope, "plotQ")->content()->badge() : "NO DATA"};
        };
        const auto received = [&] { return bench.blocks.size() + bench.records.size(); };
        bench.line.write(bytes);
        QTRY_COMPARE(received(), 1);
        QVERIFY(badges().first().isEmpty());
        QCOMPARE(testClock::intervals(silence), QList<int>{2000});
        testClock::expire(silence);
        QCOMPARE(badges(), (QStringList{"NO DATA", "NO DATA"}));
        const int painted = plot(bench.scope, "plotI")->paintCount();
        QTRY_VERIFY(plot(bench.scope, "plotI")->paintCount() > painted);

        bench.line.write(bytes);
        QTRY_COMPARE(received(), 2);
        QVERIFY(badges().first().isEmpty());
        QVERIFY(silence->isActive());
        bench.scope.clearPlots();
        QVERIFY(!silence->isActive());
        QVERIFY(badges().first().isEmpty());
    }

    void a_scope_that_is_on_and_gets_nothing_says_so()
    {
        Bench bench;
        bench.scope.setOff(false);
        testClock::expire(bench.scope.findChild<QTimer*>("silence"));
        QCOMPARE(plot(bench.scope, "plotI")->content()->badge(), QStringLiteral("NO DATA"));
    }

    void a_scope_that_is_off_forgets_the_block_that_was_under_way()
    {
        Bench bench;
        auto* silence = bench.scope.findChild<QTimer*>("silence");
        bench.scope.setPlotType(Scope::Constellation);
        bench.scope.setOff(true);
        QVERIFY(!silence->isActive());
        bench.line.write(steady(16000, 16000));
        QTRY_COMPARE(bench.blocks.size(), 1);
        QVERIFY(!bench.scope.constellation().plotted().isEmpty());
        testClock::expire(silence);
        QVERIFY(bench.scope.constellation().plotted().isEmpty());
        QVERIFY(plot(bench.scope, "plotI")->content()->badge().isEmpty());
        QVERIFY(!silence->isActive());
    }

    void hidden_plots_leave_a_word_of_why()
    {
        Bench bench;
        const auto words = [&] {
            const QImage picture = bench.scope.grab().toImage();
            int light = 0;
            for (int y = 0; y < picture.height(); ++y) {
                for (int x = 0; x < picture.width(); ++x) {
                    light += picture.pixelColor(x, y).lightness() > 80 ? 1 : 0;
                }
            }
            return light;
        };
        bench.scope.setPlotsShown(false);
        QTRY_VERIFY(!plot(bench.scope, "plotI")->isVisible());
        const int letters = words();
        QVERIFY2(letters > 100 && letters < 3000, qPrintable(QString::number(letters)));
        bench.scope.setPlotsShown(true);
        QVERIFY(words() > 3000); // the plots instead
    }

    void a_clipped_block_only_fades_what_came_before_it()
    {
        Bench bench;
        bench.scope.setPlotType(Scope::Constellation);
        PlotView* view = plot(bench.scope, "plotI");
        const DensityImage& image = bench.scope.constellation().image();
        const auto show = [&](double level) {
            QVector<double> samples(256, level);
            bench.scope.plotEyeConsData(samples, samples);
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
        Bench bench;
        PlotView* view = plot(bench.scope, "plotI");
        const auto show = [&](double level) {
            QVector<double> samples(256, level);
            samples[77] = level > 0.9 ? 1.0 : level;
            bench.scope.plotEyeConsData(samples, samples);
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

    void the_badge_comes_and_goes_on_the_screen_with_the_blocks()
    {
        Bench bench;
        bench.scope.setPlotType(Scope::Constellation);
        PlotView* view = plot(bench.scope, "plotI");
        const auto shown = [&] {
            // what the window really shows, not a picture made anew
            const QImage screen = bench.scope.screen()->grabWindow(bench.scope.winId()).toImage();
            const QPoint corner = view->mapTo(&bench.scope, QPoint());
            const QRect area = view->dataArea().translated(corner);
            const QPoint besideTicks(area.left() + 20, corner.y());
            return yellowPixels(screen, QRect(besideTicks, area.topRight() - QPoint(0, 2))) > 20;
        };
        QVector<double> full(256, 1.0);
        QVector<double> half(256, 0.5);
        bench.scope.plotEyeConsData(half, half);
        QTRY_VERIFY(!shown());
        bench.scope.plotEyeConsData(full, full);
        QTRY_VERIFY(shown());
        bench.scope.plotEyeConsData(half, half);
        QTRY_VERIFY(!shown());
    }

    void both_eyes_have_data_areas_of_one_size_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("the scopes page") << QSize(262, 322);
        QTest::newRow("an odd height") << QSize(262, 323);
        QTest::newRow("a wide and low one") << QSize(400, 211);
        QTest::newRow("a low one") << QSize(262, 140);
    }

    void both_eyes_have_data_areas_of_one_size()
    {
        QFETCH(QSize, size);
        Bench bench;
        const auto areaOf = [&](const char* name) {
            PlotView* view = plot(bench.scope, name);
            view->grab();
            return view->dataArea().translated(view->mapTo(&bench.scope, QPoint()));
        };
        const auto areAlike = [&] {
            const QRect one = areaOf("plotI");
            const QRect other = areaOf("plotQ");
            return one.size() == other.size() && one.height() > 15 && one.left() == other.left();
        };
        QVERIFY(areAlike());
        bench.scope.resize(size);
        QTRY_VERIFY(areAlike());
        bench.scope.setPlotType(Scope::Constellation);
        bench.scope.setPlotType(Scope::EyePattern);
        QTRY_VERIFY(areAlike());
        bench.scope.setShowQPlot(false);
        QTRY_VERIFY(areaOf("plotI").height() > size.height() - 70);
        bench.scope.setShowQPlot(true);
        QTRY_VERIFY(areAlike());
    }

    void clipping_is_told_beside_the_points_of_a_constellation()
    {
        Bench bench;
        bench.scope.setPlotType(Scope::Constellation);
        bench.scope.setLineColor(1);
        QVector<double> full(256, 32767.0 / 32768.0);
        QVector<double> half(256, 0.5);
        PlotView* view = plot(bench.scope, "plotI");
        const auto badgePixels = [view](QRect place) {
            return yellowPixels(view->grab().toImage(), place);
        };
        bench.scope.plotEyeConsData(full, full);
        view->grab();
        const QRect area = view->dataArea();
        const QRect aboveArea(0, 0, view->width(), area.top());
        QVERIFY(badgePixels(aboveArea) > 20);
        QCOMPARE(badgePixels(area), 0);
        bench.scope.plotEyeConsData(half, half);
        QCOMPARE(badgePixels(aboveArea), 0);
    }
};

QN740_TEST_MAIN(tst_ScopePlots)
#include "tst_ScopePlots.moc"
