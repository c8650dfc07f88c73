#pragma once

#include "menus/Key.h"

#include <QStringList>

#include <memory>

/// A key that the main unit wants pressed at once ("IK"). It is on no menu and never shown: its
/// owner connects its response_message(), presses it by key_button_pushed() and deletes it after
/// pressFinished(), so that the last position of a slider is sent.
class ImmediateKey : public Key
{
    Q_OBJECT

public:
    /// Makes the key that a message describes.
    /// \param fields label, type, command prefix, units, parameter, options; then, where there are
    /// any, the number pad's text and the value
    /// \return nullptr when there are fewer than six fields, or when type, parameter or value are
    /// not numbers.
    static std::unique_ptr<ImmediateKey> fromFields(const QStringList& fields);

private:
    ImmediateKey() = default;

    std::unique_ptr<QPushButton> m_button; // some presses look at the text of the button
};
