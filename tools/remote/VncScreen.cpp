#include "tools/remote/VncScreen.h"

#include "tools/remote/NoPanelSign.h"

#include <QDeadlineTimer>
#include <QLoggingCategory>

#include <algorithm>
#include <cstdarg>

#include <arpa/inet.h>
#include <rfb/rfb.h>

Q_LOGGING_CATEGORY(logVnc, "qn740.vnc", QtWarningMsg)

namespace {

constexpr QSize FirstSize(800, 480);
constexpr int BitsPerSample = 8;
constexpr int SamplesPerPixel = 3;
constexpr int PixelBytes = 4;
constexpr int LeftButton = 1;
// How long the library waits for a viewer that has stopped in the middle of a message.
constexpr int MaxStallMs = 5000;

// What the library has to say goes to the log at debug level.
void log(const char* format, ...) // NOLINT(cert-dcl50-cpp): the library's form
{
    std::va_list values;
    va_start(values, format);
    const QString text = QString::vasprintf(format, values).trimmed();
    va_end(values);
    qCDebug(logVnc).noquote() << text;
}

// Red in the lowest byte is what the library has in mind for a screen of eight bits per colour.
quint32 redFirst(const char* blueFirst)
{
    const auto byte = [blueFirst](int at) { return quint32{static_cast<quint8>(blueFirst[at])}; };
    return byte(2) | byte(1) << 8 | byte(0) << 16;
}

} // namespace

struct VncScreen::Viewer
{
    explicit Viewer(int socket)
        : readable(socket, QSocketNotifier::Read)
    {
    }

    QSocketNotifier readable;
    QDeadlineTimer login{LoginTime};
    bool isCounted = false; // has given the password
    bool isIgnored = false; // its finger does nothing until it is lifted
};

struct VncScreen::Hooks
{
    static VncScreen& screenOf(const rfbClientRec* client)
    {
        return *static_cast<VncScreen*>(client->screen->screenData);
    }

    static rfbNewClientAction come(rfbClientPtr client)
    {
        return screenOf(client).admit(client) ? RFB_CLIENT_ACCEPT : RFB_CLIENT_REFUSE;
    }

    static void go(rfbClientPtr client) { screenOf(client).leave(client); }

    static void point(int buttons, int x, int y, rfbClientPtr client)
    {
        screenOf(client).point(client, buttons, {x, y});
    }

    static rfbBool checkPassword(rfbClientPtr client, const char* answer, int length)
    {
        const rfbBool isRight = rfbCheckPasswordByList(client, answer, length);
        if (!isRight) {
            screenOf(client).noteFailure();
        }
        return isRight;
    }
};

VncScreen::VncScreen(quint16 port, const QByteArray& password, bool viewOnly, QObject* parent)
    : QObject(parent)
    , m_password(password)
    , m_passwords{m_password.data(), nullptr}
    , m_viewOnly(viewOnly)
{
    rfbLog = log;
    rfbErr = log;
    m_screen = rfbGetScreen(nullptr, nullptr, FirstSize.width(), FirstSize.height(), BitsPerSample,
        SamplesPerPixel, PixelBytes);
    m_screen->screenData = this;
    m_screen->desktopName = "QN740";
    m_screen->alwaysShared = TRUE;
    m_screen->cursor = nullptr;
    m_screen->deferUpdateTime = 0; // updates come in a bounded rate already
    m_screen->maxClientWait = MaxStallMs;
    m_screen->authPasswdData = static_cast<void*>(m_passwords);
    m_screen->authPasswdFirstViewOnly = 1; // none of the list
    m_screen->passwordCheck = Hooks::checkPassword;
    m_screen->newClientHook = Hooks::come;
    m_screen->ptrAddEvent = Hooks::point;
    m_screen->permitFileTransfer = FALSE;
    m_screen->port = port;
    m_screen->autoPort = FALSE;
    m_screen->listenInterface = htonl(INADDR_LOOPBACK);
    m_screen->ipv6port = 0; // not there either
    m_screen->httpDir = nullptr;
    setSize(FirstSize);
    rfbInitServer(m_screen);
    if (m_screen->listenSock >= 0) {
        m_listeners.push_back(
            std::make_unique<QSocketNotifier>(m_screen->listenSock, QSocketNotifier::Read));
        connect(m_listeners.back().get(), &QSocketNotifier::activated, this, &VncScreen::pump);
    }
    m_login.setSingleShot(true);
    connect(&m_login, &QTimer::timeout, this, &VncScreen::sendSlowAway);
    m_beat.setInterval(remoteProtocol::RepeatTime);
    connect(&m_beat, &QTimer::timeout, this, &VncScreen::beat);
    m_lock.setSingleShot(true);
    m_lock.setInterval(LockTime);
    connect(&m_lock, &QTimer::timeout, this, [this] { m_failures = 0; });
}

