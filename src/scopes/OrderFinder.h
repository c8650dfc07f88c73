#pragma once

#include "scopes/ConstellationFit.h"
#include "scopes/PointMoments.h"

/// Finds out blindly which constellation received points are of: BPSK, QPSK, 8PSK, 16QAM or
/// Unknown.
///
/// Moments name at most one candidate (see PointMoments). It is fitted to the points, and then has
/// to pass tests that other signals fail: the modulation error ratio is better than any signal of
/// another kind reaches; the ideal points are about equally frequent; what is left looks like noise
/// along both axes; the steps from one decision to the next are not of a few kinds only (as those
/// of a turning carrier, of π/4-QPSK or of MSK are); and the samples do not stand at a limit.
namespace orderFinder {

/// \return a map of the received points to ideal ones, from which the search starts.
/// \param moments of an order for which orderLimits::candidateOf() has named them, or of a line
PlaneMap firstGuess(const PointMoments& moments, ModulationOrder order);

/// \return the fit of the constellation that the points are of; not valid when that is unknown.
ConstellationFit find(const ReceivedPoints& received);

/// \return the fit of the constellation of \a before, if the points may still be of it; not valid
/// otherwise.
ConstellationFit keep(const ReceivedPoints& received, const ConstellationFit& before);

} // namespace orderFinder
