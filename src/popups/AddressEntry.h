#pragma once

#include <QString>

// An IPv4 address while it is typed: digits and dots, dots put in by themselves after three digits.
class AddressEntry
{
public:
    const QString& text() const { return m_text; }
    bool isEmpty() const { return m_text.trimmed().isEmpty(); }

    // In: one character, "0" to "9" or ".". A fourth digit starts the next group; in the fourth
    // group a fourth digit and any dot are ignored. A dot is taken anywhere else, as first
    // character too.
    void append(const QString& key);

    // Removes the last character, if there is any.
    void backspace();
    void clear();

    // Whether the entry is four decimal numbers from 0 to 255 with dots between them.
    bool isValid() const;

private:
    QString m_text;
};
