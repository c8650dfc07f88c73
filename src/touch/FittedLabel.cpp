#include "touch/FittedLabel.h"

#include <QFontInfo>
#include <QFontMetrics>
#include <QPainter>
#include <QStyle>

namespace {

// words are kept whole down to the one, broken anywhere down to the other
constexpr int SmallestWhole = 12;
constexpr int SmallestPixels = 9;

// more cannot be read in the smallest font on the whole screen, whatever the main unit sends
constexpr qsizetype MostCharacters = 2000;

bool fits(const FittedLabel::Fit& way, const QSize& room)
{
    const QRect box = QFontMetrics(way.font).boundingRect(
        QRect(QPoint(0, 0), room), Qt::AlignLeft | way.flags, way.text);
    return box.width() <= room.width() && box.height() <= room.height();
}

// The same in smaller and smaller fonts. Out: whether it fits in one of them.
bool shrink(FittedLabel::Fit* way, const QList<int>& flags, int smallest, const QSize& room)
{
    for (int pixels = QFontInfo(way->font).pixelSize();; --pixels) {
        for (const int tried : flags) {
            way->flags = tried;
            if (fits(*way, room)) {
                return true;
            }
        }
        if (pixels <= smallest) {
            return false;
        }
        way->font.setPixelSize(pixels - 1);
    }
}

// Shortens a text that fits in no font, by halves: the longest start of it that fits.
void elide(FittedLabel::Fit* way, const QSize& room)
{
    const QString whole = way->text;
    qsizetype good = 0;
    for (qsizetype bad = whole.size(); bad - good > 1;) {
        const qsizetype tried = (good + bad) / 2;
        way->text = whole.left(tried) + QChar(0x2026);
        (fits(*way, room) ? good : bad) = tried;
    }
    way->text = whole.left(good) + QChar(0x2026);
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
    const QString shown = text.left(MostCharacters);
    Fit whole{shown, font, 0};
    if (shown.isEmpty() || shrink(&whole, {0, Qt::TextWordWrap}, SmallestWhole, room)) {
        return whole;
    }
    Fit broken{shown, font, 0};
    if (!shrink(&broken, {Qt::TextWrapAnywhere}, SmallestPixels, room)) {
        elide(&broken, room);
    }
    return broken;
}

void FittedLabel::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    drawFrame(&painter);
    const Fit way = fit(text(), font(), contentsRect().size());
    painter.setFont(way.font);
    style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()) | way.flags,
        palette(), isEnabled(), way.text, foregroundRole());
}
