#pragma once

#include <QString>

class Scope;

/// Gives a scope signals that are computed, block by block, so that its pictures are always the
/// same.
namespace scopeSignals {

/// Empties a scope, whatever it has shown before, with its range as at the start.
void beginAnew(Scope& scope);

/// Has a scope plot as many SDI records as it shows.
void plotRecords(Scope& scope);

/// Has a scope plot blocks until its range is fitted and it glows.
/// \param signal as qn740-sim's option --signal takes it
/// \param samplesPerSymbol 1 for a constellation, iqBlock::EyeSamplesPerSymbol for an eye pattern
/// \return why the signal is refused, and nothing was plotted; empty when it is accepted
QString plotBlocks(Scope& scope, const QString& signal, int samplesPerSymbol);

} // namespace scopeSignals
