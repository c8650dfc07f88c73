#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>

/// One of the programs of this project. It starts at once, its output is collected, and it is
/// killed when the object goes out of scope.
class Program : public QProcess
{
public:
    static constexpr int LongMs = 20000;

    /// \param environment "NAME=value" entries that override those of the test
    explicit Program(const QString& path, const QStringList& arguments = {},
        const QStringList& environment = {});
    ~Program() override;

    /// \return everything on standard output so far
    const QByteArray& output() { return m_output += readAllStandardOutput(); }
    /// \return everything on standard error so far
    const QByteArray& errors() { return m_errors += readAllStandardError(); }

    /// Whether one line of the output is exactly this.
    bool has(const QByteArray& line) { return ('\n' + output()).contains('\n' + line + '\n'); }

    /// Waits until the program has ended. \return false on a timeout
    bool ends() { return state() == NotRunning || waitForFinished(LongMs); }

    /// \return the processor time that it has used, user and system, in seconds
    double cpuSeconds() const;

private:
    QByteArray m_output;
    QByteArray m_errors;
};
