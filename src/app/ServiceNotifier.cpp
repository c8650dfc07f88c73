#include "app/ServiceNotifier.h"

#include "wire/Log.h"

#include <QPaintEvent>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

// One pixel over the window's corner; it paints nothing and tells when it should.
class PaintProbe : public QWidget
{
public:
    PaintProbe(QWidget* window, std::function<void()> painted)
        : QWidget(window)
        , m_painted(std::move(painted))
    {
        setObjectName(QStringLiteral("paintProbe"));
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setGeometry(0, 0, 1, 1);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override { m_painted(); }

private:
    std::function<void()> m_painted;
};

// The socket's address as the kernel wants it: "@" stands for the zero byte of an abstract name.
QByteArray addressFromEnvironment()
{
    QByteArray address = qgetenv("NOTIFY_SOCKET");
    const bool known = address.startsWith('/') || (address.startsWith('@') && address.size() > 1);
    if (!known || static_cast<std::size_t>(address.size()) >= sizeof(sockaddr_un::sun_path)) {
        return {};
    }
    if (address.startsWith('@')) {
        address[0] = '\0';
    }
    return address;
}

// The interval in which the service manager expects a sign of life, zero when it expects none.
std::chrono::microseconds watchdogFromEnvironment()
{
    const QByteArray pid = qgetenv("WATCHDOG_PID");
    if (!pid.isEmpty() && pid != QByteArray::number(::getpid())) {
        return {}; // meant for another process
    }
    return std::chrono::microseconds(std::max(0LL, qgetenv("WATCHDOG_USEC").toLongLong()));
}

} // namespace

ServiceNotifier::ServiceNotifier(QWidget* window, Describe describe)
    : QObject(window)
    , m_address(addressFromEnvironment())
    , m_describe(std::move(describe))
{
    if (!isWanted()) {
        return;
    }
    m_probe = new PaintProbe(window, [this] { painted(); });
    const auto watchdog = watchdogFromEnvironment();
    if (watchdog.count() > 0) {
        m_timer = new QTimer(this);
        m_timer->setInterval(std::chrono::duration_cast<std::chrono::milliseconds>(watchdog / 2));
        connect(m_timer, &QTimer::timeout, m_probe, qOverload<>(&QWidget::update));
    }
}

ServiceNotifier::~ServiceNotifier()
{
    if (isWanted()) {
        send("STOPPING=1");
    }
}

std::chrono::milliseconds ServiceNotifier::interval() const
{
    return m_timer != nullptr ? m_timer->intervalAsDuration() : std::chrono::milliseconds(0);
}

void ServiceNotifier::painted()
{
    if (!m_ready) {
        m_ready = true;
        // The pages under the probe were painted before it, and what follows this painting is
        // brought to the screen first.
        QMetaObject::invokeMethod(
            this, [this] { send("READY=1" + changedStatus()); }, Qt::QueuedConnection);
        if (m_timer != nullptr) {
            m_timer->start();
        }
        return;
    }
    if (m_timer != nullptr) {
        send("WATCHDOG=1" + changedStatus());
    }
}

void ServiceNotifier::tellStatus()
{
    // Before the window was painted there is nobody who would read it.
    if (!m_ready || !isWanted()) {
        return;
    }
    const QByteArray status = changedStatus();
    if (!status.isEmpty()) {
        send(status.mid(1));
    }
}

QByteArray ServiceNotifier::changedStatus()
{
    const QByteArray status = m_describe().simplified().toUtf8();
    if (status == m_status) {
        return {};
    }
    m_status = status;
    return "\nSTATUS=" + status;
}

void ServiceNotifier::send(const QByteArray& state) const
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(
        address.sun_path, m_address.constData(), static_cast<std::size_t>(m_address.size()));
    // An abstract name ends with the length of the address, not with a zero byte.
    const auto length = static_cast<socklen_t>(
        offsetof(sockaddr_un, sun_path) + static_cast<std::size_t>(m_address.size()));
    const int socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (socket < 0 ||
        ::sendto(socket, state.constData(), static_cast<std::size_t>(state.size()), MSG_NOSIGNAL,
            reinterpret_cast<const sockaddr*>(&address), length) < 0) {
        qCDebug(logLink) << "the service manager was not told:" << std::strerror(errno);
    }
    if (socket >= 0) {
        ::close(socket);
    }
}
