// Menus and keys: each message is handed to the menus' room; what it answers is shown here.
#include "app/MainWindow.h"

#include "menus/ImmediateKey.h"
#include "menus/KeyBoard.h"
#include "menus/MainMenus.h"
#include "menus/MenuMessages.h"
#include "wire/Message.h"

#include <QPushButton>
#include <QStatusBar>

void MainWindow::process_AK_key(const QStringList& fields)
{
    menus->defineKey(fields);
}

void MainWindow::process_CM_key(const QStringList& fields)
{
    menus->copyKey(fields);
}

void MainWindow::process_CV_key(const QStringList& fields)
{
    menus->changeValue(fields);
}

void MainWindow::process_CK_key(const QStringList& fields)
{
    menus->changeState(fields);
}

void MainWindow::process_SK_key(const QStringList& fields)
{
    menus->selectMenu(fields);
}

void MainWindow::showMenu(KeyBoard* menu)
{
    views->set(&Views::menu, menu->frame);
    if (!views->displayActive()) {
        views->show(&Views::menu);
        statusBar_->showMessage(QStringLiteral("QN740 Menu - ") + menu->name);
    }
}

void MainWindow::process_CLEAR(const QStringList& /*fields*/)
{
    paxReturnsDisplays();
    menus->book.clear();
}

void MainWindow::setUpMainMenus()
{
    mainMenus = new MainMenus(menus->book, this);
    connect(mainMenus, &MainMenus::mainMenuNamed, this,
        [this](const KeyBoard* menu) { views->set(&Views::mainMenu, menu->frame); });
    connect(mainMenus, &MainMenus::paxMenuMade, this, [this](const KeyBoard* menu, int listIndex) {
        views->set(&Views::paxMenu, menu->frame);
        paxMenuListIndex = listIndex;
    });
    connect(mainMenus, &MainMenus::spanClicked, this, &MainWindow::spanClicked);
}

void MainWindow::process_MM_key(const QStringList& fields)
{
    mainMenus->copyToMainMenu(fields);
}

void MainWindow::process_MM_key_PAX(const QStringList& fields)
{
    mainMenus->copyToPaxMenu(fields);
}

void MainWindow::process_PAX(const QStringList& fields)
{
    if (fields.value(0) == QLatin1String("1")) {
        paxMenuEnable(true);
    } else if (fields.value(0) == QLatin1String("0")) {
        paxMenuEnable(false);
    }
}

void MainWindow::process_EI_key(const QStringList& fields)
{
    menus->lockChoices(fields);
}

void MainWindow::process_IK_key(const QStringList& fields)
{
    if (const auto key = ImmediateKey::fromFields(fields)) {
        connect(key.get(), &Key::response_message, this, &MainWindow::send_mess);
        key->key_button_pushed();
    }
}

void MainWindow::process_special_menu()
{
    if (QWidget* page = mainMenus->regroupMain()) {
        views->set(&Views::mainMenu, page);
        returnToMenus(page);
    }
}

void MainWindow::goto_main_menu()
{
    if (mainMenuIndex() == -1) {
        return;
    }
    returnToMenus(views->mainMenu.widget());
    send_mess(wire::frame(QStringLiteral("Main")));
}

void MainWindow::paxMenuEnable(bool on)
{
    if (on && paxMenuIndex() != -1) {
        statusBar_->hide();
        returnToMenus(views->paxMenu.widget());
        if (QGridLayout* place = paxDisplayGrid()) {
            paxTakesDisplays(place);
        }
    } else {
        statusBar_->show();
        paxReturnsDisplays();
    }
}

// The view is the menus' from now on. page: the menu page to show; nullptr: it is gone, and the
// screen stays as it is.
void MainWindow::returnToMenus(QWidget* page)
{
    if (page != nullptr) {
        views->showMenu(page);
    }
    views->setCurrent(Views::Menus);
    scopesButton->setText(QStringLiteral("Scopes"));
}

// Where the displays go on the PAX main menu; nullptr when that menu is gone. Its place in the list
// may by now be another menu's.
QGridLayout* MainWindow::paxDisplayGrid() const
{
    const KeyBoard* menu = menus->book.pages.value(paxMenuListIndex);
    const bool isIt = menu != nullptr && menu->frame == views->paxMenu.widget();
    return isIt ? menu->chan2Grid : nullptr;
}

void MainWindow::paxTakesDisplays(QGridLayout* place)
{
    paxTakesScope(place);
}

void MainWindow::paxReturnsDisplays()
{
    paxReturnsScope();
}
