#include "tools/pictures/PanelPictures.h"
#include "tools/pictures/Screens.h"

#include "app/MainWindow.h"
#include "app/Rooms.h"
#include "scopes/ScopesPage.h"
#include "tools/screen/Part.h"
#include "tools/screen/Screen.h"

#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

constexpr int FillMs = 5000; // until the plots have their range and glow

// SM carries 1 for a constellation, 2 for an eye pattern, 3 for SDI.
void showModes(PanelPictures& panel, const QString& modes, const QString& picture)
{
    for (int demodulator = 1; demodulator <= 3; ++demodulator) {
        panel.say(u"SM,%1,%2"_s.arg(demodulator).arg(modes.at(demodulator - 1)));
    }
    PanelPictures::settle(FillMs);
    panel.take(picture);
}

} // namespace

void takeScopes(PanelPictures& panel)
{
    clickOn(part<QPushButton>(panel.window(), "scopesButton"));
    showModes(panel, u"213"_s, u"scopes-mixed"_s);
    panel.say(u"SQ,2,0"_s);
    PanelPictures::settle();
    panel.take(u"scopes-one-hidden"_s);
    panel.say(u"SQ,2,1"_s);
    panel.whenDialogOpens([&](QWidget* list) {
        PanelPictures::settle();
        panel.take(u"scopes-mode-list"_s);
        clickOn(buttonWithText(list, u"Cancel"_s));
    });
    clickOn(panel.window().rooms().scopes->modeButton(2));
    showModes(panel, u"000"_s, u"scopes-off"_s);
    panel.showView(Views::Menus);
}
