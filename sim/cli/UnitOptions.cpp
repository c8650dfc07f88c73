#include "sim/cli/UnitOptions.h"

#include <QCommandLineParser>

namespace {

const QString Refuse = QStringLiteral("refuse");
const QString Delay = QStringLiteral("delay");
const QString Silent = QStringLiteral("silent");
const QString Quiet = QStringLiteral("quiet");

template <class Add>
void take(const QStringList& texts, QString& fault, const Add& add)
{
    for (const QString& text : texts) {
        if (fault.isEmpty()) {
            fault = add(text);
        }
    }
}

} // namespace

void UnitOptions::addTo(QCommandLineParser& parser)
{
    const QString pattern = QStringLiteral("PATTERN");
    parser.addOption({Refuse,
        QStringLiteral("Answer these messages of the panel with the value from before; may be "
                       "given again, as --delay and --silent may."),
        pattern});
    parser.addOption(
        {Delay, QStringLiteral("Answer these messages, or all, so many milliseconds later."),
            QStringLiteral("MS[:PATTERN]")});
    parser.addOption({Silent, QStringLiteral("Do not answer these messages."), pattern});
    parser.addOption({Quiet,
        QStringLiteral("Do not send these words unasked: PM, which comes twice a second while a "
                       "scope is on, or SF, which follows the tuners."),
        QStringLiteral("WORD,...")});
}

UnitOptions UnitOptions::from(const QCommandLineParser& parser)
{
    UnitOptions options;
    Confirmations& rules = options.confirmations;
    take(parser.values(Refuse), options.fault,
        [&rules](const QString& text) { return rules.refuse(text); });
    take(parser.values(Silent), options.fault,
        [&rules](const QString& text) { return rules.silence(text); });
    take(parser.values(Delay), options.fault,
        [&rules](const QString& text) { return rules.delay(text); });
    const QStringList words = parser.values(Quiet);
    for (const QString& text : words) {
        options.quiet += text.split(QLatin1Char(','), Qt::SkipEmptyParts);
    }
    return options;
}

bool UnitOptions::lets(const QString& body) const
{
    return !quiet.contains(body.section(QLatin1Char(','), 0, 0));
}
