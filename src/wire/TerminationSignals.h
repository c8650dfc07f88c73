#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

/// Turns SIGTERM, SIGINT and SIGHUP into a signal of the event loop, so that the program ends in
/// order. There is one object per process.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    /// Catches the signals from now on.
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

signals:
    /// Emitted when the program has to end.
    void terminate();

private:
    int m_readEnd = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
