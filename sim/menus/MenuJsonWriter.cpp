// Writing of menu files in JSON.
#include "sim/menus/JsonText.h"
#include "sim/menus/MenuFields.h"
#include "sim/menus/MenuJson.h"

#include <QHash>

#include <algorithm>

namespace {

using namespace menuFields;

QString member(const QString& name, const QString& value)
{
    return json::quoted(name) + QLatin1String(": ") + value;
}

QString array(const QStringList& values)
{
    return QLatin1Char('[') + values.join(QLatin1String(", ")) + QLatin1Char(']');
}

QString quotedArray(const QStringList& texts)
{
    QStringList values;
    for (const QString& text : texts) {
        values.append(json::quoted(text));
    }
    return array(values);
}

QString object(const QStringList& members)
{
    return QLatin1Char('{') + members.join(QLatin1String(", ")) + QLatin1Char('}');
}

// A number where that keeps its digits, otherwise a string.
QString number(const QString& text)
{
    return json::isNumber(text) ? text : json::quoted(text);
}

QString typed(wire::FieldType type, const QString& text)
{
    switch (type) {
    case wire::FieldType::Flag:
    case wire::FieldType::Placement:
        if (text == QLatin1String("0") || text == QLatin1String("1")) {
            return text == QLatin1String("1") ? QStringLiteral("true") : QStringLiteral("false");
        }
        return json::quoted(text);
    case wire::FieldType::Integer:
    case wire::FieldType::Number:
    case wire::FieldType::State:
        return number(text);
    default:
        return json::quoted(text);
    }
}

// Returns the members for a text that is ranges, such as "1 2:3 4"; none when it is anything else.
QStringList rangeMembers(const QString& units)
{
    QStringList ranges;
    for (const QString& item : units.split(QLatin1Char(':'))) {
        const QStringList bounds = item.split(QLatin1Char(' '));
        if (bounds.size() != 2 || !json::isNumber(bounds.at(0)) || !json::isNumber(bounds.at(1))) {
            return {};
        }
        ranges.append(array(bounds));
    }
    return {member(QStringLiteral("ranges"), array(ranges))};
}

QStringList sliderMembers(const QString& units)
{
    const QStringList bounds = units.split(QLatin1Char(' '));
    if (bounds.size() != 2 || !json::isNumber(bounds.at(0)) || !json::isNumber(bounds.at(1))) {
        return {};
    }
    return {member(QStringLiteral("maximum"), bounds.at(0)),
        member(QStringLiteral("minimum"), bounds.at(1))};
}

QStringList stepMembers(const QString& options)
{
    const QStringList steps = options.split(QLatin1Char(':'));
    const bool areNumbers = std::all_of(steps.begin(), steps.end(), json::isNumber);
    return areNumbers ? QStringList{member(QStringLiteral("steps"), array(steps))} : QStringList();
}

// Returns the members for a text that is choices, such as "0 Off:1 On"; none when it is not.
QStringList choiceMembers(const QString& options)
{
    QStringList choices;
    for (const QString& item : options.split(QLatin1Char(':'))) {
        const qsizetype blank = item.indexOf(QLatin1Char(' '));
        if (blank < 0) {
            return {};
        }
        choices.append(object({member(QStringLiteral("value"), number(item.left(blank))),
            member(QStringLiteral("text"), json::quoted(item.mid(blank + 1)))}));
    }
    return {member(QStringLiteral("choices"), array(choices))};
}

QStringList unitMembers(int type, const QString& units)
{
    return type == NumberKey ? rangeMembers(units)
        : type == SliderKey  ? sliderMembers(units)
                             : QStringList();
}

QStringList optionMembers(int type, const QString& options)
{
    return type == SliderKey                      ? stepMembers(options)
        : type == SelectionKey || type == FileKey ? choiceMembers(options)
                                                  : QStringList();
}

// Returns the members for one field of a key; none when the field has its default.
QStringList keyMembers(const QStringList& fields, qsizetype at)
{
    static const QStringList defaults{{}, {}, {}, {}, {}, {}, QStringLiteral("0"), {},
        QStringLiteral("0"), QStringLiteral("0"), QStringLiteral("1")};
    const wire::Command* command = wire::findCommand(wire::toPanel(), wire::word::AK);
    const QString& text = fields.at(at);
    const QString name = names(wire::word::AK).at(at);
    const QString& typeText = fields.at(Type);
    const int type = typeText == QString::number(typeText.toInt()) ? typeText.toInt() : -1;
    if (at == Type && !typeName(type).isEmpty()) {
        return {member(name, json::quoted(typeName(type)))};
    }
    if (at < Fixed && at != Type && at != Id && text == defaults.at(at)) {
        return {};
    }
    const QStringList better = at == Units ? unitMembers(type, text)
        : at == Options                    ? optionMembers(type, text)
                                           : QStringList();
    return better.isEmpty() ? QStringList{member(name, typed(command->fields.at(at).type, text))}
                            : better;
}

QStringList keyMembers(const QStringList& fields)
{
    QStringList members;
    for (qsizetype at = Id; at < qMin(fields.size(), qsizetype{Fixed} + 1); ++at) {
        members += keyMembers(fields, at);
    }
    if (fields.size() > Fixed + 1) {
        members += member(QStringLiteral("more"), quotedArray(fields.mid(Fixed + 1)));
    }
    return members;
}

QStringList messageMembers(const QString& word, const QStringList& fields)
{
    QStringList members{member(QStringLiteral("message"), json::quoted(word))};
    const wire::Command* command = wire::findCommand(wire::toPanel(), word);
    const QStringList known = names(word);
    for (qsizetype at = 0; at < qMin(fields.size(), known.size()); ++at) {
        const wire::FieldType type = command->fields.at(at).type;
        if (command->repeatsLast && at == known.size() - 1) {
            QStringList values;
            for (const QString& text : fields.mid(at)) {
                values.append(typed(type, text));
            }
            members.append(member(known.at(at), array(values)));
            return members;
        }
        members.append(member(known.at(at), typed(type, fields.at(at))));
    }
    if (fields.size() > known.size()) {
        members.append(member(QStringLiteral("more"), quotedArray(fields.mid(known.size()))));
    }
    return members;
}

// The codes that are silenced at a place, with their member.
class Silences
{
public:
    explicit Silences(const QList<MenuSilence>& all)
    {
        for (const MenuSilence& silence : all) {
            m_codes[key(silence.target)] += silence.understood ? silence.codes : QStringList();
        }
    }