VncScreen::~VncScreen()
{
    m_listeners.clear();
    blockSignals(true);
    rfbShutdownServer(m_screen, TRUE);
    rfbScreenCleanup(m_screen);
}

bool VncScreen::admit(_rfbClientRec* client)
{
    if (m_connected >= MaxViewers || m_lock.isActive()) {
        return false;
    }
    ++m_connected;
    auto* viewer = new Viewer(client->sock);
    client->clientData = viewer;
    client->clientGoneHook = Hooks::go;
    connect(&viewer->readable, &QSocketNotifier::activated, this, &VncScreen::pump);
    if (!m_login.isActive()) {
        m_login.start(LoginTime);
    }
    return true;
}

void VncScreen::leave(_rfbClientRec* client)
{
    --m_connected;
    auto* viewer = static_cast<Viewer*>(client->clientData);
    client->clientData = nullptr;
    viewer->readable.setEnabled(false);
    // It may be the one whose event this is.
    m_gone.emplace_back(viewer);
    QMetaObject::invokeMethod(
        this, [this] { m_gone.clear(); }, Qt::QueuedConnection);
    if (m_finger == client) {
        m_finger = nullptr;
        m_beat.stop();
        emit pointed({{remoteProtocol::Beside, remoteProtocol::Beside}, false});
    }
}

void VncScreen::point(_rfbClientRec* client, int buttons, QPoint at)
{
    const bool isDown = (buttons & LeftButton) != 0;
    const bool wasDown = m_finger == client;
    auto* viewer = static_cast<Viewer*>(client->clientData);
    if (m_viewOnly || viewer == nullptr) {
        return;
    }
    // Otherwise its next move would be a press as soon as the other finger is lifted.
    viewer->isIgnored = isDown && (viewer->isIgnored || (m_finger != nullptr && !wasDown));
    if (viewer->isIgnored || (!isDown && !wasDown) || (isDown && wasDown && at == m_fingerAt)) {
        return;
    }
    m_finger = isDown ? client : nullptr;
    m_fingerAt = at;
    if (isDown && !wasDown) {
        m_quietBeats = 0;
        m_heardBytes = rfbStatGetRcvdBytes(client);
        m_beat.start();
    } else if (!isDown) {
        m_beat.stop();
    }
    emit pointed({at, isDown});
}

void VncScreen::beat()
{
    pump(); // takes what has come from the viewer
    if (m_finger == nullptr) {
        return;
    }
    const int heardBytes = rfbStatGetRcvdBytes(m_finger);
    m_quietBeats = heardBytes == m_heardBytes ? m_quietBeats + 1 : 0;
    m_heardBytes = heardBytes;
    if (m_quietBeats >= MaxQuietBeats) {
        qCDebug(logVnc) << "a finger was lifted: its viewer has stalled";
        giveUpFinger();
        return;
    }
    emit pointed({m_fingerAt, true});
    askForAnswer();
}

// Viewers ask for the next update when they have got one, so one pixel is shown anew.
void VncScreen::askForAnswer()
{
    const QPoint at(qBound(0, m_fingerAt.x(), m_size.width() - 1),
        qBound(0, m_fingerAt.y(), m_size.height() - 1));
    rfbMarkRectAsModified(m_screen, at.x(), at.y(), at.x() + 1, at.y() + 1);
    pump();
}

// Its viewer may go on to say that it is down; that must not be a press.
void VncScreen::giveUpFinger()
{
    if (m_finger == nullptr) {
        return;
    }
    static_cast<Viewer*>(m_finger->clientData)->isIgnored = true;
    m_finger = nullptr;
    m_beat.stop();
    emit pointed({{remoteProtocol::Beside, remoteProtocol::Beside}, false});
}

