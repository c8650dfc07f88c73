// Keys: what it takes to define them, to change them while their page is hidden, and to keep them.
#include "panel/Groups.h"
#include "support/InProcessPanel.h"
#include "support/Row.h"

#include <QFile>

#include <algorithm>
#include <cstdio>
#include <unistd.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr int Counts[] = {100, 1000, 10000};
constexpr int MaxShort = 1000;       // keys or bare buttons: callgrind and qemu are slow
constexpr int Messages = 1000;       // in one measurement of changes
constexpr int CountedMessages = 200; // callgrind is slow
constexpr int Buttons = 100;         // of the peer of changes
constexpr int CountedButtons = 20;
constexpr int PageKeys = 35; // beside "More..."

// About the same time for all.
int rounds(int count)
{
    return count <= 100 ? 31 : count <= 1000 ? 9 : 3;
}

QByteArray definitions(int count)
{
    QByteArray frames;
    for (int i = 0; i < count; ++i) {
        frames += bench::InProcessPanel::key("Menu", i);
    }
    return frames;
}

// Messages for keys all over the menu, in an order without a pattern. \a ends what the message ends
// with, by turns
QByteArray changesOf(const QByteArray& word, int count, const QByteArrayList& ends)
{
    constexpr int Step = 7919; // a prime
    QByteArray frames;
    for (int i = 0; i < (bench::isCounting() ? CountedMessages : Messages); ++i) {
        const int key = static_cast<int>(static_cast<qint64>(i / ends.size()) * Step % count);
        frames +=
            framed(word + ",Menu,key" + QByteArray::number(key) + ',' + ends.at(i % ends.size()));
    }
    return frames;
}

// A row of changes, beside bare buttons that get their sheet first: the kind of button that took
// 131 µs on the machine on which "CV" and "CK" had a goal in microseconds.
void changeRow(const QByteArray& name, bench::InProcessPanel& panel, bench::BareWindow& bare,
    int count, const QByteArray& frames)
{
    const auto run = [&] { panel.send(frames); };
    const int buttons = bench::isCounting() ? CountedButtons : Buttons;
    const auto addBare = [&] {
        bare.addButtons(buttons, bench::keySheet(), bench::BareWindow::SheetComes::First);
        bench::settle();
    };
    run();
    bench::measure(name + QByteArray::number(count), 11,
        {{"ours", {}, run, double(bench::isCounting() ? CountedMessages : Messages)},
            {"peer", [&] { bare.clear(); }, addBare, double(buttons)}});
}

// "CV" that changes toggles, and "CK" that disables and enables keys.
void stateRows(
    const QByteArray& state, bench::InProcessPanel& panel, bench::BareWindow& bare, int count)
{
    changeRow("CV" + state + '.', panel, bare, count, changesOf("CV", count, {"0,1", "0,0"}));
    changeRow("CK-enable" + state + '.', panel, bare, count, changesOf("CK", count, {"0", "1"}));
}

// "CK" makes a key visible, on a hidden page as well.
void sendEveryKey(bench::InProcessPanel& panel, int count)
{
    QByteArray frames;
    for (int i = 0; i < count; ++i) {
        frames += framed("CK,Menu,key" + QByteArray::number(i) + ",1");
    }
    panel.send(frames);
}

// Shows all pages of the menu, one after the other, and then another menu.
void showEveryPage(bench::InProcessPanel& panel, int count)
{
    panel.say({"SK,Menu"});
    for (int page = 0; page * PageKeys < count; ++page) {
        panel.window.grab();
        if (QPushButton* more = panel.button(u"More..."_s)) {
            more->click();
        }
    }
    for (const auto* button : panel.window.findChildren<QPushButton*>()) {
        if (button->text().startsWith(u"Key "_s) &&
            !button->testAttribute(Qt::WA_WState_Polished)) {
            bench::fail("not every page was shown");
        }
    }
    panel.define("Other", 1);
    panel.say({"SK,Other"});
}

// Bytes of the process that are in memory.
double residentBytes()
{
    QFile file(u"/proc/self/statm"_s);
    const bool open = file.open(QIODevice::ReadOnly);
    const QByteArray line = open ? file.readAll() : QByteArray();
    return line.split(' ').value(1).toDouble() * static_cast<double>(::sysconf(_SC_PAGESIZE));
}

} // namespace

namespace groups {

void define()
{
    bench::InProcessPanel panel;
    bench::BareWindow bare;
    for (const int count : Counts) {
        if (bench::isShort() && count > MaxShort) {
            continue;
        }
        const int buttons = bench::isCounting() ? std::min(count, MaxShort) : count;
        const QByteArray frames = definitions(count);
        const auto clear = [&] {
            panel.say({"CLEAR"});
            bare.clear();
        };
        const bench::Side ours{"ours", clear, [&] { panel.send(frames); }, double(count)};
        const auto addBare = [&](const QString& sheet) {
            bare.addButtons(buttons, sheet);
            bench::settle();
        };
        const bench::Side peer{"peer", clear, [&] { addBare(bench::keySheet()); }, double(buttons)};
        std::vector<bench::Side> sides{ours, peer};
        if (!bench::isCounting()) {
            sides.push_back({"plain", clear, [&] { addBare({}); }, double(count)});
        }
        bench::measure("define." + QByteArray::number(count), rounds(count), sides);
    }
}

void changes()
{
    bench::InProcessPanel panel;
    bench::BareWindow bare;
    for (const int count : Counts) {
        if (bench::isShort() && count > MaxShort) {
            continue;
        }
        panel.say({"CLEAR"});
        panel.define("Menu", count);
        // "CV" first: "CK" changes the state of the keys that it is for.
        stateRows({}, panel, bare, count);
        sendEveryKey(panel, count);
        changeRow("CK.", panel, bare, count, changesOf("CK", count, {"1"}));
        if (!bench::isCounting()) { // not in the tables
            changeRow("CK-hide.", panel, bare, count, changesOf("CK", count, {"2", "1"}));
        }
        sendEveryKey(panel, count);
        stateRows("-told", panel, bare, count);
        showEveryPage(panel, count);
        stateRows("-shown", panel, bare, count);
    }
}

void memory(const QByteArray& side, int count)
{
    bench::InProcessPanel panel;
    bench::BareWindow bare;
    const QByteArray frames = definitions(count);
    // What the first buttons need once does not count.
    panel.define("First", 36);
    bare.addButtons(36, bench::keySheet());
    bench::settle();
    const double before = residentBytes();
    if (side == "ours") {
        panel.send(frames);
    } else {
        bare.addButtons(count, bench::keySheet());
        bench::settle();
    }
    bench::print("memory." + QByteArray::number(count), side.constData(),
        (residentBytes() - before) / count);
}

} // namespace groups
