#pragma once

#include "menus/Key.h"

#include <QStringList>

#include <memory>

// A key that the main unit wants pressed at once. It is on no menu and never shown; whoever makes
// it connects its response_message(), presses it by key_button_pushed() and lets it go.
class ImmediateKey : public Key
{
    Q_OBJECT

public:
    // Fields: 0 label, 1 type, 2 command prefix, 3 units, 4 parameter, 5 options, and where there
    // are any, 6 number pad's text, 7 value. Out: nothing when there are fewer than six or one of
    // the numbers is none.
    static std::unique_ptr<ImmediateKey> fromFields(const QStringList& fields);

private:
    ImmediateKey() = default;

    std::unique_ptr<QPushButton> m_button; // some presses look at the text of the button
};
