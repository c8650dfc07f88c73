#include "scopes/ScopeFigure.h"

#include "scopes/ConstellationMeter.h"
#include "scopes/EyeMeter.h"
#include "scopes/SdiPlot.h"

#include <cmath>

namespace {

QString unknown()
{
    return QStringLiteral("---");
}

// Without "-0.0".
QString number(double value, int decimals, const QString& unit)
{
    const double step = std::pow(10.0, -decimals);
    const double rounded = std::round(value / step) * step;
    return QString::number(std::abs(rounded) < step / 2.0 ? 0.0 : rounded, 'f', decimals) + unit;
}

QString numberIf(bool known, double value, int decimals, const QString& unit)
{
    return known ? number(value, decimals, unit) : unknown();
}

} // namespace

QVector<ScopeFigure> scopeFigures::ofConstellation(const ConstellationFigures& figures)
{
    const bool axes = figures.valid && figures.imbalanceValid;
    const QString order =
        figures.valid ? modulationOrder::name(figures.order) : QStringLiteral("unknown");
    const QString percent = QStringLiteral(" %");
    const QString decibels = QStringLiteral(" dB");
    return {{QStringLiteral("Order"), order},
        {QStringLiteral("EVM rms"), numberIf(figures.valid, figures.evmPercent, 1, percent)},
        {QStringLiteral("MER"), numberIf(figures.valid, figures.merDb, 1, decibels)},
        {QStringLiteral("I/Q offset"), numberIf(figures.valid, figures.offsetPercent, 1, percent)},
        {QStringLiteral("Imbalance"), numberIf(axes, figures.imbalanceDb, 2, decibels)},
        {QStringLiteral("Quadrature"),
            numberIf(axes, figures.quadratureDegrees, 1, QStringLiteral("°"))}};
}

QVector<ScopeFigure> scopeFigures::ofEyes(const EyeFigures& figures)
{
    const QString percent = QStringLiteral(" %");
    const QString symbols = QStringLiteral(" symbol");
    // Folded by a number that is only assumed, an eye says nothing.
    const bool i = figures.symbolPeriodFound && figures.i.valid;
    const bool q = figures.symbolPeriodFound && figures.q.valid;
    return {{QStringLiteral("I opening"), numberIf(i, figures.i.percent, 0, percent)},
        {QStringLiteral("I instant"), numberIf(i, figures.i.bestInstant, 2, symbols)},
        {QStringLiteral("Q opening"), numberIf(q, figures.q.percent, 0, percent)},
        {QStringLiteral("Q instant"), numberIf(q, figures.q.bestInstant, 2, symbols)},
        {QStringLiteral("Samples/symbol"),
            numberIf(figures.symbolPeriodFound, figures.samplesPerSymbol, 2, QString())}};
}

QVector<ScopeFigure> scopeFigures::ofRecord(const QByteArray& record)
{
    QVector<ScopeFigure> figures;
    for (int byte = 0; byte < SdiPlot::RecordBytes; ++byte) {
        const bool known = byte < record.size();
        figures += {QStringLiteral("Byte %1").arg(byte + 1),
            known ? QString::number(static_cast<uchar>(record.at(byte))) : unknown()};
    }
    return figures;
}

QVector<ScopeFigure> scopeFigures::withoutValues(QVector<ScopeFigure> figures)
{
    for (ScopeFigure& figure : figures) {
        figure.value = unknown();
    }
    return figures;
}
