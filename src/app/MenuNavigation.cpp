#include "app/MenuNavigation.h"

#include "app/Views.h"
#include "menus/KeyBoard.h"
#include "menus/MainMenus.h"
#include "menus/MenuMessages.h"
#include "wire/Commands.h"
#include "wire/Log.h"

MenuNavigation::MenuNavigation(MenuMessages& menus, Views& views, QObject* parent)
    : QObject(parent)
    , m_menus(menus)
    , m_views(views)
    , m_mainMenus(new MainMenus(menus.book, this))
{
    connect(&menus, &MenuMessages::showMenu, this, &MenuNavigation::showMenu);
    connect(m_mainMenus, &MainMenus::mainMenuNamed, this,
        [this](const KeyBoard* menu) { m_views.set(&Views::mainMenu, menu->frame); });
    connect(
        m_mainMenus, &MainMenus::paxMenuMade, this, [this](const KeyBoard* menu, int listIndex) {
            m_views.set(&Views::paxMenu, menu->frame);
            m_paxListIndex = listIndex;
        });
}

void MenuNavigation::showMenu(KeyBoard* menu)
{
    m_views.set(&Views::menu, menu->frame);
    if (!m_views.displayActive()) {
        m_views.show(&Views::menu);
        emit menuShown(menu->name);
    }
}

void MenuNavigation::showMainMenu()
{
    if (m_views.mainMenu.index() == -1) {
        return;
    }
    m_views.returnToMenus(m_views.mainMenu.widget());
    emit response(wire::message(wire::word::Main));
}

void MenuNavigation::showRegroupedMain()
{
    if (QWidget* page = m_mainMenus->regroupMain()) {
        m_views.set(&Views::mainMenu, page);
        m_views.returnToMenus(page);
    }
}

void MenuNavigation::takePaxMessage(const QStringList& fields)
{
    const QString on = fields.value(0);
    if (on == QLatin1String("1") || on == QLatin1String("0")) {
        enablePax(on == QLatin1String("1"));
    } else if (!fields.isEmpty()) {
        wire::logIgnored(logMenus(), wire::word::Pax, QStringLiteral("neither 0 nor 1"));
    }
}

void MenuNavigation::enablePax(bool on)
{
    const bool everMade = m_views.paxMenu.index() != -1;
    if (on && !everMade) {
        wire::logIgnored(logMenus(), wire::word::Pax, QStringLiteral("no PAX main menu"));
    }
    if (!on || !everMade) {
        emit statusBarWanted(true);
        emit displaysReturned();
        return;
    }
    emit statusBarWanted(false);
    m_views.returnToMenus(m_views.paxMenu.widget());
    if (QGridLayout* place = paxPlace()) {
        emit displaysWanted(place);
    }
}

// The PAX main menu may be gone, and its place in the list another menu's.
QGridLayout* MenuNavigation::paxPlace() const
{
    const KeyBoard* menu = m_menus.book.pages.value(m_paxListIndex);
    const bool isPax = menu != nullptr && menu->frame == m_views.paxMenu.widget();
    return isPax ? menu->chan2Grid : nullptr;
}

QGridLayout* MenuNavigation::shownPaxPlace() const
{
    const QWidget* page = m_views.paxMenu.widget();
    return page != nullptr && m_views.isShown(page) ? paxPlace() : nullptr;
}

void MenuNavigation::clear()
{
    emit displaysReturned();
    m_menus.book.clear();
    m_spareMemory.giveBackSoon();
}
