#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

/// The unit's own record of its menus, and its answers when the operator uses a key.
///
/// apply() takes every message that goes to the panel, so that the keys here are those of the
/// panel. answers() takes what the panel sends: a key's command followed by a value. It belongs to
/// the key with the longest command that fits; keys of other menus with the same command are
/// answered too. In the linked modes the panel addresses several demodulators or receivers at once
/// ("D1 D2 D3:" for "D1:", "R1 R2:" for "R1:"), and each of them is answered.
class UnitKeys
{
public:
    /// Takes the body of a message that the unit sends. Only "AK", "CV", "CK" and "CLEAR" change
    /// anything. It has to be accepted by rules::fault().
    void apply(const QString& body);

    /// Takes the body of a message from the panel.
    ///
    ///     command "SK:Menu:"      -> SK of that menu
    ///     command "PAX:1:"        -> PAX on; "PAX:0:Menu:" -> PAX off, and SK of that menu
    ///     types 0 and 5, 1 and 3  -> CV with the new toggle, or the new value
    ///     types 2, 4 and 6        -> AK whose label shows what was chosen, "Name: chosen"; a name
    ///                                that a file key does not know yet joins its files
    ///
    /// \return the bodies to send in answer; none when no key has sent it or when the value does
    /// not fit the type of the key
    QStringList answers(const QString& body) const;

    /// \return what answers() returns, but with the value that each key has: the operator's is
    /// refused. A key that changes the screen is refused by no message at all.
    QStringList refusals(const QString& body) const;

    /// \return the number of keys
    qsizetype count() const { return m_keys.size(); }

    /// \return a field of the key's AK, "" for an unknown key or field. \param index 0 to 10
    QString field(const QString& menu, const QString& keyId, int index) const;

private:
    using Fields = QStringList; // the eleven fields of an AK

    using Reply = QStringList (*)(const Fields& key, const QString& value);
    QStringList replies(const QString& body, Reply reply) const;
    QStringList repliesToOne(const QString& text, Reply reply) const;
    static QString slot(const QString& menu, const QString& keyId);

    QList<Fields> m_keys;
    QHash<QString, qsizetype> m_index;
};
