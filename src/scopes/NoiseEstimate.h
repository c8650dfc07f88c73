#pragma once

#include "scopes/ConstellationFit.h"

/// Signal and noise of decided points, corrected for decisions that were wrong.
///
/// A point that noise has carried nearer to another ideal point seems to have less noise than it
/// has, so a weak signal would look better than it is.
struct NoiseEstimate
{
    double scale = 1.0; ///< The constellation's size, of that of the fit.
    double noise = 0.0; ///< The mean power of the noise, in parts of full scale squared.

    /// Corrects a fit. For PSK by the known relation between the ratio that decisions give and the
    /// true one with Gaussian noise; for 16QAM by the maximum-likelihood estimate of a mixture of
    /// Gaussian distributions (expectation maximisation; Dempster, Laird and Rubin, Journal of the
    /// Royal Statistical Society B, vol. 39, no. 1, 1977) over a histogram of the magnitudes of I
    /// and Q. A good signal is left as it is.
    static NoiseEstimate of(const ReceivedPoints& received, const ConstellationFit& fit);
};

/// \return the true Es/N0 in dB of a PSK signal in Gaussian noise whose decided points have the
/// ratio \a foundDb. It is limited to 0 dB below.
double trueSignalToNoise(ModulationOrder order, double foundDb);
