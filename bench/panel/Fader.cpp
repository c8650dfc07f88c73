// A fader's worth of updates: "CV" for 36 shown keys at once, as the main unit sends them when the
// operator of another panel moves something.
#include "panel/Groups.h"
#include "support/InProcessPanel.h"
#include "support/Row.h"

#include <QCoreApplication>

#include <chrono>
#include <cmath>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

constexpr int Keys = 36;
constexpr int Rounds = 101;
constexpr int PieceRounds = 21;
constexpr qsizetype PieceBytes = 64; // what a serial adapter hands on at once
constexpr double MicrosecondsPerByte = 10 * 1e6 / 115200;

// One message for each key. \a value what the messages carry
QByteArray turn(const QByteArray& value)
{
    QByteArray frames;
    for (int i = 0; i < Keys; ++i) {
        frames += framed("CV,Fader,key" + QByteArray::number(i) + ',' + value);
    }
    return frames;
}

// Writes the bytes and runs the event loop until the panel has read and painted them. It reads the
// last message in the same turn as the first one: all of them are less than one read.
void play(bench::InProcessPanel& panel, bench::PaintWatch& watch, const QByteArray& frames)
{
    const int before = watch.windows;
    panel.unit.write(frames);
    bench::settlePainted(watch, before);
}

// The same for messages that may change nothing on the screen: the answer to a "PING" ends it.
void playUnseen(bench::InProcessPanel& panel, const QByteArray& frames)
{
    panel.unit.takeReceived();
    panel.unit.write(frames + framed("PING"));
    while (!panel.unit.received().endsWith('\x04')) {
        QCoreApplication::processEvents();
    }
    QCoreApplication::processEvents();
}

void values(bench::InProcessPanel& panel)
{
    const QByteArrayList turns{turn("1.5,0"), turn("2.5,0")};
    int next = 0;
    const auto run = [&] { playUnseen(panel, turns.at(next++ % turns.size())); };
    run();
    bench::measure("fader.value", Rounds, {{"ours", {}, run}});
    bench::print("fader.value", "line",
        static_cast<double>(turns.constFirst().size()) * MicrosecondsPerByte);
}

void row(const char* name, bench::InProcessPanel& panel, const QByteArrayList& turns)
{
    bench::PaintWatch watch;
    watch.only = &panel.window;
    int next = 0;
    const auto run = [&] { play(panel, watch, turns.at(next++ % turns.size())); };
    run();
    run();
    watch.windows = 0;
    watch.widgets = 0;
    const int before = next;
    bench::measure(name, Rounds, {{"ours", {}, run}});
    const double played = next - before;
    const QByteArray row(name);
    bench::print(row, "line", static_cast<double>(turns.constFirst().size()) * MicrosecondsPerByte);
    bench::print(row, "paints", watch.windows / played);
    bench::print(row, "widgets", watch.widgets / played);
}

// Writes the bytes in small pieces, each when the line has brought it, as an adapter hands them on.
void playAtLineSpeed(bench::InProcessPanel& panel, const QByteArray& frames)
{
    using Clock = std::chrono::steady_clock;
    const Clock::time_point begin = Clock::now();
    for (qsizetype at = 0; at < frames.size(); at += PieceBytes) {
        const QByteArray piece = frames.mid(at, PieceBytes);
        const double due = static_cast<double>(at + piece.size()) * MicrosecondsPerByte;
        std::this_thread::sleep_until(begin + std::chrono::microseconds(static_cast<int>(due)));
        panel.unit.write(piece);
        // Reads it, and paints what it changes.
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }
}

void pieces(bench::InProcessPanel& panel, const QByteArrayList& turns)
{
    bench::PaintWatch watch;
    watch.only = &panel.window;
    int next = 0;
    const auto run = [&] { playAtLineSpeed(panel, turns.at(next++ % turns.size())); };
    run();
    watch.windows = 0;
    bench::measure("fader.pieces", PieceRounds, {{"ours", {}, run}});
    bench::settle();
    const double bytes = static_cast<double>(turns.constFirst().size());
    bench::print("fader.pieces", "line", bytes * MicrosecondsPerByte);
    bench::print("fader.pieces", "paints", watch.windows / double{PieceRounds});
    bench::print("fader.pieces", "pieces", std::ceil(bytes / PieceBytes));
    if (watch.windows == 0) {
        bench::fail("nothing is painted");
    }
}

} // namespace

namespace groups {

void fader()
{
    bench::InProcessPanel panel;
    panel.define("Fader", Keys);
    panel.say({"SK,Fader"});
    row("fader", panel, {turn("1,1"), turn("0,0")});
    pieces(panel, {turn("1,1"), turn("0,0")});
    values(panel);
}

} // namespace groups
