#include "link/FrameCutter.h"

#include "link/Limits.h"
#include "wire/Log.h"
#include "wire/Message.h"

FrameCutter::FrameCutter()
    : m_tooLong(&logLink,
          QStringLiteral("%1 characters without the end of a message were dropped")
              .arg(linkLimits::MaxMessage))
{
}

void FrameCutter::append(const QString& characters)
{
    // The memory of what was handed out or dropped is freed once per append, not once per message.
    m_buffer.remove(0, m_begin);
    m_searched -= m_begin;
    m_begin = 0;
    m_buffer += characters;
}

std::optional<QString> FrameCutter::next()
{
    if (size() == 0) {
        return std::nullopt;
    }
    const qsizetype stx = m_buffer.indexOf(wire::Stx, m_begin);
    if (stx < 0) {
        clear();
        return std::nullopt;
    }
    if (stx != m_begin) {
        ++m_begin;
    }
    const qsizetype eot = m_buffer.indexOf(wire::Eot, qMax(m_begin, m_searched));
    if (eot < 0) {
        m_searched = m_buffer.size();
        if (size() > linkLimits::MaxMessage) {
            m_tooLong.add();
            clear();
        }
        return std::nullopt;
    }
    const QString message = m_buffer.mid(m_begin, eot - m_begin + 1);
    m_begin = eot;
    m_searched = eot;
    return message;
}

void FrameCutter::clear()
{
    m_buffer.clear();
    m_begin = 0;
    m_searched = 0;
}
