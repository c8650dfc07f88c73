#include "plot/TraceLine.h"

#include <algorithm>

namespace {

// One point for each value.
void layOutAll(const QVector<float>& values, const QRect& area, const Scale levels, QPolygonF& line)
{
    const qsizetype count = values.size();
    const Scale columns(0.0, static_cast<double>(count), area.left(), area.right());
    line.resize(count);
    QPointF* point = line.data();
    for (qsizetype i = 0; i < count; ++i) {
        const double x = columns.pixel(static_cast<double>(i));
        *point++ = QPointF(x, levels.pixel(static_cast<double>(values.at(i))));
    }
}

// The first of \a count values that lies nearer to this column, or a later one, than to the column
// before.
qsizetype firstOf(qsizetype column, qsizetype count, qsizetype columns)
{
    const qsizetype twice = 2 * std::max(qsizetype{1}, columns - 1);
    const qsizetype edge = std::max(qsizetype{0}, 2 * column - 1) * count;
    return column >= columns ? count : (edge + twice - 1) / twice;
}

// Two points for each column of pixels.
void reduce(const QVector<float>& values, const QRect& area, const Scale levels, QPolygonF& line)
{
    const qsizetype count = values.size();
    const qsizetype columns = area.width();
    line.resize(2 * columns);
    QPointF* point = line.data();
    for (qsizetype column = 0; column < columns; ++column) {
        const auto from = values.cbegin() + firstOf(column, count, columns);
        const auto to = values.cbegin() + firstOf(column + 1, count, columns);
        const auto [low, high] = std::minmax_element(from, to);
        const auto x = static_cast<double>(area.left() + column);
        const double first = static_cast<double>(low < high ? *low : *high);
        const double second = static_cast<double>(low < high ? *high : *low);
        *point++ = QPointF(x, levels.pixel(first));
        *point++ = QPointF(x, levels.pixel(second));
    }
}

} // namespace

void traceLine::layOut(
    const QVector<float>& values, const QRect& area, const Scale& levels, QPolygonF& line)
{
    if (values.isEmpty() || area.isEmpty()) {
        line.clear();
    } else if (values.size() == 1) {
        const double y = levels.pixel(static_cast<double>(values.first()));
        line = {QPointF(area.left(), y), QPointF(area.right(), y)};
    } else if (values.size() <= qsizetype{2} * area.width()) {
        layOutAll(values, area, levels, line);
    } else {
        reduce(values, area, levels, line);
    }
}
