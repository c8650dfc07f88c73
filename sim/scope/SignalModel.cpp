#include "sim/scope/SignalModel.h"

#include "wire/IqBlock.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace {

constexpr double Pi = 3.14159265358979323846;
constexpr int PerSymbol = iqBlock::EyeSamplesPerSymbol;
constexpr int HalfSymbol = PerSymbol / 2;

// The part of the phase noise that is left after a quarter of a symbol: a loop of some tens of
// symbols.
constexpr double WanderKept = 0.98;

// The interpolation between the model's own samples: a sinc with a Hamming window over so many of
// them on either side. Whole symbols, so that the stream stays at a decision.
constexpr int HalfTaps = 4 * PerSymbol;

struct Name
{
    const char* text;
    SignalSettings::Modulation modulation;
};
constexpr Name Names[] = {{"bpsk", SignalSettings::Modulation::Bpsk},
    {"qpsk", SignalSettings::Modulation::Qpsk}, {"oqpsk", SignalSettings::Modulation::Oqpsk},
    {"8psk", SignalSettings::Modulation::Psk8}, {"16qam", SignalSettings::Modulation::Qam16}};

struct Field
{
    const char* name;
    double SignalSettings::*value;
    double least;
    double most;
};
constexpr Field Fields[] = {{"snr", &SignalSettings::snr, -20.0, 100.0},
    {"phase", &SignalSettings::phase, 0.0, 180.0}, {"offset", &SignalSettings::offset, -0.5, 0.5},
    {"imbalance", &SignalSettings::imbalance, -20.0, 20.0},
    {"skew", &SignalSettings::skew, -45.0, 45.0}, {"clip", &SignalSettings::clip, 0.01, 1.0},
    {"level", &SignalSettings::level, 0.001, 1.0}, {"rolloff", &SignalSettings::rolloff, 0.05, 1.0},
    {"band", &SignalSettings::band, 0.1, 1000.0}, {"sps", &SignalSettings::sps, 2.0, 16.0},
    {"dci", &SignalSettings::dci, -100.0, 100.0}, {"dcq", &SignalSettings::dcq, -100.0, 100.0}};

// The interpolator's impulse response; t in samples.
double windowedSinc(double t)
{
    const double x = Pi * t;
    const double window = 0.54 + 0.46 * std::cos(x / HalfTaps);
    return (std::abs(t) < 1e-9 ? 1.0 : std::sin(x) / x) * window;
}

QString setField(SignalSettings& settings, const QString& text)
{
    const auto equals = text.indexOf(QLatin1Char('='));
    for (const Field& field : Fields) {
        if (equals > 0 && text.left(equals) == QLatin1String(field.name)) {
            bool ok = false;
            const double value = text.mid(equals + 1).toDouble(&ok);
            if (!ok || !(value >= field.least && value <= field.most)) {
                return QStringLiteral("%1 is %2 to %3")
                    .arg(QLatin1String(field.name))
                    .arg(field.least)
                    .arg(field.most);
            }
            settings.*field.value = value;
            return {};
        }
    }
    return QStringLiteral("nothing of a signal: \"%1\"").arg(text);
}

} // namespace

SignalSettings SignalSettings::fromText(const QString& text, QString& fault)
{
    SignalSettings settings;
    QStringList parts = text.split(QLatin1Char(':'));
    const QString modulation = parts.takeFirst().toLower();
    const auto* const name = std::find_if(std::begin(Names), std::end(Names),
        [&](const Name& n) { return modulation == QLatin1String(n.text); });
    if (name == std::end(Names)) {
        fault = QStringLiteral("no modulation: \"%1\"").arg(modulation);
        return {};
    }
    settings.modulation = name->modulation;
    for (const QString& part : std::as_const(parts)) {
        fault = setField(settings, part);
        if (!fault.isEmpty()) {
            return {};
        }
    }
    return settings;
}

