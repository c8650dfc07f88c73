#pragma once

/// One point of a spectrum as an operator reads it.
struct SpectrumReading
{
    bool valid = false;     ///< Whether there is such a point; the rest means nothing otherwise.
    double frequency = 0.0; ///< In MHz.
    double level = 0.0;     ///< In dB.
};
