#include "link/ResendCutter.h"

#include "wire/Message.h"

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
    m_unfinished = m_unfinished.right(MaxUnfinished);
    return messages;
}
