#include "spectrum/CmdMsg.h"

namespace {
constexpr int CardsPerChannel = 100;
} // namespace

CmdMsg::CmdMsg(const QString& theAddress, const QString& theCommand, const QString& theData)
    : address(theAddress)
    , command(theCommand)
    , data(theData)
{
    bool ok = false;
    const int value = address.toInt(&ok);
    addressValue = ok ? value : -1;
}

int CmdMsg::getChannelAddressInt() const
{
    return addressValue / CardsPerChannel;
}

int CmdMsg::getCardAddressInt() const
{
    return addressValue % CardsPerChannel;
}

QString CmdMsg::getChannelAddressStr() const
{
    return address.left(2);
}
