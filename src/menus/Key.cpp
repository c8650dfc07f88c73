#include "menus/Key.h"

#include "touch/KeyButton.h"
#include "touch/KeyStyle.h"
#include "touch/TextButton.h"
#include "wire/Message.h"

namespace {

// A button that is as it should be is left alone: for QWidget, that takes a look at much more of
// it.
void enable(QPushButton& button, bool enabled)
{
    if (button.isEnabled() != enabled || button.testAttribute(Qt::WA_ForceDisabled) == enabled) {
        button.setEnabled(enabled);
    }
}

// The same.
void setShown(QPushButton& button, bool shown)
{
    if (button.isHidden() == shown || !button.testAttribute(Qt::WA_WState_ExplicitShowHide)) {
        button.setVisible(shown);
    }
}

} // namespace

Key::Key()
    : Key(nullptr)
{
}

Key::Key(QObject* parent)
    : QObject(parent)
{
}

Key::~Key() = default;

void Key::Set_Key(QPushButton* keyButton, bool largeFont)
{
    button = keyButton;
    large = largeFont;
}

QPushButton* Key::GetKey() const
{
    return button;
}

void Key::setEnabled()
{
    if (button == nullptr) {
        return;
    }
    enable(*button, true);
    applyStyle(type == Toggle && tog_ ? keyStyle::toggled(large) : keyStyle::enabled(large));
    showLamp();
}

void Key::setDisabled()
{
    if (button == nullptr) {
        return;
    }
    enable(*button, false);
    applyStyle(keyStyle::disabled(large));
    showLamp();
}

void Key::show()
{
    if (button != nullptr) {
        setShown(*button, true);
    }
}

void Key::hide()
{
    if (button != nullptr) {
        setShown(*button, false);
    }
}

bool Key::tog() const
{
    return tog_;
}

void Key::setTog(bool on)
{
    tog_ = on;
    setPending(false);
    if (button != nullptr && type == Toggle && button->isEnabled()) {
        applyStyle(on ? keyStyle::toggled(large) : keyStyle::enabled(large));
    }
    showLamp();
}

void Key::applyState()
{
    setPending(false);
    switch (state) {
    case Enabled:
        setEnabled();
        show();
        break;
    case Disabled:
        setDisabled();
        show();
        break;
    case Hidden:
        hide();
        break;
    default:
        break;
    }
}

// A press changes the toggle state at once, but the lamp, like the colour, only when the main unit
// has spoken: this is not called by a press.
void Key::showLamp()
{
    if (auto* face = qobject_cast<TextButton*>(button)) {
        keyMarks::Marks marks = face->marks();
        marks.lamp = keyMarks::Lamp::None;
        if (type == Toggle) {
            marks.lamp = tog_ ? keyMarks::Lamp::On : keyMarks::Lamp::Off;
        }
        face->setMarks(marks);
    }
}

void Key::setPending(bool pending)
{
    m_isPending = pending;
    if (auto* face = qobject_cast<TextButton*>(button)) {
        keyMarks::Marks marks = face->marks();
        marks.isPending = pending;
        face->setMarks(marks);
    }
}

QString Key::message(const QString& valueText) const
{
    return wire::frame(command + valueText);
}

void Key::applyStyle(const QString& sheet)
{
    if (auto* face = qobject_cast<KeyButton*>(button)) {
        face->setSheet(sheet);
    } else if (button->styleSheet() != sheet) {
        // Setting a style sheet is slow even when it is the same one.
        button->setStyleSheet(sheet);
    }
}
