#include "app/NoticeLabel.h"

namespace {

constexpr int HeightOverPage = 22; // leaves the text of a key in the last row free
constexpr int SideMargin = 12;

QString textOf(LinkState state)
{
    switch (state) {
    case LinkState::Closed:
        return QStringLiteral("No connection to the main unit");
    case LinkState::Silent:
        return QStringLiteral("The main unit is silent");
    case LinkState::Alive:
        break;
    }
    return {};
}

} // namespace

NoticeLabel::NoticeLabel(QWidget* parent)
    : QLabel(parent)
{
    setObjectName(QStringLiteral("noticeLabel"));
    setTextFormat(Qt::PlainText);
    setAlignment(Qt::AlignCenter);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setStyleSheet(QStringLiteral("background-color: #8b0000; color: white; font-size: 16px;"));
    hide();
}

void NoticeLabel::setState(LinkState state)
{
    setText(textOf(state));
    setVisible(!text().isEmpty());
}

void NoticeLabel::standIn(QWidget* bar, const QRect& room)
{
    setWordWrap(true);
    moveInto(bar);
    setGeometry(QRect(room.topLeft(), QSize(WidthInBar, room.height())));
}

void NoticeLabel::standOver(QWidget* window)
{
    setWordWrap(false);
    moveInto(window);
    ensurePolished();
    QRect place(0, 0, fontMetrics().horizontalAdvance(text()) + 2 * SideMargin, HeightOverPage);
    place.moveCenter(window->rect().center());
    place.moveBottom(window->rect().bottom());
    setGeometry(place);
    raise();
}

void NoticeLabel::moveInto(QWidget* parent)
{
    if (parentWidget() != parent) {
        setParent(parent); // hides it
        setVisible(!text().isEmpty());
    }
}
