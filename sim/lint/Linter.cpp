#include "sim/lint/Linter.h"

#include "sim/lint/KeyRules.h"
#include "sim/lint/MenuRules.h"
#include "sim/lint/OtherRules.h"
#include "sim/menus/MenuFields.h"
#include "sim/unit/MenuFile.h"
#include "wire/Commands.h"

#include <QSet>

namespace lint {

namespace {

using FaultKind = MenuFault::Kind;

const char* codeOf(FaultKind kind)
{
    switch (kind) {
    case FaultKind::Unreadable:
        return "QN100";
    case FaultKind::UnknownWord:
        return "QN101";
    case FaultKind::TooFew:
        return "QN102";
    case FaultKind::WrongValue:
        return "QN103";
    case FaultKind::Unsendable:
        return "QN104";
    case FaultKind::TooLong:
        return "QN105";
    case FaultKind::Wait:
        return "QN106";
    case FaultKind::Comma:
        return "QN108";
    default:
        return "QN107";
    }
}

// The check of one file.
class Run
{
public:
    explicit Run(const MenuContent& content)
        : m_content(content)
    {
    }

    QList<Finding> findings()
    {
        findNames();
        for (const MenuFault& fault : m_content.faults) {
            takeFault(fault);
        }
        for (const MenuStep& step : m_content.steps) {
            if (step.kind == MenuStep::Kind::Message) {
                takeMessage(step);
            }
        }
        checkMenus(m_menus, m_refused, m_findings);
        for (const MenuSilence& silence : m_content.silences) {
            takeSilence(silence);
        }
        return m_findings.sorted(m_content.silences);
    }

private:
    // Notes the menus that any message of the file makes, for hints, and what the refused ones
    // would have made: that it is missing is no finding of its own.
    void findNames()
    {
        for (const MenuStep& step : m_content.steps) {
            const QString word = step.body.section(QLatin1Char(','), 0, 0);
            if (word == wire::word::AK || word == wire::word::CM || word == wire::word::MS) {
                m_anyMenu.insert(step.body.section(QLatin1Char(','), 1, 1));
            }
        }
        for (const MenuFault& fault : m_content.faults) {
            const QString word = fault.body.section(QLatin1Char(','), 0, 0);
            if (word == wire::word::AK || word == wire::word::CM || word == wire::word::MS) {
                m_refused.insert(fault.body.section(QLatin1Char(','), 1, 1));
            }
            if (word == wire::word::AK) {
                m_refused.insert(fault.body.section(QLatin1Char(','), 1, 2));
            }
        }
    }

    void takeFault(const MenuFault& fault)
    {
        const QString cut =
            fault.kind == FaultKind::WrongValue ? textWithComma(fault.body) : QString();
        if (!cut.isEmpty()) {
            m_findings.add("QN108", fault.place,
                QStringLiteral("a comma ends the field: \"%1\" is more than one")
                    .arg(wire::excerpt(cut)),
                QStringLiteral("a label, or any other text, cannot hold a comma"));
        } else {
            m_findings.add(codeOf(fault.kind), fault.place, fault.text);
        }
    }

    void takeSilence(const MenuSilence& silence)
    {
        if (!silence.understood) {
            m_findings.add("QN110", silence.comment,
                QStringLiteral("this comment is not understood"),
                QStringLiteral("\"# qn740: ignore QN404\" silences the next line, "
                               "\"# qn740: ignore-file QN404\" the file"));
        }
        for (const QString& code : silence.codes) {
            if (findCode(code) == nullptr) {
                m_findings.add("QN110", silence.comment,
                    QStringLiteral("there is no code %1").arg(wire::excerpt(code)));
            }
        }
    }

