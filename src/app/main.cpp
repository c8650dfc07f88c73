#include "app/Identity.h"
#include "app/MainWindow.h"
#include "app/SetGov.h"

#include <QApplication>
#include <QTimer>

namespace {
constexpr int Width = 800;
constexpr int Height = 480;
constexpr int SecondGovernorMs = 1000;
} // namespace

int main(int argc, char** argv)
{
    // Quirk: the governor is set twice, because the board's own start-up may set another one while
    // the panel comes up. See "Quirks" in docs/architecture.md.
    SetGov governor;
    governor.changeGov();

    QApplication application(argc, argv);
    identity::apply();
    identity::applyLook(application);

    MainWindow window;
    window.resize(Width, Height);
    QTimer::singleShot(SecondGovernorMs, &governor, &SetGov::changeGov);
    window.show();
    return QApplication::exec();
}
