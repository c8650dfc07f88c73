#pragma once

#include <QString>

namespace bus {

/// How long the bus waits for the reply to a request that names no time of its own, in ms.
constexpr int DefaultReplyMs = 450;
/// The longest time that a request can ask for, in ms.
constexpr int MaxReplyMs = 10000;

/// Something that waits in the queue of an Rs422Bus: a request to be sent, or a marker.
///
/// Owners of a bus may also queue plain text in which a leading control character stands for a
/// marker or a timeout. Such text is turned into an entry when it is queued, by fromText(), so that
/// the bus itself only ever sees what kind of entry it has.
class QueueEntry
{
public:
    /// What the bus does with an entry whose turn has come.
    enum class Kind {
        Request,      ///< sends it and waits DefaultReplyMs for the reply
        TimedRequest, ///< sends it and waits as long as the entry says
        Marker,       ///< announces it; nothing is sent
    };

    /// Makes a request for which the bus waits DefaultReplyMs.
    static QueueEntry request(const QString& text);
    /// Makes a request with a timeout of its own.
    /// \param text the request without its framing.
    /// \param timeoutMs for the reply; bounded to 0 … MaxReplyMs.
    static QueueEntry timedRequest(const QString& text, int timeoutMs);
    /// Makes a marker.
    static QueueEntry marker(const QString& flag);

    /// Reads queued text: 0x07 in front makes the rest a marker; everything else is a request.
    /// \sa requestFromText()
    static QueueEntry fromText(const QString& text);
    /// Reads text that can only be a request: behind 0x08 stand a timeout in ms, one blank and the
    /// request. A timeout that is not a number counts as 0. Without 0x08 the text is the request.
    static QueueEntry requestFromText(const QString& text);

    /// What the bus has to do with it.
    Kind kind() const { return m_kind; }
    /// The request without its framing, or the marker's flag.
    QString text() const { return m_text; }
    /// How long the reply may take, in ms: 0 to MaxReplyMs. Means nothing for a marker.
    int timeoutMs() const { return m_timeoutMs; }

private:
    QueueEntry(Kind kind, const QString& text, int timeoutMs);

    Kind m_kind;
    QString m_text;
    int m_timeoutMs;
};

} // namespace bus
