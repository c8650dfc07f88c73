#pragma once

#include "spectrum/CardSide.h"
#include "spectrum/Clock.h"
#include "spectrum/SpectralCard.h"

#include <QMainWindow>
#include <QtTest>

#include <memory>

// A card on "ttyUSB11" in a window of the menu area's size, with the other end of its line. Base of
// the tests of SpectralCard.
class CardDesk
{
protected:
    void sitDown()
    {
        m_devices = std::make_unique<DeviceDirectory>();
        m_pty = &m_devices->add("ttyUSB11");
        m_window = std::make_unique<QMainWindow>();
        m_window->setFixedSize(800, 430);
        m_card = new SpectralCard(m_window.get(), 0, "ttyUSB11");
        m_window->setCentralWidget(m_card);
    }

    void standUp()
    {
        m_window.reset();
        m_devices.reset();
    }

    // The bus that carries the requests: of a K7150 that is the one on "ttyUSB12".
    Rs422Bus* bus() const
    {
        for (Rs422Bus* one : m_card->findChildren<Rs422Bus*>()) {
            if (one->portName() == (m_card->k7150Type() ? "ttyUSB12" : "ttyUSB11")) {
                return one;
            }
        }
        return nullptr;
    }

    QTimer* timer(const char* name) const { return m_card->findChild<QTimer*>(name); }

    // The name was asked for and not given, and the bus is idle.
    void nameKnown()
    {
        QTRY_VERIFY(!cardSide::requests(*m_pty).isEmpty());
        testClock::expire(bus());
        QVERIFY(testClock::timers(bus()).isEmpty());
        m_pty->takeReceived();
    }

    std::unique_ptr<DeviceDirectory> m_devices;
    Pty* m_pty = nullptr;
    std::unique_ptr<QMainWindow> m_window;
    SpectralCard* m_card = nullptr;
};
