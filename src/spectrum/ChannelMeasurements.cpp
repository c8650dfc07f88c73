#include "spectrum/ChannelMeasurements.h"

#include "spectrum/CarrierSearch.h"

#include <algorithm>
#include <cmath>

using namespace channelMeasurements;

namespace {

constexpr double OutsidePart = 0.005; // of the power on either side of the occupied band
constexpr double HertzPerMHz = 1e6;
constexpr double LowestPower = 1e-30; // so that no level is infinite
constexpr double ScaleEnd = 1.06e-12; // the level of byte 0, -120 dB, and a rounding error
constexpr double DeepestPart = 1e-3;  // of the wanted level: no bin counts as lower
constexpr double EdgePart = 16.0;     // An edge is sought in means over this part of the band,
constexpr double SteepRatio = 3.0;    // unless the power changes by more within them.
constexpr double TopPart = 8.0;       // The highest level is a mean over this part of the band.
// Several such means differ because of the noise in them, and the highest of them lies so many of
// their standard deviations above the level.
constexpr double TopDeviations = 1.2;

double decibels(double power)
{
    return 10.0 * std::log10(std::max(power, LowestPower));
}

bool isUsable(const MeasuredSpectrum& spectrum)
{
    return spectrum.powers.size() >= CarrierSearch::MinPoints && std::isfinite(spectrum.centre) &&
        std::isfinite(spectrum.width) && spectrum.width > 0.0;
}

// Whether the whole carrier is seen.
State stateOf(const MeasuredSpectrum& spectrum, const CarrierSearch& carrier)
{
    if (!isUsable(spectrum)) {
        return State::NoSpectrum;
    }
    if (!carrier.found()) {
        return State::NoCarrier;
    }
    return carrier.isCut() ? State::BeyondSpan : State::Valid;
}

bool hasNoise(const CarrierSearch& carrier)
{
    return carrier.hasNoise() && carrier.floor() > ScaleEnd;
}

// The carrier's bins without the noise, those of its guard included.
class CleanBins
{
public:
    CleanBins(const MeasuredSpectrum& spectrum, const CarrierSearch& carrier)
        : m_first(carrier.guardFirst())
        , m_last(carrier.guardLast())
    {
        m_sums.reserve(m_last - m_first + 2);
        m_sums += 0.0;
        for (qsizetype i = m_first; i <= m_last; ++i) {
            m_sums += m_sums.last() + static_cast<double>(spectrum.powers.at(i)) - carrier.floor();
        }
    }

    double total() const { return m_sums.last(); }

    // The place up to which this part of the power lies; below the middle, the rightmost of several
    // such places, above it the leftmost, so that noise beside the carrier does not count.
    double placeOf(double part) const
    {
        const double wanted = part * total();
        const auto middle = std::lower_bound(m_sums.cbegin() + 1, m_sums.cend(), total() / 2.0);
        const auto isBelow = [wanted](double sum) { return sum < wanted; };
        auto above = middle;
        if (part < 0.5) {
            while (above != m_sums.cbegin() + 1 && !isBelow(*(above - 1))) {
                --above;
            }
        } else {
            above = std::find_if_not(middle, m_sums.cend() - 1, isBelow);
        }
        const double step = *above - *(above - 1);
        const double inside =
            step > 0.0 ? std::clamp((wanted - *(above - 1)) / step, 0.0, 1.0) : 0.5;
        const auto bin = static_cast<double>(m_first + (above - m_sums.cbegin()) - 1);
        return bin - 0.5 + inside;
    }

    // The number of bins of the occupied band.
    double occupied() const { return placeOf(1.0 - OutsidePart) - placeOf(OutsidePart); }

