#pragma once

#include <QString>

class NumberRanges;

/// What is typed on the number pad, character by character, and whether it is a valid value.
///
/// The entry starts as six blanks, which stay in front of what is typed; "cleared" means exactly
/// these six. Where a key asks for the sign, an entry that is not a number (blank, "-", "1.2.3")
/// reads as 0; as a value it is invalid.
class NumberEntry
{
public:
    /// The power of ten that the key that confirms an entry stands for.
    enum Multiplier {
        Plain = 0,    ///< The entry as it is.
        Thousand = 3, ///< "Kbps", "KHz".
        Million = 6   ///< "Mbps", "MHz" of a type in Hz.
    };

    /// What an entry is worth.
    struct Checked
    {
        bool valid = false; ///< Whether it is a number that lies in a range.
        double value = 0.0; ///< The multiplied number; 0 for an entry that is not a number.
    };

    /// Makes an empty entry.
    /// \param type see entryType::Type
    explicit NumberEntry(int type = 0);

    /// \return the entry, including its blanks.
    const QString& text() const { return m_text; }
    /// \return what the display shows: the entry, with the unit behind it for a frequency in MHz.
    QString display() const;

    /// Adds characters at the end; there is no limit.
    void append(const QString& characters);
    /// Removes the last character. Changes nothing in a negative entry or in one of six characters
    /// or fewer.
    void backspace();
    /// Puts a minus in front of an entry that has none, and seven blanks before it.
    void minus();
    /// Removes the minus of a negative entry.
    void plus();
    /// Clears the entry.
    /// \return false when it was exactly six blanks: then the operator wants to leave.
    bool clear();

    /// Checks whether the entry is a number (hexadecimal for that type) that lies in a range when
    /// it is multiplied.
    /// \param ranges     the valid ranges
    /// \param multiplier see Multiplier; any other number counts as Plain
    Checked check(const NumberRanges& ranges, int multiplier) const;

    /// \return the text of the error box for this entry, such as
    /// "<font size = 5>Invalid Entry       2  Kbps</font>".
    /// \param multiplier see Multiplier
    QString errorText(int multiplier) const;
    /// Empties the entry after an error.
    /// \return what the display then shows.
    QString clearAfterError();

private:
    bool negative() const;

    int m_type;
    QString m_text;
};
