#pragma once

#include <QObject>
#include <QStringList>

class Key;
class KeyBoard;
class MenuBook;
class QWidget;

/// The messages by which the main unit composes its main menus out of keys of other menus.
///
/// "CM" fills the normal main menu, "MS" the PAX main menu; each creates the menu when it does not
/// exist. A copy and its source mirror each other: a message for one reaches the other too. Both
/// messages take the fields behind the command word: main menu, source menu, source key. A source
/// that does not exist leaves the menu as it is; a message without a name of a main menu is
/// ignored.
class MainMenus : public QObject
{
    Q_OBJECT

public:
    /// Makes the messages.
    /// \param book the panel's menus, not owned
    explicit MainMenus(MenuBook& book, QObject* parent = nullptr);

    /// "CM": puts the copy into the column of its source menu, or, if the menu of that name is a
    /// plain one, into its next free cell.
    void copyToMainMenu(const QStringList& fields);

    /// "MS": puts the copy into the next fixed cell, or, if the menu of that name is a plain one,
    /// into its next free cell.
    void copyToPaxMenu(const QStringList& fields);

    /// Moves the keys of the first sub-page of the plain menu "Main" into the groups of a main
    /// menu. \return the page with the groups, which is already in the stack; nullptr when there is
    /// no
    ///         plain menu "Main".
    QWidget* regroupMain();

    /// Lets the "Span" keys of all PAX main menus be pressed, now and later: from now on there is a
    /// spectrum. Before, they look dead.
    void enableSpan();

signals:
    /// Emitted when "CM" names the menu "Main", whether it is new or not.
    void mainMenuNamed(KeyBoard* menu);
    /// Emitted when "MS" has created a PAX main menu. \param listIndex its position in the book
    void paxMenuMade(KeyBoard* menu, int listIndex);
    /// Emitted when the "Span" key of a PAX main menu is pressed.
    void spanClicked();

private:
    KeyBoard* newMainMenu(const QString& name);
    KeyBoard* newPaxMenu(const QString& name);
    void addSpanKey(KeyBoard& menu);
    bool mayMake(const QString& name) const;
    Key* source(QLatin1String word, const QStringList& fields) const;

    MenuBook& m_book;
    bool m_hasSpectrum = false;
};
