#include "LivePanel.h"

#include "app/Rooms.h"
#include "link/LinkControl.h"
#include "link/keySerial.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPixmapCache>

#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace {

constexpr qsizetype MaxBytesPerRead = 1024;
constexpr int ViewCount = 3;
constexpr int MaxDelayMs = 5;
constexpr int MaxTries = 1000;
constexpr int MaxTurns = 20; // of the event loop, for the panel to read

// The line of the main unit, the scope ports, the line for re-sent messages and the card ports.
const char* const LineNames[] = {
    "ttyO1", "ttyUSB1", "ttyUSB2", "ttyUSB3", "ttyUSB4", "ttyUSB11", "ttyUSB12", "ttyUSB13"};

int unreadBytes(int slave)
{
    int count = 0;
    ::ioctl(slave, FIONREAD, &count);
    return count;
}

} // namespace

LivePanel::LivePanel()
{
    for (size_t i = 0; i < Lines; ++i) {
        m_lines[i] = &m_devices.add(QString::fromLatin1(LineNames[i]));
        // Held open here, so that a line lives on while the panel is made anew.
        m_slaves[i] = ::open(m_lines[i]->slavePath().toLocal8Bit().constData(),
            O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    }
}

LivePanel::~LivePanel()
{
    m_window.reset();
    for (const int slave : m_slaves) {
        ::close(slave);
    }
}

void LivePanel::makeWindow()
{
    m_window.reset();
    QPixmapCache::clear();
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    QCoreApplication::processEvents();
    const auto windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        if (window->objectName() == QLatin1String("splash")) {
            window->hide();
        }
    }
}

// What one panel has got is kept in a folder, because a fault may need more than the last input.
void LivePanel::note(const QByteArray& input)
{
    static const QString Folder = qEnvironmentVariable("QN740_FUZZ_HISTORY");
    if (Folder.isEmpty()) {
        return;
    }
    if (m_inputs == 0) {
        QDir(Folder).removeRecursively();
        QDir().mkpath(Folder);
    }
    QFile file(Folder + QStringLiteral("/%1").arg(m_inputs, 4, 10, QLatin1Char('0')));
    if (file.open(QIODevice::WriteOnly)) {
        file.write(input);
    }
}

void LivePanel::take(const QByteArray& input)
{
    if (!m_window || m_inputs >= InputsPerPanel) {
        makeWindow();
        m_inputs = 0;
    }
    note(input);
    ++m_inputs;
    m_line = 0;
    m_cleared = false;
    run(input);
}

void LivePanel::proceed()
{
    // The bytes so far are a read of their own. While an editor keeps the line busy they wait.
    if (unreadBytes(m_slaves[static_cast<size_t>(m_line)]) > 0 && ++m_waits < MaxTurns) {
        return;
    }
    m_waits = 0;
    while (!atEnd()) {
        if (!m_pending.isEmpty() && upcoming() == Operator) {
            break; // The operator sees what the bytes have brought.
        }
        const char byte = static_cast<char>(next());
        if (byte == Operator) {
            operate();
            return;
        }
        add(byte);
        if (m_pending.size() >= MaxBytesPerRead) {
            break;
        }
    }
    write();
}

void LivePanel::proceedWith(char what)
{
    if (what == 'L') {
        m_line = next() % Lines;
    } else if (what != '|') {
        add(what);
    }
}

void LivePanel::add(char byte)
{
    m_pending += byte;
}

void LivePanel::write()
{
    if (m_pending.isEmpty()) {
        return;
    }
    const auto line = static_cast<size_t>(m_line);
    m_lines[line]->write(m_pending);
    // The kernel may deliver the bytes a little later.
    pollfd state{m_slaves[line], POLLIN, 0};
    ::poll(&state, 1, MaxDelayMs);
    for (int i = 0; i < MaxTries && unreadBytes(m_slaves[line]) < m_pending.size(); ++i) {
        ::sched_yield();
    }
    m_pending.clear();
}

bool LivePanel::hasUnread()
{
    if (m_window->rooms().link->serial()->unread() > 0) {
        return true;
    }
    return unreadBytes(m_slaves[0]) > 0;
}

bool LivePanel::finish()
{
    write();
    if (hasUnread()) {
        return false;
    }
    return clear();
}

// The EOT ends a message that has begun. A panel that does not answer the "PING" hangs.
bool LivePanel::clear()
{
    if (!m_cleared) {
        m_cleared = true;
        dropSent();
        m_line = 0;
        m_pending = "\x04\x02"
                    "DB,KILLBOX\x04\x02"
                    "PAX,0\x04\x02"
                    "CLEAR\x04\x02"
                    "PING\x04";
        write();
        return false;
    }
    if (!m_lines[0]->received().endsWith("\x02PONG\x04")) {
        return false;
    }
    for (int i = 0; i < ViewCount && m_window->displayActive(); ++i) {
        m_window->menus_scopes_toggle();
    }
    dropSent();
    return true;
}

void LivePanel::dropSent()
{
    for (size_t i = 0; i < Lines; ++i) {
        m_lines[i]->takeReceived();
        if (i > 0) {
            ::tcflush(m_slaves[i], TCIFLUSH);
        }
    }
}
