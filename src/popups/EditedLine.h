#pragma once

#include <QString>

// One line of text that a keyboard edits at its cursor.
struct EditedLine
{
    QString text;
    int cursor = 0;                // 0 (before the first character) to the length of the text
    bool insertedSelected = false; // the character before the cursor is left selected

    // In: the text of a key: one character, or a command word in any case ("BACKSPACE", "DEL",
    // "<<-", "->>"); the longest text that may come out. Out: the line after it; keys that do not
    // edit change nothing, a full line takes no more characters.
    EditedLine after(const QString& key, int longest) const;

    // In: the text of a key. Out: whether it ends the entry.
    static bool isReturn(const QString& key);
};
