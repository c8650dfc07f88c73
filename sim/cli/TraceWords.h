#pragma once

#include <QString>
#include <QStringList>

/// Which messages a trace shows, of --trace-only and --trace-not.
///
/// A word stands for the messages whose first field it is ("PM" for "PM,0.5,70,71"), and, as the
/// panel's messages have their parts between colons, for those whose first field begins with it and
/// a colon ("R1" and "R1:FREQ" for "R1:FREQ:2250.5").
struct TraceWords
{
    QStringList only;  ///< words that are shown; all when empty
    QStringList never; ///< words that are not shown

    /// Whether a message is shown. \param frame with or without STX and EOT
    bool show(const QString& frame) const;
};
