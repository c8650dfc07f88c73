#include "scopes/PointMoments.h"

#include <algorithm>

namespace {

using Complex = std::complex<double>;

// Below this, noise alone could have made -C42: its deviation over 1,000 points of noise is 0.05.
constexpr double MinCumulant = 0.25;

} // namespace

PointMoments PointMoments::secondOrder(const ReceivedPoints& received)
{
    double x = 0.0;
    double y = 0.0;
    double xx = 0.0;
    double xy = 0.0;
    double yy = 0.0;
    for (size_t n = 0; n < received.size(); ++n) {
        x += received.x[n];
        y += received.y[n];
        xx += received.x[n] * received.x[n];
        xy += received.x[n] * received.y[n];
        yy += received.y[n] * received.y[n];
    }
    const auto count = static_cast<double>(std::max<size_t>(1, received.size()));
    PointMoments moments;
    moments.mean = {x / count, y / count};
    xx = std::max(0.0, xx / count - moments.mean.real() * moments.mean.real());
    yy = std::max(0.0, yy / count - moments.mean.imag() * moments.mean.imag());
    xy = xy / count - moments.mean.real() * moments.mean.imag();
    moments.power = xx + yy;
    moments.axisExcess = std::hypot(xx - yy, 2.0 * xy);
    moments.axisAngle = 0.5 * std::atan2(2.0 * xy, xx - yy);
    const double strong = (moments.power + moments.axisExcess) / 2.0;
    const double weak = (moments.power - moments.axisExcess) / 2.0;
    moments.axisRatio = strong / std::max(weak, 1e-9 * strong + 1e-30);
    // The symmetric square root: turn, scale, turn back; 1/2 of the power on either axis.
    const double s = 1.0 / std::sqrt(2.0 * std::max(strong, 1e-30));
    const double w = 1.0 / std::sqrt(2.0 * std::max(weak, 1e-30));
    const double cosine = std::cos(moments.axisAngle);
    const double sine = std::sin(moments.axisAngle);
    PlaneMap& map = moments.toWhite;
    map = {s * cosine * cosine + w * sine * sine, (s - w) * cosine * sine, (s - w) * cosine * sine,
        s * sine * sine + w * cosine * cosine, 0.0, 0.0};
    const Complex origin = map(moments.mean);
    map.x0 = -origin.real();
    map.y0 = -origin.imag();
    return moments;
}

void PointMoments::addHigherOrders(const ReceivedPoints& received)
{
    double fourthPower = 0.0;
    double real4 = 0.0;
    double imag4 = 0.0;
    double real8 = 0.0;
    double imag8 = 0.0;
    for (size_t n = 0; n < received.size(); ++n) {
        const double x = toWhite.xx * received.x[n] + toWhite.xy * received.y[n] + toWhite.x0;
        const double y = toWhite.yx * received.x[n] + toWhite.yy * received.y[n] + toWhite.y0;
        const double re2 = x * x - y * y;
        const double im2 = 2.0 * x * y;
        const double re4 = re2 * re2 - im2 * im2;
        const double im4 = 2.0 * re2 * im2;
        fourthPower += re2 * re2 + im2 * im2;
        real4 += re4;
        imag4 += im4;
        real8 += re4 * re4 - im4 * im4;
        imag8 += 2.0 * re4 * im4;
    }
    const auto count = static_cast<double>(std::max<size_t>(1, received.size()));
    kurtosis = fourthPower / count;
    z4 = Complex(real4, imag4) / count;
    z8 = Complex(real8, imag8) / count;
}

double PointMoments::fourth() const
{
    const double cumulant = 2.0 - kurtosis;
    return cumulant > MinCumulant ? std::abs(z4) / cumulant : 0.0;
}

double PointMoments::eighth() const
{
    const double cumulant = 2.0 - kurtosis;
    return cumulant > MinCumulant ? std::abs(z8) / (cumulant * cumulant) : 0.0;
}
