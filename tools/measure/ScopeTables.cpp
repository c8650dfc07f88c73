#include "tools/measure/ScopeTables.h"

#include "scopes/ConstellationMeter.h"
#include "scopes/EyeMeter.h"
#include "sim/scope/SignalModel.h"
#include "tools/measure/OrderTrials.h"

#include <array>
#include <cmath>
#include <limits>

namespace {

constexpr double InvalidValue = std::numeric_limits<double>::quiet_NaN();
constexpr int Blocks = ConstellationMeter::MaxBlocks;

constexpr std::array<ModulationOrder, 4> Orders{
    ModulationOrder::Bpsk, ModulationOrder::Qpsk, ModulationOrder::Psk8, ModulationOrder::Qam16};

QVector<double> inFullScale(const QVector<int>& samples)
{
    QVector<double> values;
    for (const int sample : samples) {
        values.append(sample / static_cast<double>(iqBlock::FullScale));
    }
    return values;
}

SignalSettings settingsOf(const QString& text)
{
    QString fault;
    return SignalSettings::fromText(text, fault);
}

// Sixteen blocks of the simulator. The first I of a block takes the value of the second, as on the
// line.
template <class Meter>
void receive(Meter& meter, const QString& signal, int samplesPerSymbol)
{
    SignalModel model(settingsOf(signal), 5);
    for (int block = 0; block < Blocks; ++block) {
        QVector<int> i;
        QVector<int> q;
        model.append(iqBlock::Records, samplesPerSymbol, i, q);
        i[0] = i[1];
        meter.addBlock(inFullScale(i), inFullScale(q));
    }
}

ConstellationFigures constellationOf(const QString& signal)
{
    ConstellationMeter meter;
    receive(meter, signal, 1);
    return meter.figures();
}

EyeFigures eyeOf(const QString& signal)
{
    EyeMeter meter;
    receive(meter, signal, iqBlock::EyeSamplesPerSymbol);
    return meter.figures();
}

void receive(ConstellationMeter& meter, AnalyticPoints& points, int blocks)
{
    for (int block = 0; block < blocks; ++block) {
        const ReceivedPoints taken = points.take(iqBlock::Records);
        meter.addBlock({taken.x.begin(), taken.x.end()}, {taken.y.begin(), taken.y.end()});
        meter.figures();
    }
}

void addOrders(MeasurementRows& rows)
{
    constexpr double Margin = 12.0;
    constexpr int Trials = 120;
    for (const ModulationOrder order : Orders) {
        const double snr = orderTrials::threshold(order) + Margin;
        const auto counts =
            orderTrials::run({{}, AnalyticPoints::randomOf(order), snr}, order, Trials);
        const QString condition =
            QStringLiteral("%1 at %2 dB").arg(modulationOrder::name(order)).arg(snr, 0, 'f', 1);
        rows.append({QStringLiteral("Order found"), condition, 100.0, counts.percent(counts.right),
            1.0, QStringLiteral("%"), 1});
    }
}

void addWrongOrders(MeasurementRows& rows)
{
    constexpr int Trials = 4;
    constexpr double Tolerance = 0.1;
    const QString table = QStringLiteral("Order wrong");
    for (const ModulationOrder order : Orders) {
        int wrong = 0;
        int trials = 0;
        for (int snr = -6; snr <= 30; snr += 3) {
            const auto counts = orderTrials::run(
                {{}, AnalyticPoints::randomOf(order), static_cast<double>(snr)}, order, Trials);
            wrong += counts.wrong;
            trials += counts.trials;
        }
        rows.append({table, QStringLiteral("%1, -6 to 30 dB").arg(modulationOrder::name(order)),
            0.0, 100.0 * wrong / trials, Tolerance, QStringLiteral("%"), 1});
    }
    for (const double snr : {6.0, 12.0, 20.0, 30.0}) {
        for (const AnalyticPoints::Settings& signal : orderTrials::otherSignals(snr)) {
            const auto counts = orderTrials::run(signal, ModulationOrder::Unknown, Trials);
            rows.append({table, QStringLiteral("%1, %2 dB").arg(signal.name).arg(snr), 0.0,
                counts.percent(counts.wrong), Tolerance, QStringLiteral("%"), 1});
        }
    }
}

// The order is found at 25 dB, and then the signal gets as weak as asked.
ConstellationFigures afterFading(ModulationOrder order, double snr)
{
    constexpr double GoodDb = 25.0;
    ConstellationMeter meter;
    AnalyticPoints good({{}, AnalyticPoints::randomOf(order), GoodDb}, 7);
    AnalyticPoints weak({{}, AnalyticPoints::randomOf(order), snr}, 7);
    receive(meter, good, Blocks);
    receive(meter, weak, Blocks);
    return meter.figures();
}

void addRatios(MeasurementRows& rows)
{
    for (const ModulationOrder order : Orders) {
        for (const double snr : {8.0, 10.0, 12.0, 15.0, 20.0, 25.0, 30.0}) {
            const ConstellationFigures figures = afterFading(order, snr);
            const bool right = figures.valid && figures.order == order;
            const QString condition =
                QStringLiteral("%1, Es/N0 %2 dB").arg(modulationOrder::name(order)).arg(snr);
            const double evm = 100.0 * std::pow(10.0, -snr / 20.0);
            rows.append({QStringLiteral("MER"), condition, snr,
                right ? figures.merDb : InvalidValue, 0.5, QStringLiteral("dB")});
            rows.append({QStringLiteral("EVM"), condition, evm,
                right ? figures.evmPercent : InvalidValue, 0.06 * evm, QStringLiteral("%")});
        }
    }
}

void addImpairments(MeasurementRows& rows, const QString& signal, double imbalance, double skew)
{
    const QString text =
        QStringLiteral("%1:imbalance=%2:skew=%3").arg(signal).arg(imbalance).arg(skew);
    const ConstellationFigures figures = constellationOf(text);
    rows.append({QStringLiteral("Gain imbalance"), text, imbalance,
        figures.imbalanceValid ? figures.imbalanceDb : InvalidValue, 0.1, QStringLiteral("dB")});
    rows.append({QStringLiteral("Quadrature error"), text, skew,
        figures.imbalanceValid ? figures.quadratureDegrees : InvalidValue, 0.5,
        QStringLiteral("°")});
}

void addOffsets(MeasurementRows& rows, const QString& signal, double i, double q)
{
    const QString text = QStringLiteral("%1:dci=%2:dcq=%3").arg(signal).arg(i).arg(q);
    const ConstellationFigures figures = constellationOf(text);
    rows.append({QStringLiteral("I/Q offset"), text, std::hypot(i, q),
        figures.valid ? figures.offsetPercent : InvalidValue, 0.5, QStringLiteral("%")});
}

void addPeriod(MeasurementRows& rows, const QString& signal, double samples)
{
    const QString text = QStringLiteral("%1:sps=%2").arg(signal).arg(samples);
    const EyeFigures figures = eyeOf(text);
    rows.append({QStringLiteral("Samples per symbol"), text, samples,
        figures.symbolPeriodFound ? figures.samplesPerSymbol : InvalidValue, 0.01 * samples,
        QStringLiteral("samples"), 3});
}

// The noise that one component has at its innermost level, which lies `inner` times the mean
// amplitude from zero.
void addOpening(MeasurementRows& rows, const char* name, double inner, double snr)
{
    const QString text = QStringLiteral("%1:snr=%2:level=0.3").arg(QLatin1String(name)).arg(snr);
    const double deviation = std::sqrt(std::pow(10.0, -snr / 10.0) / 2.0);
    const double opening = std::max(0.0, 100.0 * (1.0 - 3.0 * deviation / inner));
    const EyeFigures figures = eyeOf(text);
    rows.append({QStringLiteral("Eye opening"), text, opening,
        figures.i.valid ? figures.i.percent : InvalidValue, 6.0, QStringLiteral("%"), 1});
    rows.append({QStringLiteral("Best instant"), text, 0.0,
        figures.i.valid ? figures.i.bestInstant : InvalidValue, 0.05, QStringLiteral("symbols"),
        3});
}

// The rows of one table follow each other.
void sortByTable(MeasurementRows& rows)
{
    std::stable_sort(rows.begin(), rows.end(),
        [](const MeasurementRow& a, const MeasurementRow& b) { return a.table < b.table; });
}

} // namespace

