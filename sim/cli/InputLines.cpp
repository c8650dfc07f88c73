#include "sim/cli/InputLines.h"

#include <cerrno>
#include <unistd.h>

InputLines::InputLines(int fileDescriptor, QObject* parent)
    : QObject(parent)
    , m_notifier(fileDescriptor, QSocketNotifier::Read)
{
    connect(&m_notifier, &QSocketNotifier::activated, this, &InputLines::read);
}

void InputLines::read()
{
    char buffer[4096];
    const ssize_t count = ::read(static_cast<int>(m_notifier.socket()), buffer, sizeof buffer);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
        return;
    }
    for (ssize_t i = 0; i < count; ++i) {
        take(buffer[i]);
    }
    if (count <= 0) {
        m_notifier.setEnabled(false);
        if (!m_line.isEmpty()) {
            take('\n');
        }
    }
}

void InputLines::take(char c)
{
    if (c == '\n') {
        emit line(std::exchange(m_line, QByteArray()));
    } else if (m_line.size() <= MaxLineLength) {
        m_line += c;
    }
}
