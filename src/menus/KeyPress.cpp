// What a press of a key does; the one file of this room that knows the modal editors.
#include "menus/Key.h"

#include "menus/ListGrid.h"
#include "popups/PopUpFileBoard.h"
#include "popups/PopUpKeyBoard.h"
#include "popups/PopUpSlider.h"

#include <QCoreApplication>
#include <QMessageBox>

#include <algorithm>
#include <limits>

namespace {

// A key may be gone, with all of its fields, when its editor closes: the fields are copied first
// and nothing is sent for a key that is gone.
void sendUnlessEmpty(const QPointer<Key>& key, const QString& text)
{
    if (key != nullptr && !text.isEmpty()) {
        emit key->response_message(key->message(text));
    }
}

void pressSelection(const QPointer<Key>& key)
{
    const ListGrid grid = ListGrid::forChoices(key->options, key->param);
    const QString options = key->options;
    const QString label = key->label;
    const QList<int> disabled = key->itemIds;
    PopUpKeyBoard popUp;
    sendUnlessEmpty(
        key, popUp.new_pop_keyboard(options, label, grid.rows, grid.columns, disabled, key->large));
}

void pressSlider(const QPointer<Key>& key)
{
    const QString label = key->label;
    const QString command = key->command;
    const QString range = key->units;
    const QString steps = key->options;
    const double farthest = std::numeric_limits<float>::max();
    const auto value = static_cast<float>(std::clamp(key->value, -farthest, farthest));
    // lives on when the dialog is closed, until its last position is sent; the key gets it only
    // while it is there
    auto* popUp = new PopUpSlider(QCoreApplication::instance());
    QObject::connect(popUp, &Key::response_message, key.data(), &Key::response_message);
    popUp->new_pop_slider(label, command, range, value, key->param, steps);
    popUp->deleteWhenSent();
}

void pressFile(const QPointer<Key>& key)
{
    const ListGrid grid = ListGrid::forFiles(key->options);
    const QString options = key->options;
    const QString label = key->label;
    PopUpFileBoard popUp;
    sendUnlessEmpty(key, popUp.new_pop_fileboard(options, label, grid.rows, grid.columns));
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
    case Selection:
        pressSelection(this);
        break;
    case Slider:
        pressSlider(this);
        break;
    case File:
        pressFile(this);
        break;
    case Number:
    case Address:
        break;
    default: {
        const QString text = button != nullptr ? button->text() : label;
        QMessageBox box;
        box.setText(QStringLiteral("A key_button was pushed %1 %2").arg(text, command));
        box.exec();
        break;
    }
    }
}
