// The modal editors, opened by the keys of the default menus.
#include "tools/pictures/PanelPictures.h"
#include "tools/pictures/Screens.h"
#include "tools/screen/Screen.h"

#include <QStringList>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

// One editor: its picture's name, the key that opens it, what is pressed in it before the picture.
struct Editor
{
    QString picture;
    QString menu;
    QString key;
    QString pressed = {};
};

const Editor Editors[] = {
    {u"pad-0-signed"_s, u"Tuner CH1"_s, u"offset"_s, u"4 2 . 5 -"_s},
    {u"pad-1-frequency"_s, u"Tuner CH1"_s, u"freq"_s, u"2 2 5 0 . 5"_s},
    {u"pad-2-bit-rate"_s, u"Demod 1"_s, u"rate"_s, u"1 . 2 5"_s},
    {u"pad-3-hertz"_s, u"Demod 1"_s, u"loop"_s, u"5 0 0"_s},
    {u"pad-4-angle"_s, u"Tuner CH1"_s, u"phase"_s, u"1 . 5 7"_s},
    {u"pad-5-percent"_s, u"Demod 1"_s, u"roll"_s, u"3 5"_s},
    {u"pad-6-special"_s, u"Demod 1"_s, u"sweep"_s, u"2 0"_s},
    {u"pad-7-pin"_s, u"System"_s, u"pin"_s, u"1 2 3 4"_s},
    {u"pad-8-hexadecimal"_s, u"Demod 1"_s, u"sync"_s, u"F A F 3"_s},
    {u"address"_s, u"System"_s, u"ip"_s, u"1 9 2 1 6 8 . 0 . 7 5"_s},
    {u"slider-up-down"_s, u"Tuner CH1"_s, u"squelch"_s, u"UP UP"_s},
    {u"slider-steps"_s, u"Tuner CH1"_s, u"gain"_s},
    {u"slider-hexadecimal"_s, u"Demod 1"_s, u"dac"_s},
    {u"slider-one-step"_s, u"Demod 1"_s, u"taps"_s},
    {u"list-4"_s, u"Combiner"_s, u"mode"_s},
    {u"list-4-in-two-columns"_s, u"Demod 1"_s, u"fec"_s},
    {u"list-17"_s, u"Demod 1"_s, u"mod"_s},
    {u"list-30"_s, u"Demod 2"_s, u"mod"_s},
    {u"list-60"_s, u"Demod 3"_s, u"mod"_s},
    {u"files"_s, u"System"_s, u"load"_s},
};

void pressAll(PanelPictures& panel, QWidget* editor, const QString& buttons)
{
    for (const QString& button : buttons.split(u' ', Qt::SkipEmptyParts)) {
        panel.pressButton(editor, button);
    }
}

// The pad with what opens over it when `last` is pressed.
void takeWhatOpensOver(PanelPictures& panel, const Editor& editor, const QString& last)
{
    panel.withEditor(editor.menu, editor.key, [&](QWidget* below) {
        pressAll(panel, below, editor.pressed);
        panel.whenDialogOpens([&panel, &editor](QWidget* over) {
            PanelPictures::settle();
            panel.take(editor.picture);
            over->close();
        });
        panel.pressButton(below, last);
    });
}

// A list of so many items, "0 text 0:1 text 1".
QString items(int count, const QString& text)
{
    QStringList all;
    for (int i = 0; i < count; ++i) {
        all += u"%1 %2 %1"_s.arg(i).arg(text);
    }
    return all.join(u':');
}

// Lists that the default menus do not have: with the present choice, and with so many choices that
// they scroll.
void takeLists(PanelPictures& panel)
{
    const QString menu = u"Lists"_s;
    const auto take = [&](const QString& picture, int type, const QString& fields) {
        panel.say(
            u"AK,%1,%2,%3,1"_s.arg(menu, picture).arg(u"Setting,%1,X:,"_s.arg(type) + fields));
        panel.withEditor(menu, picture, [&](QWidget*) {
            PanelPictures::settle();
            panel.take(picture);
        });
    };
    take(u"list-present"_s, 2, u",0,0 PCM/FM:1 SOQPSK:2 ARTM CPM:3 BPSK:4 QPSK,2,0"_s);
    take(u"list-100"_s, 2, u",0,%1,0,0"_s.arg(items(100, u"Mode"_s)));
    take(u"list-100-present"_s, 2, u",0,%1,77,0"_s.arg(items(100, u"Mode"_s)));
    take(u"list-40-in-two-columns"_s, 2, u",2,%1,0,0"_s.arg(items(40, u"Decoder"_s)));
    take(u"files-60"_s, 4, u",0,%1,7,0"_s.arg(items(60, u"FLIGHT_"_s)));
    take(u"pad-6-present"_s, 1, u"1 500,6,-1 Auto,-1,0"_s);
}

} // namespace

void takeEditors(PanelPictures& panel)
{
    for (const Editor& editor : Editors) {
        panel.withEditor(editor.menu, editor.key, [&](QWidget* dialog) {
            pressAll(panel, dialog, editor.pressed);
            PanelPictures::settle();
            panel.take(editor.picture);
        });
    }
    takeLists(panel);
    takeWhatOpensOver(panel, {u"pad-error"_s, u"Tuner CH1"_s, u"freq"_s, u"9 9"_s}, u"MHz"_s);
    takeWhatOpensOver(
        panel, {u"pad-error-bit-rate"_s, u"Demod 1"_s, u"rate"_s, u"9 9"_s}, u"Mbps"_s);
    takeWhatOpensOver(
        panel, {u"address-error"_s, u"System"_s, u"ip"_s, u"1 . 2 . 3"_s}, u"Enter"_s);
    takeWhatOpensOver(panel, {u"file-name"_s, u"System"_s, u"load"_s}, u"New File"_s);
    panel.say(
        u"AK,Tuner CH1,offset,A label of sixty characters that goes on and on until its end,1,"_s
        u"X,1 2:3 4:5 6:7 8:9 10:11 12:13 14,0,,1,0,1"_s);
    takeWhatOpensOver(
        panel, {u"pad-long-label-error"_s, u"Tuner CH1"_s, u"offset"_s, u"9 9"_s}, u"Enter"_s);
    panel.withEditor(
        u"Tuner CH1"_s, u"offset"_s, [&](QWidget*) { panel.take(u"pad-long-label"_s); });
}
