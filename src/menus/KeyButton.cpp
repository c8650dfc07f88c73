#include "menus/KeyButton.h"

#include <QStyleOptionButton>

namespace {

// border and a blank pixel on each side, as the style sheets of the keys have it
constexpr int Margin = 4;

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

} // namespace

KeyButton::KeyButton(const QString& text, QWidget* parent)
    : QPushButton(text, parent)
{
}

QString KeyButton::fitted(const QString& text, const QFontMetrics& metrics, int width, int height)
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

void KeyButton::initStyleOption(QStyleOptionButton* option) const
{
    QPushButton::initStyleOption(option);
    option->text = fitted(option->text, fontMetrics(), width() - 2 * Margin, height() - 2 * Margin);
    // a lone "&" would be taken for a shortcut and not be drawn
    option->text.replace(QLatin1Char('&'), QLatin1String("&&"));
}
