#include "menus/Key.h"

#include "touch/KeyStyle.h"
#include "wire/Message.h"

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
    button->setEnabled(true);
    applyStyle(type == Toggle && tog_ ? keyStyle::toggled(large) : keyStyle::enabled(large));
}

void Key::setDisabled()
{
    if (button == nullptr) {
        return;
    }
    button->setEnabled(false);
    applyStyle(keyStyle::disabled(large));
}

void Key::show()
{
    if (button != nullptr) {
        button->show();
    }
}

void Key::hide()
{
    if (button != nullptr) {
        button->hide();
    }
}

bool Key::tog() const
{
    return tog_;
}

void Key::setTog(bool on)
{
    tog_ = on;
    if (button != nullptr && type == Toggle && button->isEnabled()) {
        applyStyle(on ? keyStyle::toggled(large) : keyStyle::enabled(large));
    }
}

void Key::applyState()
{
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

QString Key::message(const QString& valueText) const
{
    return wire::frame(command + valueText);
}

void Key::applyStyle(const QString& sheet)
{
    // Setting a style sheet is slow even when it is the same one, so skip it when nothing changes.
    if (button->styleSheet() != sheet) {
        button->setStyleSheet(sheet);
    }
}
