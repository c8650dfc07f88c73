#include "scopes/ConstellationPlot.h"
#include "support/TestMain.h"

#include <limits>

namespace {
QImage black(QSize size)
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::black);
    return picture;
}
} // namespace

class tst_ConstellationPlot : public QObject
{
    Q_OBJECT

private slots:
    void a_pair_is_drawn_with_i_to_the_right_and_q_upwards()
    {
        ConstellationPlot plot;
        plot.resize({101, 101});
        plot.addBlock({0.5, -1.0}, {0.2, -1.0});
        QImage picture = black({101, 101});
        plot.paint(picture);
        QVERIFY(plot.image().density(75, 40) > 0);
        QVERIFY(plot.image().density(0, 100) > 0);
        QCOMPARE(plot.image().density(50, 50), 0);
        QVERIFY(picture.pixelColor(75, 40).red() > 150);
    }

    void both_axes_are_equally_long_and_have_units()
    {
        const PlotAxes axes = ConstellationPlot().axes();
        QVERIFY(axes.square);
        QCOMPARE(axes.xLabel, QStringLiteral("I (% FS)"));
        QCOMPARE(axes.yLabel, QStringLiteral("Q (% FS)"));
        QCOMPARE(axes.xMin, -100.0);
        QCOMPARE(axes.xMin, axes.yMin);
        QCOMPARE(axes.xMax, axes.yMax);
    }

    void the_plotted_points_can_be_read_back()
    {
        ConstellationPlot plot;
        QVERIFY(plot.plotted().isEmpty());
        plot.addBlock({0.1, 0.2, 0.3}, {-0.1, -0.2});
        QCOMPARE(plot.plotted(), (QVector<QPointF>{{0.1, -0.1}, {0.2, -0.2}}));
    }

    void the_first_pair_of_a_whole_block_is_left_out()
    {
        ConstellationPlot plot;
        plot.resize({101, 101});
        QVector<double> i(256, 0.5);
        QVector<double> q(256, 0.5);
        q[0] = -0.5; // the I beside it is not its own
        plot.addBlock(i, q);
        QImage picture = black({101, 101});
        plot.paint(picture);
        QVERIFY(plot.image().density(75, 25) > 0);
        QCOMPARE(plot.image().density(75, 75), 0);
        QCOMPARE(plot.plotted(), QVector<QPointF>(255, QPointF(0.5, 0.5)));
    }

    void the_last_blocks_fade()
    {
        ConstellationPlot plot;
        plot.resize({101, 101});
        QImage picture = black({101, 101});
        plot.addBlock({0.5}, {0.5});
        plot.paint(picture);
        const int fresh = plot.image().density(75, 25);
        plot.addBlock({-0.5}, {0.5});
        plot.paint(picture);
        QVERIFY(plot.image().density(75, 25) < fresh);
        QCOMPARE(plot.image().density(25, 25), fresh);
    }

    void a_new_limit_clears_old_blocks_and_rescales()
    {
        ConstellationPlot plot;
        plot.resize({101, 101});
        QImage picture = black({101, 101});
        plot.addBlock({0.25}, {0.25});
        plot.paint(picture);
        plot.setLimit(0.5);
        plot.addBlock({0.25}, {0.25});
        plot.paint(picture);
        QVERIFY(plot.image().density(75, 25) > 0);
        QCOMPARE(plot.image().density(62, 38), 0);
    }

    void ideal_points_are_small_crosses()
    {
        ConstellationPlot plot;
        plot.resize({101, 101});
        plot.setIdealPoints({{0.5, 0.5}, {-0.5, 0.0}, {1.0, -1.0}, {7.0, 0.0}});
        QImage picture = black({101, 101});
        plot.paint(picture);
        const auto isWhite = [&](int x, int y) {
            return picture.pixelColor(x, y) == QColor(Qt::white);
        };
        for (const QPoint& middle : {QPoint(75, 25), QPoint(25, 50)}) {
            for (int arm = -5; arm <= 5; ++arm) {
                QVERIFY(isWhite(middle.x() + arm, middle.y()));
                QVERIFY(isWhite(middle.x(), middle.y() + arm));
            }
            QVERIFY(
                !isWhite(middle.x() + 6, middle.y()) && !isWhite(middle.x() + 1, middle.y() + 1));
        }
        QVERIFY(isWhite(100, 100) && isWhite(95, 100)); // as much of it as lies inside
        plot.setIdealPoints({});
        picture.fill(Qt::black);
        plot.paint(picture);
        QCOMPARE(picture, black({101, 101}));
    }

    void undrawn_blocks_do_not_accumulate()
    {
        ConstellationPlot plot;
        for (int k = 0; k < 100'000; ++k) {
            plot.addBlock({0.0}, {0.0});
        }
        plot.resize({101, 101});
        plot.addBlock({0.5}, {0.5});
        QImage picture = black({101, 101});
        plot.paint(picture);
        QVERIFY(plot.image().density(75, 25) > 0);
    }

    void extreme_values_and_sizes_are_tolerated()
    {
        const double wild = std::numeric_limits<double>::infinity();
        const double nan = std::numeric_limits<double>::quiet_NaN();
        ConstellationPlot plot;
        for (const QSize size : {QSize(100, 50), QSize(1, 1), QSize(0, 0)}) {
            plot.resize(size);
            plot.addBlock({wild, -wild, nan, 1e30, 0.0}, {nan, wild, 0.0, -1e30, 1e300});
            QImage picture = black(size);
            plot.paint(picture);
        }
        // A good block is still drawn at its place.
        plot.resize({101, 101});
        plot.addBlock({0.5}, {0.2});
        QImage picture = black({101, 101});
        plot.paint(picture);
        QVERIFY(plot.image().density(75, 40) > 100);
        QVERIFY(picture.pixelColor(75, 40).red() > 150);
        QCOMPARE(plot.plotted(), (QVector<QPointF>{{0.5, 0.2}}));
    }
};

QN740_TEST_MAIN(tst_ConstellationPlot)
#include "tst_ConstellationPlot.moc"
