#pragma once

#include "tools/measure/MeasurementRow.h"

/// The tables of what is measured on constellations and eye patterns.
namespace scopeTables {

/// \return all rows. The signals have fixed seeds, so that the rows are the same at each call.
MeasurementRows rows();

} // namespace scopeTables
