#include "touch/Picture.h"

#include <QImageReader>

namespace touch {

QPixmap picture(const QString& resource)
{
    QImageReader reader(resource, "png");
    // Told the format, Qt does not load the plug-ins of all others, and their libraries, to ask
    // them.
    reader.setAutoDetectImageFormat(false);
    // As it is stored: a picture with a palette takes a byte for each pixel and not four.
    return QPixmap::fromImage(reader.read(), Qt::NoFormatConversion);
}

} // namespace touch
