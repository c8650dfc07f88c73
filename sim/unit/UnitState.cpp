#include "sim/unit/UnitState.h"

#include "wire/Commands.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace {

constexpr double MHz = 1e6;
constexpr double MinSnr = -20.0; // dB
constexpr double MaxSnr = 100.0;
constexpr double MinBand = 0.1; // symbol rates
constexpr double MaxBand = 1000.0;
// The carrier loop follows an offset below this, in turns per symbol.
constexpr double LoopReach = 0.01;
constexpr double MaxOffset = 0.5;
constexpr int LastScopeMode = 3;

enum KeyField { Command = 4, Options = 7, Value = 8 };

bool isPositive(double value)
{
    return value > 0.0 && std::isfinite(value);
}

double bitsPerSymbol(SignalSettings::Modulation modulation)
{
    return std::log2(static_cast<double>(SignalModel::alphabet(modulation).size()));
}

// Returns the modulation in the text of a choice ("16QAM Turbo", "DQPSK"), nothing for one that the
// model does not have.
std::optional<SignalSettings::Modulation> modulationIn(const QString& text)
{
    using Modulation = SignalSettings::Modulation;
    struct Name
    {
        QLatin1String text;
        Modulation modulation{};
    };
    // a name that contains another one comes first
    static const Name Names[] = {{QLatin1String("16QAM"), Modulation::Qam16},
        {QLatin1String("8PSK"), Modulation::Psk8}, {QLatin1String("OQPSK"), Modulation::Oqpsk},
        {QLatin1String("QPSK"), Modulation::Qpsk}, {QLatin1String("BPSK"), Modulation::Bpsk}};
    for (const Name& name : Names) {
        if (text.contains(name.text, Qt::CaseInsensitive)) {
            return name.modulation;
        }
    }
    return {};
}

// Returns the numbers that a command ("D1:RATE:" or "D1 D2 D3:RATE:") addresses with this letter.
QList<int> addressed(const QString& command, QChar kind, int count)
{
    QList<int> numbers;
    const QStringList all = command.section(QLatin1Char(':'), 0, 0).split(QLatin1Char(' '));
    for (int number = 1; number <= count; ++number) {
        if (all.contains(kind + QString::number(number))) {
            numbers += number;
        }
    }
    return numbers;
}

double levelOf(double snr)
{
    return std::sqrt(1.0 + std::pow(10.0, -snr / 10.0));
}

} // namespace

UnitState::UnitState(QObject* parent)
    : QObject(parent)
{
    constexpr std::array<double, Demodulators> BitRates{5e6, 1.25e6, 10e6};
    constexpr std::array<double, Receivers> Frequencies{2250.5, 1485.5}; // MHz
    constexpr double Bandwidth = 10.0;                                   // MHz
    for (size_t i = 0; i < m_demodulators.size(); ++i) {
        Demodulator& one = m_demodulators.at(i);
        one.bitRate = BitRates.at(i);
        one.firstBitRate = one.bitRate;
        one.receiver = i == 1 ? 2 : 1;
    }
    for (size_t i = 0; i < m_tuners.size(); ++i) {
        m_tuners.at(i) = {Frequencies.at(i), Frequencies.at(i), Bandwidth};
    }
}

const UnitState::Demodulator& UnitState::at(int demodulator) const
{
    return m_demodulators.at(static_cast<size_t>(demodulator - 1));
}

const UnitState::Tuner& UnitState::tuner(int receiver) const
{
    return m_tuners.at(static_cast<size_t>(receiver - 1));
}

void UnitState::setSignal(int demodulator, const SignalSettings& settings)
{
    m_demodulators.at(static_cast<size_t>(demodulator - 1)).settings = settings;
    emit signalChanged(demodulator);
}

void UnitState::setScopeMode(int demodulator, int mode)
{
    if (mode >= 0 && mode <= LastScopeMode && mode != at(demodulator).scopeMode) {
        m_demodulators.at(static_cast<size_t>(demodulator - 1)).scopeMode = mode;
        emit scopeModeChanged(demodulator, mode);
    }
}

