#pragma once

#include <QList>
#include <QObject>
#include <QString>

// The modal selection list: a fixed set of choices as a grid of large buttons. Each call builds a
// dialog out of the list text, runs it and answers the value of the pressed choice. The object may
// stand on the stack; nothing of the caller is used after the dialog has come up.
class PopUpKeyBoard : public QObject
{
    Q_OBJECT

public:
    explicit PopUpKeyBoard(QObject* parent = nullptr);

    // In: items separated by ":", each its value, one blank and its button text; the setting's
    // name; rows and columns of the grid; positions (from 0) of choices that cannot be pressed;
    // whether long texts keep the large font. More choices than cells go on below the last row.
    // Out: the value of the pressed choice, empty after "Cancel".
    QString new_pop_keyboard(const QString& choiceList, const QString& name, int rows, int columns,
        const QList<int>& disabled, bool keepLargeFont);
    // The same with every choice enabled.
    QString new_pop_keyboard(
        const QString& choiceList, const QString& name, int rows, int columns, bool keepLargeFont);

public slots:
    // Stores the value as the selection.
    void button_clicked(const QString& value);

private:
    QString m_selection;
};
