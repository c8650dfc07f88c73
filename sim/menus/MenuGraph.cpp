#include "sim/menus/MenuGraph.h"

#include "sim/menus/MenuFields.h"
#include "sim/menus/PanelMenus.h"
#include "wire/Commands.h"

#include <QHash>

namespace {

// Returns a quoted string of the language; what is not printable ASCII as an HTML entity.
QString quoted(const QString& text)
{
    QString line(QLatin1Char('"'));
    for (const QChar c : text) {
        if (c == QLatin1Char('"') || c == QLatin1Char('\\')) {
            line += QLatin1Char('\\');
            line += c;
        } else if (c == QLatin1Char('&') || c.unicode() < 0x20 || c.unicode() > 0x7e) {
            line += QStringLiteral("&#%1;").arg(c.unicode());
        } else {
            line += c;
        }
    }
    return line + QLatin1Char('"');
}

QString node(const QString& name)
{
    return quoted(QLatin1String("menu ") + name);
}

QString shape(PanelMenu::Kind kind)
{
    return kind == PanelMenu::Kind::Plain ? QStringLiteral("box")
        : kind == PanelMenu::Kind::Main   ? QStringLiteral("tab")
                                          : QStringLiteral("component");
}

QString menuLine(const PanelMenu& menu, bool isReached)
{
    const QString count = QStringLiteral("\\n%1 key%2\"")
                              .arg(QString::number(menu.keys.size()),
                                  menu.keys.size() == 1 ? QString() : QStringLiteral("s"));
    const QString look = isReached ? QString() : QStringLiteral(", style=dashed, color=red");
    return QStringLiteral("  %1 [label=%2, shape=%3%4];\n")
        .arg(node(menu.name), quoted(menu.name).chopped(1) + count, shape(menu.kind), look);
}

} // namespace

QByteArray menuGraph(const MenuContent& content)
{
    PanelMenus menus;
    for (const MenuStep& step : content.steps) {
        if (step.kind == MenuStep::Kind::Message && step.body == wire::word::Clear) {
            menus = PanelMenus();
        } else {
            menus.apply(step);
        }
    }
    QString text = QStringLiteral("digraph menus {\n  node [fontname=\"DejaVu Sans\"];\n");
    const QList<bool> reached = menus.reached();
    for (qsizetype i = 0; i < menus.menus().size(); ++i) {
        text += menuLine(menus.menus().at(i), reached.at(i));
    }
    QHash<QString, bool> missing;
    for (const PanelKey& key : menus.keys()) {
        const auto target = menus.opens(key);
        if (!target) {
            continue;
        }
        if (menus.find(*target) < 0 && !missing.contains(*target)) {
            missing.insert(*target, true);
            text += QStringLiteral("  %1 [label=%2, shape=box, style=dotted, color=red];\n")
                        .arg(node(*target), quoted(*target + QLatin1String("?")));
        }
        text += QStringLiteral("  %1 -> %2 [label=%3];\n")
                    .arg(node(menus.menus().at(key.menu).name), node(*target),
                        quoted(menus.original(key).field(menuFields::Label)));
    }
    return text.toLatin1() + "}\n";
}
