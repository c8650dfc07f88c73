#pragma once

#include <QList>
#include <QPushButton>
#include <QStringList>
#include <QWidget>

class QGridLayout;

// The key grid that the number pad and the IPv4 pad share: five rows, the first for what is shown,
// the others for keys. It builds the keys and reports the character keys; what the other keys do is
// the pad's affair.
class PadKeys : public QWidget
{
    Q_OBJECT

public:
    // Which digits are on the top row of digits: 7 8 9 as on a calculator, 1 2 3 as on a telephone.
    enum class Digits { Calculator, Telephone };

    // columns: how many the grid has; all are equally wide, 150 pixels at least.
    explicit PadKeys(int columns, QWidget* parent = nullptr);

    // Puts what shows something into row 0.
    void addToTop(QWidget* widget, int column, int columns);

    // Adds a key and answers it. sheet: its style sheet. A text that does not fit is broken or
    // elided.
    QPushButton* addKey(const QString& text, const QString& sheet, int row, int column);

    // Adds a grey key that reports its text by character().
    QPushButton* addCharacter(const QString& text, int row, int column);
    // "1" to "9" on rows 3 to 1, and "0" at (4, 0).
    void addDigits(Digits order);
    // Character keys of half a column's width, two side by side, from the cell (row, column) down.
    void addHalfCharacters(const QStringList& texts, int row, int column);

    const QList<QPushButton*>& keys() const { return m_keys; }

signals:
    // A character key was pressed.
    void character(const QString& text);

private:
    QPushButton* newKey(const QString& text, const QString& sheet);
    QPushButton* newCharacter(const QString& text);

    QGridLayout* m_grid;
    QList<QPushButton*> m_keys;
};
