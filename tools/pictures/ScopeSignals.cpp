#include "tools/pictures/ScopeSignals.h"

#include "scopes/Scope.h"
#include "sim/scope/ScopeBytes.h"
#include "sim/scope/SignalModel.h"
#include "wire/IqBlock.h"

namespace {

constexpr int Blocks = 50; // until the range is fitted and the plots glow
constexpr int Records = 100;
constexpr quint32 Seed = 11;

} // namespace

void scopeSignals::beginAnew(Scope& scope)
{
    QVector<double> full(iqBlock::Records, 1.0);
    scope.plotEyeConsData(full, full);
    scope.clearPlots();
}

void scopeSignals::plotRecords(Scope& scope)
{
    for (quint32 number = 0; number < Records; ++number) {
        QByteArray record = scopeBytes::sdiRecord(number).right(SdiDecoder::RecordBytes);
        scope.plotSdiData(record);
    }
}

QString scopeSignals::plotBlocks(Scope& scope, const QString& signal, int samplesPerSymbol)
{
    QString fault;
    SignalModel model(SignalSettings::fromText(signal, fault), Seed);
    if (!fault.isEmpty()) {
        return fault;
    }
    for (int block = 0; block < Blocks; ++block) {
        QVector<int> i;
        QVector<int> q;
        model.append(iqBlock::Records, samplesPerSymbol, i, q);
        IqBlockDecoder decoder;
        const QByteArray bytes = scopeBytes::block(i, q);
        decoder.take(bytes.constData(), bytes.size());
        QVector<double> decodedI = decoder.i();
        QVector<double> decodedQ = decoder.q();
        scope.plotEyeConsData(decodedI, decodedQ);
        scope.grab(); // each block is painted, as at the line's pace
    }
    return {};
}
