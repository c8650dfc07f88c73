// Reading; JsonWriter.cpp writes.
#include "sim/menus/MenuJson.h"

#include "sim/menus/JsonText.h"
#include "sim/menus/MenuFields.h"
#include "sim/unit/MessageRules.h"
#include "wire/Message.h"

#include <algorithm>
#include <optional>

namespace {

using JsonKind = JsonValue::Kind;
using FaultKind = MenuFault::Kind;

constexpr int MaxWaitMs = 600000;

const QStringList& commonMembers()
{
    static const QStringList names{QStringLiteral("comment"), QStringLiteral("ignore")};
    return names;
}

// Returns a reference token of a JSON pointer.
QString token(QString name)
{
    name.replace(QLatin1Char('~'), QLatin1String("~0"));
    return QLatin1Char('/') + name.replace(QLatin1Char('/'), QLatin1String("~1"));
}

QString token(qsizetype index)
{
    return QLatin1Char('/') + QString::number(index);
}

class Reader
{
public:
    MenuContent read(const QByteArray& text)
    {
        const JsonResult result = json::read(text);
        if (!result.fault.isEmpty()) {
            add(FaultKind::Json, result.fault, {result.line, {}});
            return m_content;
        }
        const MenuPlace whole{result.value.line, {}};
        static const QStringList names{
            QStringLiteral("$schema"), QStringLiteral("version"), QStringLiteral("content")};
        if (!isObject(result.value, names, whole)) {
            return m_content;
        }
        readVersion(result.value, whole);
        readIgnore(result.value, whole, {});
        const JsonValue* content = result.value.member(QStringLiteral("content"));
        if (content == nullptr || content->kind != JsonKind::Array) {
            add(FaultKind::Json, QStringLiteral("\"content\" must be an array"), whole);
            return m_content;
        }
        for (qsizetype i = 0; i < content->items.size(); ++i) {
            readItem(content->items.at(i), QStringLiteral("/content") + token(i));
        }
        return m_content;
    }

private:
    void add(FaultKind kind, const QString& text, const MenuPlace& place)
    {
        m_content.faults.append({kind, text, place});
    }

    // Whether the value is an object whose members are all known; adds the faults otherwise.
    bool isObject(const JsonValue& value, const QStringList& names, const MenuPlace& place)
    {
        if (value.kind != JsonKind::Object) {
            add(FaultKind::Json, QStringLiteral("an object is expected here"), place);
            return false;
        }
        bool allKnown = true;
        for (qsizetype i = 0; i < value.names.size(); ++i) {
            const QString& name = value.names.at(i);
            if (!names.contains(name) && !commonMembers().contains(name)) {
                add(FaultKind::Json,
                    QStringLiteral("unknown member \"%1\"").arg(wire::toPrintable(name.left(40))),
                    {value.items.at(i).line, place.pointer + token(name)});
                allKnown = false;
            }
        }
        return allKnown;
    }

    void readVersion(const JsonValue& value, const MenuPlace& place)
    {
        const JsonValue* version = value.member(QStringLiteral("version"));
        if (version == nullptr || version->kind != JsonKind::Number ||
            version->text != QLatin1String("1")) {
            add(FaultKind::Json, QStringLiteral("\"version\" must be 1"), place);
        }
    }

    void readIgnore(const JsonValue& value, const MenuPlace& place, const MenuPlace& target)
    {
        const JsonValue* codes = value.member(QStringLiteral("ignore"));
        if (codes == nullptr) {
            return;
        }
        MenuSilence silence{{codes->line, place.pointer + QStringLiteral("/ignore")}, target, {}};
        silence.understood = codes->kind == JsonKind::Array;
        for (const JsonValue& code : codes->items) {
            silence.codes.append(code.text);
        }
        m_content.silences.append(silence);
    }

    void readItem(const JsonValue& value, const QString& pointer)
    {
        const MenuPlace place{value.line, pointer};
        if (value.member(QStringLiteral("keys")) != nullptr) {
            readMenu(value, place);
        } else if (value.member(QStringLiteral("wait")) != nullptr) {
            readWait(value, place);
        } else if (value.member(QStringLiteral("message")) != nullptr) {
            readMessage(value, place);
        } else {
            add(FaultKind::Json,
                QStringLiteral("an object with \"keys\", \"message\" or \"wait\" is expected here"),
                place);
        }
    }

    void readWait(const JsonValue& value, const MenuPlace& place)
    {
        if (!isObject(value, {QStringLiteral("wait")}, place)) {
            return;
        }
        const JsonValue* wait = value.member(QStringLiteral("wait"));
        bool ok = false;
        const int ms = wait->text.toInt(&ok);
        if (!ok || wait->kind != JsonKind::Number || ms < 0 || ms > MaxWaitMs) {
            add(FaultKind::Wait,
                QStringLiteral("wait needs a time in milliseconds from 0 to %1").arg(MaxWaitMs),
                place);
        } else {
            m_content.steps.append({MenuStep::Kind::Wait, {}, ms, place});
        }
    }

