#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

// Lines that the simulator's own operator types, or that a script pipes in. The end of the input is
// no event: there are just no more lines.
class InputLines : public QObject
{
    Q_OBJECT

public:
    static constexpr qsizetype LongestLine = 65536;

    // fileDescriptor: open for reading, not owned.
    explicit InputLines(int fileDescriptor, QObject* parent = nullptr);

signals:
    // One line without its end; cut off at LongestLine bytes.
    void line(QByteArray text);

private:
    void read();
    void take(char c);

    QSocketNotifier m_notifier;
    QByteArray m_line;
};
