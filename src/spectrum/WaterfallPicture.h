#pragma once

#include <QByteArray>
#include <QImage>
#include <QVector>

#include <array>

class QPainter;

/// The picture of a waterfall: one line of pixels per spectrum, the newest on top.
///
/// The lines lie in a ring: a new one takes the place of the oldest, and nothing else is moved or
/// drawn. Painting copies the two halves of the ring, each in one piece. The bytes of the spectra
/// are kept as long as their lines (they are shared with whoever else holds them), so that another
/// width or another range of levels shows the old ones anew. The picture is never larger than
/// setSize() says. It needs no widget.
class WaterfallPicture
{
public:
    /// Sets width and height in pixels; the height is also the largest number of lines. Lines for
    /// which there is no room any more are forgotten, the oldest first.
    void setSize(const QSize& size);
    /// \return width and height in pixels.
    QSize size() const { return m_image.size(); }

    /// Sets which levels have the first and the last colour of colorMap. What lies beyond has the
    /// same colours. \param lowest, highest in dB
    void setRange(double lowest, double highest);

    /// Adds a spectrum as the newest line. A pixel shows the highest of the points that lie
    /// nearest to it.
    /// \param points one byte per point, as in SpectrumTrace::level(); an empty array is ignored
    /// \param ms when it came, in milliseconds of any clock that does not go back
    void add(const QByteArray& points, qint64 ms);

    /// Forgets all lines.
    void clear();

    /// \return the number of lines.
    int lines() const { return m_lines; }

    /// \return how much older a line is than the newest one, in milliseconds. \param line 0 for
    /// the newest to lines() - 1
    qint64 ageMs(int line) const;

    /// \return the newest line that is at least this much older than the newest; lines() when
    /// there is none.
    int lineOfAge(qint64 ms) const;

    /// Paints the picture with its top left corner at \a at; where there are no lines yet, black.
    void paint(QPainter& painter, QPoint at) const;

private:
    struct Line
    {
        QByteArray points;
        qint64 ms = 0;
    };

    int row(int line) const { return (m_newest + line) % static_cast<int>(m_ring.size()); }
    void findColumns(qsizetype points);
    void paintRow(int row);
    void paintAll();

    QImage m_image;       // row i shows line i of the ring
    QVector<Line> m_ring; // as many as the image has rows
    int m_newest = 0;     // row of the newest line
    int m_lines = 0;
    double m_lowest = 0.0;
    double m_highest = 0.0;
    std::array<QRgb, 256> m_colors{}; // one per byte
    QVector<qsizetype> m_firstPoint;  // of each column; behind the last column, the end
    qsizetype m_columnsFor = 0;       // number of points that m_firstPoint is for
};
