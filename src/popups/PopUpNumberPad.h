#pragma once

#include "menus/Key.h"
#include "popups/NumberEntry.h"
#include "popups/NumberRanges.h"

#include <QPair>
#include <QPointer>
#include <QPushButton>
#include <QStringList>

class PadDialog;

/// The modal editor for a number: title, valid ranges, current value, what is being typed, and a
/// grid of touch keys.
///
/// A key press changes the entry (NumberEntry); a key that confirms checks it against the ranges
/// (NumberRanges), and either the dialog closes and the caller gets the value, or an error box
/// shows what would be valid. The step keys of a frequency do not wait for that: each value is sent
/// at once, as a finished message, by response_message().
///
/// One object may be opened again and again; every opening starts afresh. It may be deleted while
/// it is open: the dialog is deleted with it.
class PopUpNumberPad : public Key
{
    Q_OBJECT

public:
    /// What a cancelled pad returns.
    static constexpr double Cancelled = -9990000000.0;
    /// A result at or below this counts as cancelled.
    static constexpr double CancelBound = -8000000000.0;

    /// Makes a pad that is not open.
    PopUpNumberPad() = default;
    /// Makes a pad that is not open.
    explicit PopUpNumberPad(QObject* parent);
    ~PopUpNumberPad() override;

    /// Opens the pad and returns when it is closed.
    /// \param title         of the window
    /// \param ranges        see NumberRanges
    /// \param currentValue  in the unit of the ranges; single precision counts
    /// \param padType       see entryType::Type
    /// \param specialValues the value of the special key and its text, separated by one blank
    /// \param liveCommand   prefix of the step messages
    /// \param valueText     shown instead of the current value when not empty
    /// \param mirrored      whether the digits stand as on a telephone
    /// \return the value, a percentage divided by 100, or Cancelled.
    double new_pop_NumberPad(const QString& title, const QString& ranges, double currentValue,
        int padType, const QString& specialValues, const QString& liveCommand,
        const QString& valueText, bool mirrored);

    /// \return one range as text, see NumberRanges::rangeString().
    static QString range_string(QPair<double, double> range, int padType);

    /// Checks the entry times ten to the power of \a multiplier (0, 3 or 6); then closes the pad or
    /// shows the error box.
    void _check_number(int multiplier);

    /// \return the digit of the character key pressed last; 0 for "." and for letters.
    int lastKeyValue() const { return m_lastKey; }

public slots:
    /// A character key was pressed: adds its text to the end of the entry.
    void num_button_clicked(const QString& text);
    /// Checks the entry as it is.
    void check_number();
    /// Checks the entry times a thousand.
    void check_number_x3();
    /// Checks the entry times a million.
    void check_number_x6();

    /// Sets and sends the current value one step up; does nothing when that leaves every range.
    void up_rf();
    /// The same one step down.
    void down_rf();
    /// Sets and sends a current value if it lies in a range.
    /// \param next in MHz
    /// \return whether it does.
    bool up_dwn_check_number(double next);
    /// Selects the next step of 0.1, 1, 10, 100 MHz; the first one follows the last.
    void change_step();

    /// Removes the minus of a negative entry.
    void plus_sign();
    /// Puts a minus in front of the entry.
    void minus_sign();
    /// Removes the last character of the entry, see NumberEntry::backspace().
    void backspace();
    /// Clears the entry; when there is nothing to clear the pad is cancelled.
    void clear_entry();
    /// Accepts the special value, whether it is in a range or not.
    void special_key_ent();

signals:
    /// Emitted when the entry is valid: accepts the dialog.
    void valid_entry();
    /// Emitted when the pad was cancelled: rejects the dialog.
    void reject_entry();

private:
    PadDialog* buildDialog(const QString& title, const QString& valueText, bool mirrored);
    void addClearAndBackspace();
    void addConfirmKeys();
    void addUnitKeys(const QString& mega, const QString& kilo, const QString& plain);
    void addStepKeys();
    void addTypeKeys();
    QString specialLabel() const;
    bool specialIsPresent() const;
    void showEntry(const QString& text);

    QPointer<PadDialog> m_dialog;
    QPointer<QPushButton> m_stepKey;
    NumberEntry m_entry;
    NumberRanges m_ranges;
    QStringList m_specialValues;
    int m_entryType = 0;
    int m_stepIndex = 0;
    int m_lastKey = 0;
    float m_current = 0.0F;
    double m_entered = Cancelled;
};
