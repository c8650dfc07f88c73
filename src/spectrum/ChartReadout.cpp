#include "spectrum/ChartReadout.h"

#include "spectrum/ChartLook.h"

#include <QFontMetrics>
#include <QPainter>

namespace {

constexpr int LineHeight = 17; // pixels
constexpr qsizetype MaxWidths = 100;
constexpr double WidestLevel = -100.0;

// Numbers as they are written: a difference always has a sign.
QString number(double value, int decimals, bool relative)
{
    const QString text = QString::number(value, 'f', decimals);
    return relative && !text.startsWith(QLatin1Char('-')) ? QLatin1Char('+') + text : text;
}

QString readingText(
    const QString& name, const SpectrumReading& reading, int decimals, bool relative = false)
{
    return QStringLiteral("%1 %2 MHz %3 dB")
        .arg(name, number(reading.frequency, decimals, relative),
            number(reading.level, 1, relative));
}

TextFlow::Part fixedPart(const QString& text)
{
    return {text, text};
}

void addStates(const ChartReadout::Values& values, bool brief, QVector<TextFlow::Part>& parts)
{
    const auto hold = [brief](const QString& which) {
        return fixedPart(brief ? which : which + QStringLiteral(" Hold"));
    };
    if (values.averaging > 1) {
        const QString pattern =
            values.logMean ? QStringLiteral("Log Avg %1") : QStringLiteral("Avg %1");
        parts += fixedPart(pattern.arg(values.averaging));
    }
    if (values.maxHold) {
        parts += hold(QStringLiteral("Max"));
    }
    if (values.minHold) {
        parts += hold(QStringLiteral("Min"));
    }
    if (!values.scale.isEmpty()) {
        parts += fixedPart(values.scale);
    }
}

// A reading, which keeps its room while there is none.
TextFlow::Part peakPart(const ChartReadout::Values& values)
{
    const QString name = QStringLiteral("Peak");
    return {values.peak.valid ? readingText(name, values.peak, values.decimals) : QString(),
        readingText(name, {true, values.centre, WidestLevel}, values.decimals)};
}

TextFlow::Part markerPart(const ChartReadout::Marker& marker, const ChartReadout::Values& values)
{
    const bool alone = values.markers.size() == 1 && marker.number == 1;
    const QString name = alone ? QStringLiteral("Marker")
        : marker.relative      ? QStringLiteral("M%1-M1").arg(marker.number)
                               : QStringLiteral("M%1").arg(marker.number);
    const double widest = marker.relative ? -10.0 : values.centre;
    return {marker.reading.valid
            ? readingText(name, marker.reading, values.decimals, marker.relative)
            : QString(),
        readingText(name, {true, widest, WidestLevel}, values.decimals)};
}

QVector<TextFlow::Part> partsOf(const ChartReadout::Values& values, bool allMarkers, bool brief)
{
    QVector<TextFlow::Part> parts;
    addStates(values, brief, parts);
    parts += peakPart(values);
    for (const ChartReadout::Marker& marker : values.markers) {
        if (allMarkers || marker.active) {
            parts += markerPart(marker, values);
        }
    }
    return parts;
}

// The letters of a line on the ground of the chart.
QPixmap pictureOf(const QString& line, const QColor& color, qreal ratio)
{
    const QFontMetrics metrics(chartLook::font());
    const QSize size(qMax(1, metrics.horizontalAdvance(line)), metrics.height());
    QPixmap picture(size * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(chartLook::Background);
    QPainter painter(&picture);
    painter.setFont(chartLook::font());
    painter.setPen(color);
    painter.drawText(QPoint(0, metrics.ascent()), line);
    return picture;
}

} // namespace

void ChartReadout::update(const Values& values, const Space& space)
{
    const double maxHeight = MaxPart * space.chartHeight;
    layOut(partsOf(values, true, false), space);
    if (values.markers.size() > 1 && headHeight() > maxHeight) {
        layOut(partsOf(values, false, false), space);
    }
    if (const int height = headHeight(); height > maxHeight) {
        layOut(partsOf(values, false, true), space);
        if (headHeight() == height) {
            layOut(partsOf(values, false, false), space); // Brief texts save no line.
        }
    }
    m_over = values.over;
    if (m_over) {
        m_text += (m_text.isEmpty() ? QString() : QStringLiteral("\n")) + chartLook::overText();
    }
}

void ChartReadout::layOut(const QVector<TextFlow::Part>& parts, const Space& space)
{
    const QFontMetrics metrics(chartLook::font());
    // What is measured are the widest texts, which seldom change: laying out a text costs more than
    // anything else here.
    const auto widthOf = [&metrics, this](const QString& text) {
        if (m_widths.size() >= MaxWidths) {
            m_widths.clear();
        }
        auto found = m_widths.find(text);
        return found != m_widths.end() ? *found
                                       : *m_widths.insert(text, metrics.horizontalAdvance(text));
    };
    // As many parts as there is room for stand beside the title.
    const int beside = space.room - space.titleWidth - 2 * chartLook::TitleGap;
    qsizetype first = parts.size();
    while (first > 0) {
        const auto flow = TextFlow::flow(parts.first(first), beside, widthOf);
        if (flow.singleWidth && *flow.singleWidth <= beside) {
            break;
        }
        --first;
    }
    m_besideTitle = first > 0;
    QStringList lines;
    if (first > 0) {
        lines += TextFlow::flow(parts.first(first), beside, widthOf).lines.join(QString());
    }
    if (first < parts.size()) {
        lines += TextFlow::flow(parts.sliced(first), space.room, widthOf).lines;
    }
    m_lines.resize(lines.size());
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (m_lines.at(i).text != lines.at(i)) {
            m_lines[i] = {lines.at(i), QPixmap()};
        }
    }
    lines.removeAll(QString());
    m_text = lines.join(QLatin1Char('\n'));
}

int ChartReadout::headHeight() const
{
    const int lines = static_cast<int>(qMax(qsizetype{1}, m_lines.size()));
    return chartLook::TitleHeight + (m_besideTitle ? lines - 1 : lines) * LineHeight;
}

void ChartReadout::paint(QPainter& painter, int right, const QColor& color)
{
    const int height = QFontMetrics(chartLook::font()).height();
    int y = m_besideTitle ? (chartLook::TitleHeight - height) / 2 : chartLook::TitleHeight - 2;
    const qreal ratio = painter.device()->devicePixelRatioF();
    for (qsizetype i = 0; i < m_lines.size(); ++i) {
        Line& line = m_lines[i];
        if (line.picture.isNull() || m_color != color || line.picture.devicePixelRatio() != ratio) {
            line.picture = pictureOf(line.text, color, ratio);
        }
        const int width = qRound(line.picture.width() / ratio);
        painter.drawPixmap(right - width, y, line.picture);
        y = m_besideTitle && i == 0 ? chartLook::TitleHeight - 2 : y + LineHeight;
    }
    m_color = color;
}
