#include "scopes/IqBlockDecoder.h"

#include <QtEndian>

#include <cstring>

namespace {

constexpr qsizetype Stride = IqBlockDecoder::RecordBytes;

// Whether the indexes 0, 1 and 2 stand here, big-endian, each in front of four bytes of samples.
bool startsBlock(const char* p)
{
    return p[0] == 0 && p[1] == 0 && p[6] == 0 && p[7] == 1 && p[12] == 0 && p[13] == 2;
}

// Returns how many records carry the index of their position, counted up to the first wrong one.
int countInOrder(const char* block)
{
    int wrong = 0;
    for (int k = 0; k < IqBlockDecoder::Records; ++k) {
        wrong |= qFromBigEndian<quint16>(block + k * Stride) ^ k;
    }
    if (wrong == 0) {
        return IqBlockDecoder::Records;
    }
    int good = 0;
    while (qFromBigEndian<quint16>(block + good * Stride) == good) {
        ++good;
    }
    return good;
}

// Makes room for a new block. When somebody still holds the last one, they keep it and a new vector
// is made: detaching would copy samples that are overwritten anyway.
double* roomFor(QVector<double>& samples)
{
    if (!samples.isDetached()) {
        samples = QVector<double>(IqBlockDecoder::Records);
    }
    return samples.data();
}

// The largest magnitude of the first `records` samples; `at` is a sample's place in its record.
int largest(const char* block, int records, qsizetype at)
{
    int max = 0;
    for (int k = 0; k < records; ++k) {
        const int sample = qFromBigEndian<qint16>(block + k * Stride + at);
        max = qMax(max, qAbs(sample));
    }
    return max;
}

} // namespace

qsizetype IqBlockDecoder::take(const char* bytes, qsizetype size)
{
    m_blockReady = false;
    qsizetype taken = 0;
    while (taken < size && !m_blockReady) {
        const qsizetype left = size - taken;
        // A whole block in one piece needs no copy.
        if (m_size == 0 && left >= BlockBytes && startsBlock(bytes + taken)) {
            decode(bytes + taken);
            taken += BlockBytes;
            continue;
        }
        const qsizetype n = qMin(left, BlockBytes - m_size);
        std::memcpy(m_buffer.data() + m_size, bytes + taken, static_cast<size_t>(n));
        m_size += n;
        taken += n;
        if (!m_synced) {
            searchStart();
        }
        if (m_synced && m_size == BlockBytes) {
            m_size = 0;
            decode(m_buffer.data());
        }
    }
    return taken;
}

void IqBlockDecoder::searchStart()
{
    qsizetype from = 0;
    while (m_size - from >= SyncBytes && !startsBlock(m_buffer.data() + from)) {
        ++from;
    }
    if (from > 0) {
        m_lostSync = true;
        m_size -= from;
        std::memmove(m_buffer.data(), m_buffer.data() + from, static_cast<size_t>(m_size));
    }
    if (m_size >= SyncBytes) {
        m_synced = true;
        m_maxAbsI = 0;
        m_maxAbsQ = 0;
    }
}

void IqBlockDecoder::decode(const char* block)
{
    m_synced = false;
    const int good = countInOrder(block);
    m_blockReady = good == Records;
    if (!m_blockReady) {
        m_maxAbsI = largest(block, good, 2);
        m_maxAbsQ = largest(block, good, 4);
        return;
    }
    double* const i = roomFor(m_i);
    double* const q = roomFor(m_q);
    int maxI = 0;
    int maxQ = 0;
    for (int k = 0; k < Records; ++k) {
        const char* record = block + k * Stride;
        const int sampleI = qFromBigEndian<qint16>(record + 2);
        const int sampleQ = qFromBigEndian<qint16>(record + 4);
        maxI = qMax(maxI, qAbs(sampleI));
        maxQ = qMax(maxQ, qAbs(sampleQ));
        i[k] = sampleI * Scale;
        q[k] = sampleQ * Scale;
    }
    m_maxAbsI = maxI;
    m_maxAbsQ = maxQ;
    // Quirk: the first I sample is not one of the signal; the second stands in for it. See "Quirks"
    // in docs/architecture.md.
    i[0] = i[1];
}
