#include "sim/cli/Options.h"

#include "sim/cli/HelpText.h"
#include "sim/cli/Printer.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdlib>

namespace {

const QString Directory = QStringLiteral("dir");
const QString Menu = QStringLiteral("menu");
const QString Watch = QStringLiteral("watch");
const QString Check = QStringLiteral("check");
const QString Format = QStringLiteral("format");
const QString Strict = QStringLiteral("strict");
const QString Export = QStringLiteral("export");
const QString NoMenus = QStringLiteral("no-menus");
const QString Trace = QStringLiteral("trace");
const QString TraceOnly = QStringLiteral("trace-only");
const QString TraceNot = QStringLiteral("trace-not");
const QString LogPipe = QStringLiteral("panel-log");

void addTraceTo(QCommandLineParser& parser)
{
    const QString words = QStringLiteral("WORD,...");
    parser.addOption({Trace, QStringLiteral("Print every message both ways with its time.")});
    parser.addOption({TraceOnly,
        QStringLiteral("Print only messages that begin with one of these words, as AK,R1:FREQ; "
                       "goes without --trace, too."),
        words});
    parser.addOption({TraceNot,
        QStringLiteral("Print all but messages that begin with one of these words."), words});
    parser.addOption({LogPipe,
        QStringLiteral("Print why the panel ignores a message, behind the traced message. FILE is "
                       "a named pipe that the panel writes its standard error to, started with "
                       "QT_LOGGING_RULES=\"qn740-ignored.debug=true;qn740.link.debug=true\"."),
        QStringLiteral("FILE")});
}

QStringList words(const QCommandLineParser& parser, const QString& option)
{
    return parser.values(option).join(QLatin1Char(',')).split(QLatin1Char(','), Qt::SkipEmptyParts);
}

Printer::Trace traceOf(const QCommandLineParser& parser)
{
    const bool on = parser.isSet(Trace) || parser.isSet(TraceOnly) || parser.isSet(TraceNot);
    return {on, {words(parser, TraceOnly), words(parser, TraceNot)}};
}

void addOwnTo(QCommandLineParser& parser)
{
    const QString file = QStringLiteral("FILE");
    parser.addOption({Directory,
        QStringLiteral("Make the devices in DIR (default: a fresh directory; removed at the end)."),
        QStringLiteral("DIR")});
    parser.addOption(
        {Menu, QStringLiteral("Send the menus of FILE instead of the built-in ones."), file});
    parser.addOption({Watch,
        QStringLiteral(
            "Watch the file of --menu. When it is saved and --check finds no error, send CLEAR and "
            "the new menus, and show again what was shown.")});
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
    addTraceTo(parser);
    ScopeOptions::addTo(parser);
    CardOptions::addTo(parser);
    UnitOptions::addTo(parser);
    LineOptions::addTo(parser);
    parser.process(application);
    const MenuTools tools = toolsFrom(parser);
    if (!parser.positionalArguments().isEmpty() && !tools.isAsked()) {
        Printer::error(QStringLiteral("qn740-sim: unexpected argument \"%1\"; see --help")
                           .arg(parser.positionalArguments().constFirst()));
        std::exit(1);
    }
    return {parser.value(Directory), parser.value(Menu), parser.isSet(Watch), tools,
        parser.isSet(NoMenus), traceOf(parser), parser.value(LogPipe), ScopeOptions::from(parser),
        CardOptions::from(parser), UnitOptions::from(parser), LineOptions::from(parser)};
}

QString Options::fault() const
{
    if (watch && menu.isEmpty()) {
        return QStringLiteral("--watch goes with --menu");
    }
    for (const QString& fault :
        {tools.fault(), line.fault, scopes.fault, cards.fault, unit.fault}) {
        if (!fault.isEmpty()) {
            return fault;
        }
    }
    return {};
}
