#include "tools/measure/AnalyticPoints.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double Pi = 3.14159265358979323846;
constexpr double Steps = 32768.0; // of full scale

double onLine(double value, double limit)
{
    return std::clamp(std::round(std::clamp(value, -limit, limit) * Steps), -Steps, Steps - 1.0) /
        Steps;
}

} // namespace

AnalyticPoints::AnalyticPoints(const Settings& settings, quint32 seed)
    : m_settings(settings)
    , m_random(seed)
{
    m_phase = std::uniform_real_distribution<double>(0.0, 1.0)(m_random);
}

ReceivedPoints AnalyticPoints::take(int count)
{
    const double sigma = std::sqrt(std::pow(10.0, -m_settings.snr / 10.0) / 2.0);
    ReceivedPoints points;
    for (int k = 0; k < count; ++k) {
        Complex point = m_settings.source(m_random, m_count++);
        const double noiseI = m_normal(m_random);
        point += sigma * Complex(noiseI, m_normal(m_random));
        m_phase = std::fmod(m_phase + m_settings.turn, 1.0);
        point *= std::polar(Level, 2.0 * Pi * m_phase);
        points.x.push_back(onLine(point.real(), m_settings.limit));
        points.y.push_back(onLine(point.imag(), m_settings.limit));
    }
    return points;
}

AnalyticPoints::Source AnalyticPoints::randomOf(std::vector<Complex> alphabet)
{
    double energy = 0.0;
    for (const Complex& point : alphabet) {
        energy += std::norm(point) / static_cast<double>(alphabet.size());
    }
    for (Complex& point : alphabet) {
        point /= std::sqrt(energy);
    }
    return [alphabet](std::mt19937& random, int /*symbol*/) {
        return alphabet[random() % alphabet.size()];
    };
}

AnalyticPoints::Source AnalyticPoints::randomOf(ModulationOrder order)
{
    return randomOf(modulationOrder::points(order));
}

std::vector<AnalyticPoints::Complex> AnalyticPoints::ring(int count, double radius, double angle)
{
    std::vector<Complex> points;
    points.reserve(static_cast<size_t>(count));
    for (int k = 0; k < count; ++k) {
        points.push_back(std::polar(radius, angle + 2.0 * Pi * k / count));
    }
    return points;
}
