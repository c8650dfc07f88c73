// The menus of the default menu file, and all states that a key can have.
#include "tools/pictures/PanelPictures.h"
#include "tools/pictures/Screens.h"

#include "app/MainWindow.h"
#include "app/Rooms.h"
#include "menus/KeyBoard.h"
#include "menus/MenuMessages.h"
#include "menus/StackLayout.h"

using namespace Qt::StringLiterals;

namespace {

// "Tuner CH1" and page 2 of 3 become "menu-tuner-ch1-2"
QString menuPictureName(const KeyBoard& menu, int page)
{
    QString name;
    for (const QChar c : menu.name.toLower()) {
        name += c.isLetterOrNumber() ? c : u'-';
    }
    return u"menu-%1%2"_s.arg(name, page > 0 ? u"-%1"_s.arg(page + 1) : QString());
}

void takeMenu(PanelPictures& panel, const QString& name)
{
    panel.say(u"SK,"_s + name);
    const KeyBoard& menu = *panel.menu(name);
    const int pages = menu.pages != nullptr ? menu.pages->count() : 1;
    for (int page = 0; page < pages; ++page) {
        PanelPictures::settle();
        panel.take(menuPictureName(menu, page));
        if (pages > 1) {
            panel.pressButton(menu.frame, u"More..."_s);
        }
    }
}

// Toggle keys off, on and disabled, with short and long labels, and pressed ones that nobody
// answers: the unit does not know these keys.
void takeToggles(PanelPictures& panel)
{
    static const QStringList labels{u"AGC"_s, u"Bit Sync Lock"_s, u"Automatic gain of channel 1"_s};
    MainWindow& window = panel.window();
    window.process_AK_key(u"Toggles,cmd,Command,5,X,,0,,0,1,1"_s.split(u','));
    panel.say(u"SK,Toggles"_s);
    for (const QString& kind : {u"off"_s, u"on"_s, u"pending"_s, u"disabled"_s}) {
        for (const QString& label : labels) {
            for (int tog = 0; tog < 2; ++tog) {
                const QString id = u"%1 %2 %3"_s.arg(kind, label).arg(tog);
                const bool isOn = kind == u"on"_s || (kind != u"off"_s && tog == 1);
                window.process_AK_key(
                    u"Toggles,%1,%2,0,Y,,0,,0,%3,1"_s.arg(id, label).arg(isOn ? 1 : 0).split(u','));
                if (kind == u"disabled"_s) {
                    window.process_CK_key({u"Toggles"_s, id, u"0"_s});
                } else if (kind == u"pending"_s) {
                    PanelPictures::settle();
                    panel.press(u"Toggles"_s, id);
                }
            }
        }
    }
    takeMenu(panel, u"Toggles"_s);
}

void takePages(PanelPictures& panel)
{
    constexpr int Keys = 80;
    for (int i = 1; i <= Keys; ++i) {
        panel.say(u"AK,Pages,k%1,Setting %1,5,X,,0,,0,0,1"_s.arg(i));
    }
    takeMenu(panel, u"Pages"_s);
}

} // namespace

void takeStart(PanelPictures& panel)
{
    panel.say(u"SK,Start"_s);
    PanelPictures::settle();
    panel.take(u"start-menu"_s);
    panel.say(u"CLEAR"_s);
    PanelPictures::settle();
    panel.take(u"waiting"_s);
    for (int i = 0; i < 36; ++i) {
        panel.say(u"AK,Main,k%1,Setting %1,%2,X,,0,,0,%3,1"_s.arg(i).arg(i % 7).arg(i % 5 == 0));
    }
    panel.say(u"SK,Main"_s);
    panel.window().process_special_menu();
    PanelPictures::settle();
    panel.take(u"special-menu"_s);
}

void takeMenus(PanelPictures& panel)
{
    for (const QString& name : {u"Tuner CH1"_s, u"Demod 1"_s, u"Outputs"_s, u"System"_s}) {
        takeMenu(panel, name);
    }
    for (int state = 0; state < 3; ++state) {
        for (int type = 0; type <= 6; ++type) {
            for (int tog = 0; tog < (type == 0 || type == 5 ? 2 : 1); ++tog) {
                const QString id = u"%1%2%3"_s.arg(state).arg(type).arg(tog);
                static const QStringList states{u"disabled"_s, u"enabled"_s, u"hidden"_s};
                panel.say(u"AK,Key states,%1,type %2 %3 %4,%2,X,,0,,0,%5,%6"_s.arg(id)
                              .arg(type)
                              .arg(tog == 1 ? u"on"_s : u"off"_s, states.at(state))
                              .arg(tog)
                              .arg(state));
                panel.say(u"CK,Key states,%1,%2"_s.arg(id).arg(state));
            }
        }
    }
    panel.say(u"AK,Key states,long,A label of more characters than one key can hold and then "_s
              u"some,1,X,,0,,0,0,1"_s);
    takeMenu(panel, u"Key states"_s);
    takeToggles(panel);
    takePages(panel);
    panel.say(u"SK,Start"_s); // a menu of the unit's own stands in the status bar from here on
}
