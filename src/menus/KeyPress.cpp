// What a press of a key does; the only file of this room that includes the modal editors.
//
// An editor runs inside the call, and the key, with all of its fields, may be deleted before it
// closes: the fields are copied before, and nothing is sent for a key that was deleted.
#include "menus/Key.h"

#include "menus/ListGrid.h"
#include "popups/PopUpFileBoard.h"
#include "popups/PopUpIpPad.h"
#include "popups/PopUpKeyBoard.h"
#include "popups/PopUpNumberPad.h"
#include "popups/PopUpSlider.h"
#include "touch/MessageBox.h"

#include <QCoreApplication>
#include <QPointer>
#include <QPushButton>

#include <algorithm>
#include <limits>
#include <optional>

namespace {

constexpr int ValueDecimals = 6;

QString buttonText(const Key& key)
{
    return key.button != nullptr ? key.button->text() : key.label;
}

// Sends what an editor has returned; an empty text is a cancelled one.
void sendUnlessEmpty(const QPointer<Key>& key, const QString& text)
{
    if (key != nullptr && !text.isEmpty()) {
        emit key->response_message(key->message(text));
    }
}

// What the main unit has told about the choice that is in effect: it may show it on the button.
choices::Present presentOf(const Key& key)
{
    const bool known = key.valueGiven || key.value != 0.0;
    return {buttonText(key), known ? std::optional<double>(key.value) : std::nullopt};
}

void pressNumber(const QPointer<Key>& key)
{
    PopUpNumberPad pad;
    pad.valueGiven = key->valueGiven;
    QObject::connect(&pad, &Key::response_message, key.data(), &Key::response_message);
    const double value = pad.new_pop_NumberPad(key->label, key->units, key->value, key->param,
        key->options, key->command, key->padText, key->large);
    if (value > PopUpNumberPad::CancelBound) {
        sendUnlessEmpty(key, QString::number(value, 'f', ValueDecimals));
    }
}

void pressSelection(const QPointer<Key>& key)
{
    const ListGrid grid = ListGrid::forChoices(key->options, key->param);
    const QString options = key->options;
    const QString label = key->label;
    const QList<int> disabled = key->itemIds;
    PopUpKeyBoard popUp;
    popUp.setPresent(presentOf(*key));
    sendUnlessEmpty(
        key, popUp.new_pop_keyboard(options, label, grid.rows, grid.columns, disabled, key->large));
}

// Returns a slider that is not open. One with this command that has just been closed is taken again
// while it still has something to send: a new one would send at once, and the old one's position
// after it.
PopUpSlider* sliderFor(const QString& command)
{
    const auto sliders = QCoreApplication::instance()->findChildren<PopUpSlider*>();
    for (PopUpSlider* slider : sliders) {
        if (slider->isFinishing() && slider->command == command) {
            QObject::disconnect(slider, &Key::response_message, nullptr, nullptr);
            return slider;
        }
    }
    return new PopUpSlider(QCoreApplication::instance());
}

void pressSlider(const QPointer<Key>& key)
{
    const QString label = key->label;
    const QString command = key->command;
    const QString range = key->units;
    const QString steps = key->options;
    const double farthest = std::numeric_limits<float>::max();
    const auto value = static_cast<float>(std::clamp(key->value, -farthest, farthest));
    // The slider lives on when the dialog is closed, until its last position is sent; the message
    // reaches the key only while the key exists.
    PopUpSlider* popUp = sliderFor(command);
    QObject::connect(popUp, &Key::response_message, key.data(), &Key::response_message);
    QObject::connect(popUp, &QObject::destroyed, key.data(), &Key::pressFinished);
    popUp->new_pop_slider(label, command, range, value, key->param, steps);
    popUp->deleteWhenSent();
}

void pressFile(const QPointer<Key>& key)
{
    const ListGrid grid = ListGrid::forFiles(key->options);
    const QString options = key->options;
    const QString label = key->label;
    PopUpFileBoard popUp;
    popUp.setPresent(presentOf(*key));
    sendUnlessEmpty(key, popUp.new_pop_fileboard(options, label, grid.rows, grid.columns));
}

void pressAddress(const QPointer<Key>& key)
{
    PopUpIpPad pad;
    sendUnlessEmpty(key, pad.new_pop_IP_NumberPad(key->label, buttonText(*key)));
}

void reportItself(const Key& key)
{
    MessageBox::report(
        QStringLiteral("A key_button was pushed %1 %2").arg(buttonText(key), key.command));
}

} // namespace

void Key::key_button_pushed()
{
    const QPointer<Key> self(this);
    switch (type) {
    case Toggle:
    case Command:
        // The colour and the lamp change when the main unit confirms.
        tog_ = !tog_;
        setPending(type == Toggle);
        emit response_message(message(tog_ ? QStringLiteral("1") : QStringLiteral("0")));
        break;
    case Number:
        pressNumber(this);
        break;
    case Selection:
        pressSelection(this);
        break;
    case Slider:
        pressSlider(this); // announces its end itself
        return;
    case File:
        pressFile(this);
        break;
    case Address:
        pressAddress(this);
        break;
    default:
        reportItself(*this);
        break;
    }
    if (self != nullptr) {
        emit pressFinished();
    }
}
