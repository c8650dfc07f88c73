#pragma once

#include "menus/MenuBook.h"

#include <QObject>
#include <QStringList>

// The messages by which the main unit defines menus and keys and changes what they show. All take
// the fields behind the command word; unknown menus and keys are ignored, but for the target menus
// of defineKey() and copyKey(), which are created.
class MenuMessages : public QObject
{
    Q_OBJECT

public:
    // stack: the main window's, for the menus' pages.
    explicit MenuMessages(QStackedLayout* stack, QObject* parent = nullptr);

    // "AK": adds a key, or updates the one that is there and the keys linked with it. For the
    // fields see KeyDefinition.
    void defineKey(const QStringList& fields);

    // Copies a key into another menu and links the two both ways. Fields: target menu, source menu,
    // source key.
    void copyKey(const QStringList& fields);

    // "CV": value and toggle. Fields: menu, key, value, "1" for on.
    void changeValue(const QStringList& fields);

    // "CK": display state. Fields: menu, key, 0 disabled, 1 enabled, 2 hidden.
    void changeState(const QStringList& fields);

    // "EI": which choices of a selection key are shown but cannot be pressed. Fields: menu, key,
    // positions separated by ":", counted from 0; none frees all of them. Fewer than three fields:
    // nothing.
    void lockChoices(const QStringList& fields);

    /// "IK": presses a key that is on no menu, as the operator would; returns when its editor is
    /// closed. \param fields see ImmediateKey
    void pressImmediately(const QStringList& fields);

    // "SK": asks by showMenu() for the menu that field 0 names.
    void selectMenu(const QStringList& fields);

    MenuBook book;

signals:
    // The main unit wants this menu shown.
    void showMenu(KeyBoard* menu);

private:
    static void addToMainMenu(KeyBoard* menu, const struct KeyDefinition& definition);
};
