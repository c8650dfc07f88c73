// The link to the main unit: messages in and out, the link mode and the small messages.
#include "app/MainWindow.h"

#include "app/Dispatcher.h"
#include "app/Identity.h"
#include "link/LinkMode.h"
#include "link/LinkModeDialog.h"
#include "link/MessageBoxes.h"
#include "link/keySerial.h"
#include "wire/Log.h"
#include "wire/Message.h"
#include "wire/Trace.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>

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
    writeToLink(linkMode::widened(message, linkMode));
}

void MainWindow::writeToLink(const QString& text)
{
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

void MainWindow::process_slave(const QStringList& fields)
{
    if (fields.isEmpty()) {
        send_mess(wire::frame(QStringLiteral("Slave,") + QString::number(linkMode)));
        return;
    }
    bool ok = false;
    const int mode = fields.value(0).toInt(&ok);
    if (!ok) {
        return;
    }
    if (linkMode::isKnown(mode)) {
        setLinkMode(mode);
        if (linkDialog != nullptr) {
            linkDialog->showMode(mode);
        }
    }
    put_settings(); // in every case: kept so
}

void MainWindow::process_config_menu()
{
    if (linkDialog != nullptr) {
        return;
    }
    linkButton->setEnabled(false);
    linkDialog = new LinkModeDialog(this);
    connect(linkDialog, &LinkModeDialog::masterToggled, this, &MainWindow::master_tog);
    connect(linkDialog, &LinkModeDialog::divToggled, this, &MainWindow::div_tog);
    connect(linkDialog, &LinkModeDialog::freqToggled, this, &MainWindow::freq_tog);
    connect(linkDialog, &LinkModeDialog::closed, this, &MainWindow::enableStatBut1);
    connect(linkDialog, &LinkModeDialog::closed, this, [this] { linkDialog = nullptr; });
    // sends the mode once, as if it had just been chosen: kept so
    linkDialog->setMode(linkMode);
    linkDialog->showIn(geometry());
}

void MainWindow::master_tog(bool on)
{
    if (on) {
        chooseLinkMode(linkMode::None);
    }
}

void MainWindow::div_tog(bool on)
{
    if (on) {
        chooseLinkMode(linkMode::Diversity);
    }
}

void MainWindow::freq_tog(bool on)
{
    if (on) {
        chooseLinkMode(linkMode::FrequencyDiversity);
    }
}

void MainWindow::setLinkMode(int mode)
{
    linkMode = mode;
    statusLabel->setText(linkMode::label(mode));
}

void MainWindow::chooseLinkMode(int mode)
{
    setLinkMode(mode);
    send_mess(wire::frame(QStringLiteral("Slave,") + QString::number(mode)));
    put_settings();
}

void MainWindow::enableStatBut1()
{
    linkButton->setEnabled(true);
}

void MainWindow::process_SB_key(const QStringList& fields)
{
    bool ok = false;
    const int milliseconds = fields.value(0).toInt(&ok);
    if (ok) {
        statusBar_->showMessage(fields.value(1), milliseconds);
    }
}

void MainWindow::process_DB_key(const QStringList& fields)
{
    if (fields.isEmpty()) {
        return;
    }
    if (fields.value(0) == QLatin1String("KILLBOX")) {
        emit killbox();
    } else {
        main_messagebox(fields.value(0), fields.value(1) == QLatin1String("1"));
    }
}

void MainWindow::main_messagebox(const QString& text, bool okButton)
{
    const QMessageBox* box = m_messageBoxes->open(text, okButton, geometry());
    connect(this, &MainWindow::killbox, box, &QMessageBox::accept);
}
