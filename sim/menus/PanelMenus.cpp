#include "sim/menus/PanelMenus.h"

#include "sim/menus/MenuFields.h"
#include "wire/Commands.h"

namespace {

using Kind = PanelMenu::Kind;

constexpr int GroupRows = 5;
constexpr int GroupColumns = 2;
constexpr int KeyColumns = 6;

constexpr QLatin1String MainName("Main");
constexpr QLatin1String OpensMenu("SK:");
constexpr QLatin1String OpensPax("PAX:1:");
constexpr QLatin1String LeavesPax("PAX:0:");

// The column of a main menu in which the keys of a menu stand; -1 for other menus.
int columnOf(const QString& sourceMenu)
{
    static const QHash<QString, int> columns{{QStringLiteral("Tuner CH1"), 0},
        {QStringLiteral("Demod 1"), 1}, {QStringLiteral("Tuner CH2"), 2},
        {QStringLiteral("Demod 2"), 3}, {QStringLiteral("Combiner"), 4},
        {QStringLiteral("Demod 3"), 5}};
    return columns.value(sourceMenu, -1);
}

KeyCell cellAt(Kind kind, int row, int column)
{
    if (row >= GroupRows) {
        return {KeyGroup::Options, 0, column};
    }
    const int group = column / GroupColumns;
    if (column >= KeyColumns || (kind == Kind::Pax && group == 2)) {
        return {KeyGroup::Nowhere, row, column};
    }
    constexpr KeyGroup Groups[]{KeyGroup::Channel1, KeyGroup::Channel2, KeyGroup::Combiner};
    return {Groups[group], row, column % GroupColumns};
}

// A comma stands in no field, so the two cannot be mixed up.
QString slot(const QString& menu, const QString& keyId)
{
    return menu + QLatin1Char(',') + keyId;
}

QString rest(const QString& command, QLatin1String beginning)
{
    const QString name = command.mid(beginning.size());
    return name.endsWith(QLatin1Char(':')) ? name.chopped(1) : name;
}

} // namespace

PanelMenus::Outcome PanelMenus::apply(const MenuStep& step)
{
    if (step.kind != MenuStep::Kind::Message) {
        return {};
    }
    QStringList fields = step.body.split(QLatin1Char(','));
    const QString word = fields.takeFirst();
    if (word == wire::word::AK) {
        return defineKey(fields, step.place);
    }
    if (word == wire::word::CM || word == wire::word::MS) {
        return copyKey(fields, word == wire::word::CM ? Kind::Main : Kind::Pax, step.place);
    }
    if (word == wire::word::CV || word == wire::word::EI) {
        return namedKey(fields);
    }
    if (word == wire::word::CK) {
        return changeState(fields);
    }
    if (word == wire::word::SK) {
        return showMenu(fields.value(0));
    }
    if (word == wire::word::Pax && fields.value(0) == QLatin1String("1")) {
        m_isPaxShown = m_isPaxShown || m_pax >= 0;
    }
    return {};
}

PanelMenus::Outcome PanelMenus::changeState(const QStringList& fields)
{
    Outcome named = namedKey(fields);
    if (named.key < 0) {
        return named;
    }
    const int state = fields.value(2).toInt();
    PanelKey& key = m_keys[named.key];
    ++m_states[named.key];
    key.shownState = state;
    key.storedState = state;
    if (key.source >= 0) { // "CK" for a copy reaches its source, but no other copy
        m_keys[key.source].shownState = state;
        m_keys[key.source].storedState = state;
        key.statesBefore = m_states.value(key.source);
    }
    return named;
}

PanelMenus::Outcome PanelMenus::showMenu(const QString& name)
{
    Outcome shown;
    const int menu = find(name);
    shown.isMenuMissing = menu < 0;
    shown.missingMenu = name;
    if (menu >= 0) {
        m_menus[menu].isShown = true;
    }
    return shown;
}

PanelMenus::Outcome PanelMenus::namedKey(const QStringList& fields) const
{
    Outcome named;
    named.missingMenu = fields.value(0);
    named.missingKey = fields.value(1);
    named.key = findKey(fields.value(0), fields.value(1));
    named.isMenuMissing = find(fields.value(0)) < 0;
    named.isKeyMissing = !named.isMenuMissing && named.key < 0;
    return named;
}

PanelMenus::Outcome PanelMenus::defineKey(const QStringList& fields, const MenuPlace& place)
{
    int menu = find(fields.at(menuFields::Menu));
    if (menu < 0) {
        menu = newMenu(fields.at(menuFields::Menu), Kind::Plain, place);
    }
    Outcome defined;
    defined.key = findKey(fields.at(menuFields::Menu), fields.at(menuFields::Id));
    const int state = fields.at(menuFields::State).toInt();
    if (defined.key >= 0) {
        PanelKey& key = m_keys[defined.key];
        key.fields = fields;
        key.place = place;
        key.storedState = state;
        return defined;
    }
    PanelKey key;
    key.fields = fields;
    key.place = place;
    key.storedState = state;
    const Kind kind = m_menus.at(menu).kind;
    if (kind != Kind::Plain) {
        const bool isFixed = fields.value(menuFields::Fixed) == QLatin1String("1");
        key.cell = isFixed && kind == Kind::Pax ? nextFixed(menu) : nextOption(menu);
    }
    defined.isNew = true;
    defined.key = newKey(menu, key);
    return defined;
}

