#include "touch/FittedLabel.h"

#include <QPainter>
#include <QStyle>

FittedLabel::FittedLabel(QWidget* parent)
    : QLabel(parent)
    , m_fit(Limits)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

QSize FittedLabel::sizeHint() const
{
    return minimumSizeHint();
}

QSize FittedLabel::minimumSizeHint() const
{
    return {0, 0};
}

void FittedLabel::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    drawFrame(&painter);
    const TextFit::Fit& way = m_fit.fit(text(), font(), contentsRect().size());
    painter.setFont(way.font);
    style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()) | way.flags,
        palette(), isEnabled(), way.text, foregroundRole());
}
