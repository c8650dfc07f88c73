#include "touch/LineColors.h"

#include <array>

QColor lineColors::color(int number)
{
    static constexpr std::array<QRgb, Count> Table{0xffff0000U, 0xff00ff00U, 0xff6090ffU,
        0xff00ffffU, 0xffff00ffU, 0xffffff00U, 0xffffffffU, 0xffa0a0a4U};
    if (number < 0 || number >= Count) {
        return {};
    }
    return QColor::fromRgb(Table[static_cast<size_t>(number)]);
}
