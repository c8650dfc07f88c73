#include "sim/ScopeOptions.h"

#include "sim/PanelLink.h"
#include "sim/PseudoTerminal.h"
#include "sim/ScopeBytes.h"
#include "sim/ScopePort.h"
#include "sim/UnitDevices.h"

#include <QCommandLineParser>

namespace {

const QString Signal = QStringLiteral("signal");
const QString Fault = QStringLiteral("scope-fault");
const QString Mode = QStringLiteral("scope-mode");
const QString Line = QStringLiteral("ttyUSB%1");

// of Demod 1, 2 and 3 when nothing else is asked for
const QStringList DefaultSignals{
    QStringLiteral("qpsk"), QStringLiteral("8psk"), QStringLiteral("16qam:snr=25")};

} // namespace

void ScopeOptions::addTo(QCommandLineParser& parser)
{
    parser.addOption({Signal,
        QStringLiteral("The signal of the next scope port, from Demod 1 on; the last one given "
                       "goes for the others too."),
        QStringLiteral("SIGNAL")});
    parser.addOption({Fault,
        QStringLiteral("Spoil what the scope ports send: index, loss, noise, silence, or several "
                       "of them with \",\" between."),
        QStringLiteral("FAULTS")});
    parser.addOption({Mode,
        QStringLiteral("What the scope ports send before the panel asks, 0 to 3 (default: 0)."),
        QStringLiteral("MODE"), QStringLiteral("0")});
}

ScopeOptions ScopeOptions::from(const QCommandLineParser& parser)
{
    ScopeOptions options;
    const QStringList given = parser.values(Signal);
    const QStringList& texts = given.isEmpty() ? DefaultSignals : given;
    for (int port = 0; port < Ports && options.fault.isEmpty(); ++port) {
        const QString text = texts.value(port, texts.constLast());
        options.signalSettings.append(SignalSettings::fromText(text, options.fault));
    }
    if (options.fault.isEmpty() && texts.size() > Ports) {
        options.fault =
            QStringLiteral("%1 signals for %2 scope ports").arg(texts.size()).arg(Ports);
    }
    options.faults = ScopeFaults::fromText(parser.value(Fault));
    bool modeIsNumber = false;
    options.mode = parser.value(Mode).toInt(&modeIsNumber);
    if (options.faults < 0) {
        options.fault = QStringLiteral("no fault of a scope port: \"%1\"").arg(parser.value(Fault));
    } else if (!modeIsNumber || options.mode < ScopePort::Off || options.mode > ScopePort::Sdi) {
        options.fault = QStringLiteral("no mode of a scope port: \"%1\"").arg(parser.value(Mode));
    }
    return options;
}

bool ScopeOptions::addPorts(UnitDevices& devices, const PanelLink& link, quint32 seed) const
{
    for (int port = 0; port < Ports; ++port) {
        PseudoTerminal* line = devices.add(Line.arg(port + 1));
        if (line == nullptr) {
            return false;
        }
        auto* scope = new ScopePort(port + 1, *line, signalSettings.at(port), faults,
            seed + static_cast<quint32>(port), line);
        scope->setMode(mode);
        QObject::connect(&link, &PanelLink::received, scope, &ScopePort::takeCommand);
        QObject::connect(&link, &PanelLink::sent, scope, &ScopePort::takeMessage);
    }
    return true;
}
