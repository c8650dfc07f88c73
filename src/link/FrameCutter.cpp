#include "link/FrameCutter.h"

#include "link/Limits.h"
#include "wire/Log.h"
#include "wire/Message.h"

#include <cstring>

FrameCutter::FrameCutter()
    : m_tooLong(&logLink,
          QStringLiteral("%1 characters without the end of a message were dropped")
              .arg(linkLimits::MaxMessage))
{
}

void FrameCutter::append(QByteArrayView bytes)
{
    // The memory of what was handed out or dropped is freed once per append, not once per message.
    m_buffer.remove(0, m_begin);
    m_searched -= m_begin;
    m_begin = 0;
    m_buffer += bytes;
}

// Answers where a character stands, at or behind a position; -1 when it stands nowhere.
qsizetype FrameCutter::find(QChar character, qsizetype from) const
{
    const char* const data = m_buffer.constData();
    const auto length = static_cast<std::size_t>(m_buffer.size() - from);
    const void* const found = std::memchr(data + from, character.toLatin1(), length);
    return found != nullptr ? static_cast<const char*>(found) - data : -1;
}

std::optional<QString> FrameCutter::next()
{
    if (size() == 0) {
        return std::nullopt;
    }
    if (m_buffer.at(m_begin) != wire::Stx.toLatin1()) {
        if (find(wire::Stx, m_begin + 1) < 0) {
            clear();
            return std::nullopt;
        }
        ++m_begin;
    }
    const qsizetype eot = find(wire::Eot, qMax(m_begin, m_searched));
    if (eot < 0) {
        m_searched = m_buffer.size();
        if (size() > linkLimits::MaxMessage) {
            m_tooLong.add();
            clear();
        }
        return std::nullopt;
    }
    QString message = QString::fromLatin1(m_buffer.constData() + m_begin, eot - m_begin + 1);
    m_begin = eot;
    return message;
}

void FrameCutter::clear()
{
    m_buffer.clear();
    m_begin = 0;
    m_searched = 0;
}
