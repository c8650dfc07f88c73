#pragma once

#include "sim/unit/MessageRules.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

// Lines that the simulator's own operator types, or that a script pipes in. The end of the input is
// no event: there are just no more lines.
class InputLines : public QObject
{
    Q_OBJECT

public:
    // Every character of the longest message may be typed as "\xHH".
    static constexpr qsizetype MaxLineLength = 4 * rules::LongestMessage;

    // fileDescriptor: open for reading, not owned.
    explicit InputLines(int fileDescriptor, QObject* parent = nullptr);

signals:
    // One line without its end. Of a line that is longer than MaxLineLength only one byte more
    // comes, by which it is known.
    void line(QByteArray text);

private:
    void read();
    void take(char c);

    QSocketNotifier m_notifier;
    QByteArray m_line;
};
