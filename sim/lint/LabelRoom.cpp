#include "sim/lint/LabelRoom.h"

#include <array>

namespace {

constexpr int WidthUnit = 64;
constexpr int MissingWidth = 460; // of the box that stands for a control character

// The advances of DejaVu Sans at 12 px, from the blank to "~" and from 0xa0 to 0xff.
// clang-format off
constexpr std::array<int, 95> LowWidths{
    244, 307, 353, 643, 488, 729, 598, 211, 299, 299, 384, 643, 244, 277, 244, 258, 488, 488, 488,
    488, 488, 488, 488, 488, 488, 488, 258, 258, 643, 643, 643, 407, 768, 525, 526, 536, 591, 485,
    441, 595, 577, 226, 226, 503, 427, 662, 574, 604, 463, 604, 533, 487, 469, 562, 525, 759, 526,
    469, 526, 299, 258, 299, 643, 384, 384, 470, 487, 422, 487, 472, 270, 487, 486, 213, 213, 444,
    213, 748, 486, 469, 487, 487, 315, 400, 301, 486, 454, 628, 454, 454, 403, 488, 258, 488, 643,
};
constexpr std::array<int, 96> HighWidths{
    244, 307, 488, 488, 488, 488, 258, 384, 384, 768, 361, 469, 643, 277, 768, 384, 384, 643, 307,
    307, 384, 488, 488, 244, 384, 307, 361, 469, 744, 744, 744, 407, 525, 525, 525, 525, 525, 525,
    748, 536, 485, 485, 485, 485, 226, 226, 226, 226, 595, 574, 604, 604, 604, 604, 604, 643, 604,
    562, 562, 562, 562, 469, 464, 483, 470, 470, 470, 470, 470, 470, 754, 422, 472, 472, 472, 472,
    213, 213, 213, 213, 469, 486, 469, 469, 469, 469, 469, 643, 469, 486, 486, 486, 486, 454, 487,
    454,
};
// clang-format on
constexpr int FirstLow = 0x20;
constexpr int FirstHigh = 0xa0;

// What the panel keeps free at the edges of a key, and in its upper corners for the marks.
constexpr int Margin = 3;
constexpr int Corner = 18;
constexpr qsizetype MaxCharacters = 400;

constexpr QSize PageKey(123, 59);
constexpr QSize GroupKey(118, 56);
constexpr QSize OptionKey(122, 47);
constexpr QSize PaxKey(191, 74);
// with up to three keys beside "Span", with four, and with five
constexpr QSize WidePaxOption(153, 60);
constexpr QSize PaxOption(121, 60);
constexpr QSize NarrowPaxOption(89, 60);

// Returns how many lines a text takes when they are broken anywhere.
int lineCount(const QString& text, int width)
{
    const int room = width * WidthUnit;
    int lines = 1;
    int taken = 0;
    for (const QChar letter : text) {
        const int next = labelRoom::letterWidth(letter);
        if (letter == QLatin1Char('\n')) {
            ++lines;
            taken = 0;
        } else if (taken + next > room) {
            ++lines;
            taken = next;
        } else {
            taken += next;
        }
    }
    return lines;
}

bool fitsInto(const QString& text, int width, int height)
{
    return lineCount(text, width) * labelRoom::LineHeight <= height;
}

} // namespace

namespace labelRoom {

int letterWidth(QChar letter)
{
    const int code = letter.unicode();
    if (code >= FirstLow && code - FirstLow < static_cast<int>(LowWidths.size())) {
        return LowWidths.at(static_cast<std::size_t>(code - FirstLow));
    }
    if (code >= FirstHigh && code - FirstHigh < static_cast<int>(HighWidths.size())) {
        return HighWidths.at(static_cast<std::size_t>(code - FirstHigh));
    }
    return MissingWidth;
}

QSize keySize(PanelMenu::Kind kind, KeyGroup group, int options)
{
    if (kind == PanelMenu::Kind::Plain) {
        return PageKey;
    }
    if (kind == PanelMenu::Kind::Main) {
        return group == KeyGroup::Options ? OptionKey : GroupKey;
    }
    if (group != KeyGroup::Options) {
        return PaxKey;
    }
    constexpr int Wide = 3;
    return options <= Wide ? WidePaxOption : options == Wide + 1 ? PaxOption : NarrowPaxOption;
}

bool fits(const QString& label, const QSize& key, bool hasMarks)
{
    const QString text = QString(label)
                             .replace(QLatin1String("&&"), QLatin1String("&"))
                             .remove(QLatin1Char('\r'))
                             .trimmed();
    if (text.size() > MaxCharacters) {
        return false;
    }
    if (!hasMarks) {
        return fitsInto(text, key.width() - 2 * Margin, key.height() - 2 * Margin);
    }
    return fitsInto(text, key.width() - 2 * Corner, key.height() - 2 * Margin) ||
        fitsInto(text, key.width() - 2 * Margin, key.height() - Corner - Margin);
}

} // namespace labelRoom
