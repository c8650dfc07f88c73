#pragma once

#include "scopes/ModulationOrder.h"
#include "scopes/PlaneMap.h"

#include <array>
#include <complex>
#include <vector>

/// The points of a constellation, as they were received: in parts of full scale, in the order of
/// time.
struct ReceivedPoints
{
    std::vector<double> x; ///< I.
    std::vector<double> y; ///< Q, as many.

    /// \return how many points there are.
    size_t size() const { return x.size(); }
};

/// What one pass over received points leaves of them: how many were decided for each ideal point,
/// and their sums. Everything that is linear or quadratic in the received points follows from it.
struct ConstellationSums
{
    static constexpr size_t MaxPoints = 16; ///< That the largest constellation has.

    /// The points that were decided for one ideal point.
    struct Cluster
    {
        double count = 0.0; ///< How many.
        double x = 0.0;     ///< The sum of x.
        double y = 0.0;     ///< The sum of y.
        double power = 0.0; ///< The sum of x² + y².
    };
    std::array<Cluster, MaxPoints> clusters{}; ///< One for each of modulationOrder::points().

    /// Decides every point for its nearest ideal point and sums.
    /// \param toIdeal maps the received points onto the ideal ones.
    static ConstellationSums of(
        const ReceivedPoints& received, ModulationOrder order, const PlaneMap& toIdeal);
};

/// \return the index in modulationOrder::points() of the point that is nearest to (x, y).
size_t nearestPoint(ModulationOrder order, double x, double y);

/// The residual of decided points: its shape, which tells noise from a wrong constellation, and the
/// steps from each decision to the next.
struct DecisionCheck
{
    double squareX = 0.0; ///< The mean square of the deviation along the ideal I axis.
    double squareY = 0.0; ///< The same along the ideal Q axis.
    double fourthX = 0.0; ///< The mean fourth power of the deviation along the ideal I axis.
    double fourthY = 0.0; ///< The same along the ideal Q axis.
    /// How often the decision moved on by so many points; points of equal magnitude only.
    std::array<int, 8> steps{};
    int stepCount = 0; ///< The sum of these.

    /// Decides every point as ConstellationSums::of() does and looks at what is left.
    static DecisionCheck of(
        const ReceivedPoints& received, ModulationOrder order, const PlaneMap& toIdeal);
};
