#include "wire/TerminationSignals.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

int g_writeEnd = -1; // all that the signal handler uses

void wake(int /*signal*/)
{
    const int kept = errno;
    const char byte = 1;
    if (::write(g_writeEnd, &byte, 1) < 0) {
        // the pipe is full: the signal was announced already
    }
    errno = kept;
}

constexpr std::array<int, 3> Numbers{SIGTERM, SIGINT, SIGHUP};

void endProcess(int /*signal*/)
{
    ::_exit(0);
}

struct sigaction actionOf(void (*handler)(int))
{
    struct sigaction action
    {
    };
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    ::sigemptyset(&action.sa_mask);
    return action;
}

} // namespace

TerminationSignals::TerminationSignals(QObject* parent)
    : QObject(parent)
{
    int ends[2] = {-1, -1};
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    m_readEnd = ends[0];
    g_writeEnd = ends[1];
    m_notifier = std::make_unique<QSocketNotifier>(m_readEnd, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        if (::read(m_readEnd, &byte, 1) > 0) {
            m_wasRaised = true;
            emit terminate();
        }
    });
    const struct sigaction action = actionOf(wake);
    for (std::size_t i = 0; i < Numbers.size(); ++i) {
        ::sigaction(Numbers.at(i), &action, &m_before.at(i));
    }
}

TerminationSignals::~TerminationSignals()
{
    if (m_readEnd < 0) {
        return;
    }
    for (std::size_t i = 0; i < Numbers.size(); ++i) {
        ::sigaction(Numbers.at(i), &m_before.at(i), nullptr);
    }
    m_notifier.reset();
    ::close(m_readEnd);
    ::close(g_writeEnd);
    g_writeEnd = -1;
}

void TerminationSignals::endAtOnce()
{
    const struct sigaction action = actionOf(endProcess);
    for (const int number : Numbers) {
        ::sigaction(number, &action, nullptr);
    }
}
