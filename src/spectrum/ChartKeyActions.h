#pragma once

#include "spectrum/ChartKeyPages.h"
#include "spectrum/ChartMeasurement.h"
#include "spectrum/ChartSettings.h"

class SpectrumChart;

namespace chartKeys {

/// Over how many spectra the key "Average" means the powers.
constexpr int AverageDepth = 16;

/// Carries out a key. Keys that open a page or close them do nothing here.
/// \param chart whose key it is.
/// \param measurement what is measured on it.
/// \param nominal the span's nominal width in MHz, the widest channel that can be chosen.
void carryOut(Key key, SpectrumChart& chart, chartMeasurement::Choice& measurement, double nominal);

/// \return the keys that are in effect.
QVector<Key> inEffect(const ChartSettings& settings, const chartMeasurement::Choice& measurement);

} // namespace chartKeys
