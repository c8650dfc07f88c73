#include "spectrum/ChartLines.h"
#include "spectrum/ChartLook.h"
#include "spectrum/ChartMarks.h"
#include "spectrum/SpectrumTrace.h"
#include "support/Contrast.h"
#include "support/TestMain.h"
#include "touch/LineColors.h"

#include <QPainter>

namespace {
const QRect Plot(10, 20, 80, 61);
} // namespace

class tst_ChartMarks : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_picture = QImage(100, 100, QImage::Format_RGB32);
        m_picture.fill(Qt::black);
    }

    void the_peak_is_a_triangle_above_its_point_in_the_colour_of_the_trace()
    {
        QPainter painter(&m_picture);
        chartMarks::paintPeak(painter, QPointF(50, 50), Qt::green, Plot);
        painter.end();
        QCOMPARE(painted(), QRect(45, 38, 11, 11));
        QCOMPARE(m_picture.pixelColor(50, 48), QColor(Qt::green)); // the tip
        QVERIFY(m_picture.pixelColor(50, 42).blue() > 128);        // the light inside
    }

    void the_marker_is_a_diamond_around_its_point_with_a_line_through_the_plot()
    {
        QPainter painter(&m_picture);
        chartMarks::paintMarker(painter, QPointF(50, 50), Plot);
        painter.end();
        const QRect all = painted();
        QCOMPARE(all.left(), 45);
        QCOMPARE(all.right(), 55);
        QCOMPARE(all.top(), 20);
        QVERIFY(all.bottom() >= 79 && all.bottom() <= 80); // the last dot of the line
        QCOMPARE(m_picture.pixelColor(45, 50), QColor(Qt::white));
        QCOMPARE(m_picture.pixelColor(47, 50), QColor(Qt::black)); // hollow
    }

    void the_peak_s_triangle_stays_in_the_plot_data()
    {
        QTest::addColumn<QPointF>("at");
        QTest::addColumn<QRect>("triangle");
        QTest::newRow("high enough") << QPointF(50, 32) << QRect(45, 20, 11, 11);
        QTest::newRow("too high") << QPointF(50, 31) << QRect(45, 33, 10, 11);
        QTest::newRow("at the top") << QPointF(50, 20) << QRect(45, 22, 10, 11);
        QTest::newRow("above the plot") << QPointF(50, -300) << QRect(45, 22, 10, 11);
        QTest::newRow("below the plot") << QPointF(50, 300) << QRect(45, 68, 11, 11);
    }

    void the_peak_s_triangle_stays_in_the_plot()
    {
        QFETCH(QPointF, at);
        QPainter painter(&m_picture);
        chartMarks::paintPeak(painter, at, Qt::green, Plot);
        painter.end();
        QTEST(painted(), "triangle");
    }

    void another_marker_is_a_square_without_a_line()
    {
        QPainter painter(&m_picture);
        chartMarks::paintOtherMarker(painter, QPointF(50, 50), Plot);
        painter.end();
        QCOMPARE(painted(), QRect(46, 46, 9, 9));
        QCOMPARE(m_picture.pixelColor(46, 46), QColor(Qt::white)); // a corner
        QCOMPARE(m_picture.pixelColor(50, 50), QColor(Qt::black)); // hollow
    }

    void a_marker_outside_the_scale_stands_at_the_edge_data()
    {
        QTest::addColumn<double>("y");
        QTest::addColumn<int>("top");
        QTest::addColumn<int>("bottom");
        QTest::newRow("above") << -200.0 << 21 << 29;
        QTest::newRow("below") << 400.0 << 71 << 79;
    }

    void a_marker_outside_the_scale_stands_at_the_edge()
    {
        QFETCH(double, y);
        QPainter painter(&m_picture);
        chartMarks::paintOtherMarker(painter, QPointF(50, y), Plot);
        painter.end();
        QTEST(painted().top(), "top");
        QTEST(painted().bottom(), "bottom");
    }

    void a_marker_has_its_number_beside_it_data()
    {
        QTest::addColumn<int>("x");
        QTest::addColumn<bool>("right");
        QTest::addColumn<bool>("active");
        QTest::newRow("in the middle") << 50 << true << true;
        QTest::newRow("at the left edge") << 10 << true << true;
        QTest::newRow("at the right edge") << 89 << false << true;
        QTest::newRow("one that is not active") << 50 << true << false;
    }

    void a_marker_has_its_number_beside_it()
    {
        QFETCH(int, x);
        QFETCH(bool, right);
        QFETCH(bool, active);
        const chartMarks::Labels labels;
        QPainter painter(&m_picture);
        labels.paintMarker(painter, QPointF(x, 50), Plot, 3, active);
        painter.end();
        const QRect all = painted();
        QVERIFY(right ? all.right() > x + 8 : all.left() < x - 8);
        QVERIFY(right ? all.left() >= x - 5 : all.right() <= x + 5);
        QVERIFY(all.right() < 100);
    }

    void the_trace_does_not_run_through_a_number()
    {
        const chartMarks::Labels labels;
        m_picture.fill(Qt::green);
        QPainter painter(&m_picture);
        labels.paintMarker(painter, QPointF(50, 50), Plot, 2, true);
        painter.end();
        for (int y = 46; y <= 54; ++y) {
            for (int x = 58; x <= 64; ++x) {
                const QColor pixel = m_picture.pixelColor(x, y);
                QVERIFY(pixel.green() <= pixel.red() + 8);
            }
        }
    }

    void over_stands_in_the_corner_without_the_peak_data()
    {
        QTest::addColumn<double>("peak");
        QTest::addColumn<bool>("left");
        QTest::newRow("in the middle") << 250.0 << true;
        QTest::newRow("at the right") << 390.0 << true;
        QTest::newRow("at the left") << 20.0 << false;
    }

    void over_stands_in_the_corner_without_the_peak()
    {
        QFETCH(double, peak);
        QFETCH(bool, left);
        m_picture = QImage(400, 100, QImage::Format_RGB32);
        m_picture.fill(Qt::black);
        const chartMarks::Labels labels;
        QPainter painter(&m_picture);
        labels.paintOver(painter, peak, QRect(10, 20, 380, 61));
        painter.end();
        const QRect box = painted();
        QVERIFY(QRect(10, 20, 380, 61).contains(box));
        QVERIFY(left ? box.right() < 100 : box.left() > 300);
        QVERIFY(box.top() < 30);
        QVERIFY(contrast::ratio(chartLook::OverText, chartLook::OverGround) >= contrast::Text);
    }

    void lines_have_their_colours_and_min_hold_its_dots()
    {
        SpectrumTrace trace;
        trace.setMaxHold(true);
        trace.setMinHold(true);
        for (const char level : {'\xc0', '\x20', '\x60'}) { // -24, -104 and -72 dB
            trace.add(QByteArray(10, level));
        }
        ChartLines lines;
        QCOMPARE(lines.color(), QColor(Qt::yellow));
        lines.setColor(Qt::cyan);
        QPainter painter(&m_picture);
        const QRect plot(0, 0, 100, 100);
        lines.paint(painter, trace, {plot, {}, Scale(-120.0, 10.0, 99.0, 0.0)});
        painter.end();
        const Scale rows(-120.0, 10.0, 99.0, 0.0);
        const auto count = [this, &rows](double level, const QColor& color) {
            int found = 0;
            const int row = qRound(rows.pixel(level));
            for (int x = 0; x < 90; ++x) {
                found += m_picture.pixel(x, row) == color.rgb() ||
                        m_picture.pixel(x, row - 1) == color.rgb()
                    ? 1
                    : 0;
            }
            return found;
        };
        QVERIFY(count(-72.0, Qt::cyan) >= 89);
        QVERIFY(count(-24.0, lineColors::darker(Qt::cyan)) >= 89);
        const int dots = count(-104.0, Qt::cyan);
        QVERIFY2(dots > 20 && dots < 60, qPrintable(QString::number(dots)));
    }

private:
    QRect painted() const
    {
        QRect area;
        for (int y = 0; y < m_picture.height(); ++y) {
            for (int x = 0; x < m_picture.width(); ++x) {
                if (m_picture.pixelColor(x, y) != QColor(Qt::black)) {
                    area |= QRect(x, y, 1, 1);
                }
            }
        }
        return area;
    }

    QImage m_picture;
};

QN740_TEST_MAIN(tst_ChartMarks)
#include "tst_ChartMarks.moc"
