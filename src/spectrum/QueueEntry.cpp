#include "spectrum/QueueEntry.h"

namespace bus {

namespace {
constexpr QChar MarkerSign{0x07};
constexpr QChar TimeoutSign{0x08};
} // namespace

QueueEntry::QueueEntry(Kind kind, const QString& text, int timeoutMs)
    : m_kind(kind)
    , m_text(text)
    , m_timeoutMs(timeoutMs)
{
}

QueueEntry QueueEntry::request(const QString& text)
{
    return {Kind::Request, text, DefaultReplyMs};
}

QueueEntry QueueEntry::timedRequest(const QString& text, int timeoutMs)
{
    return {Kind::TimedRequest, text, qBound(0, timeoutMs, MaxReplyMs)};
}

QueueEntry QueueEntry::marker(const QString& flag)
{
    return {Kind::Marker, flag, 0};
}

QueueEntry QueueEntry::fromText(const QString& text)
{
    return text.startsWith(MarkerSign) ? marker(text.mid(1)) : requestFromText(text);
}

QueueEntry QueueEntry::requestFromText(const QString& text)
{
    if (!text.startsWith(TimeoutSign)) {
        return request(text);
    }
    constexpr QChar Blank{0x20};
    const QString rest = text.mid(1);
    return timedRequest(rest.section(Blank, 1), rest.section(Blank, 0, 0).toInt());
}

} // namespace bus
