#pragma once

class QApplication;
class QString;

/// Who the panel says it is, and how it looks whatever platform plugin draws it.
namespace identity {

/// \return the version that "VER" is answered by: "1.1.6.4".
QString version();

/// Gives the application object its version, organisation and name.
void apply();

/// Gives the application the same style and font, in pixels, on every platform.
void applyLook(QApplication& application);

} // namespace identity