PanelMenus::Outcome PanelMenus::copyKey(
    const QStringList& fields, PanelMenu::Kind kind, const MenuPlace& place)
{
    Outcome copied;
    int menu = find(fields.value(0));
    if (menu < 0) {
        menu = newMenu(fields.value(0), kind, place);
        m_menus[menu].isShown = m_menus.at(menu).name == MainName;
    } else {
        copied.isOtherKind = m_menus.at(menu).kind != kind;
        m_menus[menu].isShown = m_menus.at(menu).isShown || m_menus.at(menu).name == MainName;
    }
    if (fields.size() < 2) {
        return copied;
    }
    const Outcome named = namedKey(fields.mid(1));
    copied.missingMenu = named.missingMenu;
    copied.missingKey = named.missingKey;
    copied.isMenuMissing = named.isMenuMissing;
    copied.isKeyMissing = named.isKeyMissing;
    if (named.key < 0) {
        return copied;
    }
    PanelKey key = m_keys.at(named.key);
    key.source = named.key;
    key.place = place;
    key.shownState = 1;
    key.cell = {};
    key.statesBefore = m_states.value(named.key);
    if (m_menus.at(menu).kind != Kind::Plain) {
        key.cell = kind == Kind::Main ? nextOfColumn(menu, fields.value(1)) : nextFixed(menu);
    }
    copied.isNew = true;
    copied.key = newKey(menu, key);
    return copied;
}

int PanelMenus::newMenu(const QString& name, PanelMenu::Kind kind, const MenuPlace& place)
{
    const int index = static_cast<int>(m_menus.size());
    m_menus.append({name, kind, place, {}, false});
    m_counters.append(Counters());
    m_pax = kind == Kind::Pax ? index : m_pax;
    // "Span" has the first cell of the PAX main menu's row
    m_counters.last().option = kind == Kind::Pax ? 1 : 0;
    m_byName.insert(name, index);
    return index;
}

int PanelMenus::newKey(int menu, const PanelKey& key)
{
    const int index = static_cast<int>(m_keys.size());
    m_keys.append(key);
    m_keys.last().menu = menu;
    m_menus[menu].keys.append(index);
    const QString name = slot(m_menus.at(menu).name, key.field(menuFields::Id));
    if (!m_byKey.contains(name)) {
        m_byKey.insert(name, index);
    }
    return index;
}

KeyCell PanelMenus::nextOfColumn(int menu, const QString& sourceMenu)
{
    const Kind kind = m_menus.at(menu).kind;
    const int column = columnOf(sourceMenu);
    if (column < 0) {
        return cellAt(kind, 0, 0);
    }
    Counters& counters = m_counters[menu];
    // On the PAX main menu the counters of the tuners are those of the fixed cells.
    int& row = kind == Kind::Pax && column == 0 ? counters.fixedColumn
        : kind == Kind::Pax && column == 2      ? counters.fixedRow
                                                : counters.columns[sourceMenu];
    return cellAt(kind, row++, column);
}

KeyCell PanelMenus::nextFixed(int menu)
{
    Counters& counters = m_counters[menu];
    const KeyCell cell = cellAt(m_menus.at(menu).kind, counters.fixedRow, counters.fixedColumn);
    if (counters.fixedColumn == 1) {
        counters.fixedColumn = 0;
        ++counters.fixedRow;
    } else {
        ++counters.fixedColumn;
    }
    return cell;
}

KeyCell PanelMenus::nextOption(int menu)
{
    return {KeyGroup::Options, 0, m_counters[menu].option++};
}

int PanelMenus::findKey(const QString& menu, const QString& keyId) const
{
    return m_byKey.value(slot(menu, keyId), -1);
}

const PanelKey& PanelMenus::original(const PanelKey& key) const
{
    return key.source < 0 ? key : m_keys.at(key.source);
}

int PanelMenus::shownState(const PanelKey& key) const
{
    const bool wasTold = key.source >= 0 && m_states.value(key.source) > key.statesBefore;
    return wasTold ? m_keys.at(key.source).shownState : key.shownState;
}

int PanelMenus::meantState(const PanelKey& key) const
{
    return original(key).storedState;
}

std::optional<QString> PanelMenus::opens(const PanelKey& key) const
{
    const QString command = original(key).field(menuFields::Command);
    if (command.startsWith(OpensMenu)) {
        return rest(command, OpensMenu);
    }
    if (command.startsWith(LeavesPax)) {
        return rest(command, LeavesPax);
    }
    if (command.startsWith(OpensPax)) {
        return m_pax < 0 ? QString() : m_menus.at(m_pax).name;
    }
    return std::nullopt;
}

QList<bool> PanelMenus::reached() const
{
    QList<bool> reached(m_menus.size(), false);
    QList<int> open;
    for (int menu = 0; menu < m_menus.size(); ++menu) {
        if (m_menus.at(menu).isShown || (m_isPaxShown && menu == m_pax)) {
            reached[menu] = true;
            open.append(menu);
        }
    }
    while (!open.isEmpty()) {
        const int menu = open.takeLast();
        for (const int index : m_menus.at(menu).keys) {
            const auto name = opens(m_keys.at(index));
            const int next = name ? find(*name) : -1;
            if (next >= 0 && !reached.at(next)) {
                reached[next] = true;
                open.append(next);
            }
        }
    }
    return reached;
}
