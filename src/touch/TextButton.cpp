#include "touch/TextButton.h"

#include "touch/KeyStyle.h"
#include "touch/Sizes.h"

#include <QFontMetrics>
#include <QStyleOptionButton>
#include <QStylePainter>

#include <optional>

namespace {

// border and a blank pixel on each side, as the style sheets of the keys have it
constexpr int Margin = 4;
constexpr int ShrinkingMargin = 3;

// the least width of a column of keys
constexpr int MaxHintWidth = 150;

constexpr QChar Ellipsis(0x2026);

// How many characters from the start of the text fit the width, one at least. Measures starts of
// doubling length first: a line is short however long the text is.
qsizetype fittingCharacters(const QString& text, const QFontMetrics& metrics, int width)
{
    const auto fits = [&](qsizetype count) {
        return metrics.horizontalAdvance(text.left(count)) <= width;
    };
    qsizetype good = 1;
    qsizetype bad = 2;
    while (bad <= text.size() && fits(bad)) {
        good = bad;
        bad *= 2;
    }
    bad = qMin(bad, text.size() + 1);
    while (bad - good > 1) {
        const qsizetype tried = (good + bad) / 2;
        (fits(tried) ? good : bad) = tried;
    }
    return good;
}

QStringList brokenLines(const QString& paragraph, const QFontMetrics& metrics, int width)
{
    QStringList lines;
    QString rest = paragraph;
    while (!rest.isEmpty()) {
        const qsizetype fits = fittingCharacters(rest, metrics, width);
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

// Whether the first way to draw a text changes it less than the second one: cuts nothing, breaks no
// words, has larger letters.
bool changesLess(const TextFit::Fit& first, const TextFit::Fit& second)
{
    const bool cutsFirst = first.text.endsWith(Ellipsis);
    const bool cutsSecond = second.text.endsWith(Ellipsis);
    if (cutsFirst != cutsSecond) {
        return cutsSecond;
    }
    const bool breaksFirst = first.flags == Qt::TextWrapAnywhere;
    const bool breaksSecond = second.flags == Qt::TextWrapAnywhere;
    if (breaksFirst != breaksSecond) {
        return breaksSecond;
    }
    return first.font.pixelSize() > second.font.pixelSize();
}

} // namespace

// What painting has worked out, as long as text, font and size stay the same.
struct TextButton::PaintCache
{
    TextFit fit{Limits};
    TextFit fitBetween{Limits}; // with marks: between the corners, and `fit` is for the room below
    QFont font;
    QSize size;
    QString text;   // that was broken into lines
    QString broken; // is empty when it has still to be done
    QString label;  // text() when reachesCorners was worked out
    std::optional<bool> reachesCorners;
};

TextButton::TextButton(const QString& text, QWidget* parent, Looks looks)
    : QPushButton(text, parent)
    , m_looks(looks)
{
    if (looks.testFlag(Shrinking)) {
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        setAutoDefault(false);
    }
}

TextButton::~TextButton() = default;

QString TextButton::fitted(const QString& text, const QFontMetrics& metrics, int width, int height)
{
    QStringList lines;
    for (const QString& paragraph : text.left(Limits.maxCharacters).split(QLatin1Char('\n'))) {
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

QSize TextButton::sizeHint() const
{
    if (m_looks.testFlag(Shrinking)) {
        return {touch::MinTarget, touch::MinTarget};
    }
    // A long text is broken into lines, so it must not make its column of keys the widest.
    return boundedHint(QPushButton::sizeHint());
}

QSize TextButton::boundedHint(const QSize& asked)
{
    return asked.boundedTo({MaxHintWidth, QWIDGETSIZE_MAX});
}

QSize TextButton::minimumSizeHint() const
{
    return sizeHint();
}

// Whatever is in it fits the present font and size.
TextButton::PaintCache& TextButton::cache() const
{
    if (m_cache == nullptr) {
        m_cache = std::make_unique<PaintCache>();
    }
    if (m_cache->size != size() || m_cache->font != font()) {
        m_cache->size = size();
        m_cache->font = font();
        m_cache->broken.clear();
        m_cache->reachesCorners.reset();
    }
    return *m_cache;
}

QString TextButton::fittedText(const QString& text) const
{
    PaintCache& known = cache();
    if (known.broken.isEmpty() || known.text != text) {
        known.text = text;
        known.broken = fitted(text, fontMetrics(), width() - 2 * Margin, height() - 2 * Margin);
    }
    return known.broken;
}

// Whether the text is painted in a font of its own: at the key's own size some of it would be cut.
bool TextButton::shrinks() const
{
    return m_looks.testFlag(Shrinking) ||
        (font().pixelSize() > Limits.minWholePixels && fittedText(text()).endsWith(Ellipsis));
}

void TextButton::initStyleOption(QStyleOptionButton* option) const
{
    QPushButton::initStyleOption(option);
    option->text.replace(QLatin1String("&&"), QLatin1String("&"));
    if (!m_looks.testFlag(Shrinking)) {
        option->text = fittedText(option->text);
        // QPushButton takes a lone "&" for the mark of a shortcut and does not draw it
        option->text.replace(QLatin1Char('&'), QLatin1String("&&"));
    }
}

void TextButton::setMarks(const keyMarks::Marks& marks)
{
    if (!(m_marks == marks)) {
        m_marks = marks;
        update();
    }
}

bool TextButton::isTextFitted() const
{
    return shrinks() || (m_marks.any() && reachesCorners());
}

// Whether the text, painted in the middle at the key's own size, would touch a corner with a mark.
bool TextButton::reachesCorners() const
{
    PaintCache& known = cache();
    if (!known.reachesCorners || known.label != text()) {
        known.label = text();
        known.reachesCorners = linesReachCorners();
    }
    return *known.reachesCorners;
}

bool TextButton::linesReachCorners() const
{
    const QStringList lines = fittedText(shownText()).split(QLatin1Char('\n'));
    const QFontMetrics metrics = fontMetrics();
    int top = (height() - static_cast<int>(lines.size()) * metrics.lineSpacing()) / 2;
    for (const QString& line : lines) {
        if (top >= keyMarks::CornerSize) {
            return false;
        }
        if (metrics.horizontalAdvance(line) > width() - 2 * keyMarks::CornerSize) {
            return true;
        }
        top += metrics.lineSpacing();
    }
    return false;
}

void TextButton::paintEvent(QPaintEvent* event)
{
    if (m_looks.testFlag(DarkWhenDisabled) && !isEnabled()) {
        paintDark();
    } else if (isTextFitted()) {
        paintFitted();
    } else {
        QPushButton::paintEvent(event);
    }
    if (m_marks.any()) {
        QPainter painter(this);
        keyMarks::paint(painter, rect(), m_marks, isEnabled());
    }
}

// The text as it is shown, before it is broken into lines.
QString TextButton::shownText() const
{
    QString label = text();
    label.replace(QLatin1String("&&"), QLatin1String("&")).remove(QLatin1Char('\r'));
    if (m_looks.testFlag(OneLine)) {
        label.replace(QLatin1Char(' '), QChar::Nbsp);
    }
    return label.trimmed();
}

void TextButton::paintFitted()
{
    QStyleOptionButton option;
    initStyleOption(&option);
    option.text.clear();
    QStylePainter painter(this);
    painter.drawControl(QStyle::CE_PushButton, option);
    const auto group = isEnabled() ? QPalette::Normal : QPalette::Disabled;
    paintText(painter, palette().color(group, QPalette::ButtonText));
}

// Paints the look of a disabled key without its style sheet.
void TextButton::paintDark()
{
    QPainter painter(this);
    keyStyle::paintDisabledFace(painter, rect());
    paintText(painter, Qt::white);
}

void TextButton::paintText(QPainter& painter, const QColor& colour)
{
    painter.setPen(colour);
    const QString label = shownText();
    if (m_marks.any()) {
        paintClearOfCorners(painter, label);
        return;
    }
    const QRect room =
        rect().adjusted(ShrinkingMargin, ShrinkingMargin, -ShrinkingMargin, -ShrinkingMargin);
    paintFit(painter, room, cache().fit.fit(label, font(), room.size()));
}

// Paints the text between the corners or under them, wherever it changes less.
void TextButton::paintClearOfCorners(QPainter& painter, const QString& label)
{
    const int corner = keyMarks::CornerSize;
    const QRect under =
        rect().adjusted(ShrinkingMargin, corner, -ShrinkingMargin, -ShrinkingMargin);
    const QRect between = rect().adjusted(corner, ShrinkingMargin, -corner, -ShrinkingMargin);
    const TextFit::Fit& wayUnder = cache().fit.fit(label, font(), under.size());
    const TextFit::Fit& wayBetween = cache().fitBetween.fit(label, font(), between.size());
    if (changesLess(wayUnder, wayBetween)) {
        paintFit(painter, under, wayUnder);
    } else {
        paintFit(painter, between, wayBetween);
    }
}

void TextButton::paintFit(QPainter& painter, const QRect& room, const TextFit::Fit& way)
{
    painter.setFont(way.font);
    const int flags = Qt::AlignCenter | way.flags;
    if (m_looks.testFlag(Rimmed)) {
        const QPen pen = painter.pen();
        painter.setPen(Qt::black);
        for (const QPoint& side : {QPoint(-1, 0), QPoint(1, 0), QPoint(0, -1), QPoint(0, 1),
                 QPoint(-1, -1), QPoint(1, 1), QPoint(-1, 1), QPoint(1, -1)}) {
            painter.drawText(room.translated(side), flags, way.text);
        }
        painter.setPen(pen);
    }
    painter.drawText(room, flags, way.text);
}
