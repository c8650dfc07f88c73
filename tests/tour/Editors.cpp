// The modal editors, opened by the keys of the default menus.
#include "support/Screen.h"
#include "tour/Tour.h"

#include <QStringList>
#include <QWidget>

namespace {

// One editor: its picture's name, the key that opens it, what is pressed in it before the picture.
struct Editor
{
    const char* picture;
    const char* menu;
    const char* key;
    const char* pressed = "";
};

constexpr Editor Editors[] = {
    {"pad-0-signed", "Tuner CH1", "offset", "4 2 . 5 -"},
    {"pad-1-frequency", "Tuner CH1", "freq", "2 2 5 0 . 5"},
    {"pad-2-bit-rate", "Demod 1", "rate", "1 . 2 5"},
    {"pad-3-hertz", "Demod 1", "loop", "5 0 0"},
    {"pad-4-angle", "Tuner CH1", "phase", "1 . 5 7"},
    {"pad-5-percent", "Demod 1", "roll", "3 5"},
    {"pad-6-special", "Demod 1", "sweep", "2 0"},
    {"pad-7-pin", "System", "pin", "1 2 3 4"},
    {"pad-8-hexadecimal", "Demod 1", "sync", "F A F 3"},
    {"address", "System", "ip", "1 9 2 1 6 8 . 0 . 7 5"},
    {"slider-up-down", "Tuner CH1", "squelch", "UP UP"},
    {"slider-steps", "Tuner CH1", "gain"},
    {"slider-hexadecimal", "Demod 1", "dac"},
    {"slider-one-step", "Demod 1", "taps"},
    {"list-4", "Combiner", "mode"},
    {"list-4-in-two-columns", "Demod 1", "fec"},
    {"list-17", "Demod 1", "mod"},
    {"list-30", "Demod 2", "mod"},
    {"list-60", "Demod 3", "mod"},
    {"files", "System", "load"},
};

void pressAll(Tour& tour, QWidget* editor, const QString& buttons)
{
    for (const QString& button : buttons.split(' ', Qt::SkipEmptyParts)) {
        tour.pressButton(editor, button);
    }
}

// The pad with what opens over it when `last` is pressed.
void visitOver(Tour& tour, const Editor& editor, const QString& last)
{
    tour.pressAndLook(editor.menu, editor.key, [&](QWidget* below) {
        pressAll(tour, below, editor.pressed);
        whenModal([&tour, &editor](QWidget* over) {
            Tour::settle();
            tour.picture(editor.picture);
            over->close();
        });
        tour.pressButton(below, last);
    });
}

} // namespace

void visitEditors(Tour& tour)
{
    for (const Editor& editor : Editors) {
        tour.pressAndLook(editor.menu, editor.key, [&](QWidget* dialog) {
            pressAll(tour, dialog, editor.pressed);
            Tour::settle();
            tour.picture(editor.picture);
        });
    }
    visitOver(tour, {"pad-error", "Tuner CH1", "freq", "9 9"}, "MHz");
    visitOver(tour, {"pad-error-bit-rate", "Demod 1", "rate", "9 9"}, "Mbps");
    visitOver(tour, {"address-error", "System", "ip", "1 . 2 . 3"}, "Enter");
    visitOver(tour, {"file-name", "System", "load"}, "New File");
    tour.unit("AK,Tuner CH1,offset,A label of sixty characters that goes on and on until its end,1,"
              "X,1 2:3 4:5 6:7 8:9 10:11 12:13 14,0,,1,0,1");
    visitOver(tour, {"pad-long-label-error", "Tuner CH1", "offset", "9 9"}, "Enter");
    tour.pressAndLook("Tuner CH1", "offset", [&](QWidget*) { tour.picture("pad-long-label"); });
}
