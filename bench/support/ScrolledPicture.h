#pragma once

#include <QImage>
#include <QPainter>
#include <QWidget>

#include <cstring>

namespace bench {

/// A picture that is moved down by a line of one colour, and painted: the peer of a waterfall.
class ScrolledPicture : public QWidget
{
public:
    /// The size of the waterfall of an enlarged chart.
    static constexpr QSize Size{544, 150};

    /// Creates a black one.
    ScrolledPicture()
        : m_image(Size, QImage::Format_RGB32)
    {
        setAttribute(Qt::WA_OpaquePaintEvent);
        m_image.fill(Qt::black);
        resize(Size);
    }

    /// Moves the picture down and adds a line, whose bytes are all \a color, without painting.
    void add(int color)
    {
        const qsizetype line = m_image.bytesPerLine();
        uchar* bits = m_image.bits();
        std::memmove(bits + line, bits, static_cast<size_t>(line * (m_image.height() - 1)));
        std::memset(bits, color, static_cast<size_t>(line));
    }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).drawImage(0, 0, m_image); }

private:
    QImage m_image;
};

} // namespace bench
