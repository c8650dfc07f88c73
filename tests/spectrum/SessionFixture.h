#pragma once

#include "spectrum/CardSession.h"
#include "spectrum/CardSide.h"
#include "spectrum/Clock.h"

#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;

/// A conversation with a card on "ttyUSB11" without any widget, and the other end of its line. Base
/// of the tests of CardSession.
class SessionFixture
{
protected:
    void start()
    {
        m_devices = std::make_unique<DeviceDirectory>();
        m_pty = &m_devices->add(u"ttyUSB11"_s);
        m_session = std::make_unique<CardSession>(u"ttyUSB11"_s);
    }

    void stop()
    {
        m_session.reset();
        m_devices.reset();
    }

    /// The bus that carries the requests: that of a K7150 is the one on "ttyUSB12".
    Rs422Bus* bus() const
    {
        return cardSide::busOn(
            m_session.get(), m_session->isK7150() ? u"ttyUSB12"_s : u"ttyUSB11"_s);
    }

    QTimer* timer(const char* name) const
    {
        return m_session->findChild<QTimer*>(QString::fromUtf8(name));
    }

    /// Lets the request for the name end without a reply, so that the bus is idle.
    void endNameRequest()
    {
        QTRY_VERIFY(!cardSide::requests(*m_pty).isEmpty());
        testClock::expire(bus());
        QVERIFY(testClock::timers(bus()).isEmpty());
        m_pty->takeReceived();
    }

    /// Lets the test be the poll timer: polling is on, and only pollIfDue() polls.
    void pollByHand()
    {
        m_session->setPolling(true);
        timer("pollTimer")->stop();
    }

    std::unique_ptr<DeviceDirectory> m_devices;
    Pty* m_pty = nullptr;
    std::unique_ptr<CardSession> m_session;
};
