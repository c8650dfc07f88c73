#pragma once

#include <QString>

/// \return the description of the program for --help
/// \param faults the lines about the faults, which end each with a line break
QString helpText(const QString& faults);
