#pragma once

#include <QLineEdit>
#include <QPointer>
#include <QWidget>

class PushButtonKey;
class QHBoxLayout;

/// The on-screen keyboard: four rows of keys that edit one text field at its cursor.
///
/// A key announces its text; the keyboard works out the new line with EditedLine and puts it into
/// the field. "RETURN" only announces that the entry is finished. The field may be deleted before
/// the keyboard.
class KeyBoardWidget : public QWidget
{
    Q_OBJECT

public:
    /// Makes the keyboard.
    /// \param field    the field to edit, or nullptr
    /// \param embedded whether it stands inside another window, which has a margin (true), or
    /// alone, with a margin of its own (false)
    /// \param parent   of the widget
    KeyBoardWidget(QLineEdit* field, bool embedded, QWidget* parent);

    /// \return the field, or nullptr when there is none (any more).
    QLineEdit* textEdit() const;
    /// Sets the field to edit.
    void setTextEdit(QLineEdit& field);

    /// \return a new key of this keyboard with the given text, in no row yet.
    PushButtonKey* newKey(const QString& text);

public slots:
    /// A key was pressed: edits the field. Without a field nothing happens.
    void pushButtonKeyPressed(const QString& text);

signals:
    /// Emitted when "RETURN" was pressed.
    void ret_pushed();
    /// Emitted when the caps lock was switched on or off.
    void capsPushed(bool on);

private:
    void addRow(QHBoxLayout* row, const QStringList& texts);

    QPointer<QLineEdit> m_field;
};
