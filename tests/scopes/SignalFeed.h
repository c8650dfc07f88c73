#pragma once

#include "sim/scope/SignalModel.h"

#include <QTest>

// Blocks of the simulated demodulator, as the panel reads them from the line.
namespace signalFeed {

// Gives the meter so many blocks of 256 samples in parts of full scale; the first I of a block has
// the value of the second.
template <class Meter>
void feed(Meter& meter, const QString& signal, int blocks, int samplesPerSymbol, quint32 seed)
{
    QString fault;
    SignalModel model(SignalSettings::fromText(signal, fault), seed);
    QCOMPARE(fault, QString());
    for (int block = 0; block < blocks; ++block) {
        QVector<int> i;
        QVector<int> q;
        model.append(256, samplesPerSymbol, i, q);
        QVector<double> x;
        QVector<double> y;
        for (int k = 0; k < 256; ++k) {
            x.append(i.at(k) / 32768.0);
            y.append(q.at(k) / 32768.0);
        }
        x[0] = x[1];
        meter.addBlock(x, y);
    }
}

} // namespace signalFeed
