#include "spectrum/MeasurementPanel.h"

#include "spectrum/ChartLook.h"

#include <QFontMetrics>
#include <QPainter>

namespace {

constexpr int ValuePixels = 26;
constexpr int BracketHeight = 6;
constexpr int TextTop = 10;    // below the bracket
constexpr int LineHeight = 17; // pixels
constexpr int Gap = 10;        // between the texts at the left and the result
constexpr QColor Bracket(0xff, 0xff, 0xff);

bool isSame(const chartMeasurement::Reading& one, const chartMeasurement::Reading& other)
{
    return one.name == other.name && one.value == other.value && one.details == other.details &&
        one.hasBand == other.hasBand && one.low == other.low && one.high == other.high;
}

} // namespace

MeasurementPanel::MeasurementPanel(QWidget* parent)
    : QWidget(parent)
    , m_valueFont(chartLook::font())
{
    setObjectName(QStringLiteral("measurementPanel"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFixedHeight(Height);
    m_valueFont.setPixelSize(ValuePixels);
    m_valueFont.setBold(true);
}

void MeasurementPanel::setPlot(int left, int right, const Scale& frequencies)
{
    m_left = left;
    m_right = right;
    m_frequencies = frequencies;
    layOut();
}

void MeasurementPanel::setReading(const chartMeasurement::Reading& reading)
{
    if (!isSame(reading, m_reading)) {
        m_reading = reading;
        layOut();
    }
}

void MeasurementPanel::layOut()
{
    m_value.setTextFormat(Qt::PlainText);
    m_value.setText(m_reading.value);
    m_value.prepare({}, m_valueFont);
    const QFontMetrics metrics(chartLook::font());
    const int room = qMax(
        0, m_right - m_left - QFontMetrics(m_valueFont).horizontalAdvance(m_reading.value) - Gap);
    const auto prepared = [&metrics, room](const QString& text) {
        return chartLook::preparedText(metrics.elidedText(text, Qt::ElideRight, room));
    };
    m_name = prepared(m_reading.name);
    m_details = prepared(m_reading.details);
    update();
}

QString MeasurementPanel::text() const
{
    return QStringList{m_reading.name, m_reading.value, m_reading.details}.join(QLatin1Char('\n'));
}

void MeasurementPanel::paintBracket(QPainter& painter) const
{
    const int left = qBound(m_left, qRound(m_frequencies.pixel(m_reading.low)), m_right);
    const int right = qBound(m_left, qRound(m_frequencies.pixel(m_reading.high)), m_right);
    painter.setPen(Bracket);
    painter.drawLine(left, 1, right, 1);
    painter.drawLine(left, 0, left, BracketHeight);
    painter.drawLine(right, 0, right, BracketHeight);
}

void MeasurementPanel::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), chartLook::Background);
    if (m_reading.hasBand) {
        paintBracket(painter);
    }
    painter.setFont(chartLook::font());
    painter.setPen(chartLook::Text);
    painter.drawStaticText(m_left, TextTop, m_name);
    painter.drawStaticText(m_left, TextTop + LineHeight, m_details);
    painter.setFont(m_valueFont);
    painter.setPen(chartLook::Marked);
    const QSize size = m_value.size().toSize();
    painter.drawStaticText(
        m_right + 1 - size.width(), TextTop + (Height - TextTop - size.height()) / 2, m_value);
}
