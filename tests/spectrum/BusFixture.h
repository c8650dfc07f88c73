#pragma once

#include "spectrum/CardSide.h"
#include "spectrum/Clock.h"
#include "spectrum/Rs422Bus.h"

#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;

/// A bus on "ttyUSB11" with the card's end of its line, and what the bus has said so far. Base of
/// the tests of Rs422Bus.
class BusFixture
{
protected:
    /// Longer than any test, in ms; its time passes by testClock::expire().
    static constexpr int Long = 10000;

    using Requests = QList<QByteArray>;

    void start()
    {
        m_devices = std::make_unique<DeviceDirectory>();
        m_card = &m_devices->add(u"ttyUSB11"_s);
        m_bus = std::make_unique<Rs422Bus>(QStringLiteral("ttyUSB11"), '[', ']', true, 921600);
        m_received = std::make_unique<QSignalSpy>(m_bus.get(), &Rs422Bus::messageReceived);
        m_lost = std::make_unique<QSignalSpy>(m_bus.get(), &Rs422Bus::messageTxSuccess);
        m_flags = std::make_unique<QSignalSpy>(m_bus.get(), &Rs422Bus::messageQueueFlag);
    }

    void stop()
    {
        m_received.reset();
        m_lost.reset();
        m_flags.reset();
        m_bus.reset();
        m_devices.reset();
    }

    /// The number of timers that run for a bus.
    static int timers(Rs422Bus* bus) { return static_cast<int>(testClock::timers(bus).size()); }

    /// The interval of the newest timer of a bus in ms, which is its reply timer; -1 when none
    /// runs.
    static int replyTimer(Rs422Bus* bus)
    {
        int newest = -1;
        int interval = -1;
        for (const auto& timer : testClock::timers(bus)) {
            if (timer.timerId > newest) {
                newest = timer.timerId;
                interval = timer.interval;
            }
        }
        return interval;
    }

    std::unique_ptr<DeviceDirectory> m_devices;
    Pty* m_card = nullptr;
    std::unique_ptr<Rs422Bus> m_bus;
    std::unique_ptr<QSignalSpy> m_received;
    std::unique_ptr<QSignalSpy> m_lost;
    std::unique_ptr<QSignalSpy> m_flags;
};
