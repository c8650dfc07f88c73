#include "sim/cli/CardOptions.h"

#include "sim/card/CardSpectrum.h"

#include <QCommandLineParser>

#include <cmath>

namespace {

const QString Card = QStringLiteral("card");
const QString Points = QStringLiteral("card-points");
const QString Level = QStringLiteral("card-level");

QString readPoints(const QCommandLineParser& parser, CardPortSettings& ports)
{
    if (!parser.isSet(Points)) {
        const bool older = ports.type == CardPort::Type::Older;
        ports.points = older ? CardPort::DefaultPoints : CardPort::PointsOfSpan;
        return {};
    }
    bool ok = false;
    ports.points = parser.value(Points).toInt(&ok);
    return ok && ports.points >= 1 && ports.points <= CardPort::MaxPoints
        ? QString()
        : QStringLiteral("no number of points: \"%1\"").arg(parser.value(Points));
}

QString readLevel(const QCommandLineParser& parser, CardPortSettings& ports)
{
    bool ok = false;
    ports.level = parser.value(Level).toDouble(&ok);
    return ok && std::abs(ports.level) <= CardSpectrum::MaxLevel
        ? QString()
        : QStringLiteral("no level of a card: \"%1\"").arg(parser.value(Level));
}

} // namespace

void CardOptions::addTo(QCommandLineParser& parser)
{
    parser.addOption({Card, QStringLiteral("The spectral cards: k7150 (default), older or none."),
        QStringLiteral("TYPE"), QStringLiteral("k7150")});
    parser.addOption({Points,
        QStringLiteral("Points of a spectrum, 1 to 9999 (default: those that a K7150 has of the "
                       "span; 1024 of the older type)."),
        QStringLiteral("NUMBER")});
    parser.addOption({Level,
        QStringLiteral("Raises the carriers that the cards see, -80 to 80 dB (default: 0; from "
                       "about 30 on a card is overloaded)."),
        QStringLiteral("DB"), QStringLiteral("0")});
}

CardOptions CardOptions::from(const QCommandLineParser& parser)
{
    CardOptions options;
    const QString card = parser.value(Card);
    options.ports.none = card == QLatin1String("none");
    const bool older = card == QLatin1String("older");
    options.ports.type = older ? CardPort::Type::Older : CardPort::Type::K7150;
    if (!options.ports.none && !older && card != QLatin1String("k7150")) {
        options.fault = QStringLiteral("no card: \"%1\"").arg(card);
    }
    for (const auto read : {readPoints, readLevel}) {
        const QString fault = read(parser, options.ports);
        options.fault = options.fault.isEmpty() ? fault : options.fault;
    }
    return options;
}
