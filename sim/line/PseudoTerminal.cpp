#include "sim/line/PseudoTerminal.h"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

namespace {

constexpr int PollMs = 50;
constexpr qsizetype ReadSize = 4096;
constexpr int MaxReadsAtOnce = 16; // so that a flood of bytes does not block the event loop

// Returns a raw master side that nobody has opened yet, or -1.
int openMaster()
{
    const int master = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (master < 0) {
        return -1;
    }
    termios settings{};
    if (::grantpt(master) != 0 || ::unlockpt(master) != 0 || ::tcgetattr(master, &settings) != 0) {
        ::close(master);
        return -1;
    }
    ::cfmakeraw(&settings);
    ::tcsetattr(master, TCSANOW, &settings);
    return master;
}

// Opens and closes the panel's side and drops what lies there unread.
void touchSlave(const char* path)
{
    const int slave = ::open(path, O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (slave >= 0) {
        ::tcflush(slave, TCIFLUSH);
        ::close(slave);
    }
}

} // namespace

PseudoTerminal::PseudoTerminal(qsizetype limit, QObject* parent)
    : QObject(parent)
    , m_limit(limit)
{
    connect(&m_poll, &QTimer::timeout, this, &PseudoTerminal::poll);
    plug();
}

PseudoTerminal::~PseudoTerminal()
{
    giveBack();
}

bool PseudoTerminal::plug()
{
    if (m_master >= 0) {
        return true;
    }
    m_master = openMaster();
    if (m_master < 0) {
        return false;
    }
    m_slavePath = QString::fromLocal8Bit(::ptsname(m_master));
    // a line that was never opened looks as if it were open; one that was closed does not
    touchSlave(::ptsname(m_master));
    m_readable = std::make_unique<QSocketNotifier>(m_master, QSocketNotifier::Read);
    m_readable->setEnabled(false);
    m_writable = std::make_unique<QSocketNotifier>(m_master, QSocketNotifier::Write);
    m_writable->setEnabled(false);
    connect(m_readable.get(), &QSocketNotifier::activated, this, &PseudoTerminal::readAll);
    connect(m_writable.get(), &QSocketNotifier::activated, this, &PseudoTerminal::writePending);
    m_poll.start(PollMs);
    return true;
}

void PseudoTerminal::unplug()
{
    m_poll.stop();
    giveBack();
    m_slavePath.clear();
    m_pending.clear();
    if (m_open) {
        m_open = false;
        emit closed();
    }
}

void PseudoTerminal::giveBack()
{
    m_readable.reset();
    m_writable.reset();
    if (m_master >= 0) {
        ::close(m_master);
        m_master = -1;
    }
}

bool PseudoTerminal::write(const QByteArray& bytes)
{
    if (!m_open || bytes.size() > m_limit - m_pending.size()) {
        return false;
    }
    m_pending += bytes;
    if (!m_writable->isEnabled()) {
        writePending();
    }
    return true;
}

void PseudoTerminal::poll()
{
    pollfd state{m_master, POLLIN, 0};
    if (::poll(&state, 1, 0) < 0) {
        return;
    }
    // what was written by a panel that has gone again is still there to read
    if ((state.revents & POLLHUP) == 0 || (state.revents & POLLIN) != 0) {
        setOpen(true);
        readAll();
    }
}

void PseudoTerminal::readAll()
{
    for (int i = 0; i < MaxReadsAtOnce && m_open; ++i) {
        QByteArray bytes(ReadSize, Qt::Uninitialized);
        const ssize_t count = ::read(m_master, bytes.data(), static_cast<size_t>(bytes.size()));
        if (count > 0) {
            bytes.truncate(count);
            emit received(bytes);
        } else if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
            return;
        } else {
            setOpen(false);
        }
    }
}

void PseudoTerminal::writePending()
{
    qsizetype done = 0;
    while (done < m_pending.size()) {
        const ssize_t count = ::write(
            m_master, m_pending.constData() + done, static_cast<size_t>(m_pending.size() - done));
        if (count <= 0) {
            break;
        }
        done += count;
    }
    const bool wasHeld = m_writable->isEnabled();
    m_pending.remove(0, done);
    m_writable->setEnabled(m_open && !m_pending.isEmpty());
    if (wasHeld && m_pending.isEmpty()) {
        emit drained();
    }
}

void PseudoTerminal::setOpen(bool open)
{
    if (open == m_open) {
        return;
    }
    m_open = open;
    m_readable->setEnabled(open);
    if (open) {
        m_poll.stop();
        emit opened();
        return;
    }
    m_writable->setEnabled(false);
    m_pending.clear();
    // the next panel must not get what this one left unread, held here or already in the terminal
    ::tcflush(m_master, TCOFLUSH);
    touchSlave(::ptsname(m_master));
    m_poll.start(PollMs);
    emit closed();
}
