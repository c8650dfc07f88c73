// Menus and keys: each message is handed to the menus' room; what it answers is shown here.
#include "app/MainWindow.h"

#include "menus/KeyBoard.h"
#include "menus/MenuMessages.h"

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
    menus->book.clear();
}

void MainWindow::process_MM_key(const QStringList& /*fields*/) {}

void MainWindow::process_MM_key_PAX(const QStringList& /*fields*/) {}

void MainWindow::process_PAX(const QStringList& fields)
{
    if (fields.value(0) == QLatin1String("1")) {
        paxMenuEnable(true);
    } else if (fields.value(0) == QLatin1String("0")) {
        paxMenuEnable(false);
    }
}

void MainWindow::process_EI_key(const QStringList& /*fields*/) {}

void MainWindow::process_IK_key(const QStringList& /*fields*/) {}

void MainWindow::process_special_menu() {}

void MainWindow::goto_main_menu() {}

void MainWindow::paxMenuEnable(bool /*on*/) {}
