#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <memory>

/// Turns SIGTERM, SIGINT and SIGHUP into a signal of the event loop, so that the program ends in
/// order. There is one object per process. When it goes, the signals do what they did before.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    /// Catches the signals from now on.
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

    /// Has these signals end the process at once with exit status 0: for the time in which there is
    /// nothing yet, or nothing any more, that has to be put in order.
    static void endAtOnce();

    /// \return whether terminate() was emitted. An event loop that starts later does not learn of
    /// that by itself, because what is told to an application whose loop does not run is forgotten.
    bool wasRaised() const { return m_wasRaised; }

signals:
    /// Emitted when the program has to end.
    void terminate();

private:
    int m_readEnd = -1;
    bool m_wasRaised = false;
    std::array<struct sigaction, 3> m_before{}; // of the signals
    std::unique_ptr<QSocketNotifier> m_notifier;
};
