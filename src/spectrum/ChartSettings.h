#pragma once

#include "spectrum/ChartMarkers.h"
#include "spectrum/ChartScale.h"
#include "spectrum/SpectrumTrace.h"

/// What the operator has chosen for one chart, so that a chart that is made anew can look like the
/// one before. See SpectrumChart::settings().
struct ChartSettings
{
    /// What is averaged; Average::Off is no averaging.
    SpectrumTrace::Average averageKind = SpectrumTrace::Average::Off;
    int depth = SpectrumTrace::DefaultDepth; ///< Over how many spectra, kept while it is off.
    bool maxHold = false;                    ///< Whether max hold is on.
    bool minHold = false;                    ///< Whether min hold is on.
    ChartScale scale;                        ///< The level axis.
    ChartMarkers markers; ///< The markers, which one is active, and whether they read differences.

    /// Switches averaging and holds of \a trace as they are here. What is so already goes on; what
    /// is switched starts anew.
    void applyTo(SpectrumTrace& trace) const;
};
