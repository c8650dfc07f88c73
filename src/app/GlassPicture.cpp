#include "app/GlassPicture.h"

#include "touch/WindowOrder.h"

#include <QBackingStore>
#include <QWidget>

#include <algorithm>
#include <cstring>

namespace {

constexpr qsizetype PixelBytes = 4;

// The pixels that a window has painted, one for each point of it.
QImage pixelsOf(const QWidget* window)
{
    QBackingStore* store = window->backingStore();
    const QPaintDevice* device = store != nullptr ? store->paintDevice() : nullptr;
    if (device == nullptr || device->devType() != QInternal::Image) {
        return {};
    }
    QImage image = *static_cast<const QImage*>(device);
    if (image.size() != window->size()) {
        image = image.scaled(window->size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    // Frame buffers may have 16 bits. Windows are opaque, so an alpha channel is 255 everywhere.
    const bool fits = image.format() == QImage::Format_RGB32 ||
        image.format() == QImage::Format_ARGB32_Premultiplied;
    return fits ? image : std::move(image).convertToFormat(QImage::Format_RGB32);
}

const uchar* pixel(const QImage& image, QPoint at)
{
    return image.constScanLine(at.y()) + at.x() * PixelBytes;
}

// The edges of the places along one axis, within 0 and the end, in order and each once.
QList<int> edges(const QList<QPair<int, int>>& spans, int end)
{
    QList<int> all{0, end};
    for (const auto& span : spans) {
        all << qBound(0, span.first, end) << qBound(0, span.second, end);
    }
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
}

int divideUp(int number, int by)
{
    return (number + by - 1) / by;
}

} // namespace

GlassPicture::GlassPicture(const QWidget* window)
    : m_window(window)
    , m_image(window->size(), QImage::Format_RGB32)
    , m_across(divideUp(m_image.width(), TileSize.width()))
    , m_down(divideUp(m_image.height(), TileSize.height()))
{
    m_image.fill(Qt::black);
}

QList<GlassPicture::Layer> GlassPicture::layers() const
{
    QList<Layer> layers;
    for (const QWidget* window : touch::visibleWindows()) {
        const QRect place = window->geometry().translated(-m_window->geometry().topLeft());
        const QImage image = place.intersects(m_image.rect()) ? pixelsOf(window) : QImage();
        if (!image.isNull()) {
            layers += {window, place, image};
        }
    }
    return layers;
}

QBitArray GlassPicture::look()
{
    QBitArray changed(tiles());
    const QList<Layer> all = layers();
    QList<QPair<int, int>> across;
    QList<QPair<int, int>> down;
    for (const Layer& layer : all) {
        across += {layer.place.x(), layer.place.x() + layer.place.width()};
        down += {layer.place.y(), layer.place.y() + layer.place.height()};
    }
    const QList<int> xs = edges(across, m_image.width());
    const QList<int> ys = edges(down, m_image.height());
    const QPoint corner = m_window->geometry().topLeft();
    // Between two edges next to each other, the same window is on top everywhere.
    for (qsizetype row = 1; row < ys.size(); ++row) {
        for (qsizetype column = 1; column < xs.size(); ++column) {
            const QRect cell(
                QPoint(xs[column - 1], ys[row - 1]), QPoint(xs[column] - 1, ys[row] - 1));
            const QWidget* top = touch::windowAt(corner + cell.center());
            const auto layer = std::find_if(all.cbegin(), all.cend(),
                [top](const Layer& candidate) { return candidate.window == top; });
            if (layer != all.cend()) {
                take(*layer, cell, &changed);
            }
        }
    }
    return changed;
}

void GlassPicture::take(const Layer& layer, const QRect& part, QBitArray* changed)
{
    const int left = part.left() / TileSize.width();
    const int right = part.right() / TileSize.width();
    for (int row = part.top() / TileSize.height(); row <= part.bottom() / TileSize.height();
         ++row) {
        for (int column = left; column <= right; ++column) {
            const QPoint at(column * TileSize.width(), row * TileSize.height());
            if (takeTile(layer, QRect(at, TileSize) & part)) {
                changed->setBit(row * m_across + column);
            }
        }
    }
}

bool GlassPicture::takeTile(const Layer& layer, const QRect& part)
{
    const auto bytes = static_cast<std::size_t>(part.width() * PixelBytes);
    bool changed = false;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        const uchar* from = pixel(layer.image, QPoint(part.left(), y) - layer.place.topLeft());
        uchar* to = m_image.scanLine(y) + part.left() * PixelBytes;
        if (std::memcmp(to, from, bytes) != 0) {
            std::memcpy(to, from, bytes);
            changed = true;
        }
    }
    return changed;
}

QList<QRect> GlassPicture::rectangles(const QBitArray& tiles) const
{
    QList<QRect> found;
    for (int row = 0; row < m_down; ++row) {
        int first = -1; // of the tiles side by side
        for (int column = 0; column <= m_across; ++column) {
            const bool isSet = column < m_across && tiles.testBit(row * m_across + column);
            if (isSet && first < 0) {
                first = column;
            } else if (!isSet && first >= 0) {
                const QPoint at(first * TileSize.width(), row * TileSize.height());
                const QSize size((column - first) * TileSize.width(), TileSize.height());
                found += QRect(at, size) & m_image.rect();
                first = -1;
            }
        }
    }
    return found;
}
