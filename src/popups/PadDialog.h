#pragma once

#include "popups/FittedLabel.h"
#include "popups/PadKeys.h"

#include <QDialog>

// The window of a pad, 795 × 478 on a screen of 800 × 480: title, range line where there is one,
// then the key grid with the display and the current value in its first row. It shows what the pad
// tells it and decides nothing.
class PadDialog : public QDialog
{
    Q_OBJECT

public:
    // name: the object name. flags: what kind of window it is, besides being a dialog. columns: of
    // the key grid, currentColumns of them for the current value behind the two of the display.
    PadDialog(const QString& name, Qt::WindowFlags flags, int columns, int currentColumns);

    void setTitle(const QString& title);
    // Shows the range line under the title; it grows with its lines as far as the keys allow.
    void setRangeText(const QString& text);
    void setEntryText(const QString& text);
    void setCurrentValueText(const QString& text);

    FittedLabel* entryLabel;
    PadKeys* keys;

protected:
    void showEvent(QShowEvent* event) override;

private:
    FittedLabel* m_titleLabel;
    FittedLabel* m_rangeLabel;
    FittedLabel* m_currentValueLabel;
};
