#pragma once

#include "scopes/ConstellationSums.h"

#include <QString>
#include <QVector>

#include <complex>
#include <functional>
#include <random>

/// Points of a constellation as they follow from its definition: ideal points, Gaussian noise and a
/// turning carrier, in the steps of the line, without the filters of a receiver.
class AnalyticPoints
{
public:
    using Complex = std::complex<double>; ///< A point of the plane.
    /// Makes the next symbol, with a mean energy of 1; the integer counts the symbols from 0.
    using Source = std::function<Complex(std::mt19937&, int)>;

    /// What the points are of.
    struct Settings
    {
        QString name;       ///< For a table.
        Source source;      ///< The symbols.
        double snr = 20.0;  ///< Es/N0 in dB.
        double turn = 0.0;  ///< Of the carrier, in turns per symbol.
        double limit = 1.0; ///< Magnitude at which I and Q are clipped, in parts of full scale.
    };

    static constexpr double Level = 0.3; ///< Mean amplitude, in parts of full scale.

    /// The points begin with a random phase of the carrier.
    AnalyticPoints(const Settings& settings, quint32 seed);

    /// \return the next points.
    ReceivedPoints take(int count);

    /// \return a source that takes the points of \a alphabet at random.
    static Source randomOf(std::vector<Complex> alphabet);
    /// \return a source that takes those of one of the orders.
    static Source randomOf(ModulationOrder order);
    /// \return \a count points on a circle of this radius; the first at this angle, in radians.
    static std::vector<Complex> ring(int count, double radius, double angle);

private:
    Settings m_settings;
    std::mt19937 m_random;
    std::normal_distribution<double> m_normal;
    double m_phase = 0.0;
    int m_count = 0;
};
