#include "scopes/PlotView.h"
#include "scopes/Scope.h"
#include "scopes/Streams.h"
#include "support/Pty.h"
#include "support/Screen.h"
#include "support/TestMain.h"

#include <QSignalSpy>

#include <cmath>
#include <deque>

namespace {

// The records that the upper plot shows.
std::deque<QByteArray> shownRecords(const Scope& scope)
{
    const auto* view = scope.findChild<PlotView*>(QStringLiteral("plotI"));
    const auto* strips = dynamic_cast<const SdiPlot*>(view->content());
    return strips != nullptr ? strips->records() : std::deque<QByteArray>();
}

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

PlotView* plot(const Scope& scope, const char* name)
{
    return scope.findChild<PlotView*>(QLatin1String(name));
}

QByteArray steady(int i, int q)
{
    return streams::block(QVector<int>(256, i), QVector<int>(256, q));
}

// A scope with its port on a pseudo-terminal, shown.
struct Bench
{
    DeviceDirectory devices;
    Pty& line = devices.add(QStringLiteral("ttyUSB1"));
    Scope scope{QStringLiteral("ttyUSB1"), 1, nullptr};
    QSignalSpy blocks{&scope, &Scope::rcv_eye_msg};
    QSignalSpy records{&scope, &Scope::rcv_sdi_msg};

    explicit Bench(bool shown = true)
    {
        scope.resize(262, 310);
        if (shown) {
            scope.show();
            static_cast<void>(QTest::qWaitForWindowExposed(&scope));
        }
    }
};

} // namespace

class tst_Scope : public QObject
{
    Q_OBJECT

private slots:
    void opens_its_port_with_the_line_s_settings()
    {
        Bench bench;
        QVERIFY(bench.scope.portIsOpen());
        QCOMPARE(bench.scope.portName(), QStringLiteral("ttyUSB1"));
        QCOMPARE(bench.scope.demodulator(), 1);
        QCOMPARE(bench.scope.port().baudRate(), 115200);
        QCOMPARE(bench.scope.port().readBufferSize(), qint64(4096));
    }

    void begins_as_eye_pattern_in_red_with_two_plots()
    {
        Bench bench;
        QCOMPARE(bench.scope.plotType(), static_cast<int>(Scope::EyePattern));
        QCOMPARE(bench.scope.lineColor(), QColor(255, 0, 0));
        QVERIFY(plot(bench.scope, "plotI")->isVisible());
        QVERIFY(plot(bench.scope, "plotQ")->isVisible());
        QVERIFY(plot(bench.scope, "plotI")->y() < plot(bench.scope, "plotQ")->y());
        QCOMPARE(bench.scope.layout()->contentsMargins(), QMargins());
        QVERIFY(plot(bench.scope, "plotI")->geometry().left() == 0);
    }

    void a_block_is_plotted_and_passed_on()
    {
        Bench bench;
        PlotView* plotI = plot(bench.scope, "plotI");
        const int before = plotI->paintCount();
        QVERIFY(bench.line.write(steady(16384, -8192)));
        QTRY_COMPARE(bench.blocks.size(), 1);
        const auto i = bench.blocks.first().at(0).value<QVector<double>>();
        const auto q = bench.blocks.first().at(1).value<QVector<double>>();
        QCOMPARE(i, QVector<double>(256, 0.5));
        QCOMPARE(q, QVector<double>(256, -0.25));
        QTRY_VERIFY(plotI->paintCount() > before);
        const QImage picture = plotI->grab().toImage();
        const QRect area = plotI->dataArea();
        const int row = area.top() + static_cast<int>(std::lround((area.height() - 1) * 0.25));
        QVERIFY(picture.pixelColor(area.center().x() + 30, row).red() > 200);
    }

    void a_broken_block_yields_no_plot_and_no_signal_data()
    {
        QTest::addColumn<int>("record");
        QTest::addColumn<int>("index");
        QTest::newRow("100 carries 101") << 100 << 101;
        QTest::newRow("the last carries 0") << 255 << 0;
    }

