#pragma once

#include "tools/measure/AnalyticPoints.h"

/// Which order is found, counted over many trials with different symbols and noise.
namespace orderTrials {

/// How the trials of one signal ended.
struct Counts
{
    int trials = 0;  ///< All.
    int right = 0;   ///< The order of the signal was found.
    int unknown = 0; ///< No order was found.
    int wrong = 0;   ///< Another order was found, or one at a signal of none.

    /// \return \a count in per cent of all.
    double percent(int count) const { return 100.0 * count / std::max(1, trials); }
};

/// \return the least Es/N0 in dB at which a channel can carry the order's bits per symbol without
/// errors, 10 log10(2^bits - 1) (Shannon, "A mathematical theory of communication", 1948). It lies
/// below every threshold that a decoder has.
double threshold(ModulationOrder order);

/// Looks at 16 blocks of a signal \a trials times.
/// \param order the order of the signal, or Unknown if it has none of the four.
Counts run(const AnalyticPoints::Settings& signal, ModulationOrder order, int trials);

/// \return how many trials of each signal end how, the four orders and all others at every second
/// decibel from -6 to 40, one line each. It takes about half a second for each trial.
QString report(int trials);

/// \return signals that are of none of the four orders, each at this Es/N0.
QVector<AnalyticPoints::Settings> otherSignals(double snr);

} // namespace orderTrials
