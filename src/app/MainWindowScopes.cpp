// The demodulators' scopes and the cycle of the three views.
#include "app/MainWindow.h"

#include "popups/PopUpKeyBoard.h"
#include "scopes/ScopesPage.h"
#include "scopes/StcMagPhasePlot.h"
#include "wire/Log.h"
#include "wire/Message.h"
#include "wire/SerialLine.h"

#include <QGridLayout>
#include <QPushButton>

namespace {

constexpr qint32 ResendBaudRate = 115200;
constexpr qsizetype LongestResent = 1024; // of a message without an end
constexpr int ModeRows = 3;
constexpr int ModeColumns = 3;
constexpr int PaxDemodulator = 3; // the combiner's

} // namespace

void MainWindow::setup_scopes()
{
    scopes = new ScopesPage(central);
    stack->addWidget(scopes);
    views->set(&Views::scopes, scopes);

    Scope* const demod1 = scopes->scope(1);
    Scope* const demod2 = scopes->scope(2);
    Scope* const demod3 = scopes->scope(3);
    connect(demod1, &Scope::rcv_eye_msg, this, &MainWindow::eye_1_msg);
    connect(demod2, &Scope::rcv_eye_msg, this, &MainWindow::eye_2_msg);
    connect(demod3, &Scope::rcv_eye_msg, this, &MainWindow::eye_3_msg);
    connect(demod1, &Scope::rcv_sdi_msg, this, &MainWindow::sdi_1_msg);
    connect(demod2, &Scope::rcv_sdi_msg, this, &MainWindow::sdi_2_msg);
    connect(demod3, &Scope::rcv_sdi_msg, this, &MainWindow::sdi_3_msg);
    connect(scopes->modeButton(1), &QPushButton::clicked, this, &MainWindow::togglePlotType_ch1);
    connect(scopes->modeButton(2), &QPushButton::clicked, this, &MainWindow::togglePlotType_ch2);
    connect(scopes->modeButton(3), &QPushButton::clicked, this, &MainWindow::togglePlotType_comb);

    m_scopeResend = new SerialLine(logScopes, this);
    connect(&m_scopeResend->port(), &QSerialPort::readyRead, this, &MainWindow::scope_resend_read);
    connect(
        &m_scopeResend->port(), &QSerialPort::errorOccurred, this, &MainWindow::scope_resend_error);
    m_scopeResend->open(
        QStringLiteral("ttyUSB4"), ResendBaudRate, SerialLine::Reopen::EveryTwoSeconds);
}

void MainWindow::paxTakesScope(QGridLayout* place)
{
    Scope* const scope = scopes != nullptr ? scopes->scope(PaxDemodulator) : nullptr;
    if (scope != nullptr) {
        scope->setDisableFixIsize(true);
        place->addWidget(scope, 0, 0);
        scope->show();
    }
}

void MainWindow::paxReturnsScope()
{
    Scope* const scope = scopes != nullptr ? scopes->scope(PaxDemodulator) : nullptr;
    QGridLayout* const home = scopes != nullptr ? scopes->scopeGrid(PaxDemodulator) : nullptr;
    if (scope == nullptr || home == nullptr) {
        return;
    }
    scope->setDisableFixIsize(false);
    if (scope->parentWidget() != home->parentWidget()) {
        home->addWidget(scope, 0, 0);
        scope->show();
    }
}

bool MainWindow::scope_available() const
{
    return scopes != nullptr && scopes->anyPortOpen();
}

void MainWindow::setScopeLineColor(int color, int trace)
{
    Scope* const scope = scopes != nullptr ? scopes->scope(trace + 1) : nullptr;
    if (scope != nullptr) {
        scope->setLineColor(color);
    }
}

void MainWindow::menus_scopes_toggle()
{
    if (views->current() == Views::Menus) {
        views->setCurrent(Views::Scopes);
        views->show(&Views::scopes);
        scopesButton->setText(
            spectrumAvailable ? QStringLiteral("Spectrum") : QStringLiteral("Menu"));
    } else if (views->current() == Views::Scopes && spectrumAvailable) {
        views->setCurrent(Views::Spectrum);
        views->show(&Views::spectrum);
        scopesButton->setText(QStringLiteral("Menu"));
    } else {
        views->setCurrent(Views::Menus);
        views->show(&Views::menu);
        scopesButton->setText(QStringLiteral("Scopes"));
    }
}

void MainWindow::togglePlotType_ch1()
{
    chooseScopeMode(1);
}

void MainWindow::togglePlotType_ch2()
{
    chooseScopeMode(2);
}

