#pragma once

#include "wire/Trace.h"

#include <QByteArray>
#include <QList>
#include <QString>

// A recorded conversation with the panel: the lines of wire/Trace.h of a text, as the simulator's
// --record and --trace and the panel's debug log write them, with anything in front of them. Other
// lines are skipped. Text outside frames that left the panel in one go is one line, in however many
// it was written.
class Recording
{
public:
    static constexpr qint64 MaxFileBytes = qint64{64} * 1024 * 1024;

    static Recording parse(const QByteArray& text);

    // In: a path. A file that cannot be read, is larger than MaxFileBytes, or has no such line is a
    // fault.
    static Recording load(const QString& path);

    const QList<wire::TraceLine>& lines() const { return m_lines; }
    // Why there is nothing to play, empty when there is.
    const QString& fault() const { return m_fault; }

    // Whether a frame has its STX in front and its EOT at its end.
    static bool isFramed(const QString& frame);

private:
    void add(const wire::TraceLine& line);

    QList<wire::TraceLine> m_lines;
    QString m_fault;
};
