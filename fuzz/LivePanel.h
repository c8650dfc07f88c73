#pragma once

#include "Script.h"

#include "app/MainWindow.h"
#include "support/Pty.h"

#include <array>
#include <memory>

/// A whole panel with pseudo-terminals for all its lines, which gets the bytes of an input.
///
/// The bytes go to the line of the main unit in reads of 1,024 bytes at most. Behind the byte 0x10
/// stands what the operator does, see Script, or
///
///     0x10 |       lets the panel read what has come so far: the next byte is in another read
///     0x10 L n     the bytes that follow go to the line n % 8 of lineNames()
///     0x10 0x10    the byte 0x10 itself
///
/// After an input everything is cleared and the panel has to answer a "PING"; after InputsPerPanel
/// of them the panel is made anew.
class LivePanel final : public Script
{
    Q_OBJECT

public:
    /// The number of inputs after which the panel is made anew.
    static constexpr int InputsPerPanel = 200;

    LivePanel();
    ~LivePanel() override;

    /// Gives an input to the panel and clears everything afterwards.
    void take(const QByteArray& input);

private:
    static constexpr int Lines = 8;

    void proceed() override;
    void proceedWith(char what) override;
    bool finish() override;

    void makeWindow();
    void note(const QByteArray& input);
    void add(char byte);
    void write();
    bool hasUnread();
    bool clear();
    void dropSent();

    DeviceDirectory m_devices;
    std::array<Pty*, Lines> m_lines{};
    std::array<int, Lines> m_slaves{};
    std::unique_ptr<MainWindow> m_window;
    QByteArray m_pending;
    int m_line = 0;
    int m_waits = 0;
    int m_inputs = 0;
    bool m_cleared = false; // whether clear() has sent its messages
};
