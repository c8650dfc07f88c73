#pragma once

#include "menus/Key.h"
#include "popups/AddressEntry.h"

#include <QPointer>

class PadDialog;

/// The modal editor for an IPv4 address in dotted-decimal form.
///
/// It enforces the shape while the operator types (AddressEntry), checks the whole address on
/// "Enter", and hands it to the caller as text.
///
/// One object may be opened again and again, and deleted while it is open: the dialog is deleted
/// with it.
class PopUpIpPad : public Key
{
    Q_OBJECT

public:
    /// Makes a pad that is not open.
    PopUpIpPad() = default;
    /// Makes a pad that is not open.
    explicit PopUpIpPad(QObject* parent);
    ~PopUpIpPad() override;

    /// Opens the pad and returns when it is closed.
    /// \param title          of the window
    /// \param currentAddress shown as it is
    /// \return the address as it was typed, leading zeros included, or an empty text when
    /// cancelled.
    QString new_pop_IP_NumberPad(const QString& title, const QString& currentAddress);

public slots:
    /// A character key was pressed: "0" to "9" or ".", see AddressEntry::append().
    void num_button_clicked(const QString& key);
    /// Closes the pad, or shows the error box when the entry is not an address; the entry then
    /// stays.
    void check_number();
    /// Removes the last character of the entry.
    void backspace();
    /// Clears the entry; when there is nothing to clear the pad is cancelled.
    void clear_entry();

signals:
    /// Emitted when the entry is an address: accepts the dialog.
    void valid_entry();
    /// Emitted when the pad was cancelled: rejects the dialog.
    void reject_entry();

private:
    void buildDialog(const QString& title, const QString& currentAddress);
    void showEntry();

    QPointer<PadDialog> m_dialog;
    AddressEntry m_entry;
    QString m_result;
};
