#pragma once

#include "menus/Limits.h"
#include "wire/DropLog.h"

#include <QList>

class KeyBoard;
class MenuBook;

/// Whether the book of menus takes what a message wants to add. What it does not take is logged.
class MenuLimits
{
public:
    /// Nothing is defined yet. \a book has to live as long as this object.
    explicit MenuLimits(const MenuBook& book);

    /// \return whether one more menu may be made.
    bool takesMenu();

    /// \return whether one more key may be made.
    bool takesKey();

    /// \return whether one definition may have so many characters.
    bool takesDefinition(qsizetype characters);

    /// Counts the texts of a definition that takes the place of another.
    /// \param characters of the new one \param before of the old one, 0 for none
    /// \return whether there is room for it; when not, nothing is counted.
    bool takesText(qsizetype characters, qsizetype before = 0);

    /// All definitions are gone.
    void clear() { m_characters = 0; }

private:
    const MenuBook& m_book;
    qsizetype m_characters = 0;
    DropLog m_menuLog;
    DropLog m_keyLog;
    DropLog m_textLog;
    DropLog m_fullLog;
};
