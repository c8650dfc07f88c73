// Every editor from the press of its key to its first painted frame, beside a bare dialog with as
// many styled buttons.
#include "panel/Groups.h"
#include "popups/FileNameEdit.h"
#include "support/InProcessPanel.h"
#include "support/Row.h"

#include <QApplication>
#include <QDialog>
#include <QGridLayout>
#include <QTimer>

#include <cmath>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

constexpr int Rounds = 31;

struct Editor
{
    const char* name;
    int type;
    const char* units;
    const char* options;
    int param;
};

// Keys whose press opens the editors, as they are in the menus of a unit.
constexpr Editor Editors[] = {
    {"number", 1, "2200 2400", "", 1},
    {"list", 2, "", "0 BPSK:1 QPSK:2 OQPSK:3 8PSK:4 16QAM:5 GMSK:6 FM:7 PM", 0},
    {"slider", 3, "0 100", "1", 0},
    {"file", 4, "", "alpha.cfg:beta.cfg:gamma.cfg:delta.cfg", 0},
    {"address", 6, "", "", 0},
};

// What a dialog consists of, for a bare one that is like it.
struct Look
{
    QSize size;
    QStringList texts;
    QStringList sheets;
};

// Waits for the next modal window, notes the time when it is painted for the first time, and closes
// it.
class FirstFrame : public QObject
{
public:
    FirstFrame() { qApp->installEventFilter(this); }

    bool eventFilter(QObject* object, QEvent* event) override
    {
        auto* widget = qobject_cast<QWidget*>(object);
        if (event->type() == QEvent::Paint && !m_painted && widget != nullptr &&
            widget->window()->isModal()) {
            m_painted = true;
            // The window paints all that is in it before the event loop goes on.
            QTimer::singleShot(0, this, [this, window = widget->window()] { end(window); });
        }
        return false;
    }

    std::function<void()> onPainted;
    Look look;

private:
    void end(QWidget* window)
    {
        onPainted();
        look.size = window->size();
        for (const QPushButton* button : window->findChildren<QPushButton*>()) {
            if (button->isVisibleTo(window)) {
                look.texts += button->text();
                look.sheets += button->styleSheet();
            }
        }
        static_cast<QDialog*>(window)->reject();
    }

    bool m_painted = false;
};

void openBare(const Look& look)
{
    QDialog dialog;
    dialog.setModal(true);
    dialog.setFixedSize(look.size);
    auto* grid = new QGridLayout(&dialog);
    const int columns = std::max(1, static_cast<int>(std::ceil(std::sqrt(look.texts.size()))));
    for (int i = 0; i < look.texts.size(); ++i) {
        auto* button = new QPushButton(look.texts.at(i));
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        grid->addWidget(button, i / columns, i % columns);
        button->setStyleSheet(look.sheets.at(i)); // before, the style would look it up twice
    }
    dialog.exec();
}

// Opens an editor by \a open. \return processor time to its first frame in µs
double microseconds(const std::function<void()>& open, Look* look = nullptr)
{
    FirstFrame frame;
    double end = 0;
    frame.onPainted = [&end] { end = bench::threadMicroseconds(); };
    const double begin = bench::threadMicroseconds();
    open();
    if (look != nullptr) {
        *look = frame.look;
    }
    bench::settle();
    return end - begin;
}

void row(const QByteArray& name, const std::function<void()>& openOurs)
{
    Look look;
    microseconds(openOurs, &look);
    const auto openPeer = [&look] { openBare(look); };
    microseconds(openPeer);
    if (bench::isCounting()) {
        // The section ends when the dialog is closed, not at the first frame.
        const auto some = [](const std::function<void()>& open) {
            return [open] { microseconds(open); };
        };
        bench::measure(name, 1, {{"ours", {}, some(openOurs)}, {"peer", {}, some(openPeer)}});
        return;
    }
    std::vector<double> ours;
    std::vector<double> peer;
    for (int i = 0; i < Rounds; ++i) {
        ours.push_back(microseconds(openOurs));
        peer.push_back(microseconds(openPeer));
    }
    bench::print(name, "ours", bench::quantile(ours));
    bench::print(name, "peer", bench::quantile(peer));
    bench::print(name, "buttons", static_cast<double>(look.texts.size()));
}

} // namespace

namespace groups {

void editors()
{
    bench::InProcessPanel panel;
    QByteArray frames;
    int number = 0;
    for (const Editor& editor : Editors) {
        frames += bench::InProcessPanel::key(
            "Editors", number++, editor.type, editor.units, editor.options, editor.param);
    }
    panel.send(frames);
    panel.say({"SK,Editors"});
    number = 0;
    for (const Editor& editor : Editors) {
        QPushButton* button = panel.button(u"Key %1"_s.arg(number++));
        row(QByteArray("editor.") + editor.name, [button] { button->click(); });
    }
    row("editor.name", [] { const FileNameEdit edit({}, nullptr); });
}

} // namespace groups
