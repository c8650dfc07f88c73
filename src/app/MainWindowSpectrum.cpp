// The spectrum display and the messages that concern it.
#include "app/MainWindow.h"

void MainWindow::process_SF_key(const QStringList& /*fields*/) {}

void MainWindow::process_SP_key(const QStringList& /*fields*/) {}

void MainWindow::process_SH(const QStringList& /*fields*/) {}

void MainWindow::process_LC(const QStringList& /*fields*/) {}

void MainWindow::process_HM_key(const QStringList& /*fields*/) {}

void MainWindow::process_ST(const QStringList& /*fields*/) {}

void MainWindow::spanClicked() {}