    void a_broken_block_yields_no_plot_and_no_signal()
    {
        QFETCH(int, record);
        QFETCH(int, index);
        Bench bench;
        bench.scope.setPlotType(Scope::Constellation);
        QVERIFY(bench.line.write(steady(200, 200)));
        QTRY_COMPARE(bench.blocks.size(), 1);
        PlotView* view = plot(bench.scope, "plotI");
        QTRY_VERIFY(view->paintCount() > 0);
        QTest::qWait(100); // until nothing is left to be painted
        const int paints = view->paintCount();
        const QVector<QPointF> plotted = bench.scope.constellation().plotted();
        QCOMPARE(plotted.at(7), QPointF(200 / 32768.0, 200 / 32768.0));

        QByteArray broken = steady(100, 100);
        qToBigEndian(static_cast<quint16>(index), broken.data() + record * 6);
        QVERIFY(bench.line.write(broken.left(1535)));
        QTRY_VERIFY(bench.scope.decoder().synced());
        QVERIFY(bench.line.write(broken.right(1)));
        QTRY_VERIFY(!bench.scope.decoder().synced());
        QTest::qWait(100); // longer than the pause before a painting
        QCOMPARE(bench.blocks.size(), 1);
        QCOMPARE(view->paintCount(), paints);
        QCOMPARE(bench.scope.constellation().plotted(), plotted);

        QVERIFY(bench.line.write(steady(300, 300)));
        QTRY_COMPARE(bench.blocks.size(), 2);
        QCOMPARE(bench.blocks.last().at(0).value<QVector<double>>().at(9), 300 / 32768.0);
        QTRY_VERIFY(view->paintCount() > paints);
    }

    void a_block_is_plotted_before_it_is_passed_on()
    {
        Bench bench;
        bench.scope.setPlotType(Scope::Constellation);
        QVector<QPointF> plotted;
        connect(&bench.scope, &Scope::rcv_eye_msg, this,
            [&] { plotted = bench.scope.constellation().plotted(); });
        for (const int level : {8192, 16384}) {
            QVERIFY(bench.line.write(steady(level, -level)));
            QTRY_COMPARE(plotted.value(254), QPointF(level / 32768.0, -level / 32768.0));
        }
        QCOMPARE(bench.blocks.size(), 2);
    }

    void a_record_is_plotted_before_it_is_passed_on()
    {
        Bench bench;
        bench.scope.setPlotType(Scope::Sdi);
        QByteArray plotted;
        connect(&bench.scope, &Scope::rcv_sdi_msg, this, [&] {
            const std::deque<QByteArray> records = shownRecords(bench.scope);
            plotted = records.empty() ? QByteArray() : records.back();
        });
        for (const char* record : {"abcde", "fghij"}) {
            QVERIFY(bench.line.write(QByteArray("\x00\xff", 2) + record));
            QTRY_COMPARE(plotted, QByteArray(record));
        }
    }

