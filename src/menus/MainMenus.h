#pragma once

#include <QObject>
#include <QStringList>

class Key;
class KeyBoard;
class MenuBook;
class QWidget;

// The messages by which the main unit composes its main menus out of keys that are on other menus.
//
// "CM" fills the grouped main menu, "MS" the PAX main menu; each makes the menu when it is not
// there. A copy and its source mirror each other: what the main unit says of one reaches the other.
// Both messages take the fields behind the command word: main menu, source menu, source key. An
// unknown source leaves the menu as it is.
class MainMenus : public QObject
{
    Q_OBJECT

public:
    // book: the menus of the panel, not owned.
    explicit MainMenus(MenuBook& book, QObject* parent = nullptr);

    // "CM". A menu of that name that is no main menu takes the copy as it takes its other keys.
    void copyToMainMenu(const QStringList& fields);

    // "MS".
    void copyToPaxMenu(const QStringList& fields);

    // Moves the keys of the first sub-page of "Main", a plain menu, into the groups of a main menu.
    // Out: the page with the groups, already in the stack; nullptr when there is no plain "Main".
    QWidget* regroupMain();

signals:
    // "CM" named the menu "Main", new or not.
    void mainMenuNamed(KeyBoard* menu);
    // "MS" made this PAX main menu; listIndex: its position in the list of menus.
    void paxMenuMade(KeyBoard* menu, int listIndex);
    // The "Span" key of a PAX main menu was pressed.
    void spanClicked();

private:
    KeyBoard* newMainMenu(const QString& name);
    KeyBoard* newPaxMenu(const QString& name);
    Key* source(const QStringList& fields) const;

    MenuBook& m_book;
};
