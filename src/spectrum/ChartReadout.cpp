#include "spectrum/ChartReadout.h"

#include "spectrum/ChartLook.h"

#include <QFontMetrics>
#include <QPainter>

namespace {

constexpr int LineHeight = 17; // pixels
constexpr double WidestLevel = -100.0;

QString readingText(const QString& pattern, const SpectrumReading& reading)
{
    return pattern.arg(reading.frequency, 0, 'f', 3).arg(reading.level, 0, 'f', 1);
}

// A reading, which keeps its room while there is none.
TextFlow::Part readingPart(
    const QString& pattern, const SpectrumReading& reading, const SpectrumReading& widest)
{
    return {
        reading.valid ? readingText(pattern, reading) : QString(), readingText(pattern, widest)};
}

} // namespace

QVector<TextFlow::Part> ChartReadout::parts(const Values& values)
{
    QVector<TextFlow::Part> parts;
    if (values.averaging > 1) {
        const QString text = QStringLiteral("Avg %1").arg(values.averaging);
        parts += {text, text};
    }
    if (values.maxHold) {
        parts += {QStringLiteral("Max Hold"), QStringLiteral("Max Hold")};
    }
    const SpectrumReading widest{true, values.centre, WidestLevel};
    parts += readingPart(QStringLiteral("Peak %1 MHz %2 dB"), values.peak, widest);
    if (values.hasMarker) {
        parts += readingPart(QStringLiteral("Marker %1 MHz %2 dB"), values.marker, widest);
    }
    return parts;
}

void ChartReadout::update(const Values& values, int titleWidth, int room)
{
    const QFontMetrics metrics(chartLook::font());
    const auto flow = TextFlow::flow(parts(values), room,
        [&metrics](const QString& text) { return metrics.horizontalAdvance(text); });
    const int beside = titleWidth + 2 * chartLook::TitleGap;
    m_besideTitle = flow.singleWidth && *flow.singleWidth + beside <= room;
    m_text = flow.lines.join(QLatin1Char('\n'));
    m_lines.clear();
    for (const QString& line : flow.lines) {
        m_lines += chartLook::preparedText(line);
    }
}

int ChartReadout::headHeight() const
{
    const int lines = static_cast<int>(qMax(qsizetype{1}, m_lines.size()));
    return chartLook::TitleHeight + (m_besideTitle ? 0 : lines * LineHeight);
}

void ChartReadout::paint(QPainter& painter, int right, const QColor& color) const
{
    const QFontMetrics metrics(chartLook::font());
    painter.setFont(chartLook::font());
    painter.setPen(color);
    int y = m_besideTitle ? (chartLook::TitleHeight - metrics.height()) / 2
                          : chartLook::TitleHeight - 2;
    for (const QStaticText& line : m_lines) {
        painter.drawStaticText(QPointF(right - line.size().width(), y), line);
        y += LineHeight;
    }
}
