// Where everything ends up that comes to the panel: each slot calls the class that carries it out.
#include "app/Dispatcher.h"
#include "app/DisplayLoan.h"
#include "app/Identity.h"
#include "app/MainWindow.h"
#include "app/MenuNavigation.h"
#include "app/Rooms.h"
#include "app/StatusBar.h"
#include "link/BoxMessages.h"
#include "link/LinkControl.h"
#include "link/LinkMode.h"
#include "link/MessageBoxes.h"
#include "link/ResendLine.h"
#include "menus/MainMenus.h"
#include "menus/MenuMessages.h"
#include "scopes/ScopeMessages.h"
#include "scopes/ScopesPage.h"
#include "spectrum/SpectrumMessages.h"
#include "touch/MessageBox.h"
#include "wire/Message.h"

void MainWindow::setUpSpectrum()
{
    m_rooms->spectrum->setUp();
}

void MainWindow::get_settings()
{
    m_rooms->link->restoreMode();
}

void MainWindow::put_settings()
{
    m_rooms->link->storeMode();
}

void MainWindow::main_messagebox(const QString& text, bool okButton)
{
    m_rooms->messageBoxes->open(text, okButton, geometry());
}

bool MainWindow::scope_available() const
{
    return m_rooms->scopes->anyPortOpen();
}

void MainWindow::setScopeLineColor(int color, int trace)
{
    m_rooms->scopeMessages->setLineColor(color, trace);
}

void MainWindow::lendChart(QGridLayout* place)
{
    m_rooms->loan->lendChartTo(place);
}

void MainWindow::returnChart()
{
    m_rooms->loan->takeChartBack();
}

int MainWindow::mainMenuIndex() const
{
    return m_rooms->views->mainMenu.index();
}

int MainWindow::paxMenuIndex() const
{
    return m_rooms->views->paxMenu.index();
}

bool MainWindow::displayActive() const
{
    return m_rooms->views->displayActive();
}

void MainWindow::process_mess(const QString& message)
{
    m_dispatcher->dispatch(message);
}

void MainWindow::send_mess(const QString& message)
{
    m_rooms->link->send(message);
}

void MainWindow::process_PING(const QStringList& /*fields*/)
{
    m_rooms->link->answerPing();
}

void MainWindow::process_VER(const QStringList& /*fields*/)
{
    m_rooms->link->send(wire::frame(identity::version()));
}

void MainWindow::process_slave(const QStringList& fields)
{
    m_rooms->link->takeModeMessage(fields);
}

void MainWindow::process_SB_key(const QStringList& fields)
{
    m_statusBar->takeText(fields);
}

void MainWindow::process_DB_key(const QStringList& fields)
{
    m_rooms->boxes->take(fields);
}

void MainWindow::process_AK_key(const QStringList& fields)
{
    m_rooms->menus->defineKey(fields);
}

void MainWindow::process_SK_key(const QStringList& fields)
{
    m_rooms->menus->selectMenu(fields);
}

void MainWindow::process_CK_key(const QStringList& fields)
{
    m_rooms->menus->changeState(fields);
}

void MainWindow::process_CV_key(const QStringList& fields)
{
    m_rooms->menus->changeValue(fields);
}

void MainWindow::process_CM_key(const QStringList& fields)
{
    m_rooms->menus->copyKey(fields);
}

void MainWindow::process_MM_key(const QStringList& fields)
{
    m_rooms->navigation->mainMenus().copyToMainMenu(fields);
}

void MainWindow::process_MM_key_PAX(const QStringList& fields)
{
    m_rooms->navigation->mainMenus().copyToPaxMenu(fields);
}

void MainWindow::process_PAX(const QStringList& fields)
{
    m_rooms->navigation->takePaxMessage(fields);
}

void MainWindow::process_EI_key(const QStringList& fields)
{
    m_rooms->menus->lockChoices(fields);
}

void MainWindow::process_IK_key(const QStringList& fields)
{
    m_rooms->menus->pressImmediately(fields);
}

void MainWindow::process_CLEAR(const QStringList& /*fields*/)
{
    m_rooms->navigation->clear();
}

