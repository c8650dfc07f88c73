// A key press to its bytes on the line, beside a bare button whose slot writes to the same
// pseudo-terminal.
#include "panel/Groups.h"
#include "support/InProcessPanel.h"
#include "support/Row.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <fcntl.h>
#include <unistd.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr int Presses = 1000;
constexpr int CountedPresses = 20;
constexpr int CommandKey = 5; // sends "0" and "1" by turns and shows no state

// Presses a button and waits for its bytes. \return the microseconds from the release, which sends,
// to the last byte
double press(QPushButton* button, Pty& unit)
{
    unit.takeReceived();
    QElapsedTimer elapsed;
    bench::click(button, [&elapsed] {
        QCoreApplication::processEvents(); // the pressed look
        elapsed.start();
    });
    while (!unit.received().endsWith('\x04')) {
        QCoreApplication::processEvents();
    }
    const double used = static_cast<double>(elapsed.nsecsElapsed()) / 1000.0;
    QCoreApplication::processEvents();
    return used;
}

} // namespace

namespace groups {

void press()
{
    bench::InProcessPanel panel;
    panel.define("Press", 36, CommandKey);
    panel.say({"SK,Press"});
    QPushButton* ours = panel.button(u"Key 7"_s);
    bench::BareWindow bare;
    bare.addButtons(36, bench::keySheet());
    bare.stack->setCurrentIndex(1);
    bench::settle();
    auto* peer = bare.stack->widget(1)->findChildren<QPushButton*>().value(7);
    const int line = ::open(panel.unit.slavePath().toLocal8Bit().constData(), O_WRONLY | O_NOCTTY);
    const QByteArray bytes = framed("R1:K7:1");
    QObject::connect(peer, &QPushButton::clicked, peer, [line, bytes] {
        static_cast<void>(::write(line, bytes.constData(), static_cast<size_t>(bytes.size())));
    });
    ::press(ours, panel.unit);
    ::press(peer, panel.unit);
    if (bench::isCounting()) {
        const auto some = [&panel](QPushButton* button) {
            return [&panel, button] {
                for (int i = 0; i < CountedPresses; ++i) {
                    ::press(button, panel.unit);
                }
            };
        };
        bench::measure("press", 1,
            {{"ours", {}, some(ours), CountedPresses}, {"peer", {}, some(peer), CountedPresses}});
    } else {
        std::vector<double> oursUs;
        std::vector<double> peerUs;
        for (int i = 0; i < Presses; ++i) {
            oursUs.push_back(::press(ours, panel.unit));
            peerUs.push_back(::press(peer, panel.unit));
        }
        bench::print("press", "ours", bench::quantile(oursUs));
        bench::print("press", "peer", bench::quantile(peerUs));
        bench::print("press.p99", "ours", bench::quantile(oursUs, 0.99));
        bench::print("press.p99", "peer", bench::quantile(peerUs, 0.99));
    }
    ::close(line);
}

} // namespace groups
