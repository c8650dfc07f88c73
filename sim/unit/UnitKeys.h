#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

// The unit's own record of its menus, and what it answers when the operator uses a key.
//
// apply() is told every message that goes to the panel and keeps the keys as the panel has them.
// answers() is given what the panel sends back: a key's command with a value behind it. The key
// with the longest fitting command is meant; keys of other menus with the same command are answered
// too. In the linked modes the panel addresses several demodulators or receivers at once ("D1 D2
// D3:" for "D1:", "R1 R2:" for "R1:"): then each of them is answered.
class UnitKeys
{
public:
    // In: the body of a message that the unit sends ("AK", "CV", "CK", "CLEAR"; others change
    // nothing). It has to be a message by rules::fault().
    void apply(const QString& body);

    // In: the body of a message from the panel. Out: the bodies to send in answer; none when no key
    // has sent it or when the value is not of the key's kind.
    //   command "SK:Menu:"      -> SK of that menu
    //   command "PAX:1:"        -> PAX on; "PAX:0:Menu:" -> PAX off, and SK of that menu
    //   types 0 and 5, 1 and 3  -> CV with the new toggle, or the new value
    //   types 2, 4 and 6        -> AK whose label shows what was chosen, "Name: chosen"; a name
    //                              that a file key does not know yet joins its files
    QStringList answers(const QString& body) const;

    qsizetype count() const { return m_keys.size(); }

    // Out: field 0 to 10 of the key as its AK has them, "" for an unknown key or field.
    QString field(const QString& menu, const QString& keyId, int index) const;

private:
    using Fields = QStringList; // the eleven fields of an AK

    QStringList answersToOne(const QString& text) const;
    static QString slot(const QString& menu, const QString& keyId);

    QList<Fields> m_keys;
    QHash<QString, qsizetype> m_index;
};
