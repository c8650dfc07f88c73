#include "scopes/FigureStrip.h"

#include <QPainter>

namespace {

constexpr int NamePixels = 14;
constexpr int ValuePixels = 18;
constexpr int NameHeight = 20;
constexpr QRgb NameColor = 0xffc8c8c8;
constexpr QRgb ValueColor = 0xffffffff;

QFont pixelFont(const QFont& base, int pixels)
{
    QFont font(base);
    font.setPixelSize(pixels);
    return font;
}

} // namespace

FigureStrip::FigureStrip(QWidget* parent)
    : QWidget(parent)
{
    setFixedHeight(Height);
}

void FigureStrip::setFigures(const QVector<ScopeFigure>& figures)
{
    if (m_figures != figures) {
        m_figures = figures;
        update();
    }
}

void FigureStrip::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const auto count = static_cast<int>(m_figures.size());
    for (int k = 0; k < count; ++k) {
        const int left = k * width() / count;
        const QRect cell(left, 0, (k + 1) * width() / count - left, Height);
        painter.setFont(pixelFont(font(), NamePixels));
        painter.setPen(QColor::fromRgb(NameColor));
        painter.drawText(
            cell.adjusted(0, 0, 0, NameHeight - Height), Qt::AlignCenter, m_figures.at(k).name);
        painter.setFont(pixelFont(font(), ValuePixels));
        painter.setPen(QColor::fromRgb(ValueColor));
        painter.drawText(
            cell.adjusted(0, NameHeight, 0, 0), Qt::AlignCenter, m_figures.at(k).value);
    }
}
