#pragma once

#include "sim/menus/MenuStep.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

/// Where the key of a menu page stands.
enum class KeyGroup {
    Page,     ///< the grid of a plain menu, six by six and on further pages
    Channel1, ///< a main menu's left group
    Channel2, ///< its middle group; on the PAX main menu the place of the scope
    Combiner, ///< its right group; the PAX main menu has none
    Options,  ///< the row at its bottom
    Nowhere   ///< the key is shown nowhere
};

/// A cell of a main menu.
struct KeyCell
{
    KeyGroup group = KeyGroup::Page; ///< which grid
    int row = 0;                     ///< from the top
    int column = 0;                  ///< from the left
};

/// One key as the panel has it after the messages.
struct PanelKey
{
    QStringList fields;   ///< of "AK", the menu first; see menuFields::KeyField
    int menu = 0;         ///< the menu that it is on, an index of PanelMenus::menus()
    int source = -1;      ///< of a copy: the key that it was copied from
    KeyCell cell;         ///< its place on a main menu
    MenuPlace place;      ///< of the message that defined it last, or copied it
    int shownState = 1;   ///< what the panel shows
    int storedState = 1;  ///< what "AK" said
    int statesBefore = 0; ///< of a copy: how many "CK" its source had had when it was made

    /// \return a field of "AK".
    QString field(int at) const { return fields.value(at); }
    /// \return a field of "AK" as an integer, 0 when it is none.
    int number(int at) const { return fields.value(at).toInt(); }
};

/// One menu as the panel has it.
struct PanelMenu
{
    /// How a menu is laid out.
    enum class Kind {
        Plain, ///< pages of keys
        Main,  ///< the grouped main menu
        Pax    ///< the PAX main menu
    };
    QString name;            ///< by which messages find it
    Kind kind = Kind::Plain; ///< its layout
    MenuPlace place;         ///< of the message that made it
    QList<int> keys;         ///< indexes of PanelMenus::keys(), in the order of their creation
    bool isShown = false;    ///< whether "SK" shows it, or the operator's "Main Menu" button
};

/// The menus as the panel builds them from messages: which there are, their keys, and where each
/// key stands. Follows the panel's rules: "AK" makes a menu or changes a key, "CM" and "MS" copy
/// one.
///
/// Messages must have passed rules::check(). Each costs the same, however many keys there are.
class PanelMenus
{
public:
    /// What became of a message.
    struct Outcome
    {
        int key = -1;               ///< the key that it made, changed or named
        bool isNew = false;         ///< whether it made the key
        bool isOtherKind = false;   ///< whether "CM" or "MS" named a menu of another layout
        QString missingMenu;        ///< the name of a menu that does not exist
        QString missingKey;         ///< the name of a key that does not exist, on a menu that does
        bool isMenuMissing = false; ///< whether missingMenu counts
        bool isKeyMissing = false;  ///< whether missingKey counts
    };

    /// Carries out a message. Only those for menus change anything here.
    Outcome apply(const MenuStep& step);

    /// \return the menus, in the order of their creation.
    const QList<PanelMenu>& menus() const { return m_menus; }
    /// \return the keys of all menus, in the order of their creation.
    const QList<PanelKey>& keys() const { return m_keys; }
    /// \return the index of a menu; -1 when there is none of this name.
    int find(const QString& name) const { return m_byName.value(name, -1); }
    /// \return the index of a key; -1 when there is none.
    int findKey(const QString& menu, const QString& keyId) const;

    /// \return the key that a copy was made from, which has its fields; \a key itself otherwise.
    const PanelKey& original(const PanelKey& key) const;
    /// \return the state that the panel shows for a key, after all messages so far.
    int shownState(const PanelKey& key) const;
    /// \return the state that the main unit meant for a key: that of its last "AK" or "CK".
    int meantState(const PanelKey& key) const;

    /// \return the name of the menu that a press of a key opens: "SK:Menu:", "PAX:0:Menu:"; nothing
    /// for other keys. "PAX:1:" gives the PAX main menu, an empty name when there is none.
    std::optional<QString> opens(const PanelKey& key) const;

    /// \return for each menu whether the operator can come to it: it is shown by a message, or a
    /// key of a menu that can be reached opens it.
    QList<bool> reached() const;

private:
    int newMenu(const QString& name, PanelMenu::Kind kind, const MenuPlace& place);
    int newKey(int menu, const PanelKey& key);
    Outcome defineKey(const QStringList& fields, const MenuPlace& place);
    Outcome copyKey(const QStringList& fields, PanelMenu::Kind kind, const MenuPlace& place);
    Outcome changeState(const QStringList& fields);
    Outcome showMenu(const QString& name);
    Outcome namedKey(const QStringList& fields) const;
    KeyCell nextOfColumn(int menu, const QString& sourceMenu);
    KeyCell nextFixed(int menu);
    KeyCell nextOption(int menu);

    // The counters of a main menu.
    struct Counters
    {
        QHash<QString, int> columns; // rows taken, by source menu
        int fixedRow = 0;
        int fixedColumn = 0;
        int option = 0;
    };

    QList<PanelMenu> m_menus;
    QList<Counters> m_counters; // of each menu
    QList<PanelKey> m_keys;
    int m_pax = -1; // the PAX main menu that was made last
    bool m_isPaxShown = false;
    QHash<int, int> m_states; // how many "CK" a key has had
    QHash<QString, int> m_byName;
    QHash<QString, int> m_byKey; // "menu,key"
};
