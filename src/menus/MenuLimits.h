#pragma once

#include "menus/Limits.h"
#include "wire/DropLog.h"

#include <QList>

class Key;
class KeyBoard;

/// Whether the book of menus takes what a message wants to add. What it does not take is logged.
class MenuLimits
{
public:
    /// Nothing is defined yet. \a menus are those of the book; they have to live as long as this.
    explicit MenuLimits(const QList<KeyBoard*>& menus);

    /// \return whether one more menu may be made.
    bool takesMenu();

    /// \return whether one more key may be made.
    bool takesKey();

    /// \return whether one definition may have so many characters.
    bool takesDefinition(qsizetype characters);

    /// Counts the texts of a definition that is new.
    /// \return whether there is room for it; when not, nothing is counted.
    bool takesText(qsizetype characters);

    /// Counts a change of texts. \param before their characters until now, of all keys that the
    /// change reaches \param after the same once it is made
    /// \return whether there is room for it; when not, nothing is counted.
    bool takesChange(qsizetype before, qsizetype after);

    /// Counts a copy of a key in a menu of this name.
    /// \return whether it may be made; when not, nothing is counted.
    bool takesCopy(const Key& source, const QString& menu);

    /// All definitions are gone.
    void clear() { m_characters = 0; }

private:
    const QList<KeyBoard*>& m_menus;
    qsizetype m_characters = 0;
    DropLog m_menuLog;
    DropLog m_keyLog;
    DropLog m_textLog;
    DropLog m_fullLog;
};