void MainWindow::togglePlotType_comb()
{
    chooseScopeMode(3);
}

void MainWindow::chooseScopeMode(int demodulator)
{
    const QPointer<MainWindow> self(this);
    PopUpKeyBoard list;
    const QString choice = list.new_pop_keyboard(
        ScopeMode::choices(), QStringLiteral("Scope Mode"), ModeRows, ModeColumns, false);
    if (self) {
        applyScopeChoice(demodulator, choice);
    }
}

void MainWindow::applyScopeChoice(int demodulator, const QString& choice)
{
    if (choice.isEmpty()) {
        return;
    }
    QString command; // stays empty, and is sent so, for a choice that the list does not have
    if (const auto mode = ScopeMode::ofChoice(choice.toInt())) {
        scopes->setMode(demodulator, *mode);
        command = mode->commandText(demodulator);
    }
    send_mess(wire::frame(command));
}

void MainWindow::process_SM(const QStringList& fields)
{
    bool isDemodulator = false;
    bool isMode = false;
    const int demodulator = fields.value(0).toInt(&isDemodulator);
    const int number = fields.value(1).toInt(&isMode);
    const auto mode = ScopeMode::ofMessage(number);
    if (isDemodulator && isMode && mode && scopes != nullptr) {
        scopes->setMode(demodulator, *mode);
    }
}

void MainWindow::process_SQ(const QStringList& fields)
{
    bool isDemodulator = false;
    bool isNumber = false;
    const int demodulator = fields.value(0).toInt(&isDemodulator);
    const int shown = fields.value(1).toInt(&isNumber);
    Scope* const scope =
        isDemodulator && isNumber && scopes != nullptr ? scopes->scope(demodulator) : nullptr;
    if (scope != nullptr) {
        scope->setPlotsShown(shown != 0);
    }
}

void MainWindow::process_PM(const QStringList& fields)
{
    bool isPhase = false;
    bool isMagnitude0 = false;
    bool isMagnitude1 = false;
    const double phase = fields.value(0).toDouble(&isPhase);
    const int magnitude0 = fields.value(1).toInt(&isMagnitude0);
    const int magnitude1 = fields.value(2).toInt(&isMagnitude1);
    if (!isPhase || !isMagnitude0 || !isMagnitude1 || scopes == nullptr) {
        return;
    }
    StcMagPhasePlot* const display = scopes->magPhasePlot();
    display->setPhaseDifHold(phase);
    display->setCh0MagHold(magnitude0);
    display->setCh1MagHold(magnitude1);
    display->updateDisplay();
}

void MainWindow::eye_1_msg(const QVector<double>& i, const QVector<double>& q)
{
    noteBlock(1, i, q);
}

void MainWindow::eye_2_msg(const QVector<double>& i, const QVector<double>& q)
{
    noteBlock(2, i, q);
}

void MainWindow::eye_3_msg(const QVector<double>& i, const QVector<double>& q)
{
    noteBlock(3, i, q);
}

void MainWindow::sdi_1_msg(const QByteArray& record)
{
    noteRecord(1, record);
}

void MainWindow::sdi_2_msg(const QByteArray& record)
{
    noteRecord(2, record);
}

void MainWindow::sdi_3_msg(const QByteArray& record)
{
    noteRecord(3, record);
}

void MainWindow::noteBlock(int demodulator, const QVector<double>& i, const QVector<double>& q)
{
    qCDebug(logScopes) << "Demod" << demodulator << "block of" << i.size() << "I and" << q.size()
                       << "Q samples";
}

void MainWindow::noteRecord(int demodulator, const QByteArray& record)
{
    qCDebug(logScopes) << "Demod" << demodulator << "SDI record" << record.toHex(' ');
}

void MainWindow::send_scope_mess(const QString& message)
{
    send_mess(message);
}

// Message by message, so that the link mode finds a command whole.
void MainWindow::scope_resend_read()
{
    m_resent += QString::fromLatin1(m_scopeResend->port().readAll());
    qsizetype end = 0;
    while ((end = m_resent.indexOf(wire::Eot)) >= 0) {
        const qsizetype begin = m_resent.left(end).lastIndexOf(wire::Stx);
        const QString message = m_resent.mid(begin, end - begin + 1);
        m_resent.remove(0, end + 1);
        if (begin >= 0) {
            send_scope_mess(message);
        }
    }
    m_resent = m_resent.right(LongestResent);
}

void MainWindow::scope_resend_error(QSerialPort::SerialPortError error)
{
    if (error != QSerialPort::NoError) {
        m_resent.clear(); // what comes after a break begins anew
    }
}
