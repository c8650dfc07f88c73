#pragma once

#include <QObject>
#include <QString>

// The modal board of stored files: the operator picks one or types the name of a new one. It works
// as the selection list does; "New File" opens the file name dialog over it.
class PopUpFileBoard : public QObject
{
    Q_OBJECT

public:
    explicit PopUpFileBoard(QObject* parent = nullptr);

    // In: items separated by ":", each its value, one blank and its button text; the setting's
    // name; rows and columns of the grid (two at least). More files than cells go on below the
    // last row. Out: the value of the pressed file, the typed name, or empty after "Cancel".
    QString new_pop_fileboard(const QString& files, const QString& name, int rows, int columns);

public slots:
    // Stores the value as the selection.
    void button_clicked(const QString& value);
    // Asks for a file name; one that is not empty becomes the selection and ends the board.
    void enter_filename();

signals:
    // A file name was typed: accepts the dialog.
    void valid_filename();

private:
    QString m_selection;
};