    void takeMessage(const MenuStep& step)
    {
        QStringList fields = step.body.split(QLatin1Char(','));
        const QString word = fields.takeFirst();
        checkSurplus(word, fields, step.place, m_findings);
        checkNumbers(word, fields, step.place, m_findings);
        if (word == wire::word::Clear) {
            checkMenus(m_menus, m_refused, m_findings);
            m_menus = PanelMenus();
            m_values.clear();
            return;
        }
        if (word == wire::word::IK) {
            // as a key of no menu, with the eighth field for its value
            QStringList key = QStringList{{}, {}} + fields.mid(0, 6);
            key.append(fields.value(7));
            checkKey(key, step.place, m_findings);
        } else if (word == wire::word::AK) {
            checkRepeated(fields, step.place);
        }
        const PanelMenus::Outcome outcome = m_menus.apply(step);
        reportMissing(outcome, step.place);
        if (outcome.isOtherKind) {
            m_findings.add("QN504", step.place,
                QStringLiteral("%1 is not laid out for %2: the keys go where they do not belong")
                    .arg(wire::excerpt(fields.value(0)), word),
                QStringLiteral("make the menu with %1 before AK or another message makes it")
                    .arg(word));
        }
        if (outcome.key >= 0) {
            checkNamed(word, fields, m_menus.keys().at(outcome.key), step.place);
        }
    }

    // Checks an "AK" for a key that exists: its value is taken only while the key's own is 0.
    void checkRepeated(const QStringList& fields, const MenuPlace& place)
    {
        checkKey(fields, place, m_findings);
        const QString name =
            fields.at(menuFields::Menu) + QLatin1Char(',') + fields.at(menuFields::Id);
        const bool isKnown =
            m_menus.findKey(fields.at(menuFields::Menu), fields.at(menuFields::Id)) >= 0;
        const double value = fields.at(menuFields::Value).toDouble();
        const double present = isKnown ? m_values.value(name) : 0;
        if (present != 0 && value != present) {
            m_findings.add("QN205", place,
                QStringLiteral("the key keeps its value %1: AK changes only a value of 0")
                    .arg(present),
                QStringLiteral("send CV"));
        } else {
            m_values.insert(name, value);
        }
    }

    void checkNamed(
        const QString& word, const QStringList& fields, const PanelKey& key, const MenuPlace& place)
    {
        const QStringList& definition = m_menus.original(key).fields;
        if (word == wire::word::CV) {
            checkValue(definition, fields.value(2), place, m_findings);
            m_values.insert(
                fields.value(0) + QLatin1Char(',') + fields.value(1), fields.value(2).toDouble());
        } else if (word == wire::word::EI) {
            checkLocked(definition, fields.value(2), place, m_findings);
        }
    }

    void reportMissing(const PanelMenus::Outcome& outcome, const MenuPlace& place)
    {
        const QString key = outcome.missingMenu + QLatin1Char(',') + outcome.missingKey;
        if (m_refused.contains(outcome.isMenuMissing ? outcome.missingMenu : key)) {
            return;
        }
        if (outcome.isMenuMissing) {
            m_findings.add("QN201", place,
                QStringLiteral("there is no menu \"%1\"").arg(wire::excerpt(outcome.missingMenu)),
                m_anyMenu.contains(outcome.missingMenu)
                    ? QStringLiteral("it does not exist at this place of the file")
                    : QString());
        } else if (outcome.isKeyMissing) {
            m_findings.add("QN202", place,
                QStringLiteral("the menu \"%1\" has no key \"%2\"")
                    .arg(wire::excerpt(outcome.missingMenu), wire::excerpt(outcome.missingKey)),
                QStringLiteral("a key must be defined before it is named"));
        }
    }

    const MenuContent& m_content;
    PanelMenus m_menus;
    Findings m_findings;
    QSet<QString> m_anyMenu;
    QSet<QString> m_refused;         // "menu" and "menu,key"
    QHash<QString, double> m_values; // of each key, by "menu,key"
};

} // namespace

QList<Finding> check(const MenuFile& file)
{
    return Run(file.content()).findings();
}

} // namespace lint
