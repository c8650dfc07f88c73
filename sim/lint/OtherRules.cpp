#include "sim/lint/OtherRules.h"

#include "sim/menus/MenuFields.h"
#include "sim/unit/MessageRules.h"
#include "wire/Commands.h"
#include "wire/SpanTable.h"

#include <algorithm>

namespace lint {

namespace {

constexpr int Demodulators = 3;
constexpr int LastScopeMode = 3;
constexpr int LastChannel = 2;
constexpr int LastLinkMode = 2;
constexpr int LastColour = 7;
constexpr int LastPhaseLabel = 8;

// A field of a message and the numbers that it may have.
struct Bounds
{
    QLatin1String word;
    const char* code;
    int field;
    const char* name;
    int low;
    int high;
};

const QList<Bounds>& table()
{
    using namespace wire::word;
    static const QList<Bounds> all{
        {SM, "QN701", 0, "demodulators are", 1, Demodulators},
        {SM, "QN701", 1, "modes are", 0, LastScopeMode},
        {SP, "QN702", 0, "channels are", 0, LastChannel},
        {SP, "QN702", 1, "spans are", 0, static_cast<int>(spanTable().size()) - 1},
        {Slave, "QN703", 0, "link modes are", 0, LastLinkMode},
        {LC, "QN704", 0, "colours are", 0, LastColour},
        {LC, "QN704", 1, "traces are", 0, LastChannel + 1},
        {HM, "QN705", 0, "channels are", 0, LastChannel},
        {SH, "QN706", 0, "channels are", 0, LastChannel},
        {SH, "QN706", 1, "shown is", 0, 1},
        {SQ, "QN707", 0, "demodulators are", 1, Demodulators},
        {SF, "QN708", 0, "channels are", 0, LastChannel},
        {Pax, "QN709", 0, "the switch is", 0, 1},
    };
    return all;
}

void checkPhase(const QStringList& fields, const MenuPlace& place, Findings& findings)
{
    // Multiplied by 8 and rounded the phase is the number of a label.
    const double label = fields.value(0).toDouble() * 8 + 0.5;
    if (label <= -1 || label >= LastPhaseLabel + 1) {
        findings.add("QN711", place,
            QStringLiteral("the phase %1 lights no label").arg(wire::excerpt(fields.value(0))),
            QStringLiteral("phases are 0 to 1, 0.125 for each label"));
    }
}

QString merged(const QStringList& fields, qsizetype at, qsizetype extra)
{
    QStringList all = fields.mid(0, at);
    all.append(fields.mid(at, extra + 1).join(QString()));
    return (all + fields.mid(at + extra + 1)).join(QLatin1Char(','));
}

} // namespace

void checkNumbers(
    const QString& word, const QStringList& fields, const MenuPlace& place, Findings& findings)
{
    for (const Bounds& bounds : table()) {
        if (word != bounds.word || bounds.field >= fields.size()) {
            continue;
        }
        const int number = fields.at(bounds.field).toInt();
        if (number < bounds.low || number > bounds.high) {
            findings.add(bounds.code, place,
                QStringLiteral("%1: %2 %3 to %4, not %5")
                    .arg(bounds.word, QLatin1String(bounds.name), QString::number(bounds.low),
                        QString::number(bounds.high), QString::number(number)),
                QStringLiteral("the panel ignores the message"));
            return;
        }
    }
    if (word == wire::word::SF && !(fields.value(1).toDouble() > 0)) {
        findings.add("QN708", place, QStringLiteral("SF: a frequency is above 0"),
            QStringLiteral("the panel ignores the message"));
    } else if (word == wire::word::ST && fields.value(0) != QLatin1String("1")) {
        findings.add("QN710", place,
            QStringLiteral("ST: only 1 starts the spectrum, not \"%1\"")
                .arg(wire::excerpt(fields.value(0))),
            QStringLiteral("the panel ignores the message"));
    } else if (word == wire::word::PM) {
        checkPhase(fields, place, findings);
    }
}

void checkSurplus(
    const QString& word, const QStringList& fields, const MenuPlace& place, Findings& findings)
{
    const wire::Command* command = wire::findCommand(wire::toPanel(), word);
    const qsizetype known = command->fields.size();
    const bool endsWithText =
        word == wire::word::SB || (word == wire::word::DB && !fields.isEmpty());
    const bool isFlagText = word == wire::word::DB && fields.size() == 2 &&
        fields.at(1).size() > 1 && fields.at(0) != QLatin1String("KILLBOX");
    if (isFlagText || (endsWithText && fields.size() > known)) {
        const QString shown = word == wire::word::SB ? fields.value(1) : fields.value(0);
        findings.add("QN108", place,
            QStringLiteral("the text ends at its comma: \"%1\"").arg(wire::excerpt(shown)),
            QStringLiteral("a text cannot hold a comma"));
    } else if (!command->repeatsLast && fields.size() > known) {
        findings.add("QN109", place,
            QStringLiteral("%1 has %2 fields, the panel reads %3")
                .arg(word, QString::number(fields.size()), QString::number(known)),
            QStringLiteral("is there a comma in a text?"));
    }
}

QString textWithComma(const QString& body)
{
    const QStringList all = body.split(QLatin1Char(','));
    const wire::Command* command = wire::findCommand(wire::toPanel(), all.first());
    const bool isKey =
        command != nullptr && (command->word == wire::word::AK || command->word == wire::word::IK);
    if (!isKey || all.size() - 1 <= command->completeFields) {
        return {};
    }
    // The label is the likeliest place; then the options, the units, and the rest.
    const int label = command->word == wire::word::AK ? menuFields::Label + 1 : 1;
    const qsizetype surplus = all.size() - 1 - command->completeFields;
    const qsizetype optional = command->fields.size() - command->completeFields;
    for (const int offset : {0, 5, 3, 2, -2, -1}) {
        for (qsizetype less = 0; less <= std::min(optional, surplus - 1); ++less) {
            const qsizetype at = label + offset;
            const qsizetype extra = surplus - less;
            if (at > 0 && rules::check(merged(all, at, extra)).kind == MenuFault::Kind::None) {
                return all.mid(at, extra + 1).join(QLatin1Char(','));
            }
        }
    }
    return {};
}

} // namespace lint
