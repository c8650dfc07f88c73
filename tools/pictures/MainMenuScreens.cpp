// The main menus, the link-mode window and the message boxes.
#include "tools/pictures/PanelPictures.h"
#include "tools/pictures/Screens.h"

#include "app/MainWindow.h"
#include "tools/screen/Part.h"
#include "tools/screen/Screen.h"

#include <QApplication>
#include <QPushButton>
#include <QRadioButton>

using namespace Qt::StringLiterals;

namespace {

QWidget* linkWindow()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && widget->windowTitle() == u"QN740 Configuration Settings"_s) {
            return widget;
        }
    }
    return nullptr;
}

void takeLinkModes(PanelPictures& panel)
{
    clickOn(part<QPushButton>(panel.window(), "linkButton"));
    PanelPictures::settle();
    QWidget* dialog = linkWindow();
    if (dialog == nullptr) {
        panel.fail(u"no link-mode window"_s);
        return;
    }
    const auto modes = dialog->findChildren<QRadioButton*>();
    for (const int mode : {1, 2, 0}) {
        clickOn(modes.value(mode));
        PanelPictures::settle();
        panel.take(u"link-mode-%1"_s.arg(mode));
    }
    panel.pressButton(dialog, u"Close"_s);
    PanelPictures::settle();
}

} // namespace

void takePaxBeforeSpectrum(PanelPictures& panel)
{
    panel.say(u"AK,Demod 3,rate,Bit Rate,1,D3:RATE:,100 20000000,2,,5000000,0,1"_s);
    panel.say(u"AK,Demod 3,invert,Data Invert,0,D3:INV:,,0,,0,0,1"_s);
    panel.say(u"MS,PAX,Demod 3,rate"_s);
    panel.say(u"MS,PAX,Demod 3,invert"_s);
    panel.say(u"PAX,1"_s);
    PanelPictures::settle();
    panel.take(u"pax-menu-no-spectrum"_s);
}

void takeMainMenus(PanelPictures& panel)
{
    clickOn(part<QPushButton>(panel.window(), "mainMenuButton"));
    PanelPictures::settle();
    panel.take(u"main-menu"_s);
    takeLinkModes(panel);
    panel.say(u"DB,Antenna 2: no reference signal"_s);
    PanelPictures::settle();
    panel.take(u"message"_s);
    panel.say(u"DB,KILLBOX"_s);
    panel.say(u"DB,The set-up FLIGHT_1 was stored.,1"_s);
    PanelPictures::settle();
    panel.take(u"message-ok"_s);
    panel.withEditor(u"Tuner CH1"_s, u"freq"_s, [&](QWidget*) { panel.take(u"message-pad"_s); });
    panel.say(u"DB,KILLBOX"_s);
    panel.say(u"SM,3,1"_s);
    panel.say(u"PAX,1"_s);
    constexpr int FillMs = 2500;
    PanelPictures::settle(FillMs);
    panel.take(u"pax-menu"_s);
    panel.say(u"PAX,0"_s);
    panel.say(u"SM,3,0"_s);
    PanelPictures::settle();
}
