#include "sim/cli/LineOptions.h"

#include "sim/card/CardFaults.h"
#include "sim/line/LineFaults.h"
#include "sim/scope/ScopeFaults.h"

#include <QCommandLineParser>

namespace {

const QString Record = QStringLiteral("record");
const QString Play = QStringLiteral("replay");
const QString Fast = QStringLiteral("fast");
const QString Fault = QStringLiteral("fault");
const QString Seed = QStringLiteral("seed");

// The list of every class that has faults.
FaultTable knownFaults()
{
    return FaultTable(LineFaults::names() + ScopeFaults::names() + CardFaults::names());
}

QString conflict(const QCommandLineParser& parser)
{
    const bool menus =
        parser.isSet(QStringLiteral("menu")) || parser.isSet(QStringLiteral("no-menus"));
    if (parser.isSet(Play) && menus) {
        return QStringLiteral("--replay sends what is recorded, and no menus");
    }
    if (parser.isSet(Fast) && !parser.isSet(Play)) {
        return QStringLiteral("--fast goes with --replay");
    }
    return {};
}

} // namespace

void LineOptions::addTo(QCommandLineParser& parser)
{
    const QString file = QStringLiteral("FILE");
    parser.addOption(
        {Record, QStringLiteral("Write the whole conversation with the panel into FILE."), file});
    parser.addOption({Play,
        QStringLiteral("Play the conversation in FILE (of --record, --trace or the panel's debug "
                       "log) to the panel once, compare, and end: exit status 0 when all answers "
                       "came back, else 1."),
        file});
    parser.addOption(
        {Fast, QStringLiteral("Play it without the pauses, waiting only for the answers.")});
    parser.addOption({Fault,
        QStringLiteral(
            "Spoil what goes to the panel, each message, block or reply with this chance "
            "from 0 to 1; may be given again, or have several with \",\" between."),
        QStringLiteral("NAME=RATE")});
    parser.addOption({Seed, QStringLiteral("The seed of everything random (default: 1)."),
        QStringLiteral("NUMBER"), QStringLiteral("1")});
}

LineOptions LineOptions::from(const QCommandLineParser& parser)
{
    LineOptions options;
    options.faults = knownFaults();
    options.record = parser.value(Record);
    options.replay = parser.value(Play);
    options.fast = parser.isSet(Fast);
    options.fault = conflict(parser);
    const QStringList faults = parser.values(Fault);
    for (const QString& text : faults) {
        if (options.fault.isEmpty()) {
            options.fault = options.faults.set(text);
        }
    }
    bool ok = false;
    options.seed = parser.value(Seed).toUInt(&ok);
    if (!ok && options.fault.isEmpty()) {
        options.fault =
            QStringLiteral("the seed must be a whole number from 0 to 4294967295, not \"%1\"")
                .arg(parser.value(Seed));
    }
    options.tellSeed = parser.isSet(Seed) || !options.faults.isEmpty();
    return options;
}

QString LineOptions::faultHelp()
{
    return knownFaults().help();
}
