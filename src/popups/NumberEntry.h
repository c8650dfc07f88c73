#pragma once

#include <QString>

class NumberRanges;

// What is typed on the number pad, character by character, and whether it is a valid value.
//
// The entry starts as six blanks, which stay in front of what is typed; "cleared" means exactly
// these six. Where a key asks for the sign, an entry that is no number (blank, "-", "1.2.3") reads
// as 0; as a value it is invalid.
class NumberEntry
{
public:
    // The power of ten that the key that confirms an entry stands for.
    enum Multiplier { Plain = 0, Thousand = 3, Million = 6 };

    struct Checked
    {
        bool valid = false;
        double value = 0.0; // multiplied; 0 for an entry that is no number
    };

    // type: see entryType.
    explicit NumberEntry(int type = 0);

    const QString& text() const { return m_text; }
    // What the display shows: the entry, with the unit behind it for a frequency in MHz.
    QString display() const;

    // Adds characters at the end; there is no limit.
    void append(const QString& characters);
    // Removes the last character. Does nothing to a negative entry and to one of six characters or
    // fewer.
    void backspace();
    // Puts a minus in front of an entry that has none, seven blanks before it.
    void minus();
    // Removes the minus of a negative entry.
    void plus();
    // Out: whether there was anything to clear; false for exactly six blanks: then the operator
    // wants to leave.
    bool clear();

    // In: the ranges, and see Multiplier (any other number counts as Plain). Out: whether the
    // entry is a number (hexadecimal for that type) that lies in a range when multiplied.
    Checked check(const NumberRanges& ranges, int multiplier) const;

    // The text of the error box for this entry ("<font size = 5>Invalid Entry       2
    // Kbps</font>").
    QString errorText(int multiplier) const;
    // Empties the entry after an error. Out: what the display shows then.
    QString clearAfterError();

private:
    bool negative() const;

    int m_type;
    QString m_text;
};
