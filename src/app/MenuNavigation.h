#pragma once

#include "app/SpareMemory.h"

#include <QObject>
#include <QStringList>

class KeyBoard;
class MainMenus;
class MenuMessages;
class QGridLayout;
class Views;

/// Brings the menus of the menus' room to the screen: the menu that the main unit selects, the main
/// menu, and the PAX main menu with its displays.
///
/// The room says which menu is meant; this class knows under which number its page stands in the
/// stack, and whether a display occupies the menu area.
class MenuNavigation : public QObject
{
    Q_OBJECT

public:
    /// \param menus the room's menus; not owned, has to outlive this object
    /// \param views where they are shown; not owned, has to outlive this object
    MenuNavigation(MenuMessages& menus, Views& views, QObject* parent = nullptr);

    /// \return the messages that compose the main menus.
    MainMenus& mainMenus() const { return *m_mainMenus; }

    /// Makes a menu the current one. It is shown at once, unless a display occupies the menu area.
    void showMenu(KeyBoard* menu);

    /// "Main Menu": shows the main menu, if there has ever been one, and tells the main unit.
    void showMainMenu();

    /// Shows the keys of "Main", a plain menu, in the groups of a main menu.
    void showRegroupedMain();

    /// "PAX": shows the PAX main menu or ends it. \param fields "1" or "0"; others are ignored
    void takePaxMessage(const QStringList& fields);

    /// Shows the PAX main menu with its displays and without the status bar, or gives both back.
    /// The page that is shown stays when it ends.
    void enablePax(bool on);

    /// \return where the displays go on the PAX main menu that is on the screen; nullptr when none
    /// is.
    QGridLayout* shownPaxPlace() const;

    /// \return the position of the PAX main menu in the list of menus when it was made, -1 before.
    int paxListIndex() const { return m_paxListIndex; }

    /// "CLEAR": deletes all menus, and a little later gives back the memory that is left over.
    void clear();

signals:
    /// Emitted when a menu that the main unit has selected is shown. \param name the menu's
    void menuShown(const QString& name);

    /// Emitted when the PAX main menu takes the place of the status bar or gives it back.
    void statusBarWanted(bool shown);

    /// Emitted when the displays are to go to the PAX main menu. \param place its grid
    void displaysWanted(QGridLayout* place);

    /// Emitted when the displays are to go back to their own pages.
    void displaysReturned();

    /// Emitted when the main unit is to be sent a message. \param message with its frame characters
    void response(const QString& message);

private:
    QGridLayout* paxPlace() const;

    MenuMessages& m_menus;
    Views& m_views;
    MainMenus* m_mainMenus;
    int m_paxListIndex = -1;
    SpareMemory m_spareMemory;
};