    void readMenu(const JsonValue& value, const MenuPlace& place)
    {
        const JsonValue* keys = value.member(QStringLiteral("keys"));
        if (!isObject(value, {QStringLiteral("menu"), QStringLiteral("keys")}, place)) {
            return;
        }
        const auto menu = text(value, QStringLiteral("menu"), place);
        if (!menu || keys->kind != JsonKind::Array) {
            add(FaultKind::Json,
                QStringLiteral("a menu needs its name in \"menu\" and an array in \"keys\""),
                place);
            return;
        }
        readIgnore(value, place, place);
        for (qsizetype i = 0; i < keys->items.size(); ++i) {
            const JsonValue& key = keys->items.at(i);
            readKey(key, *menu, {key.line, place.pointer + QStringLiteral("/keys") + token(i)});
        }
    }

    void readKey(const JsonValue& value, const QString& menu, const MenuPlace& place)
    {
        const qsizetype before = m_content.faults.size();
        takeKey(value, menu, place);
        // What the key would have made is told with its faults, too.
        const JsonValue* id = value.member(menuFields::names(wire::word::AK).at(menuFields::Id));
        for (qsizetype i = before; i < m_content.faults.size(); ++i) {
            QString& body = m_content.faults[i].body;
            body = QLatin1String("AK,") + menu + QLatin1Char(',') +
                (id != nullptr ? id->text : QString());
        }
    }

    void takeKey(const JsonValue& value, const QString& menu, const MenuPlace& place)
    {
        static const QStringList names = menuFields::names(wire::word::AK).mid(1) +
            QStringList{QStringLiteral("ranges"), QStringLiteral("choices"),
                QStringLiteral("maximum"), QStringLiteral("minimum"), QStringLiteral("steps"),
                QStringLiteral("more")};
        if (!isObject(value, names, place)) {
            return;
        }
        QStringList fields{menu};
        for (qsizetype i = 1; i < menuFields::Fixed; ++i) {
            const auto field = keyField(value, i, place);
            if (!field) {
                return;
            }
            fields.append(*field);
        }
        if (appendRest(value, {QStringLiteral("fixed")}, fields, place)) {
            finish(wire::word::AK, value, fields, place);
        }
    }

    // Returns a field of a key, its default when it is absent; nothing after a fault.
    std::optional<QString> keyField(const JsonValue& value, qsizetype field, const MenuPlace& place)
    {
        static const QStringList defaults{{}, {}, {}, {}, {}, {}, QStringLiteral("0"), {},
            QStringLiteral("0"), QStringLiteral("0"), QStringLiteral("1")};
        const QString name = menuFields::names(wire::word::AK).at(field);
        const bool isRequired = field == menuFields::Id || field == menuFields::Type;
        if (field == menuFields::Units && value.member(name) == nullptr) {
            return units(value, place);
        }
        if (field == menuFields::Options && value.member(name) == nullptr) {
            return options(value, place);
        }
        if (value.member(name) == nullptr && !isRequired) {
            return defaults.value(field);
        }
        const auto given = text(value, name, place);
        return given && field == menuFields::Type ? menuFields::typeText(*given) : given;
    }

    std::optional<QString> units(const JsonValue& value, const MenuPlace& place)
    {
        const QString maximum = QStringLiteral("maximum");
        const QString minimum = QStringLiteral("minimum");
        if (value.member(maximum) != nullptr || value.member(minimum) != nullptr) {
            const auto high = text(value, maximum, place);
            const auto low = text(value, minimum, place);
            return high && low ? std::optional(*high + QLatin1Char(' ') + *low) : std::nullopt;
        }
        const QString name = QStringLiteral("ranges");
        const JsonValue* ranges = value.member(name);
        QStringList items;
        for (qsizetype i = 0; ranges != nullptr && i < ranges->items.size(); ++i) {
            const auto both = list(ranges->items.at(i),
                {ranges->items.at(i).line, place.pointer + token(name) + token(i)});
            if (!both) {
                return std::nullopt;
            }
            items.append(both->join(QLatin1Char(' ')));
        }
        return items.join(QLatin1Char(':'));
    }

    std::optional<QString> options(const JsonValue& value, const MenuPlace& place)
    {
        const QString stepsName = QStringLiteral("steps");
        if (const JsonValue* steps = value.member(stepsName)) {
            const auto all = list(*steps, {steps->line, place.pointer + token(stepsName)});
            return all ? std::optional(all->join(QLatin1Char(':'))) : std::nullopt;
        }
        const QString name = QStringLiteral("choices");
        const JsonValue* choices = value.member(name);
        QStringList items;
        for (qsizetype i = 0; choices != nullptr && i < choices->items.size(); ++i) {
            const JsonValue& choice = choices->items.at(i);
            const MenuPlace at{choice.line, place.pointer + token(name) + token(i)};
            const auto sent = text(choice, QStringLiteral("value"), at);
            const auto shown = text(choice, QStringLiteral("text"), at);
            if (!sent || !shown) {
                return std::nullopt;
            }
            if (sent->contains(QLatin1Char(' ')) || (*sent + *shown).contains(QLatin1Char(':'))) {
                add(FaultKind::Json,
                    QStringLiteral("a choice holds no \":\", and its value no blank"), at);
                return std::nullopt;
            }
            items.append(*sent + QLatin1Char(' ') + *shown);
        }
        return items.join(QLatin1Char(':'));
    }

