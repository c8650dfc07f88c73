#pragma once

/// The groups of rows that bench_Parts measures.
namespace groups {

void frames();   ///< Messages cut out of the line.
void spectrum(); ///< The waterfall, and what is measured on a spectrum.

} // namespace groups