std::vector<std::complex<double>> SignalModel::alphabet(SignalSettings::Modulation modulation)
{
    std::vector<Complex> points;
    const auto ring = [&points](int count, double firstTurn) {
        for (int k = 0; k < count; ++k) {
            points.push_back(
                std::polar(1.0, 2.0 * Pi * (firstTurn + static_cast<double>(k) / count)));
        }
    };
    switch (modulation) {
    case SignalSettings::Modulation::Bpsk:
        ring(2, 0.0);
        break;
    case SignalSettings::Modulation::Qpsk:
    case SignalSettings::Modulation::Oqpsk:
        ring(4, 0.125);
        break;
    case SignalSettings::Modulation::Psk8:
        ring(8, 0.0625);
        break;
    case SignalSettings::Modulation::Qam16:
        for (const int i : {-3, -1, 1, 3}) {
            for (const int q : {-3, -1, 1, 3}) {
                points.push_back(Complex(i, q) / std::sqrt(10.0));
            }
        }
        break;
    }
    return points;
}

// The impulse response of the root-raised-cosine filter, with its limits where the formula divides
// by zero; t in symbols:
// h(t) = [sin(pi t (1-a)) + 4 a t cos(pi t (1+a))] / [pi t (1 - (4 a t)^2)]
std::vector<double> SignalModel::rootRaisedCosine(double a)
{
    std::vector<double> taps;
    double energy = 0.0;
    const int half = SpanSymbols * PerSymbol / 2;
    for (int n = -half; n <= half; ++n) {
        const double t = static_cast<double>(n) / PerSymbol;
        const double pole = 1.0 - std::pow(4.0 * a * t, 2);
        double h = 0.0;
        if (n == 0) {
            h = 1.0 - a + 4.0 * a / Pi;
        } else if (std::abs(pole) < 1e-9) {
            h = a / std::sqrt(2.0) *
                ((1.0 + 2.0 / Pi) * std::sin(Pi / (4.0 * a)) +
                    (1.0 - 2.0 / Pi) * std::cos(Pi / (4.0 * a)));
        } else {
            h = (std::sin(Pi * t * (1.0 - a)) + 4.0 * a * t * std::cos(Pi * t * (1.0 + a))) /
                (Pi * t * pole);
        }
        taps.push_back(h);
        energy += h * h;
    }
    for (double& tap : taps) {
        tap /= std::sqrt(energy);
    }
    return taps;
}

// A sinc with a Hamming window, of gain 1 in the middle of the band.
std::vector<double> SignalModel::bandPass(double band)
{
    const double cutOff = band / 2.0 / PerSymbol; // in turns a sample
    if (cutOff >= 0.5) {
        return {1.0};
    }
    std::vector<double> taps;
    double sum = 0.0;
    const int half = SpanSymbols * PerSymbol / 2;
    for (int n = -half; n <= half; ++n) {
        const double x = 2.0 * Pi * cutOff * n;
        const double window = 0.54 + 0.46 * std::cos(Pi * n / half);
        taps.push_back((n == 0 ? 1.0 : std::sin(x) / x) * window);
        sum += taps.back();
    }
    for (double& tap : taps) {
        tap /= sum;
    }
    return taps;
}

SignalModel::Filter::Filter(std::vector<double> taps)
    : m_taps(std::move(taps))
    , m_delay(m_taps.size())
{
}

SignalModel::Complex SignalModel::Filter::step(Complex input)
{
    m_delay[m_at] = input;
    Complex sum;
    size_t at = m_at;
    for (const double tap : m_taps) {
        sum += tap * m_delay[at];
        at = at == 0 ? m_delay.size() - 1 : at - 1;
    }
    m_at = (m_at + 1) % m_delay.size();
    return sum;
}

SignalModel::SignalModel(const SignalSettings& settings, quint32 seed)
    : m_random(seed)
{
    setSettings(settings);
}

void SignalModel::setSettings(const SignalSettings& settings)
{
    m_settings = settings;
    m_alphabet = alphabet(settings.modulation);
    m_shaping = Filter(rootRaisedCosine(settings.rolloff));
    m_band = Filter(bandPass(settings.band));
    m_matched = Filter(rootRaisedCosine(settings.rolloff));
    m_phase = 0;
    fill();
}

// Until the filters are full; a whole number of symbols, so that the next sample is at a decision.
void SignalModel::fill()
{
    for (int n = 0; n < 3 * SpanSymbols * PerSymbol; ++n) {
        nextSample();
    }
}

