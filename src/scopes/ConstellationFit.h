#pragma once

#include "scopes/ConstellationSums.h"

#include <complex>

/// Received points as an ideal constellation that was distorted linearly: received = A · ideal + d
/// plus noise. A and d are those with the least squares of what is left (linear regression; Draper
/// and Smith, Applied Regression Analysis, chapter 2).
struct ConstellationFit
{
    ModulationOrder order = ModulationOrder::Unknown; ///< The constellation.
    bool valid = false;    ///< There are points enough, and A has an inverse.
    PlaneMap toReceived;   ///< A and d: from the ideal points to the received ones.
    double count = 0.0;    ///< How many points were received.
    double residual = 0.0; ///< Mean power of what is left, without bias by the fit's own freedom.
    double minShare = 0.0; ///< Points at the least frequent ideal point, of their mean number.
    double maxShare = 0.0; ///< Points at the most frequent ideal point, of their mean number.

    /// Fits the points that were summed.
    static ConstellationFit of(const ConstellationSums& sums, ModulationOrder order);

    /// A as ideal → gain() · ideal + image() · conjugate(ideal).
    ///@{
    std::complex<double> gain() const;
    std::complex<double> image() const;
    ///@}
    /// \return d.
    std::complex<double> origin() const { return {toReceived.x0, toReceived.y0}; }
    /// \return the mean power of the fitted points over that of what is left.
    double signalToResidual() const;
};
