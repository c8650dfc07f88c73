#pragma once

#include "scopes/ConstellationSums.h"

/// Moments of received points up to the eighth order, from which the constellation is guessed.
///
/// The points are first moved to a mean of zero and whitened (equal power in every direction, a
/// mean power of 1), so that an imbalance of I and Q does not count. Then, for circular noise, with
/// s for the signal and its power S (Swami and Sadler, "Hierarchical digital modulation
/// classification using cumulants", IEEE Transactions on Communications, vol. 48, no. 3, 2000):
/// - E z⁴ = E s⁴ and E z⁸ = E s⁸, which noise does not change;
/// - 2 - E |z|⁴ = -C42 is 1 · S² for PSK and 0.68 · S² for 16QAM, whatever the noise is.
///
/// So the ratios fourth() and eighth() depend on the constellation alone: 1 and 1 for QPSK, 0 and 1
/// for 8PSK, 1 and 4.76 for 16QAM.
struct PointMoments
{
    double power = 0.0;        ///< Mean power about the mean, in parts of full scale squared.
    std::complex<double> mean; ///< The mean.
    double axisRatio = 1.0;    ///< Power along the strongest direction over that across it.
    double axisAngle = 0.0;    ///< The strongest direction, in radians.
    double axisExcess = 0.0;   ///< The difference of the two powers.
    PlaneMap toWhite;          ///< Maps the points to those whose moments follow.
    double kurtosis = 2.0;     ///< E |z|⁴; 2 for noise alone.
    std::complex<double> z4;   ///< E z⁴.
    std::complex<double> z8;   ///< E z⁸.

    /// Moments of the first and second order; the others stay 0.
    static PointMoments secondOrder(const ReceivedPoints& received);
    /// Adds the moments of the fourth and eighth order.
    void addHigherOrders(const ReceivedPoints& received);

    /// \return C40 / C42 without its sign, or 0 when the signal is too weak.
    double fourth() const;
    /// \return E z⁸ / C42² without its angle, or 0 when the signal is too weak.
    double eighth() const;
};
