#include "tools/try/Pictures.h"

#include <QPainter>

namespace {
constexpr QColor Veil(255, 255, 255, 190);
constexpr QRgb Red = qRgb(220, 0, 0);
} // namespace

pictures::Difference pictures::compare(const QImage& now, const QImage& reference)
{
    const QImage shown = now.convertToFormat(QImage::Format_RGB32);
    const QImage wanted = reference.convertToFormat(QImage::Format_RGB32);
    Difference found{0, QRect(), shown};
    QPainter(&found.picture).fillRect(shown.rect(), Veil);
    if (shown.size() != wanted.size()) {
        return {qsizetype{shown.width()} * shown.height(), shown.rect(), found.picture};
    }
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x) {
            if (shown.pixel(x, y) != wanted.pixel(x, y)) {
                ++found.points;
                found.place |= QRect(x, y, 1, 1);
                found.picture.setPixel(x, y, Red);
            }
        }
    }
    return found;
}
