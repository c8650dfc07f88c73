#include "spectrum/CarrierSearch.h"

#include "spectrum/NoiseMean.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double Above = 2.0; // Bins of a carrier lie this factor above the floor: 3 dB.
// Of the power of a carrier to that of the noise in its bins: 1.8 dB.
constexpr double MinRatio = 1.5;
// A stronger one is not taken for a part of a wider one: 9 dB.
constexpr double WholeRatio = 8.0;
constexpr qsizetype MinBeside = 8;         // The bins beside a carrier that tell: so many,
constexpr double MinBesideSpectra = 128.0; // and so many times the spectra in each of them,
constexpr qsizetype BesidePart = 8;        // but at most this part of the spectrum.
constexpr double BesideDeviations = 3.5;   // of a median, which says that more than noise is there
constexpr double MedianDeviation = 1.253;  // of a median to that of a mean
constexpr int Rounds = 4;                  // The floor hardly changes after the second.
constexpr qsizetype GuardPart = 8; // The guard on either side is this part of the carrier's width,
constexpr qsizetype MinGuard = 2;  // but at least so many bins.

// In noise, the sum of (power / floor − Above) rises by x with a probability of exp(−Decay × x),
// where exp(−Above × Decay) = 1 − Decay for the exponential distribution of one spectrum.
constexpr double Decay = 0.797;
constexpr double RarityLog = 4.6; // One spectrum of noise in a hundred seems to have a carrier.

constexpr qsizetype PartSize = 8; // bins, at least
constexpr qsizetype MaxParts = 64;
constexpr double QuietDeviations = -1.8; // of the second lowest of so many parts, of their mean

} // namespace

CarrierSearch::CarrierSearch(const MeasuredSpectrum& spectrum)
    : m_powers(spectrum.powers)
    , m_spectra(std::max(spectrum.spectra, 1.0))
    , m_shape(m_spectra)
    , m_fall((std::log(static_cast<double>(std::max(m_powers.size(), MinPoints))) + RarityLog) /
          (Decay * m_spectra))
{
    if (m_powers.size() < MinPoints) {
        return;
    }
    m_floor = quietestParts();
    for (int round = 0; round < Rounds; ++round) {
        const Run run = strongestRun();
        const bool same = round > 0 && run.first == m_first && run.last == m_last;
        take(run);
        if (same) {
            break;
        }
        measureNoise();
    }
    if (found() && (isWeak() || isPart())) {
        take(Run());
        measureNoise();
    }
}

void CarrierSearch::take(const Run& run)
{
    m_first = run.first;
    m_last = run.last;
}

// Of the carrier's power to that of the noise in its bins.
double CarrierSearch::ratio() const
{
    double sum = 0.0;
    for (qsizetype i = m_first; i <= m_last; ++i) {
        sum += static_cast<double>(m_powers.at(i));
    }
    return sum / (m_floor * static_cast<double>(m_last - m_first + 1)) - 1.0;
}

// Whether this is a carrier that is too weak, or noise that is not flat.
bool CarrierSearch::isWeak() const
{
    return ratio() < MinRatio;
}

// Whether this is only a part of a wider carrier, most of which lies less than 3 dB above the
// noise: then more than noise lies beside its guard. Half of those bins would have to belong to
// another carrier to be mistaken for that.
bool CarrierSearch::isPart() const
{
    if (ratio() >= WholeRatio) {
        return false;
    }
    const auto enough = static_cast<qsizetype>(std::ceil(MinBesideSpectra / m_shape));
    const qsizetype count =
        std::min(std::max(MinBeside, enough), std::max(MinBeside, m_powers.size() / BesidePart));
    const double deviation = MedianDeviation / std::sqrt(m_shape * static_cast<double>(count));
    const double limit = m_floor * (1.0 + BesideDeviations * deviation);
    const auto isHigh = [this, count, limit](qsizetype first) {
        QVector<float> bins = m_powers.mid(std::max(first, qsizetype{0}), count);
        return bins.size() == count &&
            noise::quantile(bins, 0.5) > limit * noise::medianOverMean(m_shape);
    };
    return isHigh(guardLast() + 1) || (guardFirst() >= count && isHigh(guardFirst() - count));
}

qsizetype CarrierSearch::guard() const
{
    return std::max((m_last - m_first + 1) / GuardPart, MinGuard);
}

qsizetype CarrierSearch::guardFirst() const
{
    return std::max(m_first - guard(), qsizetype{0});
}

qsizetype CarrierSearch::guardLast() const
{
    return std::min(m_last + guard(), m_powers.size() - 1);
}

// The floor from the means of equal parts of the spectrum: the second lowest of them lies lower
// than theirs by about as much as noise alone makes it lie (approximation of Wilson and Hilferty).
// Two parts without a carrier are enough.
double CarrierSearch::quietestParts() const
{
    static_assert(MinPoints >= 2 * PartSize);
    const qsizetype parts = std::min(m_powers.size() / PartSize, MaxParts);
    const qsizetype size = m_powers.size() / parts;
    QVector<double> means(parts);
    for (qsizetype part = 0; part < parts; ++part) {
        const auto begin = m_powers.cbegin() + part * size;
        double sum = 0.0;
        for (auto bin = begin; bin != begin + size; ++bin) {
            sum += static_cast<double>(*bin);
        }
        means[part] = sum / static_cast<double>(size);
    }
    const auto quiet = means.begin() + 1;
    std::nth_element(means.begin(), quiet, means.end());
    const double shape = m_spectra * static_cast<double>(size);
    const double lower = 1.0 - 1.0 / (9.0 * shape) + QuietDeviations / (3.0 * std::sqrt(shape));
    return *quiet / (lower * lower * lower);
}

CarrierSearch::Run CarrierSearch::runAt(qsizetype first) const
{
    Run run;
    double sum = 0.0;
    double highest = 0.0;
    double excess = 0.0;
    for (qsizetype i = first; i < m_powers.size(); ++i) {
        const auto power = static_cast<double>(m_powers.at(i));
        sum += power / m_floor - Above;
        excess += power - m_floor;
        if (sum <= 0.0 || sum < highest - m_fall) {
            break;
        }
        if (sum > highest) {
            highest = sum;
            run = {first, i, excess};
        }
    }
    return highest > m_fall ? run : Run{first, std::max(run.last, first), 0.0};
}

CarrierSearch::Run CarrierSearch::strongestRun() const
{
    Run strongest;
    if (m_floor <= 0.0) {
        return strongest;
    }
    const auto threshold = static_cast<float>(m_floor * Above);
    for (qsizetype i = 0; i < m_powers.size(); ++i) {
        if (m_powers.at(i) > threshold) {
            const Run run = runAt(i);
            if (run.excess > strongest.excess) {
                strongest = run;
            }
            i = run.last;
        }
    }
    return strongest;
}

void CarrierSearch::measureNoise()
{
    const bool carrier = found();
    const qsizetype left = carrier ? guardFirst() : m_powers.size();
    const qsizetype right = carrier ? m_powers.size() - 1 - guardLast() : 0;
    m_hasNoise = left + right >= MinNoiseBins;
    if (m_hasNoise) {
        QVector<float> bins = m_powers.mid(0, left);
        bins += m_powers.mid(m_powers.size() - right, right);
        const noise::Estimate estimate = noise::estimate(bins, m_spectra);
        m_floor = estimate.mean;
        m_shape = estimate.shape;
    }
}
