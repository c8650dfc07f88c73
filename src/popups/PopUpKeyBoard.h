#pragma once

#include "popups/Choices.h"

#include <QList>
#include <QObject>
#include <QString>

/// The modal selection list: a fixed set of choices as a grid of large buttons.
///
/// Each call builds a dialog out of the list text, runs it and returns the value of the pressed
/// choice. The object may stand on the stack; nothing of the caller is used after the dialog was
/// shown.
class PopUpKeyBoard : public QObject
{
    Q_OBJECT

public:
    /// Makes a list that is not open.
    explicit PopUpKeyBoard(QObject* parent = nullptr);

    /// Sets what is known about the choice that is in effect now; the lists that are opened from
    /// now on mark it.
    void setPresent(const choices::Present& present) { m_present = present; }
    /// Sets a text at the right of the title line, such as what the setting belongs to.
    void setNote(const QString& note) { m_note = note; }

    /// Opens the list and returns when it is closed.
    /// \param choiceList    items separated by ":", each its value, one blank and its button text
    /// \param name          of the setting, for the title
    /// \param rows          of the grid; more choices than cells go on below the last row
    /// \param columns       of the grid
    /// \param disabled      positions (from 0) of choices that are shown but cannot be pressed
    /// \param keepLargeFont whether long texts keep the large font
    /// \return the value of the pressed choice, or an empty text after "Cancel".
    QString new_pop_keyboard(const QString& choiceList, const QString& name, int rows, int columns,
        const QList<int>& disabled, bool keepLargeFont);
    /// The same with every choice enabled.
    QString new_pop_keyboard(
        const QString& choiceList, const QString& name, int rows, int columns, bool keepLargeFont);

public slots:
    /// Stores the value as the selection.
    void button_clicked(const QString& value);

private:
    QString m_selection;
    choices::Present m_present;
    QString m_note;
};
