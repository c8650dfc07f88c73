#pragma once

#include "sim/unit/MessageRules.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

/// Reads the lines that the user of the simulator types, or that a script pipes in. Nothing happens
/// at the end of the input; there are just no more lines.
class InputLines : public QObject
{
    Q_OBJECT

public:
    /// Longest line that is handed on. Every character of the longest message may be typed as
    /// "\\xHH".
    static constexpr qsizetype MaxLineLength = 4 * rules::LongestMessage;

    /// \param fileDescriptor open for reading; is not closed here
    explicit InputLines(int fileDescriptor, QObject* parent = nullptr);

signals:
    /// Emitted for each line, without its line break. A line that is longer than MaxLineLength is
    /// cut after one more byte, so that the receiver notices.
    void line(QByteArray text);

private:
    void read();
    void take(char c);

    QSocketNotifier m_notifier;
    QByteArray m_line;
};
