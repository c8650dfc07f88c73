#pragma once

#include "popups/Choices.h"

#include <QObject>
#include <QString>

/// The modal board of stored files: the operator picks one or types the name of a new one. It works
/// as the selection list does; "New File" opens the file name dialog over it.
class PopUpFileBoard : public QObject
{
    Q_OBJECT

public:
    /// Makes a board that is not open.
    explicit PopUpFileBoard(QObject* parent = nullptr);

    /// Sets what is known about the file that is in use now; the boards that are opened from now
    /// on mark it.
    void setPresent(const choices::Present& present) { m_present = present; }

    /// Opens the board and returns when it is closed.
    /// \param files   items separated by ":", each its value, one blank and its button text
    /// \param name    of the setting, for the title
    /// \param rows    of the grid; more files than cells go on below the last row
    /// \param columns of the grid, two or more
    /// \return the value of the pressed file, the typed name, or an empty text after "Cancel".
    QString new_pop_fileboard(const QString& files, const QString& name, int rows, int columns);

public slots:
    /// Stores the value as the selection.
    void button_clicked(const QString& value);
    /// Asks for a file name; one that is not empty becomes the selection and closes the board.
    void enter_filename();

signals:
    /// Emitted when a file name was typed: accepts the dialog.
    void valid_filename();

private:
    QString m_selection;
    choices::Present m_present;
};
