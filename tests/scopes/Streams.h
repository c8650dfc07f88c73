#pragma once

#include <QByteArray>
#include <QVector>
#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <random>

// Bytes as a demodulator's scope port sends them, and a second implementation of the receivers in
// the simplest way, one byte at a time, to compare with.
namespace streams {

inline void appendWord(QByteArray& bytes, int value)
{
    char word[2];
    qToBigEndian(static_cast<quint16>(value), word);
    bytes.append(word, 2);
}

// One block; samples -32768 to 32767, 256 each.
inline QByteArray block(const QVector<int>& i, const QVector<int>& q)
{
    QByteArray bytes;
    for (int k = 0; k < 256; ++k) {
        appendWord(bytes, k);
        appendWord(bytes, i.at(k));
        appendWord(bytes, q.at(k));
    }
    return bytes;
}

inline QByteArray randomBlock(std::mt19937& random)
{
    std::uniform_int_distribution<int> sample(-32768, 32767);
    QVector<int> i(256);
    QVector<int> q(256);
    for (int k = 0; k < 256; ++k) {
        i[k] = sample(random);
        q[k] = sample(random);
    }
    return block(i, q);
}

// Blocks with random faults: lost, changed and inserted bytes, noise, zeros.
inline QByteArray faulty(std::mt19937& random, qsizetype atLeast)
{
    QByteArray bytes;
    while (bytes.size() < atLeast) {
        QByteArray next = randomBlock(random);
        switch (random() % 8) {
        case 0:
            next.remove(
                static_cast<qsizetype>(random() % 1536), 1 + static_cast<int>(random() % 9));
            break;
        case 1:
            next[static_cast<qsizetype>(random() % 1536)] = static_cast<char>(random());
            break;
        case 2:
            next.insert(static_cast<qsizetype>(random() % 1536), static_cast<char>(random()));
            break;
        case 3:
            next.fill(0);
            next[7] = 1;
            next[13] = 2;
            break;
        case 4:
            for (char& byte : next) {
                byte = static_cast<char>(random() % 3);
            }
            break;
        case 5:
            next.truncate(static_cast<qsizetype>(random() % 1536));
            break;
        default:
            break;
        }
        bytes += next;
    }
    return bytes;
}

constexpr qsizetype FuzzBytes = 10'000'000;

// Random bytes only: of all values, of a few that look like indexes, with many start bytes.
inline QByteArray noise(std::mt19937& random, qsizetype size)
{
    QByteArray bytes(size, '\0');
    const auto kind = random() % 3;
    for (char& byte : bytes) {
        const auto value = random();
        if (kind == 1) {
            byte = static_cast<char>(value % 3);
        } else {
            byte = kind == 2 && value % 6 == 0 ? '\xff' : static_cast<char>(value >> 8);
        }
    }
    return bytes;
}

// SDI records as they are sent, each with a byte in front and the start byte.
inline QByteArray sdiStream(std::mt19937& random, int records)
{
    QByteArray bytes;
    for (int k = 0; k < records; ++k) {
        bytes.append('\0');
        bytes.append('\xff');
        for (int n = 0; n < 5; ++n) {
            bytes.append(static_cast<char>(random()));
        }
    }
    return bytes;
}

// A good stream with one byte of `period` flipped, lost or doubled.
inline QByteArray mutated(std::mt19937& random, const QByteArray& good, unsigned long period)
{
    QByteArray bytes;
    bytes.reserve(good.size() + good.size() / static_cast<qsizetype>(period) + 16);
    for (const char byte : good) {
        if (random() % period != 0) {
            bytes.append(byte);
            continue;
        }
        switch (random() % 3) {
        case 0:
            bytes.append(
                static_cast<char>(static_cast<unsigned char>(byte) ^ (1U << random() % 8)));
            break;
        case 1:
            break;
        default:
            bytes.append(2, byte);
            break;
        }
    }
    return bytes;
}

struct Blocks
{
    QVector<QVector<double>> i;
    QVector<QVector<double>> q;
    QVector<double> maxI;
    QVector<double> maxQ;

    bool operator==(const Blocks& other) const
    {
        return i == other.i && q == other.q && maxI == other.maxI && maxQ == other.maxQ;
    }
};

// The I/Q receiver, byte by byte.
class PlainReceiver
{
public:
    void take(char byte)
    {
        m_buffer.append(byte);
        while (!m_synced && m_buffer.size() >= 18) {
            if (word(0) == 0 && word(6) == 1 && word(12) == 2) {
                m_synced = true;
                m_maxI = 0.0;
                m_maxQ = 0.0;
            } else {
                m_buffer.remove(0, 1);
            }
        }
        if (m_synced && m_buffer.size() == 1536) {
            m_synced = false;
            decode();
            m_buffer.clear();
        }
    }

    Blocks blocks;

private:
    int word(qsizetype at) const { return qFromBigEndian<quint16>(m_buffer.constData() + at); }

    void decode()
    {
        QVector<double> i;
        QVector<double> q;
        for (int k = 0; k < 256; ++k) {
            if (word(k * 6) != k) {
                return;
            }
            i.append(qFromBigEndian<qint16>(m_buffer.constData() + k * 6 + 2) / 32768.0);
            q.append(qFromBigEndian<qint16>(m_buffer.constData() + k * 6 + 4) / 32768.0);
            m_maxI = std::max(m_maxI, std::abs(i.last()));
            m_maxQ = std::max(m_maxQ, std::abs(q.last()));
        }
        i[0] = i[1];
        blocks.i.append(i);
        blocks.q.append(q);
        blocks.maxI.append(m_maxI);
        blocks.maxQ.append(m_maxQ);
    }

    QByteArray m_buffer;
    double m_maxI = 0.0;
    double m_maxQ = 0.0;
    bool m_synced = false;
};

// The SDI receiver, one read.
inline void plainSdiRead(
    QByteArray bytes, bool& started, QByteArray& buffer, QVector<QByteArray>& records)
{
    while (!bytes.isEmpty()) {
        bytes.remove(0, 1);
        const char first = bytes.isEmpty() ? '\0' : bytes.at(0);
        if (!started) {
            if (first == '\xff') {
                started = true;
            }
        } else {
            buffer.append(first);
            if (buffer.size() == 5) {
                records.append(buffer);
                buffer.clear();
                started = false;
                bytes.clear();
            }
        }
    }
}

} // namespace streams
