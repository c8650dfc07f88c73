#include "scopes/FigureStrip.h"

#include <QPaintEvent>
#include <QPainter>

#include <utility>

namespace {

constexpr int NamePixels = 14;
constexpr int ValuePixels = 18;
constexpr int NameBaseLine = 15;
constexpr int NameHeight = 20;
constexpr int ValueBaseLine = 38;
constexpr int LeftMargin = 8;
constexpr QRgb NameColor = 0xffc8c8c8;
constexpr QRgb ValueColor = 0xffffffff;

} // namespace

FigureStrip::FigureStrip(QWidget* parent)
    : QWidget(parent)
{
    setFixedHeight(Height);
}

QRect FigureStrip::cell(qsizetype figure) const
{
    const auto count = static_cast<int>(m_figures.size());
    const int left = static_cast<int>(figure) * width() / count;
    return {left, 0, (static_cast<int>(figure) + 1) * width() / count - left, Height};
}

QRect FigureStrip::valuePlace(qsizetype figure) const
{
    return cell(figure).adjusted(0, NameHeight, 0, 0);
}

void FigureStrip::setFigures(const QVector<ScopeFigure>& figures)
{
    const QVector<ScopeFigure> before = std::exchange(m_figures, figures);
    bool sameNames = before.size() == m_figures.size();
    QRegion changed;
    for (qsizetype k = 0; sameNames && k < m_figures.size(); ++k) {
        sameNames = before.at(k).name == m_figures.at(k).name;
        if (before.at(k).value != m_figures.at(k).value) {
            changed += valuePlace(k);
        }
    }
    if (!sameNames) {
        changed = rect();
    }
    if (!changed.isEmpty()) {
        m_changed += changed;
        update(changed);
    }
}

QRegion FigureStrip::takeChanged()
{
    return std::exchange(m_changed, {});
}

QFont FigureStrip::fontOf(int pixels) const
{
    QFont wanted(font());
    wanted.setPixelSize(pixels);
    return wanted;
}

// At the left of each cell: to put a text into the middle it would have to be measured first.
void FigureStrip::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.setFont(fontOf(ValuePixels));
    painter.setPen(QColor::fromRgb(ValueColor));
    bool names = false;
    for (qsizetype k = 0; k < m_figures.size(); ++k) {
        names = names || event->region().intersects(cell(k).adjusted(0, 0, 0, NameHeight - Height));
        if (event->region().intersects(valuePlace(k))) {
            painter.drawText(cell(k).left() + LeftMargin, ValueBaseLine, m_figures.at(k).value);
        }
    }
    painter.setFont(fontOf(NamePixels));
    painter.setPen(QColor::fromRgb(NameColor));
    for (qsizetype k = 0; names && k < m_figures.size(); ++k) {
        painter.drawText(cell(k).left() + LeftMargin, NameBaseLine, m_figures.at(k).name);
    }
}
