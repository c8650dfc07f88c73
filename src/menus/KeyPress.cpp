// What a press of a key does; the one file of this room that knows the modal editors.
#include "menus/Key.h"
#include "popups/PopUpIpPad.h"
#include "popups/PopUpNumberPad.h"

#include <QLabel>
#include <QMessageBox>
#include <QPointer>

namespace {

constexpr int ValueDecimals = 6;
constexpr int WidestReport = 740;

QString buttonText(const Key& key)
{
    return key.button != nullptr ? key.button->text() : key.label;
}

// Sends what an editor has returned, unless the key went while it was open.
void sendValue(const QPointer<Key>& key, const QString& valueText)
{
    if (key != nullptr) {
        emit key->response_message(key->message(valueText));
    }
}

void openNumberPad(Key* key)
{
    const QPointer<Key> guard(key);
    PopUpNumberPad pad;
    QObject::connect(&pad, &Key::response_message, key, &Key::response_message);
    const double value = pad.new_pop_NumberPad(key->label, key->units, key->value, key->param,
        key->options, key->command, key->padText, key->large);
    if (value > PopUpNumberPad::CancelBound) {
        sendValue(guard, QString::number(value, 'f', ValueDecimals));
    }
}

void openAddressPad(Key* key)
{
    const QPointer<Key> guard(key);
    PopUpIpPad pad;
    const QString address = pad.new_pop_IP_NumberPad(key->label, buttonText(*key));
    if (!address.isEmpty()) {
        sendValue(guard, address);
    }
}

void reportItself(const Key& key)
{
    QMessageBox box;
    box.setTextFormat(Qt::PlainText);
    box.setText(QStringLiteral("A key_button was pushed %1 %2").arg(buttonText(key), key.command));
    // a word as wide as the screen would push the box out of it
    if (auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))) {
        label->setMaximumWidth(WidestReport);
    }
    box.exec();
}

} // namespace

void Key::key_button_pushed()
{
    switch (type) {
    case Toggle:
    case Command:
        // the look changes when the main unit confirms
        tog_ = !tog_;
        emit response_message(message(tog_ ? QStringLiteral("1") : QStringLiteral("0")));
        break;
    case Number:
        openNumberPad(this);
        break;
    case Address:
        openAddressPad(this);
        break;
    case Selection:
    case Slider:
    case File:
        break;
    default:
        reportItself(*this);
        break;
    }
}
