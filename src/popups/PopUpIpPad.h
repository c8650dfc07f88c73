#pragma once

#include "menus/Key.h"
#include "popups/AddressEntry.h"

#include <QPointer>

class PadDialog;

// The modal editor for an IPv4 address in dotted-decimal form. It enforces the shape while the
// operator types, checks the whole address on "Enter", and hands it to the caller as text.
//
// One object may be opened again and again, and deleted while it is open: the dialog goes with it.
class PopUpIpPad : public Key
{
    Q_OBJECT

public:
    PopUpIpPad() = default;
    explicit PopUpIpPad(QObject* parent);
    ~PopUpIpPad() override;

    // Opens the pad and runs until it is closed. currentAddress: shown as it is. Out: the address
    // as it was typed, leading zeros included, or an empty text when cancelled.
    QString new_pop_IP_NumberPad(const QString& title, const QString& currentAddress);

public slots:
    // A character key, "0" to "9" or "."; see AddressEntry::append().
    void num_button_clicked(const QString& key);
    // Closes the pad, or shows the error box when the entry is no address; the entry stays then.
    void check_number();
    void backspace();
    // Clears the entry; when there is nothing to clear the pad is cancelled.
    void clear_entry();

signals:
    void valid_entry();
    void reject_entry();

private:
    void buildDialog(const QString& title, const QString& currentAddress);
    void showEntry();

    QPointer<PadDialog> m_dialog;
    AddressEntry m_entry;
    QString m_result;
};
