#include "sim/cli/CardOptions.h"

#include <QCommandLineParser>

namespace {

const QString Card = QStringLiteral("card");
const QString Points = QStringLiteral("card-points");

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
    options.ports.none = card == QLatin1String("none");
    const bool older = card == QLatin1String("older");
    options.ports.type = older ? CardPort::Type::Older : CardPort::Type::K7150;
    bool pointsOk = false;
    options.ports.points = parser.value(Points).toInt(&pointsOk);
    if (!options.ports.none && !older && card != QLatin1String("k7150")) {
        options.fault = QStringLiteral("no card: \"%1\"").arg(card);
    } else if (!pointsOk || options.ports.points < 1 ||
        options.ports.points > CardPort::MaxPoints) {
        options.fault = QStringLiteral("no number of points: \"%1\"").arg(parser.value(Points));
    }
    return options;
}
