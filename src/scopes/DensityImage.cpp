#include "scopes/DensityImage.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr int Brightest = 255;
constexpr int DotStrength = 150;
constexpr int DotEdgeStrength = 75;
constexpr int RunStrength = 70;
constexpr int FadeOf256 = 225; // 0.88 per block
constexpr int WhiteFrom = 160; // density from which the colour turns white
constexpr int MaxWhite = 150;  // Of 255: the line colour can still be recognised.
constexpr int SkipPixels = 8;

constexpr QRgb Black = 0xff000000U;

constexpr int InfiniteStep = 2; // What a hit adds that is not the first, when none fades.

// How bright a hit makes a pixel of each density.
std::array<quint8, 256> hitOf(int strength, bool fades)
{
    std::array<quint8, 256> after{};
    for (int d = 0; d <= Brightest; ++d) {
        const int sum = fades ? d + strength : std::max(strength, d + InfiniteStep);
        after[static_cast<size_t>(d)] = static_cast<quint8>(std::min(Brightest, sum));
    }
    return after;
}

// Lays one pixel over another, the upper one premultiplied: the operator "over" of Porter and Duff,
// Compositing Digital Images, 1984. Red and blue are computed together in one word.
QRgb blend(QRgb over, QRgb under)
{
    const quint32 rest = 256U - qAlpha(over);
    const quint32 redBlue = (((under & 0x00ff00ffU) * rest) >> 8) & 0x00ff00ffU;
    const quint32 green = (((under & 0x0000ff00U) * rest) >> 8) & 0x0000ff00U;
    return 0xff000000U | ((over & 0x00ffffffU) + (redBlue | green));
}

// Whether eight pixels are: no line of the grid, only the ground.
bool isBlack(const QRgb* pixels)
{
    constexpr quint64 Two = (quint64{Black} << 32U) | Black;
    std::array<quint64, SkipPixels / 2> pairs{};
    std::memcpy(pairs.data(), pixels, sizeof pairs);
    return ((pairs[0] ^ Two) | (pairs[1] ^ Two) | (pairs[2] ^ Two) | (pairs[3] ^ Two)) == 0;
}

} // namespace

DensityImage::DensityImage()
{
    setColor(Qt::red);
    setPersistence(Persistence::Short);
}

void DensityImage::setPersistence(Persistence persistence)
{
    const bool fades = persistence != Persistence::Infinite;
    m_persistence = persistence;
    m_sinceFaded = 0;
    m_dot = hitOf(DotStrength, fades);
    m_dotEdge = hitOf(DotEdgeStrength, fades);
    m_run = hitOf(RunStrength, fades);
}

void DensityImage::resize(QSize size)
{
    m_width = std::max(0, size.width());
    m_height = std::max(0, size.height());
    m_stride = (m_width + SkipPixels - 1) / SkipPixels * SkipPixels;
    m_density.assign(static_cast<size_t>(m_stride) * static_cast<size_t>(m_height), 0);
    makeColors();
}

void DensityImage::clear()
{
    std::fill(m_density.begin(), m_density.end(), quint8{0});
}

void DensityImage::setColor(const QColor& color)
{
    m_line = color.rgb();
    if (!m_density.empty()) {
        makeColors();
    }
}

// Not before the image has a size: six eyes and three constellations wait for that from the start.
void DensityImage::makeColors()
{
    for (int d = 0; d <= Brightest; ++d) {
        // Alpha grows with the square root, so that a faint pixel can still be seen on black.
        const int alpha = static_cast<int>(std::lround(std::sqrt(d / 255.0) * Brightest));
        const int white = std::max(0, d - WhiteFrom) * MaxWhite / (Brightest - WhiteFrom);
        const auto part = [&](int c) { return c + (Brightest - c) * white / Brightest; };
        m_colors[static_cast<size_t>(d)] = qPremultiply(
            qRgba(part(qRed(m_line)), part(qGreen(m_line)), part(qBlue(m_line)), alpha));
        m_colorsOnBlack[static_cast<size_t>(d)] = blend(m_colors[static_cast<size_t>(d)], Black);
    }
}

void DensityImage::fade()
{
    const int every = m_persistence == Persistence::Long ? LongBlocks : 1;
    if (m_persistence == Persistence::Infinite || ++m_sinceFaded < every) {
        return;
    }
    m_sinceFaded = 0;
    for (quint8& d : m_density) {
        d = static_cast<quint8>((d * FadeOf256) >> 8);
    }
}

// Hits three pixels in a row of a dot; the outer ones are its edge.
void DensityImage::hitThree(quint8* row, const Hit& edge, const Hit& middle)
{
    row[0] = edge[row[0]];
    row[1] = middle[row[1]];
    row[2] = edge[row[2]];
}

void DensityImage::hit(int x, int y, const Hit& strength)
{
    quint8& d =
        m_density[static_cast<size_t>(y) * static_cast<size_t>(m_stride) + static_cast<size_t>(x)];
    d = strength[d];
}

void DensityImage::addDot(int x, int y)
{
    // Nearly all dots lie inside completely.
    if (x >= 1 && y >= 1 && x < m_width - 1 && y < m_height - 1) {
        const auto stride = static_cast<size_t>(m_stride);
        quint8* const above =
            m_density.data() + static_cast<size_t>(y - 1) * stride + static_cast<size_t>(x - 1);
        hitThree(above, m_dotEdge, m_dotEdge);
        hitThree(above + stride, m_dotEdge, m_dot);
        hitThree(above + 2 * stride, m_dotEdge, m_dotEdge);
        return;
    }
    for (int row = std::max(0, y - 1); row <= std::min(m_height - 1, y + 1); ++row) {
        for (int column = std::max(0, x - 1); column <= std::min(m_width - 1, x + 1); ++column) {
            hit(column, row, row == y && column == x ? m_dot : m_dotEdge);
        }
    }
}

void DensityImage::paintOver(QImage& picture) const
{
    if (picture.size() != size() || picture.format() != QImage::Format_RGB32) {
        return;
    }
    uchar* const bits = picture.bits();
    for (int y = 0; y < m_height; ++y) {
        const quint8* const row =
            m_density.data() + static_cast<size_t>(y) * static_cast<size_t>(m_stride);
        auto* const line = reinterpret_cast<QRgb*>(bits + y * picture.bytesPerLine());
        for (int x = 0; x < m_stride; x += SkipPixels) {
            quint64 eight = 0;
            std::memcpy(&eight, row + x, sizeof eight);
            if (eight == 0) {
                continue;
            }
            if (x + SkipPixels <= m_width && isBlack(line + x)) {
                for (int column = x; column < x + SkipPixels; ++column) {
                    line[column] = m_colorsOnBlack[row[column]];
                }
            } else {
                paintSome(row, line, x, std::min(m_width, x + SkipPixels));
            }
        }
    }
}

// Pixels some of which may lie on a line of the grid.
void DensityImage::paintSome(const quint8* row, QRgb* line, int from, int end) const
{
    for (int column = from; column < end; ++column) {
        const quint8 d = row[column];
        if (d != 0) {
            const QRgb under = line[column];
            line[column] = under == Black ? m_colorsOnBlack[d] : blend(m_colors[d], under);
        }
    }
}

int DensityImage::density(int x, int y) const
{
    const bool inside = x >= 0 && y >= 0 && x < m_width && y < m_height;
    return inside
        ? m_density[static_cast<size_t>(y) * static_cast<size_t>(m_stride) + static_cast<size_t>(x)]
        : 0;
}
