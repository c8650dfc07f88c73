#include "sim/cli/CardOptions.h"

#include "sim/card/CardSpectrum.h"
#include "sim/line/PseudoTerminal.h"
#include "sim/line/UnitDevices.h"

#include <QCommandLineParser>

namespace {

const QString Card = QStringLiteral("card");
const QString Points = QStringLiteral("card-points");
const QString Line = QStringLiteral("ttyUSB%1");
constexpr int FirstLine = 11;
constexpr int Lines = 3;

} // namespace

void CardOptions::addTo(QCommandLineParser& parser)
{
    parser.addOption({Card, QStringLiteral("The spectral cards: k7150 (default), older or none."),
        QStringLiteral("TYPE"), QStringLiteral("k7150")});
    parser.addOption({Points, QStringLiteral("Points of a spectrum, 1 to 9999 (default: 1024)."),
        QStringLiteral("NUMBER"), QString::number(CardPort::DefaultPoints)});
}

CardOptions CardOptions::from(const QCommandLineParser& parser)
{
    CardOptions options;
    const QString card = parser.value(Card);
    options.none = card == QLatin1String("none");
    const bool older = card == QLatin1String("older");
    options.type = older ? CardPort::Type::Older : CardPort::Type::K7150;
    bool pointsOk = false;
    options.points = parser.value(Points).toInt(&pointsOk);
    if (!options.none && !older && card != QLatin1String("k7150")) {
        options.fault = QStringLiteral("no card: \"%1\"").arg(card);
    } else if (!pointsOk || options.points < 1 || options.points > CardPort::MostPoints) {
        options.fault = QStringLiteral("no number of points: \"%1\"").arg(parser.value(Points));
    }
    return options;
}

bool CardOptions::addPorts(
    UnitDevices& devices, CardSpectrum& spectrum, const FaultTable& faults, quint32 seed) const
{
    for (int port = 0; port < Lines && !none; ++port) {
        PseudoTerminal* line = devices.add(Line.arg(FirstLine + port));
        if (line == nullptr) {
            return false;
        }
        const CardFaults cardFaults(faults, seed + static_cast<quint32>(port));
        new CardPort(type, *line, spectrum, cardFaults, points, line);
    }
    return true;
}
