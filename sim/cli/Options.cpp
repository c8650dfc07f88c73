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
const QString Format = QStringLiteral("format");
const QString Strict = QStringLiteral("strict");
const QString Export = QStringLiteral("export");
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
        QStringLiteral(
            "Only check the menu files that follow: exit status 1 when there is an error "
            "in one of them, else 0.")});
    parser.addOption({Strict, QStringLiteral("With --check: exit status 1 at a warning, too.")});
    parser.addOption(
        {Format, QStringLiteral("With --check: print the findings as \"text\" or as \"json\"."),
            QStringLiteral("FORM"), QStringLiteral("text")});
    parser.addOption({Export,
        QStringLiteral("Only print the menu file that follows as \"json\", as lines (\"menu\"), or "
                       "as a graph of its menus (\"dot\")."),
        QStringLiteral("FORM")});
    parser.addOption({NoMenus, QStringLiteral("Send no menus, only what is typed.")});
    parser.addOption({Trace, QStringLiteral("Print every message both ways with its time.")});
}

MenuTools toolsFrom(const QCommandLineParser& parser)
{
    MenuTools tools;
    tools.isStrict = parser.isSet(Strict);
    tools.format = parser.value(Format);
    tools.exportAs = parser.value(Export);
    tools.isCheck = parser.isSet(Check);
    tools.files = parser.positionalArguments();
    return tools;
}

} // namespace

Options Options::parse(const QCoreApplication& application)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(helpText(LineOptions::faultHelp()));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("FILE"),
        QStringLiteral("With --check and --export: menu files."), QStringLiteral("[FILE ...]"));
    addOwnTo(parser);
    ScopeOptions::addTo(parser);
    CardOptions::addTo(parser);
    LineOptions::addTo(parser);
    parser.process(application);
    const MenuTools tools = toolsFrom(parser);
    if (!parser.positionalArguments().isEmpty() && !tools.isAsked()) {
        Printer::error(QStringLiteral("qn740-sim: unexpected argument \"%1\"; see --help")
                           .arg(parser.positionalArguments().constFirst()));
        std::exit(1);
    }
    return {parser.value(Directory), parser.value(Menu), tools, parser.isSet(NoMenus),
        parser.isSet(Trace), ScopeOptions::from(parser), CardOptions::from(parser),
        LineOptions::from(parser)};
}

QString Options::fault() const
{
    for (const QString& fault : {tools.fault(), line.fault, scopes.fault, cards.fault}) {
        if (!fault.isEmpty()) {
            return fault;
        }
    }
    return {};
}
