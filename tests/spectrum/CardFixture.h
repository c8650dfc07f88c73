#pragma once

#include "spectrum/CardSide.h"
#include "spectrum/Clock.h"
#include "spectrum/SpectralCard.h"

#include <QComboBox>
#include <QMainWindow>
#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;

/// A card's page on "ttyUSB11" in a window of the menu area's size, with the other end of its line.
/// Base of the tests of SpectralCard.
class CardFixture
{
protected:
    void start()
    {
        m_devices = std::make_unique<DeviceDirectory>();
        m_pty = &m_devices->add(u"ttyUSB11"_s);
        m_window = std::make_unique<QMainWindow>();
        m_window->setFixedSize(800, 430);
        m_card = new SpectralCard(m_window.get(), 0, u"ttyUSB11"_s);
        m_window->setCentralWidget(m_card);
    }

    void stop()
    {
        m_window.reset();
        m_devices.reset();
    }

    /// The bus that carries the requests: that of a K7150 is the one on "ttyUSB12".
    Rs422Bus* bus() const
    {
        return cardSide::busOn(m_card, m_card->k7150Type() ? u"ttyUSB12"_s : u"ttyUSB11"_s);
    }

    QTimer* timer(const char* name) const
    {
        return m_card->findChild<QTimer*>(QString::fromUtf8(name));
    }

    QComboBox* spanBox(int channel) const
    {
        return m_card->findChild<QComboBox*>(u"cboSpan%1"_s.arg(channel + 1));
    }

    /// Lets the request for the name end without a reply, so that the bus is idle.
    void endNameRequest()
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
