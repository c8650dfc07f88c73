#pragma once

#include "spectrum/ChannelMeasurements.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

// The search for a carrier and the measurements of a channel written out plainly, step by step as
// their comments describe them: with sorted copies and sums that begin anew each time.
namespace plainMeasurements {

inline double sumOf(const QVector<float>& powers, qsizetype first, qsizetype last)
{
    double sum = 0.0;
    for (qsizetype i = first; i <= last; ++i) {
        sum += double(powers.at(i));
    }
    return sum;
}

// Between the values that are rounded to the wanted one, by their share.
inline double quantile(std::vector<double> values, double part)
{
    std::sort(values.begin(), values.end());
    const double rank = part * double(values.size());
    const double value = values[std::min(size_t(rank), values.size() - 1)];
    const auto [first, last] = std::equal_range(values.begin(), values.end(), value);
    const double low = first == values.begin() ? value : std::sqrt(*(first - 1) * value);
    const double high = last == values.end() ? value : std::sqrt(*last * value);
    const double inside = (rank - double(first - values.begin())) / double(last - first);
    return low + (high - low) * std::clamp(inside, 0.0, 1.0);
}

inline double medianOverMean(double k)
{
    return 1.0 - 1.0 / (3.0 * k) + 8.0 / (405.0 * k * k) + 184.0 / (25515.0 * std::pow(k, 3));
}

inline double shapeOf(double lower, double upper)
{
    if (upper <= lower) {
        return 1e6;
    }
    if (lower <= 0.0) {
        return 1.0;
    }
    const double ratio = std::cbrt(upper / lower);
    const double spread = (ratio - 1.0) / (ratio + 1.0);
    // The root s solves spread (1 - 1 / (9 s²)) = 0.6745 / (3 s), a quadratic equation in s.
    const double b = 0.6745 / 3.0 / spread;
    const double root = (b + std::sqrt(b * b + 4.0 / 9.0)) / 2.0;
    return std::min(root * root, 1e6);
}

// The carrier of a spectrum.
struct Carrier
{
    QVector<float> powers;
    double spectra = 1.0;
    double floor = 0.0;
    double shape = 1.0;
    qsizetype first = -1;
    qsizetype last = -1;
    bool hasNoise = false;

    explicit Carrier(const MeasuredSpectrum& spectrum)
        : powers(spectrum.powers)
        , spectra(std::max(1.0, spectrum.spectra))
        , shape(spectra)
    {
        floor = quietest();
        for (int round = 0; round < 4; ++round) {
            const auto before = std::pair(first, last);
            seek();
            if (round > 0 && before == std::pair(first, last)) {
                break;
            }
            measureNoise();
        }
        if (first >= 0 && (ratio() < 1.5 || isPart())) {
            first = last = -1;
            measureNoise();
        }
    }

    qsizetype guard() const { return std::max<qsizetype>(2, (last - first + 1) / 8); }
    qsizetype guardFirst() const { return std::max<qsizetype>(0, first - guard()); }
    qsizetype guardLast() const { return std::min(last + guard(), powers.size() - 1); }

    double ratio() const
    {
        return sumOf(powers, first, last) / double(last - first + 1) / floor - 1.0;
    }

    // From the second lowest mean of up to 64 parts of eight bins or more.
    double quietest() const
    {
        const qsizetype parts = std::min<qsizetype>(64, powers.size() / 8);
        const qsizetype size = powers.size() / parts;
        std::vector<double> means;
        for (qsizetype part = 0; part < parts; ++part) {
            means.push_back(sumOf(powers, part * size, (part + 1) * size - 1) / double(size));
        }
        std::sort(means.begin(), means.end());
        const double k = spectra * double(size);
        return means[1] / std::pow(1.0 - 1.0 / (9.0 * k) - 1.8 / 3.0 / std::sqrt(k), 3);
    }