    // The mean power of the bins at most so many bins away from bin i.
    double meanAround(qsizetype i, qsizetype distance) const
    {
        const qsizetype first = std::clamp(i - distance, m_first, m_last);
        const qsizetype last = std::clamp(i + distance, m_first, m_last);
        return (m_sums.at(last + 1 - m_first) - m_sums.at(first - m_first)) /
            static_cast<double>(last + 1 - first);
    }

private:
    qsizetype m_first;
    qsizetype m_last;
    QVector<double> m_sums; // of all bins before this one
};

Bandwidth occupiedBand(const MeasuredSpectrum& spectrum, const CarrierSearch& carrier)
{
    Bandwidth band{stateOf(spectrum, carrier), 0.0, 0.0};
    if (band.state != State::Valid) {
        return band;
    }
    const CleanBins bins(spectrum, carrier);
    if (bins.total() <= 0.0) {
        band.state = State::NoCarrier;
        return band;
    }
    band.low = spectrum.frequencyAt(bins.placeOf(OutsidePart));
    band.high = spectrum.frequencyAt(bins.placeOf(1.0 - OutsidePart));
    return band;
}

// The highest mean over a part of the carrier's width, and where it is.
struct Top
{
    double power = 0.0;
    qsizetype bin = 0;
};

Top topOf(const CleanBins& bins, const CarrierSearch& carrier)
{
    const auto window = static_cast<qsizetype>(bins.occupied() / TopPart / 2.0);
    Top top{0.0, carrier.first()};
    for (qsizetype i = carrier.first(); i <= carrier.last(); ++i) {
        const double mean = bins.meanAround(i, window);
        top = mean > top.power ? Top{mean, i} : top;
    }
    if (window > 0) {
        const auto averaged = carrier.spectra() * static_cast<double>(2 * window + 1);
        top.power /= 1.0 + TopDeviations / std::sqrt(averaged);
    }
    return top;
}

// Seeks where the carrier falls to a power on one of its sides.
class Edge
{
public:
    Edge(const CleanBins& bins, double wanted, qsizetype outside, qsizetype top)
        : m_bins(bins)
        , m_wanted(wanted)
        , m_outside(outside)
        , m_top(top)
        , m_step(outside < top ? 1 : -1)
    {
    }

    // The place, found in means over at most 2 × window + 1 bins: over fewer where the edge is so
    // steep that a mean would move it. NaN when the power is that high at the outside already.
    double place(qsizetype window) const
    {
        double place = crossing(window);
        while (window > 0 && std::isfinite(place) &&
            isSteep(static_cast<qsizetype>(std::llround(place)), window)) {
            window /= 2;
            place = crossing(window);
        }
        return place;
    }

private:
    double crossing(qsizetype window) const
    {
        qsizetype inside = m_outside;
        while (inside != m_top && m_bins.meanAround(inside, window) < m_wanted) {
            inside += m_step;
        }
        if (inside == m_outside) {
            return std::nan("");
        }
        const qsizetype before = inside - m_step;
        const double lowest = m_wanted * DeepestPart;
        const double below = std::log(std::max(m_bins.meanAround(before, window), lowest));
        const double above =
            std::log(std::max(m_bins.meanAround(inside, window), m_wanted * (1.0 + 1e-9)));
        return static_cast<double>(before) +
            (std::log(m_wanted) - below) / (above - below) * static_cast<double>(m_step);
    }

    bool isSteep(qsizetype at, qsizetype window) const
    {
        const qsizetype half = (window + 1) / 2;
        const double outer = m_bins.meanAround(at - m_step * half, half);
        const double inner = m_bins.meanAround(at + m_step * half, half);
        return inner > SteepRatio * std::max(outer, m_wanted * DeepestPart);
    }

    const CleanBins& m_bins;
    double m_wanted;
    qsizetype m_outside;
    qsizetype m_top;
    qsizetype m_step;
};

} // namespace

QString channelMeasurements::stateText(State state)
{
    switch (state) {
    case State::Valid:
        return {};
    case State::NoSpectrum:
        return QStringLiteral("No spectrum");
    case State::NoCarrier:
        return QStringLiteral("No carrier");
    case State::BeyondSpan:
        return QStringLiteral("Beyond the span");
    case State::NoNoise:
        return QStringLiteral("No noise to see");
    case State::InNoise:
        return QStringLiteral("Lost in noise");
    }
    return {};
}

