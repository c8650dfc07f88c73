#include "wire/SpanTable.h"

SpanInfo::SpanInfo(const char* theLabel, const char* theFftParam, const char* theCode,
    double theSpanMHz, const QVector<double>& theTicks)
    : label(theLabel)
    , fftParam(theFftParam)
    , code(theCode)
    , spanMHz(theSpanMHz)
    , ticks(theTicks)
{
}

const QVector<SpanInfo>& spanTable()
{
    // Quirk: "7.5 Mhz", with a small h, is how the unit writes it. See "Quirks" in
    // docs/architecture.md.
    static const QVector<SpanInfo> table = {
        {"1 MHz  ", "12", "3990", 1.199056, {69.5, 69.75, 70, 70.25, 70.5}},
        {"3 MHz  ", "12", "3812", 3.235677106, {68.5, 69.25, 70, 70.75, 71.5}},
        {"5 MHz  ", "12", "3622", 5.361816, {67.5, 68.75, 70, 71.25, 72.5}},
        {"7.5 Mhz", "11", "1694", 8.066406308, {66.25, 68.125, 70, 71.875, 73.75}},
        {"10 MHz ", "11", "1574", 10.723632, {65, 67.5, 70, 72.5, 75}},
        {"15 MHz ", "11", "1338", 16.17838553, {62.5, 66.25, 70, 73.75, 77.5}},
        {"20 MHz ", "10", "0550", 21.447264, {60, 65, 70, 75, 80}},
        {"25 MHz ", "10", "0432", 26.97916686, {57.5, 63.75, 70, 76.25, 82.5}},
        {"30 MHz ", "10", "0314", 32.35677106, {55, 62.5, 70, 77.5, 85}},
        {"40 MHz ", "10", "0066", 43.347002, {50, 60, 70, 80, 90}},
    };
    return table;
}