    void seek()
    {
        const double fall = (std::log(double(powers.size())) + 4.6) / 0.797 / spectra;
        double strongest = 0.0;
        first = last = -1;
        for (qsizetype i = 0; i < powers.size(); ++i) {
            if (powers.at(i) <= float(2.0 * floor)) {
                continue;
            }
            double sum = 0.0;
            double highest = 0.0;
            qsizetype end = i;
            for (qsizetype j = i; j < powers.size(); ++j) {
                sum += double(powers.at(j)) / floor - 2.0;
                if (sum <= 0.0 || highest - sum > fall) {
                    break;
                }
                end = sum > highest ? j : end;
                highest = std::max(sum, highest);
            }
            const double excess = sumOf(powers, i, end) - double(end - i + 1) * floor;
            if (highest > fall && excess > strongest) {
                strongest = excess;
                first = i;
                last = end;
            }
            i = end;
        }
    }

    void measureNoise()
    {
        std::vector<double> bins;
        for (qsizetype i = 0; i < powers.size(); ++i) {
            if (first < 0 || i < guardFirst() || i > guardLast()) {
                bins.push_back(double(powers.at(i)));
            }
        }
        hasNoise = bins.size() >= 8;
        if (hasNoise) {
            shape = std::max(spectra, shapeOf(quantile(bins, 0.25), quantile(bins, 0.75)));
            floor = quantile(bins, 0.5) / medianOverMean(shape);
        }
    }

    bool isPart() const
    {
        const auto enough = qsizetype(std::ceil(128.0 / shape));
        const qsizetype most = std::max<qsizetype>(8, powers.size() / 8);
        const qsizetype count = std::clamp<qsizetype>(enough, 8, most);
        const double limit =
            floor * (1.0 + 3.5 * 1.253 / std::sqrt(shape * double(count))) * medianOverMean(shape);
        const auto isHigh = [&](qsizetype from) {
            return from >= 0 && from + count <= powers.size() &&
                quantile({powers.cbegin() + from, powers.cbegin() + from + count}, 0.5) > limit;
        };
        return ratio() < 8.0 && (isHigh(guardLast() + 1) || isHigh(guardFirst() - count));
    }
};

// A spectrum of noise with carriers of any shape, rounded as the card rounds it or not at all.
inline MeasuredSpectrum anySpectrum(std::mt19937& random)
{
    const auto number = [&random] { return double(random()) / 4294967296.0; };
    const auto size = qsizetype(16.0 * std::pow(60.0, number()));
    const int spectra = 1 << int(7.0 * number());
    std::vector<double> means(size_t(size), 1.0);
    const int carriers = int(3.5 * number());
    for (int n = 0; n < carriers; ++n) {
        const double middle = double(size) * (1.1 * number() - 0.05);
        const double half = 0.5 + 0.25 * double(size) * number() * number();
        const double power = std::pow(10.0, 4.0 * number() * number());
        const double slope = 0.5 + 20.0 * number();
        for (size_t i = 0; i < means.size(); ++i) {
            const double beyond = std::max(0.0, std::abs(double(i) - middle) - half);
            means[i] += power * std::exp(-beyond * beyond / slope);
        }
    }
    const bool isRounded = number() < 0.7;
    MeasuredSpectrum result{{}, 70.0 + number(), 1.0 + 30.0 * number(), double(spectra)};
    for (const double mean : means) {
        double sum = 0.0;
        for (int n = 0; n < spectra; ++n) {
            sum -= std::log((double(random()) + 1.0) / 4294967296.0);
        }
        const double decibels = 10.0 * std::log10(mean * sum / spectra) - 80.0;
        const double shown = isRounded ? std::round(2.0 * decibels) / 2.0 : decibels;
        result.powers += float(std::pow(10.0, shown / 10.0));
    }
    return result;
}

// Where a part of the power of a carrier lies below, as in a list of all sums.
inline double placeOf(const std::vector<double>& sums, qsizetype first, double part)
{
    const double wanted = part * sums.back();
    const auto middle =
        std::lower_bound(sums.begin() + 1, sums.end(), sums.back() / 2.0) - sums.begin();
    qsizetype at = middle;
    if (part < 0.5) {
        while (at > 1 && sums[size_t(at - 1)] >= wanted) {
            --at;
        }
    } else {
        while (at + 1 < qsizetype(sums.size()) && sums[size_t(at)] < wanted) {
            ++at;
        }
    }
    const double before = sums[size_t(at - 1)];
    const double step = sums[size_t(at)] - before;
    return double(first + at) - 1.5 +
        (step > 0.0 ? std::clamp((wanted - before) / step, 0.0, 1.0) : 0.5);
}

// The width of a carrier so many decibels below its highest level.
struct Below
{
    const MeasuredSpectrum& spectrum;
    const Carrier& carrier;
    qsizetype from = carrier.guardFirst();
    qsizetype to = carrier.guardLast();
    std::vector<double> sums = std::vector<double>(1, 0.0);

