#pragma once

#include <QSize>

/// Dims a picture and writes "NO PANEL" over its middle, for viewers of a panel that is not there.
/// \param pixels 32 bits each, eight for a colour, size.width() in a line
void drawNoPanelSign(quint32* pixels, QSize size);
