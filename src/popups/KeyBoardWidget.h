#pragma once

#include <QLineEdit>
#include <QPointer>
#include <QWidget>

class PushButtonKey;
class QHBoxLayout;

// The on-screen keyboard: four rows of keys that edit one text field at its cursor. A key says its
// text, the keyboard works out the new line and puts it into the field; "RETURN" only tells the
// owner that the entry is finished. The field may go before the keyboard does.
class KeyBoardWidget : public QWidget
{
    Q_OBJECT

public:
    // In: the field to edit, or nullptr; whether the keyboard stands inside another window, which
    // has a margin (true), or alone, with one of its own (false); the parent.
    KeyBoardWidget(QLineEdit* field, bool embedded, QWidget* parent);

    // Out: the field, nullptr when there is none (any more).
    QLineEdit* textEdit() const;
    void setTextEdit(QLineEdit& field);

    // Out: a new key of this keyboard with the given text, in no row yet.
    PushButtonKey* newKey(const QString& text);

public slots:
    // A key was pressed: edits the field. Without a field nothing happens.
    void pushButtonKeyPressed(const QString& text);

signals:
    // "RETURN" was pressed.
    void ret_pushed();
    // The caps lock was switched on or off.
    void capsPushed(bool on);

private:
    void addRow(QHBoxLayout* row, const QStringList& texts);

    QPointer<QLineEdit> m_field;
};
