#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

// Turns SIGTERM and SIGINT into a signal of the event loop, so that the program ends in order. One
// object a process, for the length of its life.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

signals:
    void terminate();

private:
    int m_readEnd = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
