#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <random>

// What a demodulator's scope port puts on its line, as bytes.
namespace scopeBytes {

// In: 256 samples each, -32768 to 32767. Out: the block's 1,536 bytes.
QByteArray block(const QVector<int>& i, const QVector<int>& q);

// In: the number of the record, counted from 0. Out: one SDI record as the unit sends it: a byte in
// front, the start byte and five bytes: lock and signal level as slow waves, a counter, an error
// count and a sawtooth.
QByteArray sdiRecord(quint32 number);

} // namespace scopeBytes

// Spoils a scope port's bytes on request, seeded: the same seed spoils the same bytes.
class ScopeFaults
{
public:
    enum Fault {
        BrokenIndex = 1, // every fourth block has a wrong index
        LostBytes = 2,   // one byte of 10,000 is missing
        NoiseBursts = 4, // now and then some hundred random bytes come in between
        Silence = 8      // nothing at all for two seconds of every six
    };
    static constexpr qsizetype LossPeriod = 10000;

    // faults: any of the above, added up.
    explicit ScopeFaults(int faults = 0, quint32 seed = 1);

    // In: what the port would send next, a block or a record; the time in ms since it began. Out:
    // what it sends.
    QByteArray pass(QByteArray bytes, qint64 ms);

    // In: names separated by ",": "index", "loss", "noise", "silence". Out: the faults, -1 when a
    // name is none of them.
    static int fromText(const QString& text);

private:
    int m_faults;
    std::mt19937 m_random;
    int m_blocks = 0;
    qsizetype m_sinceLoss = 0;
};
