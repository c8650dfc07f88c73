#pragma once

#include "wire/Trace.h"

#include <QByteArray>
#include <QList>
#include <QString>

/// A recorded conversation with the panel.
///
/// It consists of the lines of wire/Trace.h in a text, as the simulator's --record and --trace and
/// the panel's debug log write them, with anything in front of them. Other lines are skipped. Text
/// outside frames that left the panel at the same time is joined to one line.
class Recording
{
public:
    /// Size of the largest file that is read.
    static constexpr qint64 MaxFileBytes = qint64{64} * 1024 * 1024;

    /// Reads the lines of a text.
    static Recording parse(const QByteArray& text);

    /// Reads a file. It is a fault when the file cannot be read, is larger than MaxFileBytes, or
    /// has no line of a trace.
    static Recording load(const QString& path);

    /// \return what was said, in its order
    const QList<wire::TraceLine>& lines() const { return m_lines; }
    /// \return why there is nothing to replay; empty when there is something
    const QString& fault() const { return m_fault; }

    /// Whether a frame begins with STX and ends with EOT.
    static bool isFramed(const QString& frame);

private:
    void add(const wire::TraceLine& line);

    QList<wire::TraceLine> m_lines;
    QString m_fault;
};
