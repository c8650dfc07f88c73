#pragma once

#include <QByteArray>
#include <QObject>

#include <chrono>
#include <functional>

class QTimer;
class QWidget;

/// Tells the service manager that started the panel how it is: ready, alive, a line of status, and
/// stopping.
///
/// "Ready" and "alive" are tied to painting. A widget of one pixel lies over a corner of the
/// window. Its first painting means that the window's first page was painted; from then on a timer
/// has it painted again at half the interval of the watchdog, and what is sent is sent by the
/// painting. A panel whose event loop hangs, or which does not paint any more, falls silent, and
/// the service manager restarts it.
///
/// The datagrams are those of sd_notify(3), whose text describes them as stable and free to be sent
/// by a program's own code. Nothing is sent, and no timer runs, when no service manager asks.
class ServiceNotifier : public QObject
{
    Q_OBJECT

public:
    /// Describes the panel's state in one short line of plain text.
    using Describe = std::function<QString()>;

    /// Reads who has to be told from the environment: NOTIFY_SOCKET, WATCHDOG_USEC, WATCHDOG_PID.
    /// \param window what has to be painted; the parent \param describe called at each painting
    ServiceNotifier(QWidget* window, Describe describe);
    ~ServiceNotifier() override;

    /// \return whether a service manager wants to be told.
    bool isWanted() const { return !m_address.isEmpty(); }
    /// \return the time between two signs of life, zero without a watchdog.
    std::chrono::milliseconds interval() const;

    /// Tells the description, if it has changed since it was told last.
    void tellStatus();

private:
    void painted();
    void send(const QByteArray& state) const;
    QByteArray changedStatus();

    QByteArray m_address; // of the socket, in the form of sun_path; empty when there is none
    Describe m_describe;
    QByteArray m_status; // told last
    QWidget* m_probe = nullptr;
    QTimer* m_timer = nullptr; // only with a watchdog
    bool m_ready = false;
};
