#pragma once

#include <QLineEdit>
#include <QPointer>
#include <QWidget>

class KeyBoardWidget;
class PopUpDialog;

/// Asks for a file name: a text line and the on-screen keyboard, in a modal dialog that runs inside
/// the constructor. What was typed is read with text() afterwards; a cancelled name reads as empty.
class FileNameEdit : public QWidget
{
    Q_OBJECT

public:
    /// Runs the dialog and returns when it is closed.
    /// \param text   what the line starts with
    /// \param parent gets this as a child when the dialog has closed; it may be deleted before
    FileNameEdit(const QString& text, QWidget* parent);

    /// \return the text of the line.
    QString text() const;

public slots:
    /// The dialog was cancelled: empties the line.
    void fn_can();

private:
    PopUpDialog* m_dialog; // a child, as long as this lives
    QPointer<QLineEdit> m_field;
    KeyBoardWidget* m_keys = nullptr;
};
