#include "app/RemoteScreen.h"

#include "app/GlassPicture.h"
#include "app/RemoteWatcher.h"
#include "wire/Log.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>
#include <QWidget>

#include <algorithm>

#include <unistd.h>

namespace {

constexpr mode_t UserOnly = 0600;

bool isViewOnly()
{
    const QByteArray value = qgetenv("QN740_REMOTE_VIEW_ONLY");
    return !value.isEmpty() && value != "0";
}

// Whether what the glass shows may be another after this event of a window.
bool isChange(QEvent::Type type)
{
    switch (type) {
    case QEvent::UpdateRequest:
    case QEvent::Expose:
    case QEvent::Show:
    case QEvent::Hide:
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::ZOrderChange:
    case QEvent::WindowActivate:
        return true;
    default:
        return false;
    }
}

} // namespace

RemoteScreen::RemoteScreen(QWidget* window)
    : QObject(window)
    , m_window(window)
    , m_viewOnly(isViewOnly())
    , m_listener({"QN740_REMOTE_SOCKET", QStringLiteral("remote look"), UserOnly, logRemote})
    , m_pointer(window)
{
    connect(&m_listener, &LocalListener::connected, this, &RemoteScreen::add);
    m_due.setSingleShot(true);
    connect(&m_due, &QTimer::timeout, this, &RemoteScreen::look);
}

RemoteScreen::~RemoteScreen()
{
    for (RemoteWatcher* watcher : std::as_const(m_watchers)) {
        watcher->disconnect(this);
    }
}

qint64 RemoteScreen::unsent() const
{
    qint64 slowest = 0;
    for (const RemoteWatcher* watcher : m_watchers) {
        slowest = qMax(slowest, watcher->unsent());
    }
    return slowest;
}

void RemoteScreen::add(int socket)
{
    if (m_watchers.size() >= MaxWatchers) {
        ::close(socket);
        return;
    }
    auto* watcher = new RemoteWatcher(socket, {m_window->size(), m_viewOnly}, this);
    connect(watcher, &RemoteWatcher::waiting, this, &RemoteScreen::schedule);
    connect(watcher, &RemoteWatcher::gone, this, [this, watcher] { forget(watcher); });
    connect(watcher, &RemoteWatcher::pointed, this,
        [this, watcher](const remoteProtocol::Pointer& pointer) { point(watcher, pointer); });
    m_watchers += watcher;
}

void RemoteScreen::forget(RemoteWatcher* watcher)
{
    if (!m_watchers.removeOne(watcher)) {
        return;
    }
    watcher->disconnect(this);
    watcher->deleteLater();
    watchEvents(isAnyWaiting());
    if (m_watchers.isEmpty()) {
        m_picture.reset();
    }
    m_listener.takeLate();
    m_pointer.release(watcher);
}

// Not at once: what the finger opens may run until it is closed, and the socket's own event would
// wait for that.
void RemoteScreen::point(RemoteWatcher* watcher, const remoteProtocol::Pointer& pointer)
{
    if (m_viewOnly) {
        qCDebug(logRemote) << "a touch was ignored: the panel may only be looked at";
        return;
    }
    QMetaObject::invokeMethod(
        this,
        [this, watcher, pointer] {
            if (m_watchers.contains(watcher)) {
                m_pointer.take(watcher, pointer);
            }
        },
        Qt::QueuedConnection);
}

bool RemoteScreen::isAnyWaiting() const
{
    return std::any_of(m_watchers.cbegin(), m_watchers.cend(),
        [](const RemoteWatcher* watcher) { return watcher->isWaiting(); });
}

void RemoteScreen::watchEvents(bool wanted)
{
    if (!wanted) {
        m_due.stop();
    }
    if (wanted == m_isLooking) {
        return;
    }
    m_isLooking = wanted;
    if (wanted) {
        qApp->installEventFilter(this);
    } else {
        qApp->removeEventFilter(this);
    }
}

bool RemoteScreen::eventFilter(QObject* watched, QEvent* event)
{
    if (isChange(event->type()) && !m_due.isActive()) {
        const bool isWindow = watched->isWindowType() ||
            (watched->isWidgetType() && static_cast<QWidget*>(watched)->isWindow());
        if (isWindow) {
            schedule();
        }
    }
    return false;
}

// Looks as soon as it is time again, and not before the event that was the reason was handled.
void RemoteScreen::schedule()
{
    watchEvents(true);
    if (m_due.isActive()) {
        return;
    }
    std::chrono::nanoseconds left{};
    if (m_sinceLook.isValid()) {
        left = m_pause - std::chrono::nanoseconds(m_sinceLook.nsecsElapsed());
    }
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(left);
    m_due.start(std::max(wait, std::chrono::milliseconds(0)));
}

void RemoteScreen::look()
{
    QElapsedTimer cost;
    cost.start();
    if (m_picture == nullptr) {
        m_picture = std::make_unique<GlassPicture>(m_window);
    }
    ++m_looks;
    const QBitArray changed = m_picture->look();
    const QList<RemoteWatcher*> watchers = m_watchers; // a copy, because sending may find one gone
    for (RemoteWatcher* watcher : watchers) {
        watcher->addChanged(changed);
        watcher->update(*m_picture);
    }
    m_pause = std::max<std::chrono::nanoseconds>(
        MinPause, std::chrono::nanoseconds(cost.nsecsElapsed()) * PauseFactor);
    m_sinceLook.start();
    watchEvents(isAnyWaiting());
}
