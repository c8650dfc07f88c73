#pragma once

#include <QBitArray>
#include <QImage>
#include <QList>
#include <QRect>

class QWidget;

/// What the glass shows within the panel's window: that window, and every editor, message box,
/// pop-up list and start-up picture over it.
///
/// Nothing is painted for it. look() reads what the windows have painted for the screen, compares
/// it with the picture, and takes over what differs. The picture lies in tiles; those that differ
/// are what look() answers.
class GlassPicture
{
public:
    /// The size of a tile, in pixels.
    static constexpr QSize TileSize{32, 16};

    /// Begins with a black picture. \param window the panel's; it outlives this
    explicit GlassPicture(const QWidget* window);

    /// \return the picture as look() has seen it, 32 bits for a pixel.
    const QImage& image() const { return m_image; }
    /// \return the number of tiles.
    int tiles() const { return m_across * m_down; }

    /// Looks at the windows. \return the tiles that have changed since it looked last.
    QBitArray look();

    /// \return rectangles, none higher than a tile, that cover exactly these tiles.
    QList<QRect> rectangles(const QBitArray& tiles) const;

private:
    // A window over the picture.
    struct Layer
    {
        const QWidget* window;
        QRect place; // in the picture
        QImage image;
    };

    QList<Layer> layers() const;
    void take(const Layer& layer, const QRect& part, QBitArray* changed);
    bool takeTile(const Layer& layer, const QRect& part);

    const QWidget* m_window;
    QImage m_image;
    int m_across;
    int m_down;
};
