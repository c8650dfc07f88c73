#pragma once

#include <QByteArray>
#include <QVector>

/// The bytes that a demodulator's scope port sends.
namespace scopeBytes {

/// \return the 1,536 bytes of an I/Q block
/// \param i, q 256 samples each, -32768 to 32767
QByteArray block(const QVector<int>& i, const QVector<int>& q);

/// \return an SDI record as the unit sends it: one byte in front, the start byte, and five data
/// bytes: lock and signal level as slow waves, a counter, an error count and a sawtooth
/// \param number of the record, counted from 0
QByteArray sdiRecord(quint32 number);

} // namespace scopeBytes
