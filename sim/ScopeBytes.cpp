#include "sim/ScopeBytes.h"

#include "scopes/IqBlock.h"

#include <QStringList>
#include <QtEndian>

#include <cmath>

namespace {

constexpr int BlocksPerBrokenOne = 4;
constexpr int BlocksPerBurst = 10;
constexpr int LongestBurst = 400;
constexpr qint64 SilencePeriodMs = 6000;
constexpr qint64 SilenceMs = 2000;

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

ScopeFaults::ScopeFaults(int faults, quint32 seed)
    : m_faults(faults)
    , m_random(seed)
{
}

int ScopeFaults::fromText(const QString& text)
{
    int faults = 0;
    const QStringList names = text.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString& name : names) {
        if (name == QLatin1String("index")) {
            faults |= BrokenIndex;
        } else if (name == QLatin1String("loss")) {
            faults |= LostBytes;
        } else if (name == QLatin1String("noise")) {
            faults |= NoiseBursts;
        } else if (name == QLatin1String("silence")) {
            faults |= Silence;
        } else {
            return -1;
        }
    }
    return faults;
}

QByteArray ScopeFaults::pass(QByteArray bytes, qint64 ms)
{
    ++m_blocks;
    if ((m_faults & Silence) != 0 && ms % SilencePeriodMs >= SilencePeriodMs - SilenceMs) {
        return {};
    }
    const bool isBlock = bytes.size() == iqBlock::Bytes;
    if ((m_faults & BrokenIndex) != 0 && isBlock && m_blocks % BlocksPerBrokenOne == 0) {
        const auto record = static_cast<qsizetype>(3 + m_random() % (iqBlock::Records - 3));
        char* index = bytes.data() + record * iqBlock::RecordBytes;
        qToBigEndian(static_cast<quint16>(record + 1), index);
    }
    if ((m_faults & LostBytes) != 0) {
        m_sinceLoss += bytes.size();
        if (m_sinceLoss >= LossPeriod) {
            m_sinceLoss -= LossPeriod;
            bytes.remove(std::max(qsizetype{0}, bytes.size() - 1 - m_sinceLoss), 1);
        }
    }
    if ((m_faults & NoiseBursts) != 0 && m_blocks % BlocksPerBurst == 0) {
        QByteArray burst(1 + static_cast<qsizetype>(m_random() % LongestBurst), '\0');
        for (char& byte : burst) {
            byte = static_cast<char>(m_random());
        }
        bytes.insert(static_cast<qsizetype>(m_random()) % (bytes.size() + 1), burst);
    }
    return bytes;
}