bool UnitState::isScopeOn() const
{
    return std::any_of(m_demodulators.begin(), m_demodulators.end(),
        [](const Demodulator& one) { return one.scopeMode != 0; });
}

void UnitState::restart()
{
    m_keys.clear();
    for (int demodulator = 1; demodulator <= Demodulators; ++demodulator) {
        Demodulator& one = m_demodulators.at(static_cast<size_t>(demodulator - 1));
        one.chosen.reset();
        one.rollOff.reset();
        emit signalChanged(demodulator);
    }
}

void UnitState::takeCommand(const QString& body)
{
    const auto behind = body.indexOf(QLatin1Char(':'), body.indexOf(QLatin1Char(':')) + 1) + 1;
    set(body.left(behind), body.mid(behind), false);
}

void UnitState::takeMessage(const QString& body)
{
    QStringList fields = body.split(QLatin1Char(','));
    const QString word = fields.takeFirst();
    if (word == wire::word::AK) {
        takeKey(fields);
    } else if (word == wire::word::CV) {
        const KeyOf key = m_keys.value(fields.value(0) + QLatin1Char(',') + fields.value(1));
        // a choice is confirmed by the label of its key
        if (key.options.isEmpty()) {
            set(key.command, fields.value(2), false);
        }
    } else if (word == wire::word::Clear) {
        restart();
    } else if (word == wire::word::SM) {
        bool isMode = false;
        const int mode = fields.value(1).toInt(&isMode);
        const int demodulator = fields.value(0).toInt();
        if (isMode && demodulator >= 1 && demodulator <= Demodulators) {
            setScopeMode(demodulator, mode);
        }
    }
}

// The first definition of a key carries the unit's initial value; later ones only new labels.
void UnitState::takeKey(const QStringList& fields)
{
    const QString key = fields.value(0) + QLatin1Char(',') + fields.value(1);
    if (!wire::hasEnoughFields(wire::word::AK, fields) || m_keys.contains(key)) {
        return;
    }
    m_keys.insert(key, {fields.at(Command), fields.at(Options)});
    set(fields.at(Command), fields.at(Value), true);
}

void UnitState::set(const QString& command, const QString& value, bool isFirst)
{
    const QList<int> demodulators = addressed(command, QLatin1Char('D'), Demodulators);
    for (const int demodulator : demodulators) {
        setDemodulator(demodulator, command, value, isFirst);
    }
    const QList<int> receivers = addressed(command, QLatin1Char('R'), Receivers);
    for (const int receiver : receivers) {
        setTuner(receiver, command, value, isFirst);
    }
}

void UnitState::setDemodulator(
    int demodulator, const QString& command, const QString& value, bool first)
{
    Demodulator& one = m_demodulators.at(static_cast<size_t>(demodulator - 1));
    const QString word = command.section(QLatin1Char(':'), 1, 1);
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    const bool isAbove0 = isNumber && isPositive(number);
    if (word == QLatin1String("DSDM")) {
        bool isMode = false;
        const int mode = value.toInt(&isMode);
        setScopeMode(demodulator, isMode ? mode : -1);
        return;
    }
    if (word == QLatin1String("RATE") && isAbove0) {
        one.bitRate = number;
        one.firstBitRate = first ? number : one.firstBitRate;
    } else if (word == QLatin1String("ROLL") && isAbove0 && !first) {
        one.rollOff = std::clamp(number, 0.05, 1.0);
    } else if (word == QLatin1String("MODE") && !first) {
        const auto named =
            modulationIn(choice(QStringLiteral("D%1:MODE:").arg(demodulator), value));
        one.chosen = named ? named : one.chosen;
    } else {
        return;
    }
    emit signalChanged(demodulator);
}

