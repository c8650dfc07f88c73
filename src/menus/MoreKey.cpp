#include "menus/MoreKey.h"

#include "touch/KeyFace.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyleOptionButton>

namespace {

constexpr int Gap = 6;    // between text and page
constexpr int Margin = 3; // from the key's edge

} // namespace

MoreKey::MoreKey(int page, QWidget* parent)
    : KeyButton(QStringLiteral("More..."), parent)
    , m_page(page)
    , m_pages(page)
{
}

void MoreKey::setPageCount(int pages)
{
    if (m_pages != pages) {
        m_pages = pages;
        update();
    }
}

QString MoreKey::pageText() const
{
    return QStringLiteral("%1/%2").arg(m_page).arg(m_pages);
}

void MoreKey::paintEvent(QPaintEvent* /*event*/)
{
    QStyleOptionButton option;
    initStyleOption(&option);
    QPainter painter(this);
    const KeyFace& face = KeyFace::of(styleSheet());
    face.paintFace(painter, option, {}, ground());

    QFont small = font();
    small.setPixelSize(PagePixels);
    const QString page = pageText();
    const int textWidth = fontMetrics().horizontalAdvance(text());
    const int pageWidth = QFontMetrics(small).horizontalAdvance(page);
    const int both = textWidth + Gap + pageWidth;
    QRect textPlace = rect();
    QRect pagePlace = rect();
    if (both <= width() - 2 * Margin) {
        textPlace = {(width() - both) / 2, 0, textWidth, height()};
        pagePlace = {textPlace.right() + 1 + Gap, 0, pageWidth, height()};
    } else {
        textPlace.setBottom(height() / 2);
        pagePlace.setTop(height() / 2);
    }
    painter.setPen(face.textColour(isEnabled()));
    painter.drawText(textPlace, Qt::AlignCenter, text());
    painter.setFont(small);
    painter.drawText(pagePlace, Qt::AlignCenter, page);
}
