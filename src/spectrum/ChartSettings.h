#pragma once

#include "spectrum/ChartMarkers.h"
#include "spectrum/ChartScale.h"

/// What the operator has chosen for one chart, so that a chart that is made anew can look like the
/// one before. See SpectrumChart::settings().
struct ChartSettings
{
    int averaging = 1;    ///< Over how many spectra the levels are averaged; 1 is off.
    bool logMean = false; ///< Whether decibels are averaged instead of powers.
    bool maxHold = false; ///< Whether max hold is on.
    bool minHold = false; ///< Whether min hold is on.
    ChartScale scale;     ///< The level axis.
    ChartMarkers markers; ///< The markers, which one is active, and whether they read differences.
};
