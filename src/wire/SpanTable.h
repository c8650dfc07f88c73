#pragma once

#include <QVector>

// One span that the operator can choose.
class SpanInfo
{
public:
    SpanInfo() = default;

    // label: what the operator reads, filled up with blanks to seven characters. fftParam: what a
    // demodulator is told. code: the card's own number for it. spanMHz: the width that is analysed,
    // a little more than the label says. ticks: five positions on the frequency axis in MHz, for a
    // trace around 70 MHz.
    SpanInfo(const char* label, const char* fftParam, const char* code, double spanMHz,
        const QVector<double>& ticks);

    const char* label = "";
    const char* fftParam = "";
    const char* code = "";
    double spanMHz = 0.0;
    QVector<double> ticks;
};

// The intermediate frequency around which the table's ticks lie, in MHz.
constexpr double SpanCentreMHz = 70.0;

// All spans, narrowest first.
const QVector<SpanInfo>& spanTable();
