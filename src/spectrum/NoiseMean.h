#pragma once

#include <QVector>

/// The mean power of noise, from numbers that may hold a few carriers as well.
///
/// The mean of the powers would be raised by every carrier among them; their median hardly is. The
/// power of noise in a bin, averaged over k spectra, has a gamma distribution of shape k
/// (chi-square with 2k degrees of freedom), whose median is lower than its mean by a known factor.
namespace noise {

/// \return the median of the gamma distribution of shape \a k, 1 or more, divided by its mean:
/// 0.693 (−1.59 dB) for k = 1, nearly 1 for a large k (K. P. Choi, "On the medians of gamma
/// distributions and an equation of Ramanujan", Proceedings of the American Mathematical Society
/// 121, 1994).
double medianOverMean(double k);

/// \return the value below which the part \a part of the \a values lies, 0 to 1. Many equal values
/// stand for all those that were rounded to them: the result lies between the middles to the next
/// lower and the next higher value. 0 without values.
double quantile(QVector<float>& values, double part);

/// \return the shape of the gamma distribution with these quartiles: the approximation of Wilson
/// and Hilferty ("The Distribution of Chi-square", Proceedings of the National Academy of Sciences
/// 17, 1931), by which the cube root of the power is normally distributed. At most 1e6.
double shapeOf(double lowerQuartile, double upperQuartile);

/// Noise in a number of bins.
struct Estimate
{
    double mean = 0.0;  ///< Its mean power in a bin.
    double shape = 1.0; ///< Of its gamma distribution: how many spectra were averaged.
};

/// Estimates the noise in \a bins, which are put into another order. Their spread tells how many
/// spectra a card has averaged before they came here.
/// \param spectra how many are known to be averaged, 1 or more.
Estimate estimate(QVector<float>& bins, double spectra);

} // namespace noise
