#include "touch/TextFit.h"

#include <QFontInfo>
#include <QFontMetrics>
#include <QList>

namespace {

constexpr QChar Ellipsis(0x2026);

bool fits(const TextFit::Fit& way, const QSize& room)
{
    const QRect taken = QFontMetrics(way.font).boundingRect(
        QRect(QPoint(0, 0), room), Qt::AlignLeft | way.flags, way.text);
    return taken.width() <= room.width() && taken.height() <= room.height();
}

// Tries smaller and smaller fonts, each with every one of `flags`, until the text fits.
// Returns whether it does; `way` is then how.
bool shrink(TextFit::Fit* way, const QList<int>& flags, int minPixels, const QSize& room)
{
    for (int pixels = QFontInfo(way->font).pixelSize();; --pixels) {
        for (const int tried : flags) {
            way->flags = tried;
            if (fits(*way, room)) {
                return true;
            }
        }
        if (pixels <= minPixels) {
            return false;
        }
        way->font.setPixelSize(pixels - 1);
    }
}

// Shortens a text to its longest start that fits together with the ellipsis.
void elide(TextFit::Fit* way, const QSize& room)
{
    const QString whole = way->text;
    qsizetype good = 0;
    for (qsizetype bad = whole.size(); bad - good > 1;) {
        const qsizetype tried = (good + bad) / 2;
        way->text = whole.left(tried) + Ellipsis;
        (fits(*way, room) ? good : bad) = tried;
    }
    way->text = whole.left(good) + Ellipsis;
}

} // namespace

TextFit::TextFit(const Limits& limits)
    : m_limits(limits)
{
}

const TextFit::Fit& TextFit::fit(const QString& text, const QFont& font, const QSize& room)
{
    if (!m_known || m_text != text || m_font != font || m_room != room) {
        m_known = true;
        m_text = text;
        m_font = font;
        m_room = room;
        m_fit = fit(text, font, room, m_limits);
    }
    return m_fit;
}

TextFit::Fit TextFit::fit(
    const QString& text, const QFont& font, const QSize& room, const Limits& limits)
{
    const QString shown = text.left(limits.maxCharacters);
    const QList<int> whole =
        limits.unwrappedFirst ? QList<int>{0, Qt::TextWordWrap} : QList<int>{Qt::TextWordWrap};
    Fit way{shown, font, 0};
    if (shown.isEmpty() || shrink(&way, whole, limits.minWholePixels, room)) {
        return way;
    }
    way = {shown, font, 0};
    if (!shrink(&way, {Qt::TextWrapAnywhere}, limits.minPixels, room)) {
        elide(&way, room);
    }
    return way;
}
