#pragma once

#include <QMetaType>
#include <QString>

/// One reply of a card, as it came over the bus. It travels by value through signals.
class CmdMsg
{
public:
    /// An empty reply, whose address is not a number.
    CmdMsg() = default;

    /// \param address the four characters of the address field, such as "0190".
    /// \param command the four characters of the command field, such as "RFFT".
    /// \param data the payload, one Latin-1 character per byte, so that byte values 0 to 255
    /// survive.
    CmdMsg(const QString& address, const QString& command, const QString& data);

    /// The first two digits of the address: 1 for "0190"; 0 for an address that is not a number.
    int getChannelAddressInt() const;
    /// The last two digits of the address: 90 for "0190"; -1 for an address that is not a number.
    int getCardAddressInt() const;
    /// The first two characters of the address: "01" for "0190".
    QString getChannelAddressStr() const;

    QString address;          ///< the four characters of the address field
    QString command;          ///< the four characters of the command field
    QString data;             ///< the payload, one character per byte
    qint32 addressValue = -1; ///< the address as a decimal integer; -1 when it is not a number
};

Q_DECLARE_METATYPE(CmdMsg)
