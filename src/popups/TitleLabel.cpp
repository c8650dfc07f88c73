#include "popups/TitleLabel.h"

#include "popups/FitButton.h"

#include <QPainter>

namespace {
constexpr int Height = 45;
} // namespace

TitleLabel::TitleLabel(const QString& text, QWidget* parent)
    : QLabel(text, parent)
{
    setObjectName(QStringLiteral("titleLabel"));
    setTextFormat(Qt::PlainText);
    setAlignment(Qt::AlignCenter);
    setFixedHeight(Height);
}

QSize TitleLabel::sizeHint() const
{
    return {1, Height};
}

QSize TitleLabel::minimumSizeHint() const
{
    return {1, Height};
}

void TitleLabel::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    QPainter painter(this);
    drawFrame(&painter);
    const QRect room = contentsRect();
    // the measuring is the buttons' one, where "&&" stands for one "&"
    const QString shown = QString(text()).replace(QLatin1Char('&'), QStringLiteral("&&"));
    const FitButton::Fit fit = FitButton::fit(shown, font(), room.size());
    QFont shrunk = font();
    shrunk.setPixelSize(fit.pixelSize);
    painter.setFont(shrunk);
    painter.setPen(palette().color(QPalette::WindowText));
    const int wrap = fit.anywhere ? Qt::TextWrapAnywhere : Qt::TextWordWrap;
    painter.drawText(room, Qt::AlignCenter | Qt::TextHideMnemonic | wrap, fit.text);
}
