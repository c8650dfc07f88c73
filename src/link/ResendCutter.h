#pragma once

#include "link/Limits.h"
#include "wire/DropLog.h"

#include <QString>
#include <QStringList>

/// Cuts the messages out of what arrives on the line for re-sent messages.
///
/// A message reaches from the last STX in front of an EOT to that EOT; what lies between messages
/// is dropped. Unlike FrameCutter, which cuts the main unit's messages, it keeps nothing of what
/// stands in front of an STX. Of a message that does not end, the last MaxUnfinished characters are
/// kept.
class ResendCutter
{
public:
    /// The number of characters that a message without an end may keep in memory.
    static constexpr qsizetype MaxUnfinished = linkLimits::MaxResent;

    /// Makes a cutter that has no characters.
    ResendCutter();

    /// Adds characters (codes 0 to 255) and cuts. \return the messages that they complete, with
    /// their frame characters.
    QStringList take(const QString& characters);

    /// Forgets a message that has begun: what follows is the beginning of another.
    void clear() { m_unfinished.clear(); }

private:
    QString m_unfinished;
    DropLog m_tooLong;
};
