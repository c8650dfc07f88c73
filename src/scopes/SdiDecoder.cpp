#include "scopes/SdiDecoder.h"

#include <utility>

QByteArray SdiDecoder::read(const QByteArray& bytes)
{
    for (qsizetype next = 1; next <= bytes.size(); ++next) {
        const char byte = next < bytes.size() ? bytes.at(next) : '\0';
        if (!m_started) {
            m_started = byte == StartByte;
            continue;
        }
        m_record.append(byte);
        if (m_record.size() == RecordBytes) {
            m_started = false;
            return std::exchange(m_record, QByteArray());
        }
    }
    return {};
}
