// The main menus, the link-mode window and the message boxes.
#include "support/Part.h"
#include "tour/Tour.h"

#include "app/MainWindow.h"
#include "support/Screen.h"

#include <QApplication>
#include <QPushButton>
#include <QRadioButton>

namespace {

QWidget* linkWindow()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && widget->windowTitle() == "QN740 Configuration Settings") {
            return widget;
        }
    }
    return nullptr;
}

void visitLinkModes(Tour& tour)
{
    clickOn(part<QPushButton>(tour.window(), "linkButton"));
    Tour::settle();
    QWidget* dialog = linkWindow();
    if (dialog == nullptr) {
        tour.fail("no link-mode window");
        return;
    }
    const auto modes = dialog->findChildren<QRadioButton*>();
    for (const int mode : {1, 2, 0}) {
        clickOn(modes.value(mode));
        Tour::settle();
        tour.picture(QString("link-mode-%1").arg(mode));
    }
    tour.pressButton(dialog, "Close");
    Tour::settle();
}

} // namespace

void visitMainMenus(Tour& tour)
{
    clickOn(part<QPushButton>(tour.window(), "mainMenuButton"));
    Tour::settle();
    tour.picture("main-menu");
    visitLinkModes(tour);
    tour.unit("DB,Antenna 2: no reference signal");
    Tour::settle();
    tour.picture("message");
    tour.unit("DB,KILLBOX");
    tour.unit("DB,The set-up FLIGHT_1 was stored.,1");
    Tour::settle();
    tour.picture("message-ok");
    tour.unit("DB,KILLBOX");
    tour.unit("SM,3,1");
    tour.unit("PAX,1");
    constexpr int FillMs = 2500;
    Tour::settle(FillMs);
    tour.picture("pax-menu");
    tour.unit("PAX,0");
    tour.unit("SM,3,0");
    Tour::settle();
}
