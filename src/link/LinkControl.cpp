#include "link/LinkControl.h"

#include "link/LinkMode.h"
#include "link/LinkModeDialog.h"
#include "link/LinkWatch.h"
#include "link/keySerial.h"
#include "wire/Commands.h"
#include "wire/Log.h"
#include "wire/Trace.h"

#include <QWidget>

#include <poll.h>

namespace {

// Whether the line takes bytes now. To the port a line that is full is one that has failed.
bool hasRoom(int descriptor)
{
    pollfd state{descriptor, POLLOUT, 0};
    return ::poll(&state, 1, 0) > 0 && (state.revents & POLLOUT) != 0;
}

} // namespace

LinkControl::LinkControl(QWidget* window)
    : QObject(window)
    , m_window(window)
    , m_serial(new keySerial)
    , m_watch(new LinkWatch(*m_serial, this))
    , m_unsent(&logLink,
          QStringLiteral("the main unit does not read: %1 bytes wait, a message is lost")
              .arg(MaxUnsentBytes))
{
    m_serial->setParent(this);
    connect(m_watch, &LinkWatch::changed, this, &LinkControl::healthChanged);
    connect(m_serial, &keySerial::turnEnded, this, &LinkControl::storeIfWanted);
}

void LinkControl::open(const QString& device)
{
    m_serial->check_serial();
    m_serial->open_serial(device);
}

void LinkControl::send(const QString& message)
{
    write(linkMode::widened(message, m_mode));
}

void LinkControl::write(const QString& text)
{
    qCDebug(logLink).noquote() << wire::TraceLine::now(false, text).text();
    QSerialPort* port = m_serial->port();
    if (port == nullptr || !port->isOpen()) {
        return;
    }
    if (port->bytesToWrite() >= MaxUnsentBytes) {
        m_unsent.add();
        return;
    }
    // Answers to messages may wait for the event loop, and leave together. What the operator sends
    // leaves before the event loop goes on to paint the key that was pressed.
    const bool isUrgent = port->bytesToWrite() == 0 && !m_serial->isBusy();
    port->write(text.toLatin1());
    if (isUrgent && hasRoom(port->handle())) {
        port->flush();
    }
}

void LinkControl::answerPing()
{
    m_watch->notePing();
    send(wire::message(wire::word::Pong));
}

LinkState LinkControl::health() const
{
    return m_watch->state();
}

void LinkControl::setMode(int mode)
{
    m_mode = mode;
    emit modeChanged(linkMode::label(mode));
}

void LinkControl::restoreMode()
{
    m_mode = linkMode::stored();
    if (linkMode::isKnown(m_mode)) {
        emit modeChanged(linkMode::label(m_mode));
    }
}

void LinkControl::storeMode() const
{
    linkMode::store(m_mode);
}

void LinkControl::takeModeMessage(const QStringList& fields)
{
    if (fields.isEmpty()) {
        sendMode();
        return;
    }
    bool ok = false;
    const int mode = fields.value(0).toInt(&ok);
    if (!ok) {
        return;
    }
    if (linkMode::isKnown(mode)) {
        setMode(mode);
        if (m_dialog != nullptr) {
            // Quirk: without an answer, though a radio button changes. See "Quirks" in
            // docs/architecture.md.
            m_dialog->showMode(mode);
        }
    } else {
        wire::logIgnored(logLink(), wire::word::Slave, QStringLiteral("no link mode %1").arg(mode));
    }
    // Quirk: the mode is stored again even when the number is no mode and nothing has changed. See
    // "Quirks" in docs/architecture.md.
    if (m_serial->isBusy()) {
        storeAfterTurn();
    } else {
        storeMode();
    }
}

// Flushing the file takes tens of milliseconds, and a turn may bring a hundred modes. The answers
// to what follows leave after the turn, when the mode is on the disk. A turn in which an editor is
// opened ends when that is closed, so the event loop inside it does not wait for the end.
void LinkControl::storeAfterTurn()
{
    if (!m_storeWanted) {
        m_storeWanted = true;
        QMetaObject::invokeMethod(this, &LinkControl::storeIfWanted, Qt::QueuedConnection);
    }
}

void LinkControl::storeIfWanted()
{
    if (m_storeWanted) {
        m_storeWanted = false;
        storeMode();
    }
}

void LinkControl::toggleMode(int mode, bool on)
{
    if (on) {
        setMode(mode);
        sendMode();
        storeMode();
    }
}

void LinkControl::sendMode()
{
    send(wire::message(wire::word::Slave, {QString::number(m_mode)}));
}

void LinkControl::openDialog()
{
    if (m_dialog != nullptr) {
        return;
    }
    emit dialogOpened();
    m_dialog = new LinkModeDialog(m_window);
    connectDialog();
    // Quirk: checking the button of the current mode sends and stores that mode, as if the operator
    // had just chosen it. See "Quirks" in docs/architecture.md.
    m_dialog->setMode(m_mode);
    m_dialog->showIn(m_window->geometry());
}

void LinkControl::connectDialog()
{
    connect(m_dialog, &LinkModeDialog::masterToggled, this,
        [this](bool on) { toggleMode(linkMode::None, on); });
    connect(m_dialog, &LinkModeDialog::divToggled, this,
        [this](bool on) { toggleMode(linkMode::Diversity, on); });
    connect(m_dialog, &LinkModeDialog::freqToggled, this,
        [this](bool on) { toggleMode(linkMode::FrequencyDiversity, on); });
    connect(m_dialog, &LinkModeDialog::closed, this, [this] {
        m_dialog = nullptr;
        emit dialogClosed();
    });
}