MeasurementRows scopeTables::rows()
{
    MeasurementRows rows;
    addOrders(rows);
    addWrongOrders(rows);
    addRatios(rows);
    for (const char* signal :
        {"qpsk:snr=20:level=0.3", "qpsk:snr=30:level=0.3", "8psk:snr=20:level=0.3",
            "8psk:snr=30:level=0.3", "16qam:snr=20:level=0.3", "16qam:snr=30:level=0.3"}) {
        addImpairments(rows, QLatin1String(signal), 0.0, 0.0);
        addImpairments(rows, QLatin1String(signal), 1.0, -3.0);
        addImpairments(rows, QLatin1String(signal), -2.0, 5.0);
    }
    for (const char* signal : {"bpsk:snr=20:level=0.3", "qpsk:snr=20:level=0.3",
             "8psk:snr=20:level=0.3", "16qam:snr=20:level=0.3"}) {
        addOffsets(rows, QLatin1String(signal), 3.0, -4.0);
        addOffsets(rows, QLatin1String(signal), 12.0, 5.0);
    }
    for (const double samples : {2.0, 2.3, 3.7, 4.0, 5.5, 8.0, 11.3, 16.0}) {
        addPeriod(rows, QStringLiteral("qpsk:snr=15:level=0.3"), samples);
    }
    for (const char* signal : {"bpsk:snr=10", "oqpsk:snr=10", "8psk:snr=10", "16qam:snr=10",
             "qpsk:snr=20:rolloff=0.25", "qpsk:snr=10:rolloff=0.5", "qpsk:snr=10:rolloff=1"}) {
        addPeriod(rows, QLatin1String(signal) + QStringLiteral(":level=0.3"), 2.5);
        addPeriod(rows, QLatin1String(signal) + QStringLiteral(":level=0.3"), 5.5);
    }
    for (const double snr : {15.0, 20.0, 30.0}) {
        addOpening(rows, "bpsk", 1.0, snr);
        addOpening(rows, "qpsk", std::sqrt(0.5), snr);
        addOpening(rows, "8psk", std::sin(3.14159265358979323846 / 8.0), snr);
        addOpening(rows, "16qam", std::sqrt(0.1), snr);
    }
    sortByTable(rows);
    return rows;
}
