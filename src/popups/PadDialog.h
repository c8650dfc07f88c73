#pragma once

#include "popups/PadKeys.h"
#include "popups/PopUpDialog.h"
#include "touch/FittedLabel.h"

// The window of a pad, 795 × 478 on a screen of 800 × 480: title, range line where there is one,
// then the key grid with the display and the current value in its first row. It shows what the pad
// tells it and decides nothing.
class PadDialog : public PopUpDialog
{
    Q_OBJECT

public:
    // name, title, flags: see PopUpDialog. columns: of the key grid, currentColumns of them for the
    // current value behind the two of the display.
    PadDialog(const QString& name, const QString& title, Qt::WindowFlags flags, int columns,
        int currentColumns);

    // Shows the range line under the title; it grows with its lines as far as the keys allow.
    void setRangeText(const QString& text);
    void setEntryText(const QString& text);
    void setCurrentValueText(const QString& text);

    FittedLabel* entryLabel;
    PadKeys* keys;

private:
    FittedLabel* m_rangeLabel;
    FittedLabel* m_currentValueLabel;
};
