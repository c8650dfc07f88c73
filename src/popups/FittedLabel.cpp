#include "popups/FittedLabel.h"

#include <QFontInfo>
#include <QFontMetrics>
#include <QPainter>
#include <QStyle>

namespace {

constexpr int SmallestPixels = 9;

// more cannot be read in the smallest font on the whole screen, whatever the main unit sends
constexpr qsizetype MostCharacters = 2000;

bool fits(const QString& text, const QFont& font, int flags, const QSize& room)
{
    const QRect box =
        QFontMetrics(font).boundingRect(QRect(QPoint(0, 0), room), Qt::AlignLeft | flags, text);
    return box.width() <= room.width() && box.height() <= room.height();
}

} // namespace

FittedLabel::FittedLabel(QWidget* parent)
    : QLabel(parent)
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

FittedLabel::Fit FittedLabel::fit(const QString& text, const QFont& font, const QSize& room)
{
    Fit found{font, 0};
    for (int pixels = QFontInfo(font).pixelSize();; --pixels) {
        for (const int flags : {0, static_cast<int>(Qt::TextWordWrap)}) {
            found.flags = flags;
            if (fits(text, found.font, flags, room)) {
                return found;
            }
        }
        if (pixels <= SmallestPixels) {
            return {found.font, Qt::TextWrapAnywhere};
        }
        found.font.setPixelSize(pixels - 1);
    }
}

void FittedLabel::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    drawFrame(&painter);
    const QString shown = text().left(MostCharacters);
    const Fit way = fit(shown, font(), contentsRect().size());
    painter.setFont(way.font);
    style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()) | way.flags,
        palette(), isEnabled(), shown, foregroundRole());
}
