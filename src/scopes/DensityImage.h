#pragma once

#include <QColor>
#include <QImage>
#include <QSize>

#include <algorithm>
#include <array>
#include <vector>

/// How often each pixel of a plot has been hit lately, like the phosphor of an oscilloscope.
///
/// Every hit makes a pixel brighter, later blocks make it fade (fade()), and the pixels that are
/// hit most turn from the line colour to white. So noise, imbalance and clipping show by where the
/// plot glows. paintOver() lays the result over a picture of the grid.
class DensityImage
{
public:
    /// How long a hit stays on the screen.
    enum class Persistence {
        Short,   ///< It fades to an eighth within 16 blocks, which take two seconds.
        Long,    ///< It fades LongBlocks times slower.
        Infinite ///< It stays. A later hit adds little, so that the densest places stand out.
    };

    static constexpr int LongBlocks = 8; ///< Blocks for one step of fading with Long.

    /// Creates an image without pixels, with a red line colour.
    DensityImage();

    /// Sets the size in pixels and forgets all hits.
    void resize(QSize size);
    /// \return the size in pixels.
    QSize size() const { return {m_width, m_height}; }
    /// Forgets all hits.
    void clear();

    /// Sets the line colour, of past hits, too.
    void setColor(const QColor& color);

    /// Sets how long a hit stays, from now on; Short at first.
    void setPersistence(Persistence persistence);

    /// Makes all pixels fade by one block's time, as far as the persistence has it.
    void fade();

    /// Adds a dot of 3 × 3 pixels around (\a x, \a y), without the pixels outside the picture.
    void addDot(int x, int y);

    /// Adds a vertical run of pixels in column \a x from row \a y0 to row \a y1, both included, in
    /// either order, without the pixels outside the picture.
    void addRun(int x, int y0, int y1)
    {
        if (x >= 0 && x < m_width) {
            Column{m_run.data(), m_stride, m_height}.hitRows(
                m_density.data() + x, std::min(y0, y1), std::max(y0, y1));
        }
    }

    /// Adds a line through all columns, each of which is hit and no pixel twice: in each column a
    /// run from beside the row of the column before to its own row. Nothing is added outside the
    /// picture.
    /// \param rowOf called for each column from left to right: its row.
    template <class RowOf>
    void addLine(RowOf rowOf)
    {
        // Here, because an eye pattern consists of tens of thousands of columns. All is copied that
        // a written byte might change, for all the compiler knows.
        const Column size{m_run.data(), m_stride, m_height};
        const int width = m_width;
        quint8* column = m_density.data();
        int previous = width > 0 ? rowOf(0) : 0;
        for (int x = 0; x < width; ++x, ++column) {
            const int y = rowOf(x);
            if (y == previous) {
                size.hit(column, y);
            } else if (y > previous) {
                size.hitRows(column, previous + 1, y);
            } else {
                size.hitRows(column, y, previous - 1);
            }
            previous = y;
        }
    }

    /// Lays the pixels over \a picture. Only an RGB32 image of this size() is changed.
    void paintOver(QImage& picture) const;

    /// \return 0 (never hit, or long ago) to 255 (hit very often lately); 0 outside.
    int density(int x, int y) const;

private:
    // What a hit of one strength makes of each density.
    using Hit = std::array<quint8, 256>;

    // Hits pixels of a column whose row 0 is `top`, those inside the picture.
    struct Column
    {
        const quint8* run;
        ptrdiff_t stride;
        int height;

        void hit(quint8* top, int row) const
        {
            if (row >= 0 && row < height) {
                top += row * stride;
                *top = run[*top];
            }
        }

        void hitRows(quint8* top, int first, int last) const
        {
            first = std::max(0, first);
            last = std::min(height - 1, last);
            top += first * stride;
            for (int row = first; row <= last; ++row, top += stride) {
                *top = run[*top];
            }
        }
    };

    void hit(int x, int y, const Hit& strength);
    static void hitThree(quint8* row, const Hit& edge, const Hit& middle);
    void paintSome(const quint8* row, QRgb* line, int from, int end) const;
    void makeColors();

    Persistence m_persistence = Persistence::Short;
    int m_sinceFaded = 0; // blocks
    Hit m_dot{};
    Hit m_dotEdge{};
    Hit m_run{};
    int m_width = 0;
    int m_height = 0;
    int m_stride = 0; // a multiple of eight, so that eight empty pixels are skipped at once
    std::vector<quint8> m_density;
    QRgb m_line = 0;
    std::array<QRgb, 256> m_colors{};        // premultiplied, by density
    std::array<QRgb, 256> m_colorsOnBlack{}; // what they come to where there is no grid line
};
