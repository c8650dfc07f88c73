#pragma once

#include <QByteArray>
#include <QVector>

// What a demodulator's scope port puts on its line, as bytes.
namespace scopeBytes {

// In: 256 samples each, -32768 to 32767. Out: the block's 1,536 bytes.
QByteArray block(const QVector<int>& i, const QVector<int>& q);

// In: the number of the record, counted from 0. Out: one SDI record as the unit sends it: a byte in
// front, the start byte and five bytes: lock and signal level as slow waves, a counter, an error
// count and a sawtooth.
QByteArray sdiRecord(quint32 number);

} // namespace scopeBytes
