#pragma once

#include <QString>
#include <QStringList>

class MainWindow;

/// The way from the command words of the main unit to the slots of the main window that carry them
/// out.
///
/// A slot is called whatever its fields are: it decides itself what to do with too few of them. A
/// message that will be ignored is logged at debug level in the category of its room.
class Dispatcher
{
public:
    /// \param window whose slots are run; not owned, has to outlive this object
    explicit Dispatcher(MainWindow& window);

    /// Runs the slot of a message's first field with the remaining fields. \return whether there is
    /// a slot: a word is known only with exactly its letters.
    /// \param message with its frame characters
    bool dispatch(const QString& message) const;

    /// \return all words in the order in which they are compared.
    static QStringList words();

private:
    MainWindow& m_window;
};
