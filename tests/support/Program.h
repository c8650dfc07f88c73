#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>

// A real program of ours, started at once, with its output collected; killed when it goes out of
// scope.
class Program : public QProcess
{
public:
    static constexpr int LongMs = 20000;

    // environment: "NAME=value" entries over those of the test.
    explicit Program(const QString& path, const QStringList& arguments = {},
        const QStringList& environment = {});
    ~Program() override;

    // Everything that has come so far.
    const QByteArray& output() { return m_output += readAllStandardOutput(); }
    const QByteArray& errors() { return m_errors += readAllStandardError(); }

    // Whether the output has this as a line of its own.
    bool has(const QByteArray& line) { return ('\n' + output()).contains('\n' + line + '\n'); }

    // Waits for its end. Out: whether it came.
    bool ends() { return state() == NotRunning || waitForFinished(LongMs); }

    // Processor time that it has used, user and system, in seconds.
    double cpuSeconds() const;

private:
    QByteArray m_output;
    QByteArray m_errors;
};