    // However the line cuts what the port hands over at once.
    void any_cut_of_the_stream_gives_what_byte_by_byte_gives_data()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 1; seed <= 4; ++seed) {
            QTest::addRow("seed %u", seed) << seed;
        }
    }

    void any_cut_of_the_stream_gives_what_byte_by_byte_gives()
    {
        QFETCH(quint32, seed);
        std::mt19937 random(seed);
        QByteArray blocks;
        for (int k = 0; k < 40; ++k) {
            blocks += streams::randomBlock(random);
        }
        const QByteArray bytes = streams::mutated(random, blocks, 5000).mid(700);
        streams::PlainReceiver plain;
        for (const char byte : bytes) {
            plain.take(byte);
        }
        QVERIFY(plain.blocks.i.size() > 10);
        Bench bench(false);
        for (qsizetype at = 0; at < bytes.size();) {
            const QByteArray piece = bytes.mid(at, 1 + static_cast<qsizetype>(random() % 4000));
            at += piece.size();
            QVERIFY(bench.line.write(piece));
            if (random() % 2 == 0) {
                QCoreApplication::processEvents();
            }
        }
        QTRY_COMPARE(bench.blocks.size(), plain.blocks.i.size());
        for (int k = 0; k < bench.blocks.size(); ++k) {
            QCOMPARE(bench.blocks.at(k).at(0).value<QVector<double>>(), plain.blocks.i.at(k));
            QCOMPARE(bench.blocks.at(k).at(1).value<QVector<double>>(), plain.blocks.q.at(k));
        }
    }

    void many_blocks_at_once_are_all_passed_on_in_order()
    {
        Bench bench;
        QByteArray bytes;
        for (int k = 1; k <= 20; ++k) {
            bytes += steady(k * 100, 0);
        }
        QVERIFY(bench.line.write(bytes));
        QTRY_COMPARE(bench.blocks.size(), 20);
        for (int k = 1; k <= 20; ++k) {
            QCOMPARE(
                bench.blocks.at(k - 1).at(0).value<QVector<double>>().at(1), k * 100 / 32768.0);
        }
    }

    void a_stream_that_starts_mid_block_and_loses_bytes_is_still_shown()
    {
        Bench bench;
        bench.scope.plotClickSlot(); // fixed range
        QByteArray bytes;
        for (int k = 0; k < 60; ++k) {
            bytes += steady(16384, 16384);
        }
        bytes.remove(0, 900);
        int lost = 0;
        for (qsizetype at = 9999; at < bytes.size(); at += 9999) {
            bytes.remove(at, 1);
            ++lost;
        }
        QVERIFY(bench.line.write(bytes));
        QTRY_VERIFY(bench.blocks.size() >= 59 - 2 * lost);
        PlotView* plotI = plot(bench.scope, "plotI");
        QTRY_VERIFY(plotI->paintCount() > 0);
        const QImage picture = plotI->grab().toImage();
        const QRect area = plotI->dataArea();
        const int row = area.top() + static_cast<int>(std::lround((area.height() - 1) * 0.25));
        QVERIFY(picture.pixelColor(area.center().x() + 30, row).red() > 200);
    }

    void an_sdi_read_is_plotted_and_passed_on()
    {
        Bench bench;
        bench.scope.setPlotType(Scope::Sdi);
        QVERIFY(bench.line.write(QByteArray("\x00\xff"
                                            "abcde",
            7)));
        QTRY_COMPARE(bench.records.size(), 1);
        QCOMPARE(bench.records.first().first().toByteArray(), QByteArray("abcde"));
        QVERIFY(bench.blocks.isEmpty());
    }

    void an_sdi_read_that_begins_with_its_start_byte_yields_nothing()
    {
        Bench bench;
        bench.scope.setPlotType(Scope::Sdi);
        QVERIFY(bench.line.write(QByteArray("\xff"
                                            "abcde")));
        QTest::qWait(100); // nothing can be waited for: let the read happen
        QVERIFY(bench.line.write(QByteArray("\x00\xff"
                                            "12345",
            7)));
        QTRY_COMPARE(bench.records.size(), 1);
        QCOMPARE(bench.records.first().first().toByteArray(), QByteArray("12345"));
    }

    void every_other_plot_type_receives_blocks_data()
    {
        QTest::addColumn<int>("type");
        for (const int type : {1, 2, 3, -1, 1000}) {
            QTest::addRow("%d", type) << type;
        }
    }

    void every_other_plot_type_receives_blocks()
    {
        QFETCH(int, type);
        Bench bench;
        bench.scope.setPlotType(type);
        QVERIFY(bench.line.write(steady(1, 1)));
        QTRY_COMPARE(bench.blocks.size(), 1);
        QVERIFY(bench.records.isEmpty());
    }

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
        QVERIFY(view->content()->axes().badge.isEmpty());
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
        QCOMPARE(plot(bench.scope, "plotI")->content()->axes().badge, QStringLiteral("CLIP"));
        QVERIFY(plot(bench.scope, "plotQ")->content()->axes().badge.isEmpty());
        bench.scope.plotEyeConsData(fine, fine);
        QVERIFY(plot(bench.scope, "plotI")->content()->axes().badge.isEmpty());
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
            const QImage picture = view->grab(place).toImage();
            int found = 0;
            for (int y = 0; y < picture.height(); ++y) {
                for (int x = 0; x < picture.width(); ++x) {
                    const QColor color = picture.pixelColor(x, y);
                    found += color.red() > 200 && color.blue() < 40 ? 1 : 0;
                }
            }
            return found;
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

    void the_interpolator_gives_the_same_as_the_filter_in_bulk_data()
    {
        QTest::addColumn<int>("factor");
        for (const int factor : {1, 2, 3, 8, 16}) {
            QTest::addRow("%d", factor) << factor;
        }
    }

    void the_interpolator_gives_the_same_as_the_filter_in_bulk()
    {
        QFETCH(int, factor);
        Bench bench(false);
        QVector<double> samples;
        for (int k = 0; k < 64; ++k) {
            samples.append(std::sin(k * 0.7) - 0.3 * std::cos(k * 1.1));
        }
        const QVector<double> one = bench.scope.interpolator(samples, factor);
        const QVector<double> other = Interpolator(factor).interpolate(samples);
        QCOMPARE(one.size(), 64 * factor);
        for (int n = 0; n < one.size(); ++n) {
            QVERIFY(std::abs(one.at(n) - other.at(n)) < 1e-12);
        }
        QVERIFY(bench.scope.interpolator({}, factor).isEmpty());
    }

    void a_step_of_the_filter()
    {
        Bench bench(false);
        const double taps[] = {0.5, 0.25};
        double delay[2] = {};
        int state = 0;
        QCOMPARE(bench.scope.fir_double_z(1.0, 2, taps, delay, state), 0.5);
        QCOMPARE(bench.scope.fir_double_z(1.0, 2, taps, delay, state), 0.75);
    }

    void an_absent_port_is_tried_again_until_it_is_there()
    {
        DeviceDirectory devices;
        Scope scope(QStringLiteral("ttyUSB2"), 2, nullptr);
        QVERIFY(!scope.portIsOpen());
        Pty& line = devices.add(QStringLiteral("ttyUSB2"));
        QTRY_VERIFY_WITH_TIMEOUT(scope.portIsOpen(), 20000);
        QSignalSpy blocks(&scope, &Scope::rcv_eye_msg);
        QVERIFY(line.write(steady(1, 1)));
        QTRY_COMPARE(blocks.size(), 1);
    }

    void a_lost_port_comes_back()
    {
        Bench bench;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("was lost")));
        bench.line.close();
        QTRY_VERIFY(!bench.scope.portIsOpen());
        Pty& line = bench.devices.add(QStringLiteral("ttyUSB1"));
        QTRY_VERIFY_WITH_TIMEOUT(bench.scope.portIsOpen(), 20000);
        QVERIFY(line.write(steady(1, 1)));
        QTRY_COMPARE(bench.blocks.size(), 1);
    }

    void whoever_gets_a_block_may_delete_the_scope()
    {
        DeviceDirectory devices;
        Pty& line = devices.add(QStringLiteral("ttyUSB1"));
        QPointer<Scope> scope = new Scope(QStringLiteral("ttyUSB1"), 1, nullptr);
        connect(scope, &Scope::rcv_eye_msg, this, [&] { delete scope; });
        QVERIFY(line.write(steady(1, 1) + steady(2, 2)));
        QTRY_VERIFY(scope.isNull());
    }

    void odd_data_do_no_harm()
    {
        Bench bench;
        QVector<double> none;
        QVector<double> few(3, std::nan(""));
        bench.scope.plotEyeConsData(none, few);
        bench.scope.setPlotType(Scope::Constellation);
        bench.scope.plotEyeConsData(few, none);
        QByteArray record("ab");
        bench.scope.plotSdiData(record);
        bench.scope.setPlotType(Scope::Sdi);
        bench.scope.grab();
        bench.scope.resize(1, 1);
        bench.scope.grab();
    }
};

QN740_TEST_MAIN(tst_Scope)
#include "tst_Scope.moc"
