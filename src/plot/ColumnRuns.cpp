#include "plot/ColumnRuns.h"

#include <QColor>
#include <QImage>
#include <QPaintEngine>
#include <QPainter>

#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>

namespace {

constexpr int Bits32 = 32;
constexpr int Bits16 = 16;
constexpr int Outside = -1; // the row above an area
constexpr ColumnRuns::Run Nothing{std::numeric_limits<int>::max() / 2, Outside};

// Of numbers that are not negative.
int rounded(double number)
{
    // std::lround(), which clang-tidy asks for, is a call for every point.
    return static_cast<int>(number + 0.5); // NOLINT(bugprone-incorrect-roundings)
}

// Fills in runs. The area's first column is 0. Rows are counted from the one above the area, so
// that they are not negative, up to the one below it.
class Rows
{
public:
    Rows(std::vector<ColumnRuns::Run>& runs, int height)
        : m_runs(runs.data())
        , m_lastColumn(static_cast<int>(runs.size()) - 1)
        , m_lowest(height + 1.0)
    {
    }

    void addSegment(QPointF from, QPointF to)
    {
        const int first = columnOf(from);
        const int last = columnOf(to);
        double begin = from.y();
        if (first < last) {
            const double slope = (to.y() - from.y()) / (to.x() - from.x());
            for (int column = first; column <= last; ++column) {
                const double middle = from.y() + (column - from.x()) * slope;
                const double end = column < last ? middle + slope / 2.0 : to.y();
                addCrossed(column, begin, end);
                if (column >= from.x() && column <= to.x()) {
                    addNearest(column, middle);
                }
                begin = end;
            }
        } else {
            addCrossed(last, begin, to.y());
        }
        addNearest(last, to.y());
    }

    void addPoint(QPointF point) { addNearest(columnOf(point), point.y()); }

private:
    // A point beside the area counts in its outermost column.
    int columnOf(QPointF point) const
    {
        return rounded(std::max(0.0, std::min<double>(m_lastColumn, point.x())));
    }

    // The row nearest to a height.
    void addNearest(int column, double height)
    {
        const int row = rounded(inside(height));
        add(column, row, row);
    }

    // The rows whose middles lie between two heights. When there are none, first comes after last.
    void addCrossed(int column, double one, double other)
    {
        const double top = inside(std::min(one, other));
        const int floor = static_cast<int>(top);
        const int first = floor + (floor < top ? 1 : 0);
        const int last = static_cast<int>(inside(std::max(one, other)));
        if (first <= last) {
            add(column, first, last);
        }
    }

    void add(int column, int first, int last)
    {
        ColumnRuns::Run& run = m_runs[column];
        run.first = std::min(run.first, first);
        run.last = std::max(run.last, last);
    }

    double inside(double height) const
    {
        return std::max(0.0, std::min(m_lowest, height - Outside));
    }

    ColumnRuns::Run* m_runs;
    int m_lastColumn;
    double m_lowest;
};

// The picture that a painter paints on.
struct Target
{
    QImage* image;
    QPoint offset; // from the painter's coordinates to those of the picture
    QRect clip;    // in the painter's coordinates
};

// Nothing when the picture is no plain one, or several parts of it are painted.
std::optional<Target> targetOf(const QPainter& painter)
{
    const QPaintEngine* engine = painter.paintEngine();
    const QTransform& transform = painter.deviceTransform();
    if (engine->type() != QPaintEngine::Raster ||
        engine->paintDevice()->devType() != QInternal::Image ||
        transform.type() > QTransform::TxTranslate || engine->systemClip().rectCount() > 1) {
        return std::nullopt;
    }
    auto* image = static_cast<QImage*>(engine->paintDevice());
    const QPoint offset(qRound(transform.dx()), qRound(transform.dy()));
    const QRect system = engine->systemClip().boundingRect();
    QRect clip = system.isEmpty() ? image->rect() : system & image->rect();
    clip.translate(-offset);
    if (painter.hasClipping()) {
        clip &= painter.clipBoundingRect().toAlignedRect();
    }
    return Target{image, offset, clip};
}

// A pixel as the picture holds it.
template <class Pixel>
Pixel pixelOf(const QColor& color, QImage::Format format)
{
    QImage one(1, 1, format);
    one.fill(color);
    Pixel pixel{};
    std::memcpy(&pixel, one.constScanLine(0), sizeof pixel);
    return pixel;
}

template <class Pixel>
void write(const std::vector<ColumnRuns::Run>& runs, const QRect& area, const Target& target,
    const QColor& color)
{
    const QRect clip = target.clip & area;
    const auto pixel = pixelOf<Pixel>(color, target.image->format());
    const qsizetype stride = target.image->bytesPerLine() / qsizetype{sizeof(Pixel)};
    auto* const first = reinterpret_cast<Pixel*>(target.image->bits());
    for (int x = clip.left(); x <= clip.right(); ++x) {
        const ColumnRuns::Run& run = runs[static_cast<size_t>(x - area.left())];
        const int top = std::max(clip.top(), run.first);
        const int bottom = std::min(clip.bottom(), run.last);
        Pixel* at = first + (top + target.offset.y()) * stride + x + target.offset.x();
        for (int y = top; y <= bottom; ++y, at += stride) {
            *at = pixel;
        }
    }
}

} // namespace

void ColumnRuns::setLine(const QPolygonF& line, const QRect& area)
{
    m_area = area;
    m_runs.assign(area.isEmpty() ? 0 : static_cast<size_t>(area.width()), Nothing);
    if (line.isEmpty() || area.isEmpty()) {
        return;
    }
    Rows rows(m_runs, area.height());
    const QPointF origin = QPointF(area.topLeft()) + QPointF(0.5, 0.5);
    QPointF from = line.constFirst() - origin;
    rows.addPoint(from);
    for (auto point = line.cbegin() + 1; point != line.cend(); ++point) {
        const QPointF to = *point - origin;
        rows.addSegment(from, to);
        from = to;
    }
    for (Run& run : m_runs) {
        run.first = std::max(run.first + Outside, 0) + area.top();
        run.last = std::min(run.last + Outside, area.height() - 1) + area.top();
    }
}

void ColumnRuns::paint(QPainter& painter, const QColor& color) const
{
    if (m_runs.empty()) {
        return;
    }
    const std::optional<Target> target = targetOf(painter);
    const int bits = target ? target->image->depth() : 0;
    if (bits == Bits32) {
        write<quint32>(m_runs, m_area, *target, color);
    } else if (bits == Bits16) {
        write<quint16>(m_runs, m_area, *target, color);
    } else {
        drawRuns(painter, color);
    }
}

void ColumnRuns::drawRuns(QPainter& painter, const QColor& color) const
{
    int x = m_area.left();
    for (const Run& run : m_runs) {
        if (run.first <= run.last) {
            painter.fillRect(x, run.first, 1, run.last - run.first + 1, color);
        }
        ++x;
    }
}
