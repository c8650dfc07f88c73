#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

class Key;

/// Everything that makes a key: what the main unit says about it in an "AK" message, or what a key
/// that exists says about itself, for a copy in another menu. KeyBoard::addKey() makes the key.
struct KeyDefinition
{
    QString menu;         ///< Name of the menu, empty for a copy.
    QString keyId;        ///< Identifier of the key inside its menu.
    QString label;        ///< Text of the key and title of its editor.
    int type = 0;         ///< What a press does, see Key::Type.
    QString command;      ///< Prefix of every value that the key sends.
    QString units;        ///< Number pad: ranges; slider: range.
    int param = 0;        ///< Number pad: kind; slider: read-out; list: number of columns, or 0.
    QString options;      ///< Choices or files; number pad: special value; slider: steps.
    double value = 0.0;   ///< Current value, given to number pad and slider.
    bool tog = false;     ///< Whether the toggle is set.
    int state = 0;        ///< Display state, see Key::State.
    bool fixed = false;   ///< Whether the key goes to the next fixed cell of the PAX main menu.
    QList<int> itemIds{}; ///< Positions of the choices that cannot be pressed; not part of "AK".

    /// Reads the fields of "AK" behind the command word: 0 menu, 1 key identifier, 2 label, 3 type,
    /// 4 command prefix, 5 units, 6 parameter, 7 options, 8 value, 9 toggle ("1" is set), 10
    /// display state, and optionally 11 fixed placement ("1" is fixed). A number that does not
    /// parse counts as 0. \return nothing when there are fewer than 11 fields.
    static std::optional<KeyDefinition> fromFields(const QStringList& fields);

    /// \return the definition by which a copy of \a key is made in another menu.
    static KeyDefinition of(const Key& key);

    /// Changes a key that exists: sets the label, also on its button, and all other fields but the
    /// identifier and the locked choices. The value is only set while the key's own is 0. The
    /// display state is stored, not shown.
    void update(Key& key) const;

    /// \return how many characters its texts have together.
    qsizetype characters() const;

    /// \return how many of these update() sets: those of all texts but the names of menu and key.
    qsizetype updatedCharacters() const;
};

/// Reads a number as the main unit writes it.
/// \return the number in single precision; 0 when \a text is not a finite number.
double valueFromText(const QString& text);
