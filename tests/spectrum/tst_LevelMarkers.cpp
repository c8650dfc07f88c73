#include "spectrum/ChartLook.h"
#include "spectrum/LevelMarkers.h"
#include "support/TestMain.h"

#include <QPainter>

#include <qcustomplot.h>

namespace {

constexpr double Lowest = -120.0;
constexpr double Highest = 10.0;
const QRect Area(0, 20, 200, 131); // rows 20 to 150, one per dB
const Scale Levels(Lowest, Highest, 150.0, 20.0);

// The rows in which something is written.
QRect writtenRows(const LevelMarkers& markers)
{
    QImage picture(200, 180, QImage::Format_RGB32);
    picture.fill(Qt::black);
    QPainter painter(&picture);
    markers.paintNumbers(painter, Area, Levels);
    painter.end();
    QRect rows;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixelColor(x, y).red() > 128) {
                rows |= QRect(x, y, 1, 1);
            }
        }
    }
    return rows;
}

} // namespace

class tst_LevelMarkers : public QObject
{
    Q_OBJECT

private slots:
    void each_level_is_a_line_of_the_plot()
    {
        QCustomPlot plot;
        LevelMarkers markers(plot);
        markers.setLevels({-30.0, -90.5}, Lowest, Highest);
        QCOMPARE(markers.levels(), QList<double>({-30.0, -90.5}));
        QCOMPARE(plot.itemCount(), 2);
        for (int n = 0; n < 2; ++n) { // flat, from the left to the right
            const auto* line = qobject_cast<QCPItemStraightLine*>(plot.item(n));
            QVERIFY(line != nullptr);
            QCOMPARE(line->point1->coords().y(), markers.levels().at(n));
            QCOMPARE(line->point2->coords().y(), markers.levels().at(n));
            QCOMPARE(line->point1->typeX(), QCPItemPosition::ptAxisRectRatio);
            QCOMPARE(line->point2->typeX(), QCPItemPosition::ptAxisRectRatio);
            QCOMPARE(line->point1->typeY(), QCPItemPosition::ptPlotCoords);
            QCOMPARE(line->point2->typeY(), QCPItemPosition::ptPlotCoords);
            QVERIFY(line->point1->coords().x() < line->point2->coords().x());
            QCOMPARE(line->pen().style(), Qt::DashLine);
            QCOMPARE(line->pen().color(), QColor(chartLook::Level));
        }
        markers.setLevels({-10.0}, Lowest, Highest);
        QCOMPARE(plot.itemCount(), 1);
        markers.setLevels({}, Lowest, Highest);
        QCOMPARE(plot.itemCount(), 0);
    }

    void other_items_of_the_plot_stay()
    {
        QCustomPlot plot;
        const auto* other = new QCPItemText(&plot);
        LevelMarkers markers(plot);
        markers.setLevels({-30.0}, Lowest, Highest);
        markers.setLevels({}, Lowest, Highest);
        QCOMPARE(plot.itemCount(), 1);
        QCOMPARE(plot.item(0), other);
    }

    void levels_that_are_not_on_the_axis_are_left_out()
    {
        QCustomPlot plot;
        LevelMarkers markers(plot);
        markers.setLevels({qQNaN(), qInf(), -120.5, 10.5, Lowest, Highest, -50.0}, Lowest, Highest);
        QCOMPARE(markers.levels(), QList<double>({Lowest, Highest, -50.0}));
    }

    void the_number_of_markers_is_limited()
    {
        QCustomPlot plot;
        LevelMarkers markers(plot);
        markers.setLevels(QList<double>(5000, -10.0), Lowest, Highest);
        QCOMPARE(markers.levels().size(), LevelMarkers::MaxCount);
        QCOMPARE(plot.itemCount(), int(LevelMarkers::MaxCount));
    }

    void a_number_stands_above_its_line_or_below_it_at_the_top()
    {
        QCustomPlot plot;
        LevelMarkers markers(plot);
        markers.setLevels({-30.0}, Lowest, Highest); // row 60
        QRect rows = writtenRows(markers);
        QVERIFY(rows.bottom() < 60 && rows.top() > 40);
        QVERIFY(rows.right() < Area.right() && rows.left() > Area.center().x());
        markers.setLevels({9.0}, Lowest, Highest); // row 21
        rows = writtenRows(markers);
        QVERIFY(rows.top() > 21 && rows.bottom() < 41);
    }

    void a_number_has_a_ground_of_its_own_that_ends_above_its_line()
    {
        QCustomPlot plot;
        LevelMarkers markers(plot);
        markers.setLevels({-30.0}, Lowest, Highest); // row 60
        QImage picture(200, 180, QImage::Format_RGB32);
        picture.fill(Qt::white);
        QPainter painter(&picture);
        markers.paintNumbers(painter, Area, Levels);
        painter.end();
        QRect ground;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.pixelColor(x, y) == QColor(chartLook::Background)) {
                    ground |= QRect(x, y, 1, 1);
                }
            }
        }
        QCOMPARE(ground.bottomRight(), QPoint(Area.right() - 3, 60 - 3));
        const QSize text = chartLook::preparedText(QStringLiteral("-30.0")).size().toSize();
        QCOMPARE(ground.size(), QSize(text.width() + 4, text.height() - 2));
    }

    void a_number_whose_line_is_outside_the_plot_is_not_written_data()
    {
        QTest::addColumn<double>("level");
        QTest::newRow("just above the plot") << 11.0; // row 19
        QTest::newRow("above the plot") << 100.0;
        QTest::newRow("just below the plot") << -121.0;
        QTest::newRow("below the plot") << -200.0;
    }

    void a_number_whose_line_is_outside_the_plot_is_not_written()
    {
        QFETCH(double, level);
        QCustomPlot plot;
        LevelMarkers markers(plot);
        markers.setLevels({level}, -300.0, 300.0);
        QCOMPARE(markers.levels(), QList<double>{level});
        QVERIFY(writtenRows(markers).isEmpty());
    }
};

QN740_TEST_MAIN(tst_LevelMarkers)
#include "tst_LevelMarkers.moc"