void VncScreen::noteFailure()
{
    if (++m_failures >= MaxFailures) {
        qCWarning(logVnc) << "too many wrong passwords: nobody is let in for" << LockTime.count()
                          << "seconds";
        m_lock.start();
    }
}

// Lets the library handle what has come, and send what is to go.
void VncScreen::pump()
{
    rfbProcessEvents(m_screen, 0);
    countViewers();
}

void VncScreen::countViewers()
{
    int viewers = 0;
    rfbClientIteratorPtr iterator = rfbGetClientIterator(m_screen);
    while (rfbClientRec* client = rfbClientIteratorNext(iterator)) {
        auto* viewer = static_cast<Viewer*>(client->clientData);
        if (client->state != rfbClientRec::RFB_NORMAL || viewer == nullptr) {
            continue;
        }
        ++viewers;
        if (!viewer->isCounted) {
            viewer->isCounted = true;
            hold(client, !m_isCurrent);
        }
    }
    rfbReleaseClientIterator(iterator);
    if (viewers != m_viewers) {
        m_viewers = viewers;
        m_isCurrent = m_isCurrent && viewers > 0;
        emit viewersChanged(viewers);
    }
}

// The library does not even read what a viewer on hold has sent.
void VncScreen::hold(_rfbClientRec* client, bool waits)
{
    client->onHold = waits ? TRUE : FALSE;
    static_cast<Viewer*>(client->clientData)->readable.setEnabled(!waits);
}

void VncScreen::sendSlowAway()
{
    bool isAnyLeft = false;
    rfbClientIteratorPtr iterator = rfbGetClientIterator(m_screen);
    while (rfbClientRec* client = rfbClientIteratorNext(iterator)) {
        const auto* viewer = static_cast<const Viewer*>(client->clientData);
        if (client->state == rfbClientRec::RFB_NORMAL || viewer == nullptr) {
            continue;
        }
        if (viewer->login.hasExpired()) {
            rfbCloseClient(client);
        } else {
            isAnyLeft = true;
        }
    }
    rfbReleaseClientIterator(iterator);
    pump();
    if (isAnyLeft) {
        m_login.start(LoginTime);
    }
}

void VncScreen::setSize(QSize size)
{
    if (size == m_size) {
        return;
    }
    m_size = size;
    m_changed.clear();
    std::vector<quint32> pixels(static_cast<std::size_t>(size.width() * size.height()));
    rfbNewFramebuffer(m_screen, reinterpret_cast<char*>(pixels.data()), size.width(), size.height(),
        BitsPerSample, SamplesPerPixel, PixelBytes);
    m_pixels = std::move(pixels); // The memory stays where it is.
}

void VncScreen::put(const remoteProtocol::Rectangle& rectangle)
{
    const QRect place = rectangle.place & QRect(QPoint(), m_size);
    if (place != rectangle.place) {
        return;
    }
    const char* from = rectangle.pixels.constData();
    for (int y = place.top(); y <= place.bottom(); ++y) {
        quint32* to = m_pixels.data() + qsizetype{y} * m_size.width() + place.left();
        for (int x = 0; x < place.width(); ++x, from += remoteProtocol::PixelBytes) {
            to[x] = redFirst(from);
        }
    }
    m_changed += place;
}

void VncScreen::flush()
{
    for (const QRect& place : std::as_const(m_changed)) {
        rfbMarkRectAsModified(m_screen, place.left(), place.top(), place.left() + place.width(),
            place.top() + place.height());
    }
    m_changed.clear();
    m_isCurrent = true;
    rfbClientIteratorPtr iterator = rfbGetClientIterator(m_screen);
    while (rfbClientRec* client = rfbClientIteratorNext(iterator)) {
        if (client->onHold) {
            hold(client, false);
        }
    }
    rfbReleaseClientIterator(iterator);
    pump();
}

void VncScreen::showNoPanel()
{
    giveUpFinger(); // The next panel has not seen the press.
    drawNoPanelSign(m_pixels.data(), m_size);
    m_changed = {QRect(QPoint(), m_size)};
    flush();
}
