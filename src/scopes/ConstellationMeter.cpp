#include "scopes/ConstellationMeter.h"

#include "scopes/NoiseEstimate.h"
#include "scopes/OrderFinder.h"

#include <algorithm>

namespace {

using Complex = std::complex<double>;

constexpr int MaxFailures = 2;
constexpr double DegreesPerRadian = 57.29577951308232;

double ratioDb(double ratio)
{
    constexpr double MinRatio = 1e-10;
    return 10.0 * std::log10(std::max(ratio, MinRatio));
}

// With N points of the ratio Es/N0, each coefficient of the fit has a standard deviation of
// 1 / sqrt(N · Es/N0) of the gain, and imbalance and quadrature error are made of two of them.
bool imbalanceIsCertain(const ConstellationFit& fit, double signalToNoise)
{
    constexpr double MaxDegrees = 0.5;
    constexpr double Sigmas = 3.0;
    const double deviation = std::sqrt(2.0 / (fit.count * signalToNoise));
    return fit.order != ModulationOrder::Bpsk &&
        Sigmas * deviation * DegreesPerRadian <= MaxDegrees;
}

// The rows of A say what I and Q make of the ideal point. However the constellation is turned,
// their lengths are the gains of I and Q, and the angle between them that of the axes.
void addImbalance(const PlaneMap& a, ConstellationFigures& figures)
{
    const double gainI = std::hypot(a.xx, a.xy);
    const double gainQ = std::hypot(a.yx, a.yy);
    const double sine = (a.xx * a.yx + a.xy * a.yy) / (gainI * gainQ);
    figures.imbalanceDb = 20.0 * std::log10(gainI / gainQ);
    figures.quadratureDegrees = std::asin(std::clamp(sine, -1.0, 1.0)) * DegreesPerRadian;
}

} // namespace

ConstellationFigures constellationFigures(
    const ReceivedPoints& received, const ConstellationFit& fit)
{
    ConstellationFigures figures;
    if (!fit.valid) {
        return figures;
    }
    const NoiseEstimate estimate = NoiseEstimate::of(received, fit);
    const Complex gain = fit.gain() * estimate.scale;
    const double signal = std::norm(gain);
    const double image = std::norm(fit.image()) * estimate.scale * estimate.scale;
    const double offset = std::norm(fit.origin());
    figures.order = fit.order;
    figures.valid = true;
    figures.merDb = ratioDb(signal / std::max(estimate.noise + image + offset, 1e-10 * signal));
    figures.evmPercent = 100.0 * std::pow(10.0, -figures.merDb / 20.0);
    figures.offsetPercent = 100.0 * std::sqrt(offset / signal);
    figures.offsetDb = ratioDb(offset / signal);
    for (const Complex& point : modulationOrder::points(fit.order)) {
        const Complex at = gain * point;
        figures.idealPoints.append({at.real(), at.imag()});
    }
    figures.imbalanceValid =
        imbalanceIsCertain(fit, signal / std::max(estimate.noise, 1e-10 * signal));
    if (figures.imbalanceValid) {
        addImbalance(fit.toReceived, figures);
    }
    return figures;
}

void ConstellationMeter::addBlock(const QVector<double>& i, const QVector<double>& q)
{
    m_blocks.push_back({i, q});
    if (m_blocks.size() > MaxBlocks) {
        m_blocks.pop_front();
    }
    m_changed = true;
}

void ConstellationMeter::clear()
{
    *this = {};
}

const ConstellationFigures& ConstellationMeter::figures()
{
    if (m_changed) {
        m_changed = false;
        const ReceivedPoints points = received();
        updateFit(points);
        m_figures = constellationFigures(points, m_fit);
    }
    return m_figures;
}

ReceivedPoints ConstellationMeter::received() const
{
    ReceivedPoints points;
    for (const Block& block : m_blocks) {
        const qsizetype size = std::min(block.i.size(), block.q.size());
        if (size > 1) {
            points.x.insert(points.x.end(), block.i.cbegin() + 1, block.i.cbegin() + size);
            points.y.insert(points.y.end(), block.q.cbegin() + 1, block.q.cbegin() + size);
        }
    }
    return points;
}

void ConstellationMeter::updateFit(const ReceivedPoints& received)
{
    if (blockCount() < MinBlocks) {
        return;
    }
    if (!m_fit.valid) {
        m_fit = orderFinder::find(received);
        m_failures = 0;
        return;
    }
    const ConstellationFit kept = orderFinder::keep(received, m_fit);
    m_failures = kept.valid ? 0 : m_failures + 1;
    if (kept.valid || m_failures >= MaxFailures) {
        m_fit = kept;
    }
}
