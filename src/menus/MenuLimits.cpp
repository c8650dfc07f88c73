#include "menus/MenuLimits.h"

#include "menus/KeyBoard.h"
#include "menus/KeyDefinition.h"
#include "wire/Log.h"

#include <numeric>

using namespace menuLimits;

MenuLimits::MenuLimits(const QList<KeyBoard*>& menus)
    : m_menus(menus)
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
    if (m_menus.size() < MaxMenus) {
        return true;
    }
    m_menuLog.add();
    return false;
}

bool MenuLimits::takesKey()
{
    const qsizetype keys = std::accumulate(m_menus.cbegin(), m_menus.cend(), qsizetype{0},
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

bool MenuLimits::takesText(qsizetype characters)
{
    return takesDefinition(characters) && takesChange(0, characters);
}

bool MenuLimits::takesChange(qsizetype before, qsizetype after)
{
    const qsizetype characters = m_characters - before + after;
    if (characters > MaxCharacters) {
        m_fullLog.add();
        return false;
    }
    m_characters = characters;
    return true;
}

bool MenuLimits::takesCopy(const Key& source, const QString& menu)
{
    return takesKey() && takesChange(0, KeyDefinition::of(source).characters() + menu.size());
}
