#pragma once

#include <QString>
#include <QVector>

#include <cmath>

/// One row of the tables in docs/measurements.md: a number that the panel shows, beside the number
/// that it should show.
struct MeasurementRow
{
    QString table;     ///< The heading of its table, for example "Peak frequency".
    QString condition; ///< What was measured, for example "10 MHz span, 0.3 bins above a point".
    double trueValue = 0.0; ///< What the number should be, in \a unit.
    double measured = 0.0;  ///< What the panel's code makes of it, in \a unit.
    double tolerance = 0.0; ///< How far the two may be apart, in \a unit.
    QString unit;           ///< "dB", "MHz", "%" and so on.
    int decimals = 2;       ///< How many decimals the table shows.

    /// \return whether the measured value lies within the tolerance; false when it is not a number.
    bool isWithin() const { return std::abs(measured - trueValue) <= tolerance; }
};

/// The rows of any number of tables; those of one table follow each other.
using MeasurementRows = QVector<MeasurementRow>;