SignalModel::Complex SignalModel::nextSample()
{
    const bool late = m_settings.modulation == SignalSettings::Modulation::Oqpsk;
    Complex impulse;
    if (m_phase == 0) {
        m_symbol = m_alphabet[m_random() % m_alphabet.size()];
        impulse = late ? Complex(m_symbol.real(), 0.0) : m_symbol;
    } else if (late && m_phase == HalfSymbol) {
        impulse = Complex(0.0, m_symbol.imag());
    }
    m_phase = (m_phase + 1) % PerSymbol;
    const double sigma = std::sqrt(std::pow(10.0, -m_settings.snr / 10.0) / 2.0);
    const double noiseI = m_normal(m_random);
    const double noiseQ = m_normal(m_random);
    return m_matched.step(m_band.step(m_shaping.step(impulse) + sigma * Complex(noiseI, noiseQ)));
}

SignalModel::Complex SignalModel::impaired(Complex sample, double samplesPerSymbol)
{
    m_turn = std::fmod(m_turn + m_settings.offset / samplesPerSymbol, 1.0);
    const double kept = samplesPerSymbol == PerSymbol
        ? WanderKept
        : std::pow(WanderKept, PerSymbol / samplesPerSymbol);
    m_wander =
        kept * m_wander + std::sqrt(1.0 - kept * kept) * m_settings.phase * m_normal(m_random);
    const Complex turned =
        m_settings.level * sample * std::polar(1.0, 2.0 * Pi * m_turn + m_wander * Pi / 180.0);
    // half of the imbalance on each of I and Q, the whole error of the angle on Q
    const double gain = std::pow(10.0, m_settings.imbalance / 40.0);
    const double skew = m_settings.skew * Pi / 180.0;
    const Complex origin = m_settings.level / 100.0 * Complex(m_settings.dci, m_settings.dcq);
    return origin +
        Complex(turned.real() * gain,
            (turned.imag() * std::cos(skew) + turned.real() * std::sin(skew)) / gain);
}

int SignalModel::quantised(double value) const
{
    const double clipped = std::clamp(value, -m_settings.clip, m_settings.clip);
    const double steps = std::round(clipped * iqBlock::FullScale);
    return static_cast<int>(std::clamp<double>(steps, -iqBlock::FullScale, iqBlock::FullScale - 1));
}

void SignalModel::send(Complex sample, double samplesPerSymbol, QVector<int>& i, QVector<int>& q)
{
    const Complex sent = impaired(sample, samplesPerSymbol);
    i.append(quantised(sent.real()));
    q.append(quantised(sent.imag()));
}

void SignalModel::append(int count, int samplesPerSymbol, QVector<int>& i, QVector<int>& q)
{
    if (samplesPerSymbol == 1) {
        appendDecisions(count, i, q);
    } else if (m_settings.sps == PerSymbol) {
        appendEye(count, i, q);
    } else {
        appendInterpolated(count, i, q);
    }
}

void SignalModel::appendEye(int count, QVector<int>& i, QVector<int>& q)
{
    for (int k = 0; k < count; ++k) {
        send(nextSample(), PerSymbol, i, q);
    }
}

void SignalModel::appendDecisions(int count, QVector<int>& i, QVector<int>& q)
{
    const bool late = m_settings.modulation == SignalSettings::Modulation::Oqpsk;
    for (int k = 0; k < count; ++k) {
        Complex taken = nextSample();
        for (int n = 1; n < PerSymbol; ++n) {
            const Complex sample = nextSample();
            if (late && n == HalfSymbol) {
                taken = {taken.real(), sample.imag()};
            }
        }
        // the phase also wanders during the samples that are not sent
        for (int n = 1; n < PerSymbol; ++n) {
            impaired({}, PerSymbol);
        }
        send(taken, PerSymbol, i, q);
    }
}

// The interpolation needs samples in front of the first and behind the last that is sent; what
// those hold is not sent again.
void SignalModel::appendInterpolated(int count, QVector<int>& i, QVector<int>& q)
{
    const double step = PerSymbol / m_settings.sps;
    const int symbols = static_cast<int>(std::ceil(count / m_settings.sps));
    std::vector<Complex> samples(static_cast<size_t>(symbols * PerSymbol + 2 * HalfTaps));
    std::generate(samples.begin(), samples.end(), [this] { return nextSample(); });
    for (int k = 0; k < count; ++k) {
        const double at = HalfTaps + k * step;
        const int left = static_cast<int>(at);
        Complex sum;
        for (int n = left - HalfTaps + 1; n <= left + HalfTaps; ++n) {
            sum += samples.at(static_cast<size_t>(n)) * windowedSinc(at - n);
        }
        send(sum, m_settings.sps, i, q);
    }
}
