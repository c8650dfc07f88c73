#include "sim/line/FrameSplitter.h"

#include "wire/Message.h"

QList<FrameSplitter::Piece> FrameSplitter::take(const QByteArray& bytes)
{
    QList<Piece> pieces;
    const QString text = QString::fromLatin1(bytes);
    for (const QChar c : text) {
        if (c == wire::Stx) {
            flushUnframed(pieces);
            m_inFrame = true;
        } else if (c == wire::Eot && m_inFrame) {
            pieces.append({true, m_text});
            clear();
        } else {
            m_text += c;
            if (m_text.size() >= MaxTextLength) {
                flushUnframed(pieces);
            }
        }
    }
    return pieces;
}

std::optional<FrameSplitter::Piece> FrameSplitter::takeLoose()
{
    if (m_inFrame || m_text.isEmpty()) {
        return std::nullopt;
    }
    const Piece piece{false, m_text};
    clear();
    return piece;
}

void FrameSplitter::clear()
{
    m_text.clear();
    m_inFrame = false;
}

void FrameSplitter::flushUnframed(QList<Piece>& pieces)
{
    if (m_inFrame) {
        m_text.prepend(wire::Stx);
    }
    if (!m_text.isEmpty()) {
        pieces.append({false, m_text});
    }
    clear();
}
