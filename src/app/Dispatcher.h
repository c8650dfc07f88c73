#pragma once

#include <QString>
#include <QStringList>

class MainWindow;

// The command words of the main unit and the slots of the main window that carry them out, in one
// table.
class Dispatcher
{
public:
    explicit Dispatcher(MainWindow& window);

    // In: a message with its frame characters. Runs the slot of its first field with the remaining
    // fields; a word that is not in the table, letter for letter, is ignored. Out: whether there
    // was one.
    bool dispatch(const QString& message) const;

    // All words in the order in which they are compared.
    static QStringList words();

private:
    MainWindow& m_window;
};
