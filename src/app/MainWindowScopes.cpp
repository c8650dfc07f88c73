// The demodulators' scopes and the cycle of the three views.
#include "app/MainWindow.h"

bool MainWindow::scope_available() const
{
    return false;
}

void MainWindow::setScopeLineColor(int /*color*/, int /*trace*/) {}

void MainWindow::menus_scopes_toggle() {}

void MainWindow::process_SM(const QStringList& /*fields*/) {}

void MainWindow::process_SQ(const QStringList& /*fields*/) {}

void MainWindow::process_PM(const QStringList& /*fields*/) {}
