// What a press of a key does; the one file of this room that knows the modal editors.
#include "menus/Key.h"

#include <QMessageBox>

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
    case Selection:
    case Slider:
    case File:
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