void UnitState::setTuner(int receiver, const QString& command, const QString& value, bool first)
{
    Tuner& one = m_tuners.at(static_cast<size_t>(receiver - 1));
    const QString word = command.section(QLatin1Char(':'), 1, 1);
    const double number = value.toDouble();
    if (word == QLatin1String("FREQ") && isPositive(number)) {
        const bool changed = number != one.frequency;
        one.frequency = number;
        one.transmitter = first ? number : one.transmitter;
        tunerChanged(receiver, changed && !first);
    } else if (word == QLatin1String("IFBW")) {
        const QString text = choice(QStringLiteral("R%1:IFBW:").arg(receiver), value);
        const double width = text.section(QLatin1Char(' '), 0, 0).toDouble();
        one.bandwidth = isPositive(width) ? width : one.bandwidth;
        tunerChanged(receiver, false);
    }
}

void UnitState::tunerChanged(int receiver, bool tellFrequency)
{
    for (int demodulator = 1; demodulator <= Demodulators; ++demodulator) {
        if (at(demodulator).receiver != receiver) {
            continue;
        }
        emit signalChanged(demodulator);
        if (tellFrequency) {
            emit tells(QStringLiteral("SF,%1,%2")
                           .arg(demodulator - 1)
                           .arg(QString::number(frequency(receiver), 'g', 12)));
        }
    }
}

// Returns the text of the choice with this value, from the key with the command; empty when there
// is none.
QString UnitState::choice(const QString& command, const QString& value) const
{
    for (const KeyOf& key : m_keys) {
        if (key.command != command) {
            continue;
        }
        const QStringList items = key.options.split(QLatin1Char(':'), Qt::SkipEmptyParts);
        for (const QString& item : items) {
            if (item.section(QLatin1Char(' '), 0, 0) == value) {
                return item.section(QLatin1Char(' '), 1);
            }
        }
    }
    return {};
}

SignalSettings::Modulation UnitState::modulation(const Demodulator& one) const
{
    return one.chosen.value_or(one.settings.modulation);
}

double UnitState::symbolRate(const Demodulator& one, double bitRate) const
{
    return bitRate / bitsPerSymbol(modulation(one));
}

double UnitState::symbolRate(int demodulator) const
{
    return symbolRate(at(demodulator), at(demodulator).bitRate);
}

// Returns the distance to the nearer transmitter.
double UnitState::shiftOf(const Tuner& one) const
{
    double nearest = m_tuners.front().transmitter - one.frequency;
    for (const Tuner& other : m_tuners) {
        const double shift = other.transmitter - one.frequency;
        nearest = std::abs(shift) < std::abs(nearest) ? shift : nearest;
    }
    return nearest;
}

double UnitState::shift(int demodulator) const
{
    return shiftOf(tuner(at(demodulator).receiver));
}

bool UnitState::isReceiving(int receiver) const
{
    const Tuner& one = tuner(receiver);
    return std::abs(shiftOf(one)) <= one.bandwidth / 2.0;
}

// The transmitter's power stays the same, so that at a higher rate a symbol has less energy over
// the noise. The amplitude stays that of the default signal, as after a gain control.
SignalSettings UnitState::signal(int demodulator) const
{
    const Demodulator& one = at(demodulator);
    SignalSettings settings = one.settings;
    settings.modulation = modulation(one);
    settings.rolloff = one.rollOff.value_or(settings.rolloff);
    const double rate = symbolRate(demodulator);
    const double firstRate = one.firstBitRate /
        bitsPerSymbol(one.settings.modulation); // the rate that --signal is given for
    settings.snr -= 10.0 * std::log10(rate / firstRate);
    if (!isReceiving(one.receiver)) {
        settings.snr = MinSnr;
    }
    settings.snr = std::clamp(settings.snr, MinSnr, MaxSnr);
    settings.level *= levelOf(one.settings.snr) / levelOf(settings.snr);
    const double off = shift(demodulator) * MHz / rate;
    if (std::abs(off) > LoopReach) {
        settings.offset = std::clamp(settings.offset + off, -MaxOffset, MaxOffset);
    }
    settings.band = std::min(
        settings.band, std::clamp(tuner(one.receiver).bandwidth * MHz / rate, MinBand, MaxBand));
    return settings;
}
