#pragma once

#include "menus/Key.h"
#include "popups/NumberEntry.h"
#include "popups/NumberRanges.h"

#include <QPair>
#include <QPointer>
#include <QPushButton>
#include <QStringList>

class PadDialog;

// The modal editor for a number: title, valid ranges, current value, what is being typed, and a
// grid of touch keys. A key press changes the entry; a key that confirms checks it against the
// ranges, and either the dialog closes and the value goes to the caller, or an error box says what
// would be valid. The step keys of a frequency do not wait for that: each value leaves at once, as
// a finished message, by response_message().
//
// One object may be opened again and again; every opening starts afresh. It may be deleted while it
// is open: the dialog goes with it.
class PopUpNumberPad : public Key
{
    Q_OBJECT

public:
    // What a cancelled pad returns, and the bound at and below which a result counts as cancelled.
    static constexpr double Cancelled = -9990000000.0;
    static constexpr double CancelBound = -8000000000.0;

    PopUpNumberPad() = default;
    explicit PopUpNumberPad(QObject* parent);
    ~PopUpNumberPad() override;

    // Opens the pad and runs until it is closed. ranges: see NumberRanges; currentValue: kept in
    // single precision; padType: see entryType::Type; specialValues: the value of the special key
    // and its text, separated by one blank; liveCommand: prefix of the step messages; valueText:
    // shown instead of the current value when not empty; mirrored: digits as on a telephone. Out:
    // the value, a percentage divided by 100, or Cancelled.
    double new_pop_NumberPad(const QString& title, const QString& ranges, double currentValue,
        int padType, const QString& specialValues, const QString& liveCommand,
        const QString& valueText, bool mirrored);

    // One range as text; see NumberRanges::rangeString().
    static QString range_string(QPair<double, double> range, int padType);

    // Checks the entry times ten to the power of `multiplier` (0, 3 or 6): closes the pad or shows
    // the error box.
    void _check_number(int multiplier);

    // The digit of the character key pressed last; 0 for "." and for letters.
    int lastKeyValue() const { return m_lastKey; }

public slots:
    // A character key: its text goes to the end of the entry.
    void num_button_clicked(const QString& text);
    void check_number();
    void check_number_x3();
    void check_number_x6();

    // The current value one step up or down, sent at once; nothing when that leaves every range.
    void up_rf();
    void down_rf();
    // next: in MHz. Out: whether it lies in a range; then it is the new current value and was sent.
    bool up_dwn_check_number(double next);
    // The next step of 0.1, 1, 10, 100 MHz.
    void change_step();

    void plus_sign();
    void minus_sign();
    void backspace();
    // Clears the entry; when there is nothing to clear the pad is cancelled.
    void clear_entry();
    // Takes the special value, in range or not.
    void special_key_ent();

signals:
    void valid_entry();
    void reject_entry();

private:
    PadDialog* buildDialog(const QString& title, const QString& valueText, bool mirrored);
    void addClearAndBackspace();
    void addConfirmKeys();
    void addUnitKeys(const QString& mega, const QString& kilo, const QString& plain);
    void addStepKeys();
    void addTypeKeys();
    QString specialLabel() const;
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
