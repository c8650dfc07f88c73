#include "app/CommandLine.h"

#include "app/Identity.h"

#include <algorithm>
#include <array>

namespace {

constexpr auto Help = R"(Usage: qn740-panel [options]
The front panel of the QN740 receiver/combiner.

  -noK7150      a spectral card of the older type; its page is there at once
  --self-test   look at ports, fonts, screen, touchscreen, folders, governor and user, and end
  --show-touch  draw where the screen is touched, to see whether it is calibrated
  --version     print the version and end
  --help        print this help and end
  -platform X   where to draw (linuxfb, eglfs, vnc, offscreen); so are all other options of Qt

Environment:
  QN740_DEV              directory of the serial devices, /dev when unset
  QN740_SPLASH_MS        for how long the start-up picture is shown, 15000 when unset
  QN740_SCALE            size of the panel: a factor from 1 to 8, or fit; 1 when unset
  QN740_ROTATION         degrees clockwise by which the panel is turned: 0, 90, 180 or 270
  QN740_SPECTRUM_SOCKET  path of a local socket that delivers the spectra
  QN740_SCOPE_SOCKET     path of a local socket that delivers what the scopes receive
  QN740_REMOTE_SOCKET    path of a local socket for qn740-remote, a look from afar
  QN740_REMOTE_VIEW_ONLY 1: what comes from afar presses nothing
  QT_LOGGING_RULES       what is logged: qn740.link.debug=true

Exit status:
  0  after SIGTERM, SIGINT or SIGHUP
  1  a fault in the self-test
  2  unknown option
  3  another panel has the main unit's line open
  4  no screen
  5  out of memory)";

constexpr QLatin1String OlderCard("-noK7150");
constexpr QLatin1String Platform("platform");

// Options of Qt's own that are followed by a value, without their dashes.
constexpr std::array<QLatin1String, 14> QtOptionsWithValue{Platform,
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
    bool ended = false; // the rest does not count any more
    for (qsizetype i = 0; i < arguments.size() && !ended; ++i) {
        const QString argument = arguments.value(i);
        ended = true;
        if (argument == QLatin1String("--version")) {
            decide(Action::ShowVersion, QStringLiteral("qn740-panel ") + identity::version());
        } else if (argument == QLatin1String("--help") || argument == QLatin1String("-h")) {
            decide(Action::ShowHelp, QString::fromLatin1(Help));
        } else if (const qsizetype length = lengthOfOption(arguments, i); length > 0) {
            i += length - 1;
            ended = false;
        } else {
            decide(Action::Refuse, refusal(argument));
        }
    }
}

qsizetype CommandLine::lengthOfOption(const QStringList& arguments, qsizetype i)
{
    const QString argument = arguments.value(i);
    if (argument == QLatin1String("--self-test")) {
        m_action = Action::SelfTest;
        return 1;
    }
    if (argument == QLatin1String("--show-touch")) {
        m_action = Action::ShowTouch;
        return 1;
    }
    if (argument == OlderCard) {
        return 1;
    }
    const int length = argument.startsWith(QLatin1Char('-')) ? lengthOfQtOption(argument) : 0;
    if (length > 0 && withoutDashes(argument).section(QLatin1Char('='), 0, 0) == Platform) {
        m_platform = length > 1 ? arguments.value(i + 1) : argument.section(QLatin1Char('='), 1);
    }
    return length;
}

void CommandLine::decide(Action action, const QString& text)
{
    m_action = action;
    m_text = text;
}
