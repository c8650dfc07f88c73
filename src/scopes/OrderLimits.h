#pragma once

#include "scopes/ConstellationFit.h"
#include "scopes/PointMoments.h"

/// What the points of a constellation have to be like before the panel names it, and what they may
/// become like before it stops naming it.
///
/// Each function judges one figure of the points; OrderFinder asks them in turn. The bounds were
/// found with signals of all kinds in noise: between what the constellation reaches and what the
/// next best other signal does.
namespace orderLimits {

/// \return the only constellation that moments of the fourth and eighth order are of; Unknown when
/// there is none.
ModulationOrder candidateOf(const PointMoments& moments);

/// \return whether the moments may still be those of \a order. The range is wider than that of
/// candidateOf(), because the moments of a weak signal vary more.
bool momentsMayBeOf(const PointMoments& moments, ModulationOrder order);

/// \return whether the ideal points are about equally frequent, and the origin lies inside.
bool shapeIsPlausible(const ConstellationFit& fit);

/// \return the share of the samples, from 0 to 1, that stand at their largest magnitude.
double limitedShare(const std::vector<double>& samples);

/// \return whether the range of the line cuts the signal off: what is left of it may be any four
/// points.
bool isOverdriven(const ReceivedPoints& received);

/// \return whether the steps from one decision to the next are as frequent as random data make
/// them.
bool stepsAreOfData(const DecisionCheck& check, ModulationOrder order);

/// \return whether what is left is like noise. Noise has a kurtosis of 3; two or four hidden points
/// in place of one, and a smear along an arc or a line, have less than 2.
bool residualIsNoise(const DecisionCheck& check);

/// \return the same by a weaker test: noise that is cut off at the decisions' borders has less
/// kurtosis, but several hidden points in place of one have 1.
bool residualMayBeNoise(const DecisionCheck& check);

/// \return the signal to residual in dB that a fit of a constellation has to reach to be found.
double minDbToFind(ModulationOrder order);

/// \return the signal to residual in dB that a fit has to reach for its constellation to be kept.
double minDbToKeep(ModulationOrder order);

/// \return whether a constellation with a plausible shape and signal to residual is found.
/// \param db signal to residual
/// \param limited the share of the samples at a limit, the larger one of I and Q
bool isFound(const DecisionCheck& check, ModulationOrder order, double db, double limited);

/// \return whether a constellation with a plausible shape and signal to residual is kept. Another
/// signal that has taken the place of the one before is recognised by its decisions: the moments of
/// MSK are those of QPSK, and those of 64QAM are near those of 16QAM. \param db signal to residual
bool isKept(const DecisionCheck& check, ModulationOrder order, double db);

} // namespace orderLimits
