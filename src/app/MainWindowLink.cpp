// The link to the main unit: messages in and out, the link mode and the small messages.
#include "app/MainWindow.h"

#include "app/Dispatcher.h"
#include "app/Identity.h"
#include "link/LinkMode.h"
#include "link/keySerial.h"
#include "wire/Log.h"
#include "wire/Message.h"
#include "wire/Trace.h"

#include <QLabel>
#include <QPushButton>

namespace {
// a main unit that asks and never reads must not fill the memory of the panel
constexpr qint64 MostUnsentBytes = 1 << 20;
} // namespace

void MainWindow::process_mess(const QString& message)
{
    m_dispatcher->dispatch(message);
}

void MainWindow::send_mess(const QString& message)
{
    const QString text = linkMode::widened(message, linkMode);
    qCDebug(logLink).noquote() << wire::TraceLine::now(false, text).text();
    QSerialPort* port = serial->port();
    if (port != nullptr && port->isOpen() && port->bytesToWrite() < MostUnsentBytes) {
        port->write(text.toLatin1());
    }
}

void MainWindow::process_PING(const QStringList& /*fields*/)
{
    send_mess(wire::frame(QStringLiteral("PONG")));
}

void MainWindow::process_VER(const QStringList& /*fields*/)
{
    send_mess(wire::frame(identity::version()));
}

void MainWindow::get_settings()
{
    linkMode = linkMode::stored();
    if (linkMode::isKnown(linkMode)) {
        statusLabel->setText(linkMode::label(linkMode));
    }
}

void MainWindow::put_settings()
{
    linkMode::store(linkMode);
}

void MainWindow::process_slave(const QStringList& /*fields*/) {}

void MainWindow::process_config_menu() {}

void MainWindow::master_tog(bool /*on*/) {}

void MainWindow::div_tog(bool /*on*/) {}

void MainWindow::freq_tog(bool /*on*/) {}

void MainWindow::enableStatBut1()
{
    linkButton->setEnabled(true);
}

void MainWindow::process_SB_key(const QStringList& /*fields*/) {}

void MainWindow::process_DB_key(const QStringList& /*fields*/) {}

void MainWindow::main_messagebox(const QString& /*text*/, bool /*okButton*/) {}
