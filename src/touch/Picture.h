#pragma once

#include <QPixmap>
#include <QString>

namespace touch {

/// Reads one of the panel's own pictures, which are PNG files.
/// \param resource its path in the resources; when it is not there, the picture is null
QPixmap picture(const QString& resource);

} // namespace touch
