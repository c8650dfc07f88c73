#pragma once

#include <QVector>

/// One span that the operator can choose for a spectrum chart.
class SpanInfo
{
public:
    /// A span of no width and without texts.
    SpanInfo() = default;

    /// A span with the given members.
    SpanInfo(const char* label, const char* fftParam, const char* code, double spanMHz,
        const QVector<double>& ticks);

    const char* label = "";    ///< what the operator reads, filled up with blanks to 7 characters
    const char* fftParam = ""; ///< what a demodulator is told
    const char* code = "";     ///< the card's own number for the span
    double spanMHz = 0.0;      ///< the analysed width, a little more than the label says
    QVector<double> ticks;     ///< five positions on the frequency axis in MHz, around 70 MHz
};

/// The intermediate frequency around which the table's ticks lie, in MHz.
constexpr double SpanCentreMHz = 70.0;

/// \return all spans, narrowest first.
const QVector<SpanInfo>& spanTable();