    void readMessage(const JsonValue& value, const MenuPlace& place)
    {
        const auto word = text(value, QStringLiteral("message"), place);
        if (!word) {
            return;
        }
        const wire::Command* command = wire::findCommand(wire::toPanel(), *word);
        if (command == nullptr) {
            readIgnore(value, place, place);
            add(FaultKind::UnknownWord, rules::fault(*word), place);
            return;
        }
        const QStringList names = menuFields::names(*word);
        if (!isObject(value, names + QStringList{QStringLiteral("message"), QStringLiteral("more")},
                place)) {
            return;
        }
        QStringList fields;
        if (appendRest(value, names, fields, place)) {
            finish(command->word, value, fields, place);
        }
    }

    // Appends the fields with these names up to the last one that is there, and those of "more".
    bool appendRest(const JsonValue& value, const QStringList& names, QStringList& fields,
        const MenuPlace& place)
    {
        const QString moreName = QStringLiteral("more");
        const JsonValue* more = value.member(moreName);
        qsizetype count = names.size();
        while (count > 0 && more == nullptr && value.member(names.at(count - 1)) == nullptr) {
            --count;
        }
        for (const QString& name : names.mid(0, count)) {
            const JsonValue* member = value.member(name);
            const bool isList = member != nullptr && member->kind == JsonKind::Array;
            const MenuPlace at{isList ? member->line : place.line, place.pointer + token(name)};
            const auto several = isList ? list(*member, at) : std::nullopt;
            const auto one = isList ? std::nullopt : text(value, name, place);
            if (!several && !one) {
                return false;
            }
            const bool isJoined = name == QLatin1String("positions");
            fields += isJoined && isList ? QStringList{several->join(QLatin1Char(':'))}
                : isList                 ? *several
                                         : QStringList{*one};
        }
        const auto rest = more != nullptr
            ? list(*more, {more->line, place.pointer + token(moreName)})
            : std::optional(QStringList());
        fields += rest.value_or(QStringList());
        return rest.has_value();
    }

    // Returns the member's text; nothing, after a fault, when it is absent or no text or number.
    std::optional<QString> text(const JsonValue& value, const QString& name, const MenuPlace& place)
    {
        const JsonValue* member = value.member(name);
        if (member == nullptr) {
            add(FaultKind::Json, QStringLiteral("\"%1\" is missing").arg(name), place);
            return std::nullopt;
        }
        return plain(*member, {member->line, place.pointer + token(name)});
    }

    std::optional<QString> plain(const JsonValue& value, const MenuPlace& place)
    {
        switch (value.kind) {
        case JsonKind::Bool:
            return value.text.isEmpty() ? QStringLiteral("0") : value.text;
        case JsonKind::Number:
            return value.text;
        case JsonKind::String:
            if (value.text.contains(QLatin1Char(','))) {
                add(FaultKind::Comma,
                    QStringLiteral("a comma cannot stand in a field: \"%1\"")
                        .arg(wire::excerpt(value.text)),
                    place);
                return std::nullopt;
            }
            return value.text;
        default:
            add(FaultKind::Json, QStringLiteral("a text or a number is expected here"), place);
            return std::nullopt;
        }
    }

    std::optional<QStringList> list(const JsonValue& value, const MenuPlace& place)
    {
        if (value.kind != JsonKind::Array) {
            add(FaultKind::Json, QStringLiteral("an array is expected here"), place);
            return std::nullopt;
        }
        QStringList all;
        for (qsizetype i = 0; i < value.items.size(); ++i) {
            const auto item =
                plain(value.items.at(i), {value.items.at(i).line, place.pointer + token(i)});
            if (!item) {
                return std::nullopt;
            }
            all.append(*item);
        }
        return all;
    }

    void finish(QLatin1String word, const JsonValue& value, const QStringList& fields,
        const MenuPlace& place)
    {
        readIgnore(value, place, place);
        const QString body = (QStringList(QString(word)) + fields).join(QLatin1Char(','));
        MenuFault fault = rules::check(body);
        if (fault.kind == FaultKind::None) {
            m_content.steps.append({MenuStep::Kind::Message, body, 0, place});
        } else {
            fault.place = place;
            fault.body = body;
            m_content.faults.append(fault);
        }
    }

    MenuContent m_content;
};

} // namespace

namespace menuJson {

bool isJson(const QByteArray& text)
{
    const auto first = std::find_if_not(text.begin(), text.end(),
        [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; });
    return first != text.end() && *first == '{';
}

MenuContent read(const QByteArray& text)
{
    return Reader().read(text);
}

} // namespace menuJson
