#include "tools/try/KeyState.h"

#include "tools/screen/Screen.h"
#include "tools/try/Glass.h"
#include "tools/try/Pattern.h"
#include "touch/KeyStyle.h"
#include "touch/PresentMark.h"
#include "touch/TextButton.h"

#include <QAbstractButton>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// Whether a key has one of the two sheets, for small and for large letters, of a state.
bool isOfSheet(const QAbstractButton& button, QString (*sheet)(bool))
{
    return button.styleSheet() == sheet(false) || button.styleSheet() == sheet(true);
}

// "on" or "off"; empty for a button that is neither.
QString lampOf(const QAbstractButton& button)
{
    if (button.isCheckable()) {
        return button.isChecked() ? u"on"_s : u"off"_s;
    }
    const auto* key = qobject_cast<const TextButton*>(&button);
    if (key == nullptr || key->marks().lamp == keyMarks::Lamp::None) {
        return {};
    }
    const bool isOn = key->marks().lamp == keyMarks::Lamp::On;
    const bool isGreen = isOfSheet(*key, keyStyle::toggled);
    if (key->isEnabled() && isOn != isGreen) {
        return isOn ? u"on by its lamp and off by its colour"_s
                    : u"off by its lamp and on by its colour"_s;
    }
    return isOn ? u"on"_s : u"off"_s;
}

QString pendingOf(const QAbstractButton& button)
{
    const auto* key = qobject_cast<const TextButton*>(&button);
    return key != nullptr && key->marks().isPending ? u"pending"_s : u"settled"_s;
}

bool isHidden(const QString& pattern)
{
    const QString wanted = pattern.simplified();
    for (const QWidget* window : visibleWindows()) {
        const auto buttons = window->findChildren<QAbstractButton*>();
        for (const QAbstractButton* button : buttons) {
            const bool onPage =
                button->parentWidget() != nullptr && button->parentWidget()->isVisible();
            if (onPage && button->isHidden() && matches(wanted, glass::label(*button))) {
                return true;
            }
        }
    }
    return false;
}

// What the button shows of the kind of state that is asked for.
QString stateOf(const QAbstractButton& button, const QString& wanted)
{
    if (wanted == u"on"_s || wanted == u"off"_s) {
        return lampOf(button);
    }
    if (wanted == u"pending"_s || wanted == u"settled"_s) {
        return pendingOf(button);
    }
    if (wanted == u"chosen"_s) {
        return button.findChild<PresentMark*>() != nullptr ? wanted : u"not chosen"_s;
    }
    return button.isEnabled() ? u"enabled"_s : u"disabled"_s;
}

} // namespace

QString keyState::fault(const Step& step)
{
    const auto buttons = glass::buttons(step.subject);
    if (step.detail == u"hidden"_s) {
        if (!buttons.isEmpty()) {
            return u"\"%1\" is shown"_s.arg(step.subject);
        }
        return isHidden(step.subject) ? QString()
                                      : u"no key \"%1\" on this page"_s.arg(step.subject);
    }
    if (buttons.size() < std::max(1, step.number)) {
        return u"no key \"%1\" on the screen"_s.arg(step.subject);
    }
    if (step.number == 0 && buttons.size() > 1) {
        return u"%1 keys \"%2\" on the screen; say which, as in: expect-state \"%2\" %3 1"_s
            .arg(buttons.size())
            .arg(step.subject, step.detail);
    }
    const QAbstractButton* button = buttons.at(std::max(0, step.number - 1));
    const QString state = stateOf(*button, step.detail);
    if (state == step.detail) {
        return {};
    }
    return u"\"%1\" is %2"_s.arg(
        step.subject, state.isEmpty() ? u"neither on nor off: it has no lamp"_s : state);
}

QString keyState::mark(const QAbstractButton& button)
{
    QStringList marks;
    if (!lampOf(button).isEmpty()) {
        marks += lampOf(button);
    }
    if (pendingOf(button) == u"pending"_s) {
        marks += u"pending"_s;
    }
    if (!button.isEnabled()) {
        marks += u"disabled"_s;
    }
    return marks.join(u", "_s);
}
