#pragma once

#include <QList>
#include <QPushButton>
#include <QStringList>
#include <QWidget>

class QGridLayout;

/// The key grid that the number pad and the IPv4 pad share: five rows, the first for what is shown,
/// the others for keys. It builds the keys and announces the character keys; the pad connects the
/// other ones.
class PadKeys : public QWidget
{
    Q_OBJECT

public:
    /// Which digits are on the top row of digits.
    enum class Digits {
        Calculator, ///< 7 8 9
        Telephone   ///< 1 2 3
    };

    /// Makes an empty grid.
    /// \param columns how many it has; all are equally wide, 150 pixels or more
    /// \param parent  of the widget
    explicit PadKeys(int columns, QWidget* parent = nullptr);

    /// Puts what shows something into row 0.
    /// \param widget  the display or the current value
    /// \param column  its first column
    /// \param columns how many it takes
    void addToTop(QWidget* widget, int column, int columns);

    /// Adds a key that shows a text of any length.
    /// \param text   what it shows
    /// \param sheet  its style sheet
    /// \param row    its cell, from 0
    /// \param column its cell, from 0
    QPushButton* addKey(const QString& text, const QString& sheet, int row, int column);

    /// Adds a grey key that announces its text by character().
    QPushButton* addCharacter(const QString& text, int row, int column);
    /// Adds "1" to "9" on rows 3 to 1, and "0" at (4, 0).
    void addDigits(Digits order);
    /// Adds character keys of half a column's width, two side by side, from the cell (\a row,
    /// \a column) down.
    void addHalfCharacters(const QStringList& texts, int row, int column);

    /// \return all keys, in the order in which they were added.
    const QList<QPushButton*>& keys() const { return m_keys; }

signals:
    /// Emitted when a character key was pressed.
    void character(const QString& text);

private:
    QPushButton* newKey(const QString& text, const QString& sheet);
    QPushButton* newCharacter(const QString& text);

    QGridLayout* m_grid;
    QList<QPushButton*> m_keys;
};
