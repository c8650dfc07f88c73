#include "sim/lint/MenuRules.h"

#include "sim/lint/LabelRoom.h"
#include "sim/menus/MenuFields.h"
#include "wire/Commands.h"
#include "wire/Message.h"

#include <QHash>
#include <QPair>

#include <algorithm>
#include <limits>

namespace lint {

namespace {

using namespace menuFields;

constexpr int OptionColumns = 6;

QString nameOf(const QString& name)
{
    return QLatin1Char('"') + wire::excerpt(name) + QLatin1Char('"');
}

// Checks the cells of one main menu.
class Cells
{
public:
    Cells(const PanelMenus& menus, const PanelMenu& menu, Findings& findings)
        : m_menus(menus)
        , m_menu(menu)
        , m_findings(findings)
    {
        if (menu.kind == PanelMenu::Kind::Pax) {
            m_taken.insert(number({KeyGroup::Options, 0, 0}), QStringLiteral("Span"));
            m_taken.insert(number({KeyGroup::Channel2, 0, 0}), QStringLiteral("the scope"));
        }
    }

    void check(const PanelKey& key)
    {
        const QString label = m_menus.original(key).field(Label);
        if (key.cell.group == KeyGroup::Nowhere) {
            m_findings.add("QN502", key.place,
                QStringLiteral("the key %1 has no cell on %2: it is never shown")
                    .arg(nameOf(label), nameOf(m_menu.name)),
                QStringLiteral("the PAX main menu has no group \"Combiner\"; use MS"));
            return;
        }
        const QString before = m_taken.value(number(key.cell));
        if (!before.isEmpty()) {
            m_findings.add("QN501", key.place,
                QStringLiteral("the key %1 lies in the cell of %2 on %3")
                    .arg(nameOf(label), nameOf(before), nameOf(m_menu.name)),
                hint(key));
            return;
        }
        m_taken.insert(number(key.cell), label.isEmpty() ? key.field(Id) : label);
        if (key.cell.group == KeyGroup::Options && key.cell.column >= OptionColumns) {
            m_findings.add("QN503", key.place,
                QStringLiteral(
                    "the key %1 is number %2 of the row \"Options\", which has %3 columns")
                    .arg(nameOf(label), QString::number(key.cell.column + 1),
                        QString::number(OptionColumns)),
                QStringLiteral("further keys make the columns narrower than a finger needs"));
        }
    }

private:
    static QPair<int, QPair<int, int>> number(const KeyCell& cell)
    {
        return {static_cast<int>(cell.group), {cell.row, cell.column}};
    }

    QString hint(const PanelKey& key) const
    {
        if (key.source < 0) {
            return {};
        }
        return key.cell.group == KeyGroup::Options
            ? QStringLiteral("a column takes five keys of a menu; the sixth goes to \"Options\"")
            : QStringLiteral(
                  "keys of menus other than the tuners, the demodulators and the combiner "
                  "go to the first cell");
    }

    const PanelMenus& m_menus;
    const PanelMenu& m_menu;
    Findings& m_findings;
    QHash<QPair<int, QPair<int, int>>, QString> m_taken;
};

void checkCells(const PanelMenus& menus, const PanelMenu& menu, Findings& findings)
{
    if (menu.kind == PanelMenu::Kind::Plain) {
        return;
    }
    Cells cells(menus, menu, findings);
    for (const int key : menu.keys) {
        cells.check(menus.keys().at(key));
    }
}

void checkLabel(const PanelMenus& menus, const PanelKey& key, int options, Findings& findings)
{
    const PanelMenu& menu = menus.menus().at(key.menu);
    const PanelKey& original = menus.original(key);
    const QString label = original.field(Label);
    if (label.trimmed().isEmpty()) {
        if (key.source < 0) {
            findings.add("QN604", key.place, QStringLiteral("the key has no label"));
        }
        return;
    }
    // The keys of a page with few rows are larger, and become smaller when more are added.
    const bool isPage = menu.kind == PanelMenu::Kind::Plain;
    const QSize size = labelRoom::keySize(menu.kind, key.cell.group, options);
    if (key.cell.group != KeyGroup::Nowhere &&
        !labelRoom::fits(label, size, original.number(Type) == ToggleKey)) {
        findings.add("QN601", key.place,
            QStringLiteral("the label %1 is too long for its key on %2%3: it ends in \"...\" even "
                           "in the smallest letters")
                .arg(nameOf(label), isPage ? QStringLiteral("a full page of ") : QString(),
                    nameOf(menu.name)));
    }
}

void checkState(const PanelMenus& menus, const PanelKey& key, Findings& findings)
{
    const int meant = menus.meantState(key);
    if (menus.shownState(key) == meant) {
        return;
    }
    const QString message = QStringLiteral("CK,%1,%2,%3")
                                .arg(menus.menus().at(menus.original(key).menu).name, key.field(Id),
                                    QString::number(meant));
    findings.add("QN505", key.place,
        key.source < 0
            ? QStringLiteral("the state %1 is only stored, and no CK shows it").arg(meant)
            : QStringLiteral("a copy is shown in state 1 until the next CK of its source"),
        QStringLiteral("add %1 behind it").arg(wire::toPrintable(message).left(100)));
}

void checkTarget(
    const PanelMenus& menus, const QSet<QString>& refused, const PanelKey& key, Findings& findings)
{
    const auto name = key.source < 0 ? menus.opens(key) : std::nullopt;
    if (name && menus.find(*name) < 0 && !refused.contains(*name)) {
        findings.add("QN203", key.place,
            name->isEmpty() ? QStringLiteral("the key opens the PAX main menu, and there is none")
                            : QStringLiteral("the key opens the menu %1, which does not exist")
                                  .arg(nameOf(*name)));
    }
}

// Whether all keys of a menu are also on another one: it may be meant as a store of keys alone.
bool isStore(const PanelMenu& menu, const QList<bool>& copied)
{
    return std::all_of(menu.keys.begin(), menu.keys.end(), [&](int key) { return copied.at(key); });
}

void checkReached(const PanelMenus& menus, Findings& findings)
{
    QList<bool> copied(menus.keys().size(), false);
    for (const PanelKey& key : menus.keys()) {
        if (key.source >= 0) {
            copied[key.source] = true;
        }
    }
    const QList<bool> reached = menus.reached();
    for (qsizetype i = 0; i < reached.size(); ++i) {
        const PanelMenu& menu = menus.menus().at(i);
        if (!reached.at(i) && !isStore(menu, copied)) {
            findings.add("QN204", menu.place,
                QStringLiteral("the operator cannot reach the menu %1").arg(nameOf(menu.name)),
                QStringLiteral("show it with SK, or with a key whose command is \"SK:%1:\"")
                    .arg(wire::excerpt(menu.name)));
        }
    }
}

} // namespace

void checkMenus(const PanelMenus& menus, const QSet<QString>& refused, Findings& findings)
{
    QList<int> options; // of each menu: how many keys its row "Options" has
    for (const PanelMenu& menu : menus.menus()) {
        checkCells(menus, menu, findings);
        options.append(static_cast<int>(std::count_if(menu.keys.begin(), menu.keys.end(),
            [&](int key) { return menus.keys().at(key).cell.group == KeyGroup::Options; })));
    }
    for (const PanelKey& key : menus.keys()) {
        checkLabel(menus, key, options.at(key.menu), findings);
        checkState(menus, key, findings);
        checkTarget(menus, refused, key, findings);
    }
    checkReached(menus, findings);
}

} // namespace lint
