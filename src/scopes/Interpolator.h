#pragma once

#include <QVector>

// Puts factor - 1 points between every two samples: a windowed-sinc FIR low-pass at the samples'
// own Nyquist frequency, kept as `factor` short filters, one for each place between two samples.
//
// The taps are h(n) = sinc(n / factor) · w(n), w a Kaiser window (beta 6) over HalfTaps samples to
// either side; each of the short filters is scaled to a sum of 1, so that a constant stays that
// constant. The samples themselves are kept exactly.
class Interpolator
{
public:
    static constexpr int HalfTaps = 4; // samples to either side that a point is made of
    static constexpr int MaxFactor = 64;

    // factor: 1 to MaxFactor; what lies outside is taken as the nearest of the two.
    explicit Interpolator(int factor);

    int factor() const { return m_factor; }

    // The whole filter, 2 · HalfTaps · factor + 1 taps, its centre in the middle.
    const QVector<double>& taps() const { return m_taps; }

    // In: samples. Out: samples.size() · factor points; point k · factor is sample k. Beyond both
    // ends the outermost sample is taken to go on.
    QVector<double> interpolate(const QVector<double>& samples) const;

    // The inner part only, without copies. In: `count` samples from `first` on, of which HalfTaps
    // before and after them exist. Out: count · factor points written to `points`.
    void interpolateInner(const double* first, qsizetype count, double* points) const;

private:
    int m_factor;
    QVector<double> m_taps;
    QVector<double>
        m_phases; // factor filters of 2 · HalfTaps taps, for samples -HalfTaps+1 .. HalfTaps
};

// One step of a FIR filter over a circular delay line. In: the next sample; the number of taps; the
// taps h(0) .. h(ntaps - 1); the delay line, ntaps values, all 0 at first; the position in it, 0 at
// first, moved on by the call. Out: the sum over k of h(k) · x(n - k).
double firStep(double input, int ntaps, const double* taps, double* delay, int& state);
