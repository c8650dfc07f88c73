#pragma once

#include <QString>

/// One line of text that a keyboard edits at its cursor.
struct EditedLine
{
    QString text;                  ///< The line.
    int cursor = 0;                ///< 0 (before the first character) to the length of the text.
    bool insertedSelected = false; ///< Whether the character before the cursor is left selected.

    /// \return the line after a key was pressed. Keys that do not edit change nothing; a line of
    /// \a maxLength characters takes no more.
    /// \param key       the key's text: one character, or a command word in any case ("BACKSPACE",
    /// "DEL", "<<-", "->>")
    /// \param maxLength of the line, in characters
    EditedLine after(const QString& key, int maxLength) const;

    /// \return whether the key with this text ends the entry.
    static bool isReturn(const QString& key);
};
