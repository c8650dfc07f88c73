#pragma once

#include <QMetaType>
#include <QString>

// One reply of a card, as it came over the bus.
class CmdMsg
{
public:
    CmdMsg() = default;

    // address: the four characters of the address field, such as "0190". command: the four
    // characters of the command field, such as "RFFT". data: the payload, one character a byte
    // (Latin-1), so that byte values 0 to 255 survive.
    CmdMsg(const QString& address, const QString& command, const QString& data);

    // The first two digits of the address: 1 for "0190". 0 for an address that is no number.
    int getChannelAddressInt() const;
    // The last two digits: 90 for "0190". -1 for an address that is no number.
    int getCardAddressInt() const;
    // The first two characters of the address text: "01" for "0190".
    QString getChannelAddressStr() const;

    QString address;
    QString command;
    QString data;
    qint32 addressValue = -1; // the address as a decimal integer, -1 when it is none
};

Q_DECLARE_METATYPE(CmdMsg)
