#include "popups/FitButton.h"

#include <QFontMetrics>
#include <QStyleOptionButton>
#include <QStylePainter>

namespace {

// border and a blank pixel on each side, as the style sheets have it
constexpr int Margin = 3;
// no key can show more characters than this, whatever the main unit sends
constexpr qsizetype MostCharacters = 200;

int textFlags(bool anywhere)
{
    const int wrap = anywhere ? Qt::TextWrapAnywhere : Qt::TextWordWrap;
    return Qt::AlignCenter | Qt::TextHideMnemonic | wrap;
}

bool fits(const QString& text, const QFont& font, const QSize& room, bool anywhere)
{
    const QRect space(QPoint(0, 0), room);
    const QRect taken = QFontMetrics(font).boundingRect(space, textFlags(anywhere), text);
    return taken.width() <= room.width() && taken.height() <= room.height();
}

} // namespace

FitButton::FitButton(const QString& text, QWidget* parent)
    : QPushButton(text, parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAutoDefault(false);
}

void FitButton::setOneLine(bool on)
{
    m_oneLine = on;
    update();
}

void FitButton::setRimmed(bool on)
{
    m_rimmed = on;
    update();
}

FitButton::Fit FitButton::fit(const QString& text, const QFont& font, const QSize& room)
{
    const QString shown = text.trimmed().left(MostCharacters);
    QFont tried = font;
    for (const bool anywhere : {false, true}) {
        for (int pixels = font.pixelSize(); pixels >= SmallestFont; --pixels) {
            tried.setPixelSize(pixels);
            if (fits(shown, tried, room, anywhere)) {
                return {shown, pixels, anywhere};
            }
        }
    }
    const int smallest = qMin(font.pixelSize(), SmallestFont);
    tried.setPixelSize(qMax(1, smallest));
    QString rest = shown;
    QString elided;
    do {
        rest.chop(1);
        elided = rest + QChar(0x2026);
    } while (!rest.isEmpty() && !fits(elided, tried, room, true));
    return {elided, tried.pixelSize(), true};
}

QSize FitButton::sizeHint() const
{
    return {Finger, Finger};
}

QSize FitButton::minimumSizeHint() const
{
    return {Finger, Finger};
}

void FitButton::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    QStyleOptionButton option;
    initStyleOption(&option);
    QString label = option.text;
    if (m_oneLine) {
        label.replace(QLatin1Char(' '), QChar::Nbsp);
    }
    option.text.clear();
    QStylePainter painter(this);
    painter.drawControl(QStyle::CE_PushButton, option);

    const QRect room = rect().adjusted(Margin, Margin, -Margin, -Margin);
    if (m_fitText != label || m_fitFont != font() || m_fitRoom != room.size()) {
        m_fitText = label;
        m_fitFont = font();
        m_fitRoom = room.size();
        m_fit = fit(label, font(), room.size());
    }
    QFont shown = font();
    shown.setPixelSize(m_fit.pixelSize);
    painter.setFont(shown);
    const int flags = textFlags(m_fit.anywhere);
    if (m_rimmed) {
        painter.setPen(Qt::black);
        for (const QPoint& side : {QPoint(-1, 0), QPoint(1, 0), QPoint(0, -1), QPoint(0, 1),
                 QPoint(-1, -1), QPoint(1, 1), QPoint(-1, 1), QPoint(1, -1)}) {
            painter.drawText(room.translated(side), flags, m_fit.text);
        }
    }
    const auto group = isEnabled() ? QPalette::Normal : QPalette::Disabled;
    painter.setPen(palette().color(group, QPalette::ButtonText));
    painter.drawText(room, flags, m_fit.text);
}
