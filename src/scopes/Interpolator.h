#pragma once

#include <QVector>

/// Puts factor - 1 points between every two samples.
///
/// The filter is a windowed-sinc FIR low-pass at the samples' own Nyquist frequency, kept as
/// `factor` short filters, one for each place between two samples (a polyphase interpolator; see
/// Oppenheim and Schafer, Discrete-Time Signal Processing, chapters 4 and 7). Its taps are
/// h(n) = sinc(n / factor) · w(n), where w is a Kaiser window (Kaiser and Schafer, 1980; beta 6)
/// over HalfTaps samples to either side. Each short filter is scaled to a sum of 1, so that a
/// constant stays that constant. The samples themselves are kept exactly.
class Interpolator
{
public:
    static constexpr int HalfTaps = 4;   ///< Samples to either side that a point is made of.
    static constexpr int MaxFactor = 64; ///< The largest factor.

    /// \param factor 1 to MaxFactor; a number outside is taken as the nearest of the two.
    explicit Interpolator(int factor);

    /// \return how many points there are for each sample.
    int factor() const { return m_factor; }

    /// \return the whole filter, 2 · HalfTaps · factor + 1 taps, its centre in the middle.
    const QVector<double>& taps() const { return m_taps; }

    /// Interpolates \a samples. Beyond both ends the outermost sample is assumed to go on.
    /// \return samples.size() · factor points; point k · factor is sample k.
    QVector<double> interpolate(const QVector<double>& samples) const;

    /// Interpolates \a count samples from \a first on, without copying them.
    /// \param first the first sample; HalfTaps samples exist before it and after the last one.
    /// \param points receives count · factor points.
    void interpolateInner(const double* first, qsizetype count, double* points) const;

private:
    int m_factor;
    QVector<double> m_taps;
    // `factor` filters of 2 · HalfTaps taps each, for samples -HalfTaps + 1 to HalfTaps
    QVector<double> m_phases;
};

/// One step of a FIR filter over a circular delay line (direct form; Oppenheim and Schafer,
/// Discrete-Time Signal Processing, chapter 6).
/// \param input the next sample x(n).
/// \param ntaps the number of taps; 0 or less returns 0.
/// \param taps the taps h(0) to h(ntaps - 1).
/// \param delay the delay line, \a ntaps values, all 0 at first.
/// \param state the position in the delay line, 0 at first; the call moves it on.
/// \return the sum over k of h(k) · x(n - k).
double firStep(double input, int ntaps, const double* taps, double* delay, int& state);

/// Interpolates \a samples by \a factor as Interpolator does, but one point at a time with
/// firStep(): \a factor - 1 zeros follow each sample, and the filter's delay of half its length is
/// cut off. \return \a factor points for each sample.
QVector<double> interpolateStepwise(QVector<double> samples, int factor);
