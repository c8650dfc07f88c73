#include "touch/TextButton.h"

#include <QFontMetrics>
#include <QStyleOptionButton>
#include <QStylePainter>

namespace {

// border and a blank pixel on each side, as the style sheets of the keys have it
constexpr int Margin = 4;
constexpr int MarginOfShrinking = 3;

// the least width of a column of keys
constexpr int WidestHint = 150;

constexpr QChar Ellipsis(0x2026);

// no key can show more characters than this, whatever the main unit sends
constexpr qsizetype MostCharacters = 400;

QStringList brokenLines(const QString& paragraph, const QFontMetrics& metrics, int width)
{
    QStringList lines;
    QString rest = paragraph;
    while (!rest.isEmpty()) {
        qsizetype fits = rest.size();
        while (fits > 1 && metrics.horizontalAdvance(rest.left(fits)) > width) {
            --fits;
        }
        qsizetype cut = fits;
        if (fits < rest.size() && rest.at(fits) != QLatin1Char(' ')) {
            const qsizetype blank = rest.left(fits).lastIndexOf(QLatin1Char(' '));
            cut = blank > 0 ? blank : fits;
        }
        lines += rest.left(cut).trimmed();
        rest = rest.mid(cut).trimmed();
    }
    return lines;
}

int textFlags(bool anywhere)
{
    const int wrap = anywhere ? Qt::TextWrapAnywhere : Qt::TextWordWrap;
    return Qt::AlignCenter | wrap;
}

bool fits(const QString& text, const QFont& font, const QSize& room, bool anywhere)
{
    const QRect space(QPoint(0, 0), room);
    const QRect taken = QFontMetrics(font).boundingRect(space, textFlags(anywhere), text);
    return taken.width() <= room.width() && taken.height() <= room.height();
}

} // namespace

TextButton::TextButton(const QString& text, QWidget* parent, Looks looks)
    : QPushButton(text, parent)
    , m_looks(looks)
{
    if (looks.testFlag(Shrinking)) {
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        setAutoDefault(false);
    }
}

QString TextButton::fitted(const QString& text, const QFontMetrics& metrics, int width, int height)
{
    QStringList lines;
    for (const QString& paragraph : text.left(MostCharacters).split(QLatin1Char('\n'))) {
        if (metrics.horizontalAdvance(paragraph) <= width) {
            lines += paragraph;
        } else {
            lines += brokenLines(paragraph, metrics, width);
        }
    }
    const int room = qMax(1, height / metrics.lineSpacing());
    if (lines.size() > room) {
        const QString rest = QStringList(lines.mid(room - 1)).join(QLatin1Char(' '));
        lines = lines.mid(0, room - 1);
        lines += metrics.elidedText(rest, Qt::ElideRight, width);
    }
    return lines.join(QLatin1Char('\n'));
}

TextButton::Fit TextButton::shrunk(const QString& text, const QFont& font, const QSize& room)
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
        elided = rest + Ellipsis;
    } while (!rest.isEmpty() && !fits(elided, tried, room, true));
    return {elided, tried.pixelSize(), true};
}

QSize TextButton::sizeHint() const
{
    if (m_looks.testFlag(Shrinking)) {
        return {Finger, Finger};
    }
    // long texts are broken: they do not make one column of keys wider than the others
    return QPushButton::sizeHint().boundedTo({WidestHint, QWIDGETSIZE_MAX});
}

QSize TextButton::minimumSizeHint() const
{
    return sizeHint();
}

QString TextButton::fittedText(const QString& text) const
{
    return fitted(text, fontMetrics(), width() - 2 * Margin, height() - 2 * Margin);
}

// Whether the text is painted in a font of its own: at the key's own size some of it would be cut.
bool TextButton::shrinks() const
{
    return m_looks.testFlag(Shrinking) ||
        (font().pixelSize() > SmallestFont && fittedText(text()).endsWith(Ellipsis));
}

void TextButton::initStyleOption(QStyleOptionButton* option) const
{
    QPushButton::initStyleOption(option);
    option->text.replace(QLatin1String("&&"), QLatin1String("&"));
    if (!m_looks.testFlag(Shrinking)) {
        option->text = fittedText(option->text);
        // a lone "&" would be taken for a shortcut and not be drawn
        option->text.replace(QLatin1Char('&'), QLatin1String("&&"));
    }
}

void TextButton::paintEvent(QPaintEvent* event)
{
    if (!shrinks()) {
        QPushButton::paintEvent(event);
        return;
    }
    QStyleOptionButton option;
    initStyleOption(&option);
    QString label = text();
    label.replace(QLatin1String("&&"), QLatin1String("&")).remove(QLatin1Char('\r'));
    if (m_looks.testFlag(OneLine)) {
        label.replace(QLatin1Char(' '), QChar::Nbsp);
    }
    option.text.clear();
    QStylePainter painter(this);
    painter.drawControl(QStyle::CE_PushButton, option);
    paintText(painter, label);
}

void TextButton::paintText(QPainter& painter, const QString& label)
{
    const QRect room = rect().adjusted(
        MarginOfShrinking, MarginOfShrinking, -MarginOfShrinking, -MarginOfShrinking);
    if (m_fitText != label || m_fitFont != font() || m_fitRoom != room.size()) {
        m_fitText = label;
        m_fitFont = font();
        m_fitRoom = room.size();
        m_fit = shrunk(label, font(), room.size());
    }
    QFont shown = font();
    shown.setPixelSize(m_fit.pixelSize);
    painter.setFont(shown);
    const int flags = textFlags(m_fit.anywhere);
    if (m_looks.testFlag(Rimmed)) {
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
