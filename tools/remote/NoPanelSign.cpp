#include "tools/remote/NoPanelSign.h"

#include <array>

namespace {

constexpr int Rows = 7;
constexpr int Columns = 5;
constexpr int Gap = 1;
constexpr int Scale = 6; // pixels for a dot
constexpr quint32 White = 0x00ffffff;
constexpr quint32 HalfMask = 0x007f7f7f; // of a pixel that was shifted by one bit

using Letter = std::array<quint8, Rows>; // the five low bits of each are the dots of a row

constexpr Letter N{0b10001, 0b11001, 0b10101, 0b10011, 0b10001, 0b10001, 0b10001};
constexpr Letter O{0b01110, 0b10001, 0b10001, 0b10001, 0b10001, 0b10001, 0b01110};
constexpr Letter P{0b11110, 0b10001, 0b10001, 0b11110, 0b10000, 0b10000, 0b10000};
constexpr Letter A{0b01110, 0b10001, 0b10001, 0b11111, 0b10001, 0b10001, 0b10001};
constexpr Letter E{0b11111, 0b10000, 0b10000, 0b11110, 0b10000, 0b10000, 0b11111};
constexpr Letter L{0b10000, 0b10000, 0b10000, 0b10000, 0b10000, 0b10000, 0b11111};
constexpr Letter Blank{};
constexpr std::array<Letter, 8> Text{N, O, Blank, P, A, N, E, L};
constexpr int TextColumns = static_cast<int>(Text.size()) * (Columns + Gap) - Gap;

bool isDot(int column, int row)
{
    const int inLetter = column % (Columns + Gap);
    const auto letter = static_cast<std::size_t>(column / (Columns + Gap));
    return inLetter < Columns &&
        ((Text[letter][static_cast<std::size_t>(row)] >> (Columns - 1 - inLetter)) & 1) != 0;
}

} // namespace

void drawNoPanelSign(quint32* pixels, QSize size)
{
    for (int i = 0; i < size.width() * size.height(); ++i) {
        pixels[i] = (pixels[i] >> 1) & HalfMask;
    }
    const int left = (size.width() - TextColumns * Scale) / 2;
    const int top = (size.height() - Rows * Scale) / 2;
    if (left < 0 || top < 0) {
        return;
    }
    for (int y = 0; y < Rows * Scale; ++y) {
        for (int x = 0; x < TextColumns * Scale; ++x) {
            if (isDot(x / Scale, y / Scale)) {
                pixels[(top + y) * size.width() + left + x] = White;
            }
        }
    }
}
