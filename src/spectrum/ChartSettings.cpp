#include "spectrum/ChartSettings.h"

void ChartSettings::applyTo(SpectrumTrace& trace) const
{
    const bool on = averageKind != SpectrumTrace::Average::Off;
    if (trace.averageKind() != averageKind || (on && trace.averaging() != depth)) {
        trace.setAveraging(depth);
        trace.setAverageKind(depth > 1 ? averageKind : SpectrumTrace::Average::Off);
    }
    if (trace.maxHold() != maxHold) {
        trace.setMaxHold(maxHold);
    }
    if (trace.minHold() != minHold) {
        trace.setMinHold(minHold);
    }
}
