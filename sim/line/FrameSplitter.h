#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

// Cuts what the panel sends into its messages.
//
// Bytes come in as they arrive, in pieces of any size; out come the bodies of framed messages (STX
// and EOT taken off) and, marked as such, what stands outside a frame, in the order of the line. A
// frame that is broken off by another STX, or grows past MaxTextLength, counts as unframed.
class FrameSplitter
{
public:
    static constexpr qsizetype MaxTextLength = 65536; // in characters; more is handed on in pieces

    struct Piece
    {
        bool framed = false;
        QString text; // framed: without STX and EOT; unframed: as it came
    };

    // In: the next bytes of the line. Out: every piece that is now whole.
    QList<Piece> take(const QByteArray& bytes);

    // Out: text outside a frame that has come so far, nothing when there is none or when a frame is
    // under way. Such text has no end of its own: ask when the line has been quiet for a while.
    std::optional<Piece> takeLoose();

    // Forgets what is not whole.
    void clear();

private:
    void flushUnframed(QList<Piece>& pieces);

    QString m_text;
    bool m_inFrame = false;
};
