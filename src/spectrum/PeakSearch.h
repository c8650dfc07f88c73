#pragma once

#include <QVector>

/// The highest points of a spectrum, found between its points.
///
/// A peak is interpolated: a parabola goes through the highest point and its two neighbours, all in
/// dB, and its top is the peak (J. O. Smith, "Spectral Audio Signal Processing", section "Quadratic
/// Interpolation of Spectral Peaks"; exact for a Gaussian window, whose line is a parabola in dB).
/// Several highest points beside each other, a plateau, give their middle and their level. A
/// highest point at the end of the spectrum has no neighbour there and is taken as it is.
namespace peakSearch {

/// A peak between the points of a spectrum.
struct Peak
{
    bool valid = false; ///< Whether there is such a peak; the rest means nothing otherwise.
    double index = 0.0; ///< Its place in points: 2.5 is the middle between points 2 and 3.
    double level = 0.0; ///< In dB.
};

/// How far the levels must fall on both sides of a peak, in dB, until another one counts. At an end
/// of the spectrum they count as falling.
constexpr float ExcursionDB = 6.0F;

/// \return the highest peak of these levels in dB, the first of several equal ones; not valid
/// without levels.
Peak highest(const QVector<float>& levels);

/// \return the highest peak whose highest point is lower than point \a index, or as high and
/// further right: repeated calls, each with the point nearest to the last answer, walk down all the
/// peaks. Not valid when there is none or no such point.
/// \param excursion in dB, above 0; see ExcursionDB.
Peak next(const QVector<float>& levels, qsizetype index, float excursion = ExcursionDB);

/// \return the top of the parabola or plateau at point \a index, a local maximum; of another point
/// the point itself. Not valid when there is no such point.
Peak at(const QVector<float>& levels, qsizetype index);

} // namespace peakSearch
