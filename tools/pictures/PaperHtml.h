#pragma once

#include "tools/pictures/Paper.h"

/// The paper as one HTML page, for the screen and for a printer.
namespace paperHtml {

/// \return the page, UTF-8, well-formed as XML too. \param pictures the folder of the pictures as
/// the page names it; empty when they are to be in the page itself
QByteArray page(const Paper& paper, const QString& pictures);

} // namespace paperHtml
