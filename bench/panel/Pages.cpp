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

// The shown button whose text begins so.
QPushButton* shown(const bench::InProcessPanel& panel, const QString& start)
{
    for (auto* button : panel.window.findChildren<QPushButton*>()) {
        if (button->isVisible() && button->text().startsWith(start)) {
            return button;
        }
    }
    return nullptr;
}

int shownButtons(const bench::InProcessPanel& panel)
{
    int count = 0;
    for (const auto* button : panel.window.findChildren<QPushButton*>()) {
        count += button->isVisible() ? 1 : 0;
    }
    return count;
}

void selectMenu(bench::InProcessPanel& panel, bench::BareWindow& bare)
{
    panel.say({"SK,One"});
    row("page.SK", bare, Keys, [&panel] {
        message(panel, "SK,Two");
        message(panel, "SK,One");
    });
}

void morePages(bench::InProcessPanel& panel, bench::BareWindow& bare)
{
    panel.say({"SK,Long"});
    QPushButton* first = shown(panel, u"More"_s);
    first->click();
    bench::settle();
    QPushButton* second = shown(panel, u"More"_s);
    row("page.More", bare, Keys, [&panel, first, second] {
        painted(&panel.window, [second] { bench::click(second); });
        painted(&panel.window, [first] { bench::click(first); });
    });
}

// The scopes page has few buttons: the pages of the peer have half as many as both views together.
void nextView(bench::InProcessPanel& panel, bench::BareWindow& bare)
{
    panel.say({"SK,One"});
    auto* view = panel.window.findChild<QPushButton*>(u"scopesButton"_s);
    const auto next = [&panel, view] { painted(&panel.window, [view] { bench::click(view); }); };
    const int onMenus = shownButtons(panel);
    next();
    bench::settle();
    const int onScopes = shownButtons(panel);
    next();
    row("page.view", bare, (onMenus + onScopes) / 2, [&next] {
        next();
        next();
    });
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
    selectMenu(panel, bare);
    morePages(panel, bare);
    nextView(panel, bare);
}

} // namespace groups
