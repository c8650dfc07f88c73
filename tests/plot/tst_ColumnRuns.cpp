#include "plot/ColumnRuns.h"
#include "support/TestMain.h"

#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QRandomGenerator>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

const QRect Area(10, 20, 101, 131); // columns 10 to 110, rows 20 to 150
const QSize PictureSize(130, 170);

using Runs = QList<QPair<int, int>>;

Runs runsOf(const QPolygonF& line, const QRect& area = Area)
{
    ColumnRuns columns;
    columns.setLine(line, area);
    Runs runs;
    for (const ColumnRuns::Run& run : columns.runs()) {
        runs += run.first <= run.last ? qMakePair(run.first, run.last) : qMakePair(0, -1);
    }
    return runs;
}

// The runs by their definition: in each column the rows whose middles the line crosses there, and
// the rows nearest to its points and to where it passes the middle of the column.
class PlainRuns
{
public:
    PlainRuns(const QPolygonF& line, const QRect& area)
        : m_area(area)
        , m_runs(area.width(), qMakePair(area.height(), -1))
    {
        const QPointF origin = QPointF(area.topLeft()) + QPointF(0.5, 0.5);
        addNearest(columnOf(line.first() - origin), (line.first() - origin).y());
        for (qsizetype i = 1; i < line.size(); ++i) {
            addSegment(line.at(i - 1) - origin, line.at(i) - origin);
        }
    }

    Runs runs() const
    {
        Runs runs;
        for (const auto& [lowest, highest] : m_runs) {
            const int first = qMax(lowest, 0);
            const int last = qMin(highest, m_area.height() - 1);
            runs += first <= last ? qMakePair(first + m_area.top(), last + m_area.top())
                                  : qMakePair(0, -1);
        }
        return runs;
    }

private:
    int columnOf(QPointF point) const
    {
        return int(std::floor(qBound(0.0, point.x(), m_area.width() - 1.0) + 0.5));
    }

    void addSegment(QPointF from, QPointF to)
    {
        const int first = columnOf(from);
        const int last = columnOf(to);
        const auto heightAt = [from, to](double x) {
            return from.y() + (x - from.x()) * (to.y() - from.y()) / (to.x() - from.x());
        };
        for (int column = first; column <= last; ++column) {
            const double one = column == first ? from.y() : heightAt(column - 0.5);
            const double other = column == last ? to.y() : heightAt(column + 0.5);
            const double lowest = qMax(-5.0, qMin(one, other));
            const double highest = qMin(m_area.height() + 5.0, qMax(one, other));
            for (int row = int(std::ceil(lowest)); row <= highest; ++row) {
                add(column, row);
            }
            if (first < last && column >= from.x() && column <= to.x()) {
                addNearest(column, heightAt(column));
            }
        }
        addNearest(last, to.y());
    }

    void addNearest(int column, double height) { add(column, int(std::floor(height + 0.5))); }

    void add(int column, int row)
    {
        m_runs[column].first = qMin(m_runs[column].first, row);
        m_runs[column].second = qMax(m_runs[column].second, row);
    }

    QRect m_area;
    Runs m_runs;
};

// A line through points between pixels and on them. Its slopes are exact numbers.
QPolygonF steps(quint32 seed, double share)
{
    QRandomGenerator random(seed);
    QPolygonF line{QPointF(Area.left() - 4.0, 60.0)};
    while (line.last().x() < Area.right() + 4.0) {
        const double across = 0.5 * (1 << random.bounded(5)) * random.bounded(2);
        const double height = Area.top() + 0.5 * random.bounded(-20, 300);
        const bool isFlat = random.generateDouble() > share;
        line += QPointF(line.last().x() + across, isFlat ? line.last().y() + 0.5 : height);
    }
    return line;
}

QImage blank(QImage::Format format = QImage::Format_RGB32)
{
    QImage picture(PictureSize, format);
    picture.fill(Qt::black);
    return picture;
}

void paint(QPainter& painter, const QPolygonF& line, const QRect& area = Area)
{
    ColumnRuns columns;
    columns.setLine(line, area);
    columns.paint(painter, Qt::green);
}

QPolygonF noise(quint32 seed, int points, double lowest, double highest)
{
    QRandomGenerator random(seed);
    QPolygonF line;
    for (int i = 0; i < points; ++i) {
        line += QPointF(Area.left() + 100.0 * i / points,
            lowest + random.generateDouble() * (highest - lowest));
    }
    return line;
}

int different(const QImage& one, const QImage& other)
{
    int count = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            count += one.pixelColor(x, y) == other.pixelColor(x, y) ? 0 : 1;
        }
    }
    return count;
}

} // namespace

class tst_ColumnRuns : public QObject
{
    Q_OBJECT

private slots:
    void a_flat_line_has_one_pixel_in_each_column()
    {
        const Runs runs = runsOf({QPointF(10, 50.9), QPointF(110.9, 50.9)});
        QCOMPARE(runs, Runs(101, qMakePair(50, 50)));
    }

