#pragma once

#include "wire/DropLog.h"

#include <QLatin1String>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

/// The way from the command words of the main unit to what carries them out.
///
/// A handler is called whatever the fields are: it decides itself what to do with too few of them.
/// A message that will be ignored is logged at debug level in the category of its room.
class Dispatcher
{
public:
    /// What carries out the messages of one command word.
    struct Entry
    {
        QLatin1String word; ///< known only by exactly its letters
        std::function<void(const QStringList& fields)> handler; ///< gets what follows the word
    };

    /// \param table in the order in which the words are compared
    explicit Dispatcher(QList<Entry> table);

    /// Runs the handler of a message's first field with the remaining fields. \return whether there
    /// is one. \param message with its frame characters
    bool dispatch(const QString& message) const;

    /// \return all words in the order in which they are compared.
    QStringList words() const;

private:
    QList<Entry> m_table;
    mutable DropLog m_tooManyFields;
};
