#pragma once

#include <QColor>
#include <QImage>
#include <QSize>

#include <array>
#include <vector>

// How often each pixel of a plot has been hit lately, as an oscilloscope's screen keeps it: every
// hit makes a pixel brighter, every block that comes after makes it fade, and what is hit most goes
// from the line colour to white. So noise, imbalance and clipping show by where the plot glows.
class DensityImage
{
public:
    DensityImage();

    // Sets the size in pixels and forgets all hits.
    void resize(QSize size);
    QSize size() const { return {m_width, m_height}; }
    void clear();

    void setColor(const QColor& color);

    // Makes all pixels fade by one block's time: to an eighth within 16 blocks.
    void fade();

    // A dot of 3 × 3 pixels around (x, y); what lies outside the picture is cut off.
    void addDot(int x, int y);

    // A vertical run of pixels in column x from row y0 to row y1, both included, in either order.
    void addRun(int x, int y0, int y1);

    // Lays the pixels over `picture`, which is RGB32 and has this size; other pictures stay as they
    // are.
    void paintOver(QImage& picture) const;

    // 0 (never hit, or long ago) to 255; 0 outside.
    int density(int x, int y) const;

private:
    void hit(int x, int y, int strength);

    int m_width = 0;
    int m_height = 0;
    int m_stride = 0; // a multiple of eight, so that eight empty pixels are skipped at once
    std::vector<quint8> m_density;
    std::array<QRgb, 256> m_colors{};        // premultiplied, by density
    std::array<QRgb, 256> m_colorsOnBlack{}; // what they come to where there is no grid line
};