void MainWindow::process_SM(const QStringList& fields)
{
    m_rooms->scopeMessages->setMode(fields);
}

void MainWindow::process_SQ(const QStringList& fields)
{
    m_rooms->scopeMessages->setPlotsShown(fields);
}

void MainWindow::process_PM(const QStringList& fields)
{
    m_rooms->scopeMessages->setMagnitudesAndPhase(fields);
}

void MainWindow::process_SF_key(const QStringList& fields)
{
    m_rooms->spectrum->setFrequency(fields);
}

void MainWindow::process_SP_key(const QStringList& fields)
{
    m_rooms->spectrum->setSpan(fields);
}

void MainWindow::process_SH(const QStringList& fields)
{
    m_rooms->spectrum->setChartShown(fields);
}

void MainWindow::process_LC(const QStringList& fields)
{
    m_rooms->spectrum->setLineColor(fields);
}

void MainWindow::process_HM_key(const QStringList& fields)
{
    m_rooms->spectrum->setMarkers(fields);
}

void MainWindow::process_ST(const QStringList& fields)
{
    m_rooms->spectrum->start(fields);
}

void MainWindow::process_config_menu()
{
    m_rooms->link->openDialog();
}

void MainWindow::master_tog(bool on)
{
    m_rooms->link->toggleMode(linkMode::None, on);
}

void MainWindow::div_tog(bool on)
{
    m_rooms->link->toggleMode(linkMode::Diversity, on);
}

void MainWindow::freq_tog(bool on)
{
    m_rooms->link->toggleMode(linkMode::FrequencyDiversity, on);
}

void MainWindow::enableStatBut1()
{
    m_statusBar->setLinkingEnabled(true);
}

void MainWindow::process_special_menu()
{
    m_rooms->navigation->showRegroupedMain();
}

void MainWindow::goto_main_menu()
{
    m_rooms->navigation->showMainMenu();
}

void MainWindow::paxMenuEnable(bool on)
{
    m_rooms->navigation->enablePax(on);
}

void MainWindow::menus_scopes_toggle()
{
    m_rooms->views->showNext();
}

void MainWindow::button_pushed()
{
    MessageBox::report(QStringLiteral("A button was pushed"));
}

void MainWindow::togglePlotType_ch1()
{
    m_rooms->scopeMessages->chooseMode(1);
}

void MainWindow::togglePlotType_ch2()
{
    m_rooms->scopeMessages->chooseMode(2);
}

void MainWindow::togglePlotType_comb()
{
    m_rooms->scopeMessages->chooseMode(3);
}

void MainWindow::spanClicked()
{
    m_rooms->spectrum->chooseSpan();
}

void MainWindow::applyScopeChoice(int demodulator, const QString& choice)
{
    m_rooms->scopeMessages->applyChoice(demodulator, choice);
}

void MainWindow::eye_1_msg(const QVector<double>& i, const QVector<double>& q)
{
    m_rooms->scopeMessages->noteBlock(1, i, q);
}

void MainWindow::eye_2_msg(const QVector<double>& i, const QVector<double>& q)
{
    m_rooms->scopeMessages->noteBlock(2, i, q);
}

void MainWindow::eye_3_msg(const QVector<double>& i, const QVector<double>& q)
{
    m_rooms->scopeMessages->noteBlock(3, i, q);
}

void MainWindow::sdi_1_msg(const QByteArray& record)
{
    m_rooms->scopeMessages->noteRecord(1, record);
}

void MainWindow::sdi_2_msg(const QByteArray& record)
{
    m_rooms->scopeMessages->noteRecord(2, record);
}

void MainWindow::sdi_3_msg(const QByteArray& record)
{
    m_rooms->scopeMessages->noteRecord(3, record);
}

void MainWindow::send_scope_mess(const QString& message)
{
    m_rooms->link->send(message);
}

void MainWindow::scope_resend_read()
{
    m_rooms->resendLine->read();
}

void MainWindow::scope_resend_error(QSerialPort::SerialPortError error)
{
    m_rooms->resendLine->takeError(error);
}
