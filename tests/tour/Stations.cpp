#include "app/Rooms.h"
#include "spectrum/SpectrumMessages.h"
#include "support/Part.h"
#include "tour/Tour.h"

#include "app/MainWindow.h"
#include "menus/KeyBoard.h"
#include "menus/MenuMessages.h"
#include "menus/StackLayout.h"
#include "spectrum/SpectralCard.h"
#include "spectrum/SpectrumChart.h"
#include "support/Screen.h"

#include <QComboBox>
#include <QPushButton>

namespace {

// "Tuner CH1" and page 2 of 3 become "menu-tuner-ch1-2"
QString menuPictureName(const KeyBoard& menu, int page)
{
    QString name;
    for (const QChar c : menu.name.toLower()) {
        name += c.isLetterOrNumber() ? c : QChar('-');
    }
    return QString("menu-%1%2").arg(name, page > 0 ? QString("-%1").arg(page + 1) : QString());
}

void visitMenu(Tour& tour, const QString& name)
{
    tour.unit("SK," + name);
    const KeyBoard& menu = *tour.menu(name);
    const int pages = menu.pages != nullptr ? menu.pages->count() : 1;
    for (int page = 0; page < pages; ++page) {
        Tour::settle();
        tour.picture(menuPictureName(menu, page));
        if (pages > 1) {
            tour.pressButton(menu.frame, "More...");
        }
    }
}

} // namespace

void showView(Tour& tour, int view)
{
    for (int presses = 0; presses < 3 && tour.window().rooms().views->current() != view;
         ++presses) {
        clickOn(part<QPushButton>(tour.window(), "scopesButton"));
        Tour::settle();
    }
    if (tour.window().rooms().views->current() != view) {
        tour.fail(QString("no view %1").arg(view));
    }
}

void visitStart(Tour& tour)
{
    tour.unit("SK,Start");
    Tour::settle();
    tour.picture("start-menu");
    tour.unit("CLEAR");
    Tour::settle();
    tour.picture("waiting");
    for (int i = 0; i < 36; ++i) {
        tour.unit(
            QString("AK,Main,k%1,Setting %1,%2,X,,0,,0,%3,1").arg(i).arg(i % 7).arg(i % 5 == 0));
    }
    tour.unit("SK,Main");
    tour.window().process_special_menu();
    Tour::settle();
    tour.picture("special-menu");
}

void visitMenus(Tour& tour)
{
    for (const char* name : {"Tuner CH1", "Demod 1", "Outputs", "System"}) {
        visitMenu(tour, name);
    }
    for (int state = 0; state < 3; ++state) {
        for (int type = 0; type <= 6; ++type) {
            for (int tog = 0; tog < (type == 0 || type == 5 ? 2 : 1); ++tog) {
                const QString id = QString("%1%2%3").arg(state).arg(type).arg(tog);
                static const QStringList states{"disabled", "enabled", "hidden"};
                tour.unit(QString("AK,Key states,%1,type %2 %3 %4,%2,X,,0,,0,%5,%6")
                              .arg(id)
                              .arg(type)
                              .arg(tog == 1 ? "on" : "off", states.at(state))
                              .arg(tog)
                              .arg(state));
                tour.unit(QString("CK,Key states,%1,%2").arg(id).arg(state));
            }
        }
    }
    tour.unit("AK,Key states,long,A label of more characters than one key can hold and then "
              "some,1,X,,0,,0,0,1");
    visitMenu(tour, "Key states");
    tour.unit("SK,Start"); // a menu of the unit's own stands in the status bar from here on
}

void visitSpectrum(Tour& tour)
{
    constexpr int Charts = 3;
    constexpr int SomeSpectraMs = 2500;
    constexpr int ListMs = 200;
    constexpr int ManySpectraMs = 4000;
    const auto show = [&tour](int charts) {
        for (int channel = 0; channel < Charts; ++channel) {
            tour.unit(QString("SH,%1,%2").arg(channel).arg(channel < charts ? 1 : 0));
        }
    };
    const auto choose = [&tour](const QList<int>& spans) {
        for (int channel = 0; channel < Charts; ++channel) {
            tour.unit(QString("SP,%1,%2").arg(channel).arg(spans.at(channel)));
        }
    };
    const QList<int> mixed{6, 3, 4};
    tour.unit("ST,1");
    showView(tour, Views::Spectrum);
    tour.unit("HM,0,-30,-80");
    choose(mixed);
    Tour::settle(SomeSpectraMs);
    tour.picture("spectrum-three");
    const QStringList names{"spectrum-one", "spectrum-two", "spectrum-three"};
    for (int charts = 1; charts <= Charts; ++charts) {
        show(charts);
        for (const int span : {0, 9}) {
            choose({span, span, span});
            Tour::settle(SomeSpectraMs);
            tour.picture(names.at(charts - 1) + (span == 0 ? "-narrow" : "-wide"));
        }
    }
    SpectralCard& card = *tour.window().rooms().spectrum->card();
    auto* lowest = card.findChild<QComboBox*>("cboSpan3");
    clickOn(lowest);
    Tour::settle(ListMs);
    tour.picture("spectrum-span-list");
    lowest->hidePopup();
    choose(mixed);
    show(1);
    tour.pressButton(&card, "Max Hold");
    Tour::settle(ManySpectraMs);
    tour.picture("spectrum-max-hold");
    tour.pressButton(&card, "Average");
    clickOn(card.chart(0));
    Tour::settle(SomeSpectraMs);
    tour.picture("spectrum-marker");
    for (const char* button : {"Average", "Max Hold"}) {
        tour.pressButton(&card, button);
    }
    card.chart(0)->clearMarker();
    show(Charts);
    showView(tour, Views::Menus);
}

void visitAllMenus(Tour& tour)
{
    QStringList names;
    for (const KeyBoard* menu : tour.window().rooms().menus->book.pages) {
        if (menu->name != "Loading" && menu->name != "two") {
            names += menu->name;
        }
    }
    for (const QString& name : names) {
        visitMenu(tour, name);
    }
}
