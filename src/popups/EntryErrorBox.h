#pragma once

#include <QMessageBox>

// The box that tells the operator what was wrong with an entry: the panel's icon, an OK button
// large enough for a finger, in the middle of the screen and never larger than it. More lines than
// the screen holds are scrolled.
class EntryErrorBox : public QMessageBox
{
    Q_OBJECT

public:
    // An entry outside the valid ranges. invalidText: what was entered; ranges: one a line,
    // separated by "\r\n". Runs modally; `parent`, and the box with it, may go meanwhile.
    static void showOutOfRange(QWidget* parent, const QString& invalidText, const QString& ranges);

    // An entry that is no IPv4 address. As above.
    static void showAddressFormat(QWidget* parent);

protected:
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    explicit EntryErrorBox(QWidget* parent);

    // A spacer across the bottom, which keeps the box at least that wide.
    void addSpacer(int width);
    void keepTextInside();
};
