#pragma once

#include <QString>

/// An IPv4 address while it is typed: digits and dots, with a dot added after three digits.
class AddressEntry
{
public:
    /// \return what was typed so far.
    const QString& text() const { return m_text; }
    /// \return whether nothing but blanks was typed.
    bool isEmpty() const { return m_text.trimmed().isEmpty(); }

    /// Adds one character. A fourth digit starts the next group; in the fourth group a fourth digit
    /// and any dot are ignored. A dot is taken anywhere else, also as the first character.
    /// \param key "0" to "9" or "."
    void append(const QString& key);

    /// Removes the last character, if there is any.
    void backspace();
    /// Removes everything.
    void clear();

    /// \return whether the entry is four decimal numbers from 0 to 255 with dots between them.
    bool isValid() const;

private:
    QString m_text;
};
