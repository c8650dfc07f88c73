// Page switches to the painted page, beside a bare stack of pages with as many styled buttons.
#include "panel/Groups.h"
#include "support/InProcessPanel.h"
#include "support/Row.h"

#include <QCoreApplication>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

constexpr int Keys = 36;
constexpr int Rounds = 41;
constexpr int Switches = 2; // there and back

// Does a step and runs the event loop until the window is painted.
void painted(QWidget* window, const std::function<void()>& step)
{
    bench::PaintWatch watch;
    watch.only = window;
    step();
    bench::settlePainted(watch, 0);
}

void message(bench::InProcessPanel& panel, const char* body)
{
    painted(&panel.window, [&] { panel.unit.write(framed(body)); });
}

void row(const char* name, bench::BareWindow& bare, int buttons, const std::function<void()>& ours)
{
    bare.clear();
    for (int page = 0; page < Switches; ++page) {
        bare.addButtons(buttons, bench::keySheet());
    }
    const int pages = (bare.stack->count() - 1) / Switches;
    const auto peer = [&bare, pages] {
        painted(&bare.window, [&] { bare.stack->setCurrentIndex(1); });
        painted(&bare.window, [&] { bare.stack->setCurrentIndex(1 + pages); });
    };
    for (int i = 0; i < 2; ++i) { // the first time is not the usual one
        ours();
        peer();
    }
    bench::measure(name, Rounds, {{"ours", {}, ours, Switches}, {"peer", {}, peer, Switches}});
}

} // namespace

namespace groups {

void pages()
{
    bench::InProcessPanel panel;
    bench::BareWindow bare;
    panel.define("One", Keys);
    panel.define("Two", Keys);
    panel.define("Long", 2 * (Keys - 1));
    panel.say({"SK,One"});
    row("page.SK", bare, Keys, [&panel] {
        message(panel, "SK,Two");
        message(panel, "SK,One");
    });
    panel.say({"SK,Long"});
    const auto more = [&panel] {
        for (auto* button : panel.window.findChildren<QPushButton*>()) {
            if (button->isVisible() && button->text().startsWith(u"More"_s)) {
                return button;
            }
        }
        return static_cast<QPushButton*>(nullptr);
    };
    QPushButton* first = more();
    first->click();
    bench::settle();
    QPushButton* second = more();
    row("page.More", bare, Keys, [&panel, first, second] {
        painted(&panel.window, [second] { bench::click(second); });
        painted(&panel.window, [first] { bench::click(first); });
    });
    // The scopes page has three buttons: the pages of the peer have half as many as both together.
    panel.say({"SK,One"});
    auto* view = panel.window.findChild<QPushButton*>(u"scopesButton"_s);
    const auto shown = [&panel] {
        int count = 0;
        for (const auto* button : panel.window.findChildren<QPushButton*>()) {
            count += button->isVisible() ? 1 : 0;
        }
        return count;
    };
    const auto next = [&panel, view] { painted(&panel.window, [view] { bench::click(view); }); };
    const int onMenus = shown();
    next();
    bench::settle();
    const int onScopes = shown();
    next();
    row("page.view", bare, (onMenus + onScopes) / 2, [&next] {
        next();
        next();
    });
}

} // namespace groups