    QStringList members(const MenuPlace& place) const
    {
        const QStringList codes = m_codes.value(key(place));
        return codes.isEmpty() ? QStringList()
                               : QStringList{member(QStringLiteral("ignore"), quotedArray(codes))};
    }

private:
    static QString key(const MenuPlace& place)
    {
        return QString::number(place.line) + QLatin1Char(' ') + place.pointer;
    }

    QHash<QString, QStringList> m_codes;
};

// Returns the items of the content, one line each or, for a menu, one line for each of its keys.
QStringList items(const MenuContent& content, const Silences& silences)
{
    QStringList all;
    QStringList keys;
    QString menu;
    const auto endMenu = [&] {
        if (!keys.isEmpty()) {
            all.append(QLatin1String("    {") + member(QStringLiteral("menu"), json::quoted(menu)) +
                QLatin1String(", \"keys\": [\n      ") + keys.join(QLatin1String(",\n      ")) +
                QLatin1String("]}"));
            keys.clear();
        }
    };
    for (const MenuStep& step : content.steps) {
        QStringList fields = step.body.split(QLatin1Char(','));
        const QString word = fields.takeFirst();
        const bool isKey = step.kind == MenuStep::Kind::Message && word == wire::word::AK;
        if (!isKey || fields.at(Menu) != menu) {
            endMenu();
        }
        if (isKey) {
            menu = fields.at(Menu);
            keys.append(object(keyMembers(fields) + silences.members(step.place)));
            continue;
        }
        const QStringList members = step.kind == MenuStep::Kind::Wait
            ? QStringList{member(QStringLiteral("wait"), QString::number(step.waitMs))}
            : messageMembers(word, fields);
        all.append(QLatin1String("    ") + object(members + silences.members(step.place)));
    }
    endMenu();
    return all;
}

} // namespace

namespace menuJson {

QByteArray write(const MenuContent& content)
{
    const Silences silences(content.silences);
    QStringList members{member(QStringLiteral("version"), QStringLiteral("1"))};
    members += silences.members({});
    const QStringList all = items(content, silences);
    members.append(member(QStringLiteral("content"),
        all.isEmpty() ? QStringLiteral("[]")
                      : QLatin1String("[\n") + all.join(QLatin1String(",\n")) + QLatin1Char(']')));
    return QByteArray("{\n  ") + members.join(QLatin1String(",\n  ")).toLatin1() + "\n}\n";
}

} // namespace menuJson
