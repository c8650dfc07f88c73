#include "sim/unit/UnitKeys.h"

#include "wire/Commands.h"

#include <cmath>

namespace {

enum At { Menu, KeyId, Label, Type, Command, Units, Param, Options, Value, Toggle, State, Count };
enum KeyType {
    Toggles = 0,
    Number = 1,
    Selection = 2,
    Slider = 3,
    File = 4,
    Commands = 5,
    Address = 6
};

constexpr int MaxFiles = 60;

QString joined(const QLatin1String& word, const QStringList& fields)
{
    return word + QLatin1Char(',') + fields.join(QLatin1Char(','));
}

// Returns the commands to one demodulator or receiver each that a command to several stands for.
QStringList addressed(const QString& text, const QLatin1String& wide, const QStringList& single)
{
    if (!text.contains(wide)) {
        return {text};
    }
    QStringList texts;
    for (const QString& one : single) {
        texts.append(QString(text).replace(wide, one));
    }
    return texts;
}

QStringList addressed(const QString& body)
{
    static const QStringList Demods{
        QStringLiteral("D1:"), QStringLiteral("D2:"), QStringLiteral("D3:")};
    static const QStringList Receivers{QStringLiteral("R1:"), QStringLiteral("R2:")};
    QStringList texts;
    const QStringList demodulators = addressed(body, QLatin1String("D1 D2 D3:"), Demods);
    for (const QString& text : demodulators) {
        texts += addressed(text, QLatin1String("R1 R2:"), Receivers);
    }
    return texts;
}

bool isNumber(const QString& text)
{
    bool ok = false;
    const double value = text.toDouble(&ok);
    return ok && std::isfinite(value);
}

// Returns "Name: chosen" for a label "Name" or "Name: chosen before".
QString labelWith(const QString& label, const QString& chosen)
{
    return label.section(QLatin1Char(':'), 0, 0) + QLatin1String(": ") + chosen;
}

// Returns the text of a value in a list of choices or files, "value text:value text"; empty when
// the value is not in the list.
QString choiceText(const QString& options, const QString& value)
{
    const QStringList items = options.split(QLatin1Char(':'), Qt::SkipEmptyParts);
    for (const QString& item : items) {
        if (item.section(QLatin1Char(' '), 0, 0) == value) {
            return item.section(QLatin1Char(' '), 1);
        }
    }
    return {};
}

// Returns the menu in "SK:Some Menu:" or "PAX:0:Some Menu:"; the name begins at `start`.
QStringList menuOfCommand(const QString& command, qsizetype prefix)
{
    QString name = command.mid(prefix);
    name.chop(name.endsWith(QLatin1Char(':')) ? 1 : 0);
    return name.isEmpty() ? QStringList() : QStringList{joined(wire::word::SK, {name})};
}

// Returns the messages for a key that changes the screen, none for other keys.
QStringList confirmScreen(const QString& command)
{
    if (command.startsWith(QLatin1String("SK:"))) {
        return menuOfCommand(command, 3);
    }
    if (command.startsWith(QLatin1String("PAX:1:"))) {
        return {joined(wire::word::Pax, {QStringLiteral("1")})};
    }
    if (command.startsWith(QLatin1String("PAX:0:"))) {
        return QStringList{joined(wire::word::Pax, {QStringLiteral("0")})} +
            menuOfCommand(command, 6);
    }
    return {};
}

QStringList confirmChoice(QStringList fields, const QString& value)
{
    const QString known = choiceText(fields.at(Options), value);
    fields[Label] = labelWith(fields.at(Label), known.isEmpty() ? value : known);
    return {joined(wire::word::AK, fields)};
}

QStringList confirmFile(QStringList fields, const QString& value)
{
    QString shown = choiceText(fields.at(Options), value);
    if (shown.isEmpty()) {
        shown = QString(value).remove(QLatin1Char(',')).remove(QLatin1Char(':')).trimmed();
        QStringList files = fields.at(Options).split(QLatin1Char(':'), Qt::SkipEmptyParts);
        bool isThere = false;
        for (const QString& file : qAsConst(files)) {
            isThere = isThere || file.section(QLatin1Char(' '), 1) == shown;
        }
        if (!shown.isEmpty() && !isThere && files.size() < MaxFiles) {
            files.append(QString::number(files.size() + 1) + QLatin1Char(' ') + shown);
            fields[Options] = files.join(QLatin1Char(':'));
        }
    }
    if (shown.isEmpty()) {
        return {};
    }
    fields[Label] = labelWith(fields.at(Label), shown);
    return {joined(wire::word::AK, fields)};
}

QStringList confirmValue(const QStringList& fields, const QString& value, const QString& toggle)
{
    return {joined(wire::word::CV, {fields.at(Menu), fields.at(KeyId), value, toggle})};
}

// Returns the answer that gives a key the value that it has.
QStringList refuse(const QStringList& fields, const QString& /*value*/)
{
    if (!confirmScreen(fields.at(Command)).isEmpty()) {
        return {};
    }
    switch (fields.at(Type).toInt()) {
    case Toggles:
    case Commands:
    case Number:
    case Slider:
        return confirmValue(fields, fields.at(Value), fields.at(Toggle));
    case Selection:
    case Address:
    case File:
        return {joined(wire::word::AK, fields)};
    default:
        return {};
    }
}

QStringList confirm(const QStringList& fields, const QString& value)
{
    if (value.isEmpty()) {
        return {};
    }
    QStringList screen = confirmScreen(fields.at(Command));
    if (!screen.isEmpty()) {
        return screen;
    }
    switch (fields.at(Type).toInt()) {
    case Toggles:
    case Commands:
        if (value == QLatin1String("0") || value == QLatin1String("1")) {
            return confirmValue(fields, fields.at(Value), value);
        }
        return {};
    case Number:
    case Slider:
        return isNumber(value) ? confirmValue(fields, value, fields.at(Toggle)) : QStringList();
    case Selection:
    case Address:
        return value.contains(QLatin1Char(',')) ? QStringList() : confirmChoice(fields, value);
    case File:
        return confirmFile(fields, value);
    default:
        return {};
    }
}

} // namespace