    Below(const MeasuredSpectrum& measured, const Carrier& found)
        : spectrum(measured)
        , carrier(found)
    {
        for (qsizetype i = from; i <= to; ++i) {
            sums.push_back(sums.back() + double(spectrum.powers.at(i)) - carrier.floor);
        }
    }

    double occupied() const { return placeOf(sums, from, 0.995) - placeOf(sums, from, 0.005); }

    double mean(qsizetype i, qsizetype distance) const
    {
        const qsizetype first = std::clamp(i - distance, from, to);
        const qsizetype last = std::clamp(i + distance, from, to);
        return (sums[size_t(last + 1 - from)] - sums[size_t(first - from)]) /
            double(last + 1 - first);
    }

    // From the outside to the top, in steps of 1 or -1; NaN when it is as high outside.
    double crossing(double wanted, qsizetype outside, qsizetype top, qsizetype window) const
    {
        const qsizetype step = outside < top ? 1 : -1;
        qsizetype at = outside;
        while (at != top && mean(at, window) < wanted) {
            at += step;
        }
        if (at == outside) {
            return qQNaN();
        }
        const double low = std::log(std::max(mean(at - step, window), wanted / 1000.0));
        const double high = std::log(std::max(mean(at, window), wanted * (1.0 + 1e-9)));
        return double(at - step) + double(step) * (std::log(wanted) - low) / (high - low);
    }

    double edge(double wanted, qsizetype outside, qsizetype top, qsizetype window) const
    {
        const qsizetype step = outside < top ? 1 : -1;
        double place = crossing(wanted, outside, top, window);
        for (; window > 0 && std::isfinite(place); window /= 2) {
            const qsizetype half = (window + 1) / 2;
            const auto at = qsizetype(std::llround(place));
            const double outer = std::max(mean(at - step * half, half), wanted / 1000.0);
            if (mean(at + step * half, half) <= 3.0 * outer) {
                break;
            }
            place = crossing(wanted, outside, top, window / 2);
        }
        return place;
    }

    channelMeasurements::Bandwidth band(double down) const
    {
        using channelMeasurements::State;
        const auto smooth = qsizetype(occupied() / 16.0);
        double highest = 0.0;
        qsizetype top = carrier.first;
        for (qsizetype i = carrier.first; i <= carrier.last; ++i) {
            if (mean(i, smooth) > highest) {
                highest = mean(i, smooth);
                top = i;
            }
        }
        if (smooth > 0) {
            highest /= 1.0 + 1.2 / std::sqrt(carrier.shape * double(2 * smooth + 1));
        }
        const double wanted = highest / std::pow(10.0, down / 10.0);
        if (wanted < carrier.floor) {
            return {State::InNoise, 0.0, 0.0};
        }
        const auto window = qsizetype(occupied() / 32.0);
        const double low = edge(wanted, from, top, window);
        const double high = edge(wanted, to, top, window);
        if (!std::isfinite(low) || !std::isfinite(high)) {
            return {State::BeyondSpan, 0.0, 0.0};
        }
        return {State::Valid, spectrum.frequencyAt(low), spectrum.frequencyAt(high)};
    }
};

} // namespace plainMeasurements
