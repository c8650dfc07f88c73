#include "sim/scope/ScopeFaults.h"

#include "wire/IqBlock.h"

#include <QtEndian>

namespace {

constexpr QLatin1String Index("scope-index");
constexpr QLatin1String Loss("scope-loss");
constexpr QLatin1String Noise("scope-noise");
constexpr QLatin1String Silence("scope-silence");

} // namespace

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
        QByteArray burst(1 + m_chance.below(MaxBurst), '\0');
        for (char& byte : burst) {
            byte = static_cast<char>(m_chance.below(256));
        }
        bytes.insert(m_chance.below(bytes.size() + 1), burst);
    }
    return bytes;
}
