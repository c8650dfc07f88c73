#include "sim/cli/Options.h"

#include "sim/cli/HelpText.h"
#include "sim/cli/Printer.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdlib>

namespace {

const QString Directory = QStringLiteral("dir");
const QString Menu = QStringLiteral("menu");
const QString Check = QStringLiteral("check");
const QString NoMenus = QStringLiteral("no-menus");
const QString Trace = QStringLiteral("trace");

void addOwnTo(QCommandLineParser& parser)
{
    const QString file = QStringLiteral("FILE");
    parser.addOption({Directory,
        QStringLiteral("Make the devices in DIR (default: a fresh directory; removed at the end)."),
        QStringLiteral("DIR")});
    parser.addOption(
        {Menu, QStringLiteral("Send the menus of FILE instead of the built-in ones."), file});
    parser.addOption({Check,
        QStringLiteral("Only check the menu file FILE: exit status 0 when it is good, else 1."),
        file});
    parser.addOption({NoMenus, QStringLiteral("Send no menus, only what is typed.")});
    parser.addOption({Trace, QStringLiteral("Print every message both ways with its time.")});
}

} // namespace

Options Options::parse(const QCoreApplication& application)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(helpText(LineOptions::faultHelp()));
    parser.addHelpOption();
    parser.addVersionOption();
    addOwnTo(parser);
    ScopeOptions::addTo(parser);
    CardOptions::addTo(parser);
    LineOptions::addTo(parser);
    parser.process(application);
    if (!parser.positionalArguments().isEmpty()) {
        Printer::error(QStringLiteral("qn740-sim: unexpected argument \"%1\"; see --help")
                           .arg(parser.positionalArguments().constFirst()));
        std::exit(1);
    }
    return {parser.value(Directory), parser.value(Menu), parser.value(Check), parser.isSet(NoMenus),
        parser.isSet(Trace), ScopeOptions::from(parser), CardOptions::from(parser),
        LineOptions::from(parser)};
}

QString Options::fault() const
{
    for (const QString& fault : {line.fault, scopes.fault, cards.fault}) {
        if (!fault.isEmpty()) {
            return fault;
        }
    }
    return {};
}
