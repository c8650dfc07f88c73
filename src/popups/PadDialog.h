#pragma once

#include "popups/PadKeys.h"
#include "popups/PopUpDialog.h"
#include "touch/FittedLabel.h"

/// The window of a pad, 795 × 478 on a screen of 800 × 480: title, range line where there is one,
/// then the key grid with the display and the current value in its first row. It shows what the pad
/// sets and decides nothing.
class PadDialog : public PopUpDialog
{
    Q_OBJECT

public:
    /// Makes the window without keys.
    /// \param name           the object name, see PopUpDialog
    /// \param title          see PopUpDialog
    /// \param flags          see PopUpDialog
    /// \param columns        of the key grid
    /// \param currentColumns columns for the current value, behind the two of the display
    PadDialog(const QString& name, const QString& title, Qt::WindowFlags flags, int columns,
        int currentColumns);

    /// Shows the range line under the title; it grows with its lines as far as the keys allow.
    void setRangeText(const QString& text);
    /// Sets what the display shows.
    void setEntryText(const QString& text);
    /// Sets what stands beside the display.
    void setCurrentValueText(const QString& text);

    FittedLabel* entryLabel; ///< The display.
    PadKeys* keys;           ///< The key grid.

private:
    FittedLabel* m_rangeLabel;
    FittedLabel* m_currentValueLabel;
};
