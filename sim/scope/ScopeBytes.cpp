#include "sim/scope/ScopeBytes.h"

#include "wire/IqBlock.h"

#include <QtEndian>

#include <cmath>

namespace {

char wave(quint32 number, double period, double middle, double swing)
{
    const double value = middle + swing * std::sin(number / period);
    return static_cast<char>(static_cast<uchar>(std::lround(value)));
}

} // namespace

QByteArray scopeBytes::block(const QVector<int>& i, const QVector<int>& q)
{
    QByteArray bytes(iqBlock::Bytes, '\0');
    char* at = bytes.data();
    for (int k = 0; k < iqBlock::Records; ++k) {
        qToBigEndian(static_cast<quint16>(k), at);
        qToBigEndian(static_cast<qint16>(i.value(k)), at + 2);
        qToBigEndian(static_cast<qint16>(q.value(k)), at + 4);
        at += iqBlock::RecordBytes;
    }
    return bytes;
}

QByteArray scopeBytes::sdiRecord(quint32 number)
{
    QByteArray bytes("\x00\xff", 2);
    bytes.append(wave(number, 12.0, 200.0, 40.0));
    bytes.append(wave(number, 5.0, 128.0, 90.0));
    bytes.append(static_cast<char>(number & 0xffU));
    bytes.append(static_cast<char>((number / 16) % 2 == 0 ? 30 : 220));
    bytes.append(static_cast<char>((number * 8) & 0xffU));
    return bytes;
}
