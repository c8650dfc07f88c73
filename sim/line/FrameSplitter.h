#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

/// Cuts what the panel sends into messages.
///
/// Bytes come in as they arrive, in pieces of any size. Out come, in the order of the line, the
/// bodies of framed messages (without STX and EOT) and the text outside frames, marked as unframed.
/// A frame that another STX breaks off, or that grows past MaxTextLength, counts as unframed.
class FrameSplitter
{
public:
    static constexpr qsizetype MaxTextLength =
        65536; ///< in characters; longer text is handed on in pieces

    /// A message, or text outside a frame.
    struct Piece
    {
        bool framed = false; ///< whether it is a message
        QString text;        ///< of a message, without STX and EOT
    };

    /// Takes the next bytes of the line. \return every piece that is now complete
    QList<Piece> take(const QByteArray& bytes);

    /// \return the text outside a frame that has come so far; nothing when there is none or when a
    /// frame has begun. Nothing marks the end of such text: call this when the line has been quiet
    /// for a while.
    std::optional<Piece> takeLoose();

    /// Drops what is not complete.
    void clear();

private:
    void flushUnframed(QList<Piece>& pieces);

    QString m_text;
    bool m_inFrame = false;
};
