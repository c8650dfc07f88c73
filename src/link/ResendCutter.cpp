#include "link/ResendCutter.h"

#include "wire/Log.h"
#include "wire/Message.h"

ResendCutter::ResendCutter()
    : m_tooLong(&logLink,
          QStringLiteral(
              "of a re-sent message without an end, what is older than its last %1 characters is dropped")
              .arg(MaxUnfinished))
{
}

QStringList ResendCutter::take(const QString& characters)
{
    m_unfinished += characters;
    QStringList messages;
    qsizetype end = 0;
    while ((end = m_unfinished.indexOf(wire::Eot)) >= 0) {
        const qsizetype begin = m_unfinished.left(end).lastIndexOf(wire::Stx);
        if (begin >= 0) {
            messages += m_unfinished.mid(begin, end - begin + 1);
        }
        m_unfinished.remove(0, end + 1);
    }
    if (m_unfinished.size() > MaxUnfinished) {
        m_tooLong.add();
        m_unfinished = m_unfinished.right(MaxUnfinished);
    }
    return messages;
}
