#include "sim/ScopeBytes.h"

#include "scopes/IqBlock.h"

#include <QtEndian>

#include <cmath>

namespace {

constexpr QLatin1String Index("scope-index");
constexpr QLatin1String Loss("scope-loss");
constexpr QLatin1String Noise("scope-noise");
constexpr QLatin1String Silence("scope-silence");

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

ScopeFaults::ScopeFaults(const FaultTable& rates, quint32 seed)
    : m_index(rates.rate(Index))
    , m_loss(rates.rate(Loss))
    , m_noise(rates.rate(Noise))
    , m_silence(rates.rate(Silence))
    , m_chance(seed)
{
}

QList<FaultTable::Fault> ScopeFaults::names()
{
    return {{Index, QLatin1String("a block of a scope port has a wrong index")},
        {Loss, QLatin1String("a byte of a scope's block or record is lost")},
        {Noise, QLatin1String("up to 400 random bytes come in the middle of it")},
        {Silence, QLatin1String("nothing comes for two seconds in its place")}};
}

QByteArray ScopeFaults::pass(QByteArray bytes, qint64 ms)
{
    if (ms >= m_silentUntil && m_chance.happens(m_silence)) {
        m_silentUntil = ms + SilenceMs;
    }
    if (ms < m_silentUntil) {
        return {};
    }
    const bool isBlock = bytes.size() == iqBlock::Bytes;
    if (isBlock && m_chance.happens(m_index)) {
        const qsizetype record = 3 + m_chance.below(iqBlock::Records - 3);
        char* index = bytes.data() + record * iqBlock::RecordBytes;
        qToBigEndian(static_cast<quint16>(record + 1), index);
    }
    if (m_chance.happens(m_loss)) {
        bytes.remove(m_chance.below(bytes.size()), 1);
    }
    if (m_chance.happens(m_noise)) {
        QByteArray burst(1 + m_chance.below(LongestBurst), '\0');
        for (char& byte : burst) {
            byte = static_cast<char>(m_chance.below(256));
        }
        bytes.insert(m_chance.below(bytes.size() + 1), burst);
    }
    return bytes;
}