void UnitKeys::apply(const QString& body)
{
    QStringList fields = body.split(QLatin1Char(','));
    const QString word = fields.takeFirst();
    if (word == wire::word::Clear) {
        m_keys.clear();
        m_index.clear();
        return;
    }
    const QString key = slot(fields.value(Menu), fields.value(KeyId));
    const bool known = m_index.contains(key);
    if (word == wire::word::AK && wire::hasEnoughFields(wire::word::AK, fields)) {
        fields = fields.mid(0, Count);
        if (known) {
            Fields& present = m_keys[m_index.value(key)];
            if (present.at(Value).toDouble() != 0) {
                fields[Value] =
                    present.at(Value); // the panel takes a new value only when its own is 0
            }
            present = fields;
        } else {
            m_index.insert(key, m_keys.size());
            m_keys.append(fields);
        }
    } else if (word == wire::word::CV && known) {
        m_keys[m_index.value(key)][Value] = fields.value(2);
        m_keys[m_index.value(key)][Toggle] = fields.value(3);
    } else if (word == wire::word::CK && known) {
        m_keys[m_index.value(key)][State] = fields.value(2);
    }
}

QStringList UnitKeys::answers(const QString& body) const
{
    return replies(body, confirm);
}

QStringList UnitKeys::refusals(const QString& body) const
{
    return replies(body, refuse);
}

QStringList UnitKeys::replies(const QString& body, Reply reply) const
{
    QStringList all;
    const QStringList texts = addressed(body);
    for (const QString& text : texts) {
        all += repliesToOne(text, reply);
    }
    all.removeDuplicates();
    return all;
}

QStringList UnitKeys::repliesToOne(const QString& text, Reply reply) const
{
    qsizetype longest = 0;
    for (const Fields& key : m_keys) {
        if (text.startsWith(key.at(Command))) {
            longest = qMax(longest, key.at(Command).size());
        }
    }
    QStringList all;
    for (const Fields& key : m_keys) {
        const QString& command = key.at(Command);
        if (longest > 0 && command.size() == longest && text.startsWith(command)) {
            all += reply(key, text.mid(longest));
        }
    }
    return all;
}

QString UnitKeys::field(const QString& menu, const QString& keyId, int index) const
{
    const auto found = m_index.constFind(slot(menu, keyId));
    return found == m_index.constEnd() ? QString() : m_keys.at(*found).value(index);
}

QString UnitKeys::slot(const QString& menu, const QString& keyId)
{
    return menu + QLatin1Char(',') + keyId;
}