ChannelPower channelMeasurements::channelPower(
    const MeasuredSpectrum& spectrum, double centre, double bandwidth)
{
    ChannelPower power{State::NoSpectrum, centre, bandwidth, 0.0};
    const qsizetype size = spectrum.powers.size();
    if (size == 0 || !(spectrum.width > 0.0)) {
        return power;
    }
    const double low = spectrum.indexAt(centre - bandwidth / 2.0) + 0.5;
    const double high = spectrum.indexAt(centre + bandwidth / 2.0) + 0.5;
    constexpr double RoundingError = 1e-9;
    power.state = State::BeyondSpan;
    if (!(bandwidth > 0.0) || !(low >= -RoundingError) ||
        !(high <= static_cast<double>(size) + RoundingError)) {
        return power;
    }
    power.state = State::Valid;
    const qsizetype first = std::clamp(static_cast<qsizetype>(low), qsizetype{0}, size - 1);
    const qsizetype last = std::clamp(static_cast<qsizetype>(high), qsizetype{0}, size - 1);
    const float* bins = spectrum.powers.constData();
    double sum = 0.0;
    for (qsizetype i = first; i <= last; ++i) {
        sum += static_cast<double>(bins[i]);
    }
    sum -= (low - static_cast<double>(first)) * static_cast<double>(bins[first]);
    sum -= (static_cast<double>(last + 1) - high) * static_cast<double>(bins[last]);
    power.level = decibels(sum);
    return power;
}

Bandwidth channelMeasurements::occupiedBandwidth(const MeasuredSpectrum& spectrum)
{
    return occupiedBand(spectrum, CarrierSearch(spectrum));
}

Bandwidth channelMeasurements::bandwidthBelow(const MeasuredSpectrum& spectrum, double down)
{
    const CarrierSearch carrier(spectrum);
    Bandwidth band{stateOf(spectrum, carrier), 0.0, 0.0};
    if (band.state != State::Valid) {
        return band;
    }
    const CleanBins bins(spectrum, carrier);
    const Top top = topOf(bins, carrier);
    const double wanted = top.power * std::pow(10.0, -down / 10.0);
    if (wanted < carrier.floor()) {
        band.state = State::InNoise;
        return band;
    }
    const auto window = static_cast<qsizetype>(bins.occupied() / EdgePart / 2.0);
    const double low = Edge(bins, wanted, carrier.guardFirst(), top.bin).place(window);
    const double high = Edge(bins, wanted, carrier.guardLast(), top.bin).place(window);
    if (!std::isfinite(low) || !std::isfinite(high)) {
        band.state = State::BeyondSpan;
        return band;
    }
    band.low = spectrum.frequencyAt(low);
    band.high = spectrum.frequencyAt(high);
    return band;
}

NoiseFloor channelMeasurements::noiseFloor(const MeasuredSpectrum& spectrum)
{
    NoiseFloor noise;
    if (!isUsable(spectrum)) {
        return noise;
    }
    const CarrierSearch carrier(spectrum);
    noise.state = hasNoise(carrier) ? State::Valid : State::NoNoise;
    noise.level = decibels(carrier.floor());
    noise.density = noise.level - decibels(spectrum.bin() * HertzPerMHz);
    return noise;
}

CarrierToNoise channelMeasurements::carrierToNoise(const MeasuredSpectrum& spectrum)
{
    const CarrierSearch carrier(spectrum);
    const Bandwidth band = occupiedBand(spectrum, carrier);
    CarrierToNoise result;
    result.state = band.state;
    if (band.state == State::Valid && !hasNoise(carrier)) {
        result.state = State::NoNoise;
    }
    if (result.state != State::Valid) {
        return result;
    }
    result.carrier = decibels(CleanBins(spectrum, carrier).total());
    result.bandwidth = band.width();
    const double noiseDensity = decibels(carrier.floor()) - decibels(spectrum.bin() * HertzPerMHz);
    result.density = result.carrier - noiseDensity;
    result.ratio = result.density - decibels(band.width() * HertzPerMHz);
    return result;
}

FrequencyError channelMeasurements::frequencyError(const MeasuredSpectrum& spectrum)
{
    const Bandwidth band = occupiedBandwidth(spectrum);
    return {band.state, band.middle(), band.middle() - spectrum.centre};
}
