#include "spectrum/ChartMarks.h"
#include "support/TestMain.h"

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
