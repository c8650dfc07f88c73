#include "app/CommandLine.h"

#include "app/Identity.h"

#include <algorithm>
#include <array>

namespace {

constexpr auto Help = R"(Usage: qn740-panel [options]
The front panel of the QN740 receiver/combiner.

  -noK7150      a spectral card of the older type; its page is there at once
  --version     print the version and end
  --help        print this help and end
  -platform X   where to draw (linuxfb, eglfs, vnc, offscreen); so are all other options of Qt

Environment:
  QN740_DEV              directory of the serial devices, /dev when unset
  QN740_SPLASH_MS        for how long the start-up picture is shown, 15000 when unset
  QN740_SPECTRUM_SOCKET  path of a local socket that delivers the spectra
  QN740_SCOPE_SOCKET     path of a local socket that delivers what the scopes receive
  QT_LOGGING_RULES       what is logged: qn740.link.debug=true

Exit status: 0 after SIGTERM, SIGINT or SIGHUP; 2 unknown option; 3 another panel has the main
unit's line open; 4 no screen.)";

constexpr QLatin1String OlderCard("-noK7150");

// Options of Qt's own that are followed by a value, without their dashes.
constexpr std::array<QLatin1String, 14> QtOptionsWithValue{QLatin1String("platform"),
    QLatin1String("platformpluginpath"), QLatin1String("platformtheme"), QLatin1String("plugin"),
    QLatin1String("qwindowgeometry"), QLatin1String("qwindowicon"), QLatin1String("qwindowtitle"),
    QLatin1String("session"), QLatin1String("display"), QLatin1String("geometry"),
    QLatin1String("icon"), QLatin1String("title"), QLatin1String("style"),
    QLatin1String("stylesheet")};
constexpr std::array<QLatin1String, 3> QtFlags{
    QLatin1String("reverse"), QLatin1String("widgetcount"), QLatin1String("nograb")};

template <std::size_t N>
bool isOneOf(const QString& name, const std::array<QLatin1String, N>& names)
{
    return std::find(names.cbegin(), names.cend(), name) != names.cend();
}

QString withoutDashes(const QString& argument)
{
    return argument.mid(argument.startsWith(QLatin1String("--")) ? 2 : 1);
}

// The number of arguments from here on that are one option of Qt, 0 if they are none.
int lengthOfQtOption(const QString& argument)
{
    const QString name = withoutDashes(argument);
    if (isOneOf(name, QtOptionsWithValue)) {
        return 2;
    }
    return isOneOf(name, QtFlags) ||
            isOneOf(name.section(QLatin1Char('='), 0, 0), QtOptionsWithValue)
        ? 1
        : 0;
}

QString refusal(const QString& argument)
{
    const QString hint = argument.compare(OlderCard, Qt::CaseInsensitive) == 0 ||
            withoutDashes(argument).compare(OlderCard.mid(1), Qt::CaseInsensitive) == 0
        ? QStringLiteral("it is spelled -noK7150")
        : QStringLiteral("--help lists the options");
    return QStringLiteral("qn740-panel: unknown option %1; %2").arg(argument, hint);
}

} // namespace

CommandLine::CommandLine(const QStringList& arguments)
{
    for (qsizetype i = 0; i < arguments.size() && m_action == Action::Run; ++i) {
        const QString argument = arguments.value(i);
        if (argument == OlderCard) {
            continue;
        }
        if (argument == QLatin1String("--version")) {
            decide(Action::ShowVersion, QStringLiteral("qn740-panel ") + identity::version());
        } else if (argument == QLatin1String("--help") || argument == QLatin1String("-h")) {
            decide(Action::ShowHelp, QString::fromLatin1(Help));
        } else if (const int length =
                       argument.startsWith(QLatin1Char('-')) ? lengthOfQtOption(argument) : 0;
                   length > 0) {
            i += length - 1;
        } else {
            decide(Action::Refuse, refusal(argument));
        }
    }
}

void CommandLine::decide(Action action, const QString& text)
{
    m_action = action;
    m_text = text;
}
