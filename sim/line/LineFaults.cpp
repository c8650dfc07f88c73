#include "sim/line/LineFaults.h"

#include <utility>

namespace {

constexpr QLatin1String Drop("drop");
constexpr QLatin1String Double("double");
constexpr QLatin1String Noise("noise");
constexpr QLatin1String Cut("cut");
constexpr QLatin1String Junk("junk");
constexpr QLatin1String Split("split");
constexpr QLatin1String Burst("burst");

constexpr int MaxPieces = 4;
constexpr int ShortestPauseMs = 5;
constexpr int MaxPauseMs = 20;

} // namespace

LineFaults::LineFaults(const FaultTable& rates, quint32 seed)
    : m_drop(rates.rate(Drop))
    , m_double(rates.rate(Double))
    , m_noise(rates.rate(Noise))
    , m_cut(rates.rate(Cut))
    , m_junk(rates.rate(Junk))
    , m_split(rates.rate(Split))
    , m_burst(rates.rate(Burst))
    , m_chance(seed)
{
}

QList<FaultTable::Fault> LineFaults::names()
{
    return {{Drop, QLatin1String("a byte of the message is lost")},
        {Double, QLatin1String("a byte of the message comes twice")},
        {Noise, QLatin1String("up to 4 bytes of the message have other values")},
        {Cut, QLatin1String("the message comes without its end")},
        {Junk, QLatin1String("up to 16 random bytes come in front of the message")},
        {Split, QLatin1String("the message comes in pieces, some milliseconds apart")},
        {Burst,
            QLatin1String("the message waits and comes with those after it, up to 32 at once")}};
}

QList<LineFaults::Piece> LineFaults::pass(const QByteArray& frame)
{
    const QByteArray bytes = damage(frame);
    if (isHolding() || m_chance.happens(m_burst)) {
        m_held += bytes;
        m_heldFrames += 1;
        return m_heldFrames < BurstFrames ? QList<Piece>() : QList<Piece>{{release(), 0}};
    }
    return m_chance.happens(m_split) ? split(bytes) : QList<Piece>{{bytes, 0}};
}

QByteArray LineFaults::release()
{
    m_heldFrames = 0;
    return std::exchange(m_held, QByteArray());
}

QByteArray LineFaults::damage(QByteArray bytes)
{
    if (m_chance.happens(m_drop) && !bytes.isEmpty()) {
        bytes.remove(m_chance.below(bytes.size()), 1);
    }
    if (m_chance.happens(m_double) && !bytes.isEmpty()) {
        const int at = m_chance.below(bytes.size());
        bytes.insert(at, bytes.at(at));
    }
    if (m_chance.happens(m_noise) && !bytes.isEmpty()) {
        for (int left = 1 + m_chance.below(MaxNoise); left > 0; --left) {
            bytes[m_chance.below(bytes.size())] ^= static_cast<char>(1 + m_chance.below(255));
        }
    }
    if (m_chance.happens(m_cut) && bytes.size() > 1) {
        bytes.truncate(1 + m_chance.below(bytes.size() - 1));
    }
    if (m_chance.happens(m_junk)) {
        QByteArray junk(1 + m_chance.below(MaxJunk), '\0');
        for (char& byte : junk) {
            byte = static_cast<char>(m_chance.below(256));
        }
        bytes.prepend(junk);
    }
    return bytes;
}

QList<LineFaults::Piece> LineFaults::split(const QByteArray& bytes)
{
    QList<Piece> pieces;
    qsizetype at = 0;
    const int count = 2 + m_chance.below(MaxPieces - 1);
    for (int left = count; left > 1 && bytes.size() - at > 1; --left) {
        const int length = 1 + m_chance.below(bytes.size() - at - 1);
        const int pause = ShortestPauseMs + m_chance.below(MaxPauseMs - ShortestPauseMs + 1);
        pieces.append({bytes.mid(at, length), pause});
        at += length;
    }
    pieces.append({bytes.mid(at), 0});
    return pieces;
}
