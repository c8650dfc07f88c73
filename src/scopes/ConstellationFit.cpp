#include "scopes/ConstellationFit.h"

#include <algorithm>

namespace {

using Complex = std::complex<double>;

// The sums of a regression of x and y over u, v and 1, where (u, v) is the ideal point.
struct Regression
{
    double n = 0.0;
    double u = 0.0;
    double v = 0.0;
    double uu = 0.0;
    double uv = 0.0;
    double vv = 0.0;
    Complex z;
    Complex zu;
    Complex zv;
    double power = 0.0;
};

Regression regressionOf(const ConstellationSums& sums, const std::vector<Complex>& ideal)
{
    Regression r;
    for (size_t k = 0; k < ideal.size(); ++k) {
        const ConstellationSums::Cluster& c = sums.clusters.at(k);
        const double u = ideal[k].real();
        const double v = ideal[k].imag();
        const Complex z(c.x, c.y);
        r.n += c.count;
        r.u += c.count * u;
        r.v += c.count * v;
        r.uu += c.count * u * u;
        r.uv += c.count * u * v;
        r.vv += c.count * v * v;
        r.z += z;
        r.zu += u * z;
        r.zv += v * z;
        r.power += c.power;
    }
    return r;
}

// What the regression finds: z = a · u + b · v + d.
struct Coefficients
{
    Complex a;
    Complex b;
    Complex d;
    double freedom; // real parameters for each of x and y
};

Coefficients solved(const Regression& r, bool line)
{
    // Deviations from the means take the constant out.
    const double uu = r.uu - r.u * r.u / r.n;
    const double uv = r.uv - r.u * r.v / r.n;
    const double vv = r.vv - r.v * r.v / r.n;
    const Complex zu = r.zu - r.z * (r.u / r.n);
    const Complex zv = r.zv - r.z * (r.v / r.n);
    Coefficients found{{}, {}, {}, 3.0};
    if (line) {
        found.a = zu / uu;
        found.b = Complex(0.0, 1.0) * found.a; // turned and scaled only
        found.freedom = 2.0;
        found.d = (r.z - found.a * r.u) / r.n;
        return found;
    }
    const double determinant = uu * vv - uv * uv;
    found.a = (zu * vv - zv * uv) / determinant;
    found.b = (zv * uu - zu * uv) / determinant;
    found.d = (r.z - found.a * r.u - found.b * r.v) / r.n;
    return found;
}

} // namespace

ConstellationFit ConstellationFit::of(const ConstellationSums& sums, ModulationOrder order)
{
    ConstellationFit fit;
    const auto& ideal = modulationOrder::points(order);
    const Regression r = regressionOf(sums, ideal);
    fit.order = order;
    fit.count = r.n;
    if (ideal.empty() || r.n < 4.0 * static_cast<double>(ideal.size())) {
        return fit;
    }
    double least = r.n;
    double most = 0.0;
    for (size_t k = 0; k < ideal.size(); ++k) {
        least = std::min(least, sums.clusters.at(k).count);
        most = std::max(most, sums.clusters.at(k).count);
    }
    fit.minShare = least * static_cast<double>(ideal.size()) / r.n;
    fit.maxShare = most * static_cast<double>(ideal.size()) / r.n;
    const bool line = order == ModulationOrder::Bpsk;
    const Coefficients c = solved(r, line);
    fit.toReceived = {c.a.real(), c.b.real(), c.a.imag(), c.b.imag(), c.d.real(), c.d.imag()};
    double left = 0.0;
    for (size_t k = 0; k < ideal.size(); ++k) {
        const ConstellationSums::Cluster& cluster = sums.clusters.at(k);
        const Complex at = fit.toReceived(ideal[k]);
        left += cluster.power - 2.0 * (at.real() * cluster.x + at.imag() * cluster.y) +
            cluster.count * std::norm(at);
    }
    fit.residual = std::max(0.0, left) / (r.n - c.freedom);
    const double determinant = fit.toReceived.determinant();
    fit.valid = std::isfinite(determinant) && std::abs(determinant) > 1e-12;
    return fit;
}

std::complex<double> ConstellationFit::gain() const
{
    return Complex(toReceived.xx + toReceived.yy, toReceived.yx - toReceived.xy) / 2.0;
}

std::complex<double> ConstellationFit::image() const
{
    return Complex(toReceived.xx - toReceived.yy, toReceived.yx + toReceived.xy) / 2.0;
}

double ConstellationFit::signalToResidual() const
{
    const double signal = std::norm(gain()) + std::norm(image());
    return signal / std::max(residual, 1e-12 * signal);
}
