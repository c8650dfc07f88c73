#include "app/Rooms.h"
#include "support/Part.h"
#include "tour/Tour.h"

#include "app/MainWindow.h"
#include "scopes/ScopesPage.h"
#include "support/Screen.h"

#include <QPushButton>

namespace {

constexpr int FillMs = 5000; // until the plots have their range and glow

// SM carries 1 for a constellation, 2 for an eye pattern, 3 for SDI.
void showModes(Tour& tour, const char* modes, const QString& picture)
{
    for (int demodulator = 1; demodulator <= 3; ++demodulator) {
        tour.unit(QString("SM,%1,%2").arg(demodulator).arg(QChar(modes[demodulator - 1])));
    }
    Tour::settle(FillMs);
    tour.picture(picture);
}

} // namespace

void visitScopes(Tour& tour)
{
    clickOn(part<QPushButton>(tour.window(), "scopesButton"));
    showModes(tour, "213", "scopes-mixed");
    tour.unit("SQ,2,0");
    Tour::settle();
    tour.picture("scopes-one-hidden");
    tour.unit("SQ,2,1");
    whenModal([&](QWidget* list) {
        Tour::settle();
        tour.picture("scopes-mode-list");
        clickOn(buttonWithText(list, "Cancel"));
    });
    clickOn(tour.window().rooms().scopes->modeButton(2));
    showModes(tour, "000", "scopes-off");
    showView(tour, Views::Menus);
}