    void a_slope_below_one_has_one_pixel_in_each_column()
    {
        const Runs runs = runsOf({QPointF(10, 30), QPointF(110.5, 60.15)});
        for (int column = 0; column <= 100; ++column) {
            const auto row = static_cast<int>(30 + 0.3 * (column + 0.5));
            QCOMPARE(runs.at(column), qMakePair(row, row));
        }
    }

    void a_steep_line_has_no_gaps_and_no_row_twice()
    {
        const Runs runs = runsOf({QPointF(10, 140), QPointF(20, 40)});
        QCOMPARE(runs.first().second, 140);
        QCOMPARE(runs.at(10).first, 40);
        for (int column = 1; column <= 10; ++column) {
            QVERIFY(std::abs(runs.at(column).second + 1 - runs.at(column - 1).first) <= 1);
        }
        QCOMPARE(runs.at(11), qMakePair(0, -1));
    }

    void a_peak_within_a_column_reaches_its_row()
    {
        const Runs runs = runsOf({QPointF(10, 100), QPointF(50, 100), QPointF(50, 30.4),
            QPointF(50, 101), QPointF(110.9, 101)});
        QCOMPARE(runs.at(40), qMakePair(30, 101));
        QCOMPARE(runs.at(39), qMakePair(100, 100));
        QCOMPARE(runs.at(41), qMakePair(101, 101));
    }

    void what_lies_outside_the_area_is_left_out()
    {
        QCOMPARE(runsOf({QPointF(10, 19), QPointF(110, -1e9)}), Runs(101, qMakePair(0, -1)));
        QCOMPARE(runsOf({QPointF(10, 151), QPointF(110, 1e9)}), Runs(101, qMakePair(0, -1)));
        const Runs runs = runsOf({QPointF(10, 100), QPointF(10, -1e9), QPointF(110, -1e9)});
        QCOMPARE(runs.first(), qMakePair(20, 100));
        QCOMPARE(runs.at(1), qMakePair(0, -1));
        // A segment that leaves the area keeps its slope.
        QCOMPARE(runsOf({QPointF(10, 120), QPointF(110, -80)}).mid(49, 2),
            Runs({qMakePair(20, 21), qMakePair(0, -1)}));
    }

    void a_point_beside_the_area_counts_in_the_outermost_column()
    {
        const Runs runs = runsOf({QPointF(-1e12, 40), QPointF(1e12, 40)});
        QCOMPARE(runs, Runs(101, qMakePair(40, 40)));
    }

    void no_line_or_no_area_has_no_runs()
    {
        QCOMPARE(runsOf({}), Runs(101, qMakePair(0, -1)));
        QCOMPARE(runsOf({QPointF(10, 30)}, QRect()), Runs());
        QCOMPARE(runsOf({QPointF(10, 30)}).first(), qMakePair(30, 30));
    }

    void any_line_has_the_runs_of_their_definition_data()
    {
        QTest::addColumn<QPolygonF>("line");
        for (const quint32 seed : {1U, 2U, 3U, 4U}) {
            QTest::addRow("steep, %u", seed) << steps(seed, 1.0);
            QTest::addRow("flat, %u", seed) << steps(seed, 0.1);
            QTest::addRow("noise, %u", seed) << noise(seed, 80, 170.0, 0.0);
            QTest::addRow("few points, %u", seed) << noise(seed, 9, 170.0, 0.0);
        }
        QTest::newRow("one point") << QPolygonF{QPointF(40.0, 40.0)};
        QTest::newRow("one point at a corner") << QPolygonF{QPointF(111.0, 151.0)};
        QTest::newRow("one point above") << QPolygonF{QPointF(40.0, 19.5)};
    }

    void any_line_has_the_runs_of_their_definition()
    {
        QFETCH(QPolygonF, line);
        QCOMPARE(runsOf(line), PlainRuns(line, Area).runs());
    }

    void a_clip_of_the_painter_counts()
    {
        const QPolygonF line = noise(2, 150, 160.0, 10.0);
        const QRect clip(30, 41, 22, 57);
        QImage clipped = blank();
        QPainter painter(&clipped);
        painter.setClipRect(clip);
        paint(painter, line);
        painter.end();
        QImage whole = blank();
        painter.begin(&whole);
        paint(painter, line);
        painter.end();
        QImage wanted = blank();
        painter.begin(&wanted);
        painter.drawImage(clip, whole, clip);
        painter.end();
        QCOMPARE(different(clipped, wanted), 0);
        QVERIFY(different(clipped, blank()) > 100);
    }

    // The platform asks a window for a part of its picture, or for several.
    void parts_of_the_picture_are_painted_data()
    {
        QTest::addColumn<QRegion>("parts");
        QTest::newRow("one") << QRegion(30, 41, 22, 57);
        QTest::newRow("two") << (QRegion(30, 41, 22, 57) | QRegion(70, 20, 11, 140));
        QTest::newRow("larger than the picture") << QRegion(-100, -100, 1000, 1000);
    }

