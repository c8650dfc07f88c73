#pragma once

#include <QString>
#include <QStringList>

#include <optional>

class Key;

// What the main unit says of a key in an "AK" message.
//
// Fields behind the command word: 0 menu, 1 key identifier, 2 label, 3 type, 4 command prefix,
// 5 units, 6 parameter, 7 options, 8 value, 9 toggle ("1" is set), 10 display state, and where
// there is one, 11 fixed placement ("1" is fixed). A number that does not parse counts as 0.
struct KeyDefinition
{
    QString menu;
    QString keyId;
    QString label;
    int type = 0;
    QString command;
    QString units;
    int param = 0;
    QString options;
    double value = 0.0;
    bool tog = false;
    int state = 0;
    bool fixed = false;

    // In: the fields behind the command word. Out: nothing when there are fewer than 11.
    static std::optional<KeyDefinition> fromFields(const QStringList& fields);

    // Out: what is known of a key that is there, for a copy of it in another menu.
    static KeyDefinition of(const Key& key);

    // Gives the key everything but the identifier and the value, which stays unless it is 0, and
    // shows the label on its button. The display state is stored, not shown.
    void update(Key& key) const;
};

// In: the text of a number as the main unit writes it. Out: the number in single precision, 0 when
// the text is no finite number.
double valueFromText(const QString& text);
