#include "sim/cli/ScopeOptions.h"

#include "sim/scope/ScopePort.h"

#include <QCommandLineParser>

namespace {

const QString Signal = QStringLiteral("signal");
const QString Mode = QStringLiteral("scope-mode");

// of Demod 1, 2 and 3
const QStringList DefaultSignals{
    QStringLiteral("qpsk"), QStringLiteral("8psk"), QStringLiteral("16qam:snr=25")};

} // namespace

void ScopeOptions::addTo(QCommandLineParser& parser)
{
    parser.addOption({Signal,
        QStringLiteral("The signal of the next scope port, from Demod 1 on; the last one given "
                       "goes for the others too."),
        QStringLiteral("SIGNAL")});
    parser.addOption({Mode,
        QStringLiteral("What the scope ports send before panel or menus say, 0 to 3 (default: 0)."),
        QStringLiteral("MODE"), QStringLiteral("0")});
}

ScopeOptions ScopeOptions::from(const QCommandLineParser& parser)
{
    ScopeOptions options;
    const QStringList given = parser.values(Signal);
    const QStringList& texts = given.isEmpty() ? DefaultSignals : given;
    for (int port = 0; port < ScopePortSettings::Ports && options.fault.isEmpty(); ++port) {
        const QString text = texts.value(port, texts.constLast());
        options.ports.signalSettings.append(SignalSettings::fromText(text, options.fault));
    }
    if (options.fault.isEmpty() && texts.size() > ScopePortSettings::Ports) {
        options.fault = QStringLiteral("%1 signals for %2 scope ports")
                            .arg(texts.size())
                            .arg(ScopePortSettings::Ports);
    }
    bool modeIsNumber = false;
    options.ports.mode = parser.value(Mode).toInt(&modeIsNumber);
    if (!modeIsNumber || options.ports.mode < ScopePort::Off ||
        options.ports.mode > ScopePort::Sdi) {
        options.fault = QStringLiteral("no mode of a scope port: \"%1\"").arg(parser.value(Mode));
    }
    return options;
}
