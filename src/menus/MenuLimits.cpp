#include "menus/MenuLimits.h"

#include "menus/KeyBoard.h"
#include "menus/MenuBook.h"
#include "wire/Log.h"

#include <numeric>

using namespace menuLimits;

MenuLimits::MenuLimits(const MenuBook& book)
    : m_book(book)
    , m_menuLog(&logMenus, QStringLiteral("there are %1 menus: no more are made").arg(MaxMenus))
    , m_keyLog(&logMenus, QStringLiteral("there are %1 keys: no more are made").arg(MaxKeys))
    , m_textLog(&logMenus,
          QStringLiteral("a definition of more than %1 characters is ignored")
              .arg(MaxKeyCharacters))
    , m_fullLog(&logMenus,
          QStringLiteral("the definitions have %1 characters: no more are taken")
              .arg(MaxCharacters))
{
}

bool MenuLimits::takesMenu()
{
    if (m_book.pages.size() < MaxMenus) {
        return true;
    }
    m_menuLog.add();
    return false;
}

bool MenuLimits::takesKey()
{
    const qsizetype keys = std::accumulate(m_book.pages.cbegin(), m_book.pages.cend(), qsizetype{0},
        [](qsizetype sum, const KeyBoard* menu) { return sum + menu->keys.size(); });
    if (keys < MaxKeys) {
        return true;
    }
    m_keyLog.add();
    return false;
}

bool MenuLimits::takesDefinition(qsizetype characters)
{
    if (characters > MaxKeyCharacters) {
        m_textLog.add();
        return false;
    }
    return true;
}

bool MenuLimits::takesText(qsizetype characters, qsizetype before)
{
    if (!takesDefinition(characters)) {
        return false;
    }
    const qsizetype after = m_characters - before + characters;
    if (after > MaxCharacters && characters > before) {
        m_fullLog.add();
        return false;
    }
    m_characters = qMax(qsizetype{0}, after);
    return true;
}
