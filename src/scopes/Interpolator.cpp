#include "scopes/Interpolator.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr double Pi = 3.14159265358979323846;
constexpr double KaiserBeta = 6.0;
constexpr qsizetype PhaseTaps = qsizetype{2} * Interpolator::HalfTaps;

// Of a number other than 0.
double sinc(double x)
{
    return std::sin(Pi * x) / (Pi * x);
}

// Modified Bessel function of the first kind, order 0, by its power series (Abramowitz and Stegun,
// Handbook of Mathematical Functions, 9.6.12).
double besselI0(double x)
{
    double term = 1.0;
    double sum = 1.0;
    for (int k = 1; term > 1e-12 * sum; ++k) {
        term *= (x / (2 * k)) * (x / (2 * k));
        sum += term;
    }
    return sum;
}

// Kaiser window, except for its scale; x runs from -1 to 1 over its length.
double kaiser(double x)
{
    return besselI0(KaiserBeta * std::sqrt(std::max(0.0, 1.0 - x * x)));
}

} // namespace

Interpolator::Interpolator(int factor)
    : m_factor(std::clamp(factor, 1, MaxFactor))
    , m_taps(PhaseTaps * m_factor + 1)
    , m_phases(PhaseTaps * m_factor)
{
    const int centre = HalfTaps * m_factor;
    for (int n = 0; n <= 2 * centre; ++n) {
        const double t = static_cast<double>(n - centre) / m_factor;
        m_taps[n] = (n - centre) % m_factor == 0 ? (n == centre ? 1.0 : 0.0)
                                                 : sinc(t) * kaiser(t / HalfTaps);
    }
    // The first phase is that of the samples themselves.
    for (int phase = 1; phase < m_factor; ++phase) {
        double sum = 0.0;
        for (int n = phase; n <= 2 * centre; n += m_factor) {
            sum += m_taps[n];
        }
        for (int n = phase; n <= 2 * centre; n += m_factor) {
            m_taps[n] /= sum;
        }
        // Tap j of a short filter weighs sample j - HalfTaps + 1.
        for (int j = 0; j < PhaseTaps; ++j) {
            m_phases[phase * PhaseTaps + j] = m_taps[phase + (PhaseTaps - 1 - j) * m_factor];
        }
    }
}

void Interpolator::interpolateInner(const double* first, qsizetype count, double* points) const
{
    const double* const phases = m_phases.constData();
    for (qsizetype k = 0; k < count; ++k) {
        const double* const window = first + k - HalfTaps + 1;
        *points++ = first[k];
        for (int phase = 1; phase < m_factor; ++phase) {
            const double* const taps = phases + phase * PhaseTaps;
            double sum = 0.0;
            for (int j = 0; j < PhaseTaps; ++j) {
                sum += taps[j] * window[j];
            }
            *points++ = sum;
        }
    }
}

QVector<double> Interpolator::interpolate(const QVector<double>& samples) const
{
    if (samples.isEmpty()) {
        return {};
    }
    QVector<double> extended(HalfTaps, samples.first());
    extended += samples;
    extended += QVector<double>(HalfTaps, samples.last());
    QVector<double> points(samples.size() * m_factor);
    interpolateInner(extended.constData() + HalfTaps, samples.size(), points.data());
    return points;
}

double firStep(double input, int ntaps, const double* taps, double* delay, int& state)
{
    if (ntaps <= 0) {
        return 0.0;
    }
    state = state < 0 || state >= ntaps ? 0 : state;
    delay[state] = input;
    double sum = 0.0;
    // From the newest sample back to the oldest, around the end of the line.
    int at = state;
    for (int k = 0; k < ntaps; ++k) {
        sum += taps[k] * delay[at];
        at = at == 0 ? ntaps - 1 : at - 1;
    }
    state = state + 1 == ntaps ? 0 : state + 1;
    return sum;
}

QVector<double> interpolateStepwise(QVector<double> samples, int factor)
{
    if (samples.isEmpty()) {
        return {};
    }
    const Interpolator filter(factor);
    const QVector<double>& taps = filter.taps();
    QVector<double> delay(taps.size(), 0.0);
    int state = 0;
    QVector<double> points;
    points.reserve(samples.size() * filter.factor());
    // Beyond both ends the outermost sample goes on.
    const double first = samples.first();
    const double last = samples.last();
    samples.insert(0, Interpolator::HalfTaps, first);
    samples.insert(samples.size(), Interpolator::HalfTaps, last);
    // The filter answers with a delay of half its length.
    const qsizetype late = 2 * static_cast<qsizetype>(Interpolator::HalfTaps) * filter.factor();
    qsizetype done = 0;
    for (const double sample : std::as_const(samples)) {
        for (int phase = 0; phase < filter.factor(); ++phase) {
            const double point = firStep(phase == 0 ? sample : 0.0, static_cast<int>(taps.size()),
                taps.constData(), delay.data(), state);
            if (done++ >= late) {
                points.append(point);
            }
        }
    }
    return points;
}
