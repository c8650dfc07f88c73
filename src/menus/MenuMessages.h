#pragma once

#include "menus/MenuBook.h"

#include <QObject>
#include <QStringList>

struct KeyDefinition;

/// The messages by which the main unit defines menus and keys and changes what they show.
///
/// Every function takes the fields behind the command word, finds menu and key in the book by them,
/// and changes the key and all keys linked with it. A menu or key that does not exist makes the
/// message do nothing, except that defineKey() and copyKey() create their target menu.
class MenuMessages : public QObject
{
    Q_OBJECT

public:
    /// Makes the messages and an empty book.
    /// \param stack the main window's, where the menus' pages go; not owned
    explicit MenuMessages(QStackedLayout* stack, QObject* parent = nullptr);

    /// "AK": adds a key, or updates the one that exists and the keys linked with it. See
    /// KeyDefinition::fromFields() for the fields.
    void defineKey(const QStringList& fields);

    /// Copies a key into another menu; the two mirror each other from then on. No command word
    /// leads here, only MainWindow::process_CM_key(). Fields: target menu, source menu, source key.
    void copyKey(const QStringList& fields);

    /// "CV": sets value and toggle. Fields: menu, key, value, "1" for on.
    void changeValue(const QStringList& fields);

    /// "CK": sets the display state. Fields: menu, key, 0 disabled, 1 enabled or 2 hidden.
    void changeState(const QStringList& fields);

    /// "EI": sets which choices of a selection key are shown but cannot be pressed. Fields: menu,
    /// key, positions counted from 0 with ":" between; no position frees all choices. Does nothing
    /// with fewer than three fields.
    void lockChoices(const QStringList& fields);

    /// "IK": presses a key that is on no menu, as the operator would; returns when its editor is
    /// closed. \param fields see ImmediateKey
    void pressImmediately(const QStringList& fields);

    /// "SK": emits showMenu() for the menu that field 0 names.
    void selectMenu(const QStringList& fields);

    MenuBook book; ///< The panel's menus.

signals:
    /// Emitted when the main unit wants this menu shown.
    void showMenu(KeyBoard* menu);

private:
    void updateKey(Key* key, const KeyDefinition& definition);
    Key* namedKey(QLatin1String word, const QStringList& fields) const;
};