    void parts_of_the_picture_are_painted()
    {
        QFETCH(QRegion, parts);
        const QPolygonF line = noise(2, 150, 160.0, 10.0);
        QImage whole = blank();
        QPainter painter(&whole);
        paint(painter, line);
        painter.end();
        QImage picture = blank();
        picture.paintEngine()->setSystemClip(parts);
        painter.begin(&picture);
        paint(painter, line);
        painter.end();
        QImage wanted = blank();
        painter.begin(&wanted);
        for (const QRect& part : parts) {
            painter.drawImage(part, whole, part);
        }
        painter.end();
        QCOMPARE(different(picture, wanted), 0);
        QVERIFY(different(picture, blank()) > 100);
    }

    // The painter's own lines differ only where a point lies between two rows or columns.
    void noise_looks_as_the_painter_draws_it_data()
    {
        QTest::addColumn<int>("points");
        QTest::addColumn<double>("highest");
        QTest::addColumn<int>(
            "part"); // of the pixels that may differ: more on long slopes and within a row
        for (const int points : {7, 60, 101, 202}) {
            for (const double highest : {99.0, 40.0, 10.0}) {
                QTest::addRow("%d points up to %g", points, highest)
                    << points << highest << (points < 10 || highest == 99.0 ? 5 : 15);
            }
        }
    }

    void noise_looks_as_the_painter_draws_it()
    {
        QFETCH(int, points);
        QFETCH(double, highest);
        QFETCH(int, part);
        const QPolygonF line = noise(1, points, 100.0, highest);
        QImage ours = blank();
        QImage theirs = blank();
        QPainter painter(&ours);
        paint(painter, line);
        painter.end();
        painter.begin(&theirs);
        painter.setClipRect(Area);
        painter.setPen(QPen(Qt::green, 0));
        painter.drawPolyline(line);
        painter.end();
        const int drawn = different(theirs, blank());
        QVERIFY(drawn > 80);
        const int off = different(ours, theirs);
        QVERIFY2(off <= drawn / part, qPrintable(u"%1 of %2"_s.arg(off).arg(drawn)));
    }

    void every_kind_of_picture_shows_the_same_data()
    {
        QTest::addColumn<QImage::Format>("format");
        QTest::newRow("32 bits") << QImage::Format_ARGB32_Premultiplied;
        QTest::newRow("16 bits") << QImage::Format_RGB16;
        QTest::newRow("24 bits") << QImage::Format_RGB888;
    }

    void every_kind_of_picture_shows_the_same()
    {
        QFETCH(QImage::Format, format);
        const QPolygonF line = noise(2, 150, 160.0, 10.0);
        QImage plain = blank();
        QPainter painter(&plain);
        paint(painter, line);
        painter.end();
        QImage picture = blank(format);
        painter.begin(&picture);
        paint(painter, line);
        painter.end();
        QVERIFY(different(plain, blank()) > 1000);
        QCOMPARE(different(picture, plain), 0);
    }

    void a_pixmap_shows_the_same()
    {
        const QPolygonF line = noise(2, 150, 160.0, 10.0);
        QImage plain = blank();
        QPainter painter(&plain);
        paint(painter, line);
        painter.end();
        QPixmap pixmap(PictureSize);
        pixmap.fill(Qt::black);
        painter.begin(&pixmap);
        paint(painter, line);
        painter.end();
        QCOMPARE(different(pixmap.toImage(), plain), 0);
    }

    void a_moved_painter_moves_the_line_and_nothing_leaves_the_picture()
    {
        const QPolygonF line = noise(3, 150, 160.0, 10.0);
        QImage plain = blank();
        QPainter painter(&plain);
        paint(painter, line);
        painter.end();
        for (const QPoint by : {QPoint(7, 5), QPoint(-30, -60), QPoint(60, 90)}) {
            QImage moved = blank();
            painter.begin(&moved);
            painter.translate(by);
            paint(painter, line);
            painter.end();
            QImage wanted = blank();
            painter.begin(&wanted);
            painter.drawImage(by, plain);
            painter.end();
            QCOMPARE(different(moved, wanted), 0);
        }
    }

    void a_scaled_painter_scales_the_line()
    {
        QImage picture = blank();
        QPainter painter(&picture);
        painter.scale(0.5, 0.5);
        paint(painter, {QPointF(10, 100), QPointF(110, 100)});
        painter.end();
        QCOMPARE(picture.pixelColor(30, 50), QColor(Qt::green));
        QCOMPARE(picture.pixelColor(70, 50), QColor(Qt::black));
        QCOMPARE(picture.pixelColor(100, 100), QColor(Qt::black));
    }
};

QN740_TEST_MAIN(tst_ColumnRuns)
#include "tst_ColumnRuns.moc"
