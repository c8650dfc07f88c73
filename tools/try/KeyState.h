#pragma once

#include "tools/try/Step.h"

class QAbstractButton;

/// What a key shows apart from its text.
namespace keyState {

/// \return why a key or button does not show the state that the step names; empty when it does.
///
/// - on, off: its lamp, or whether a switch or a choice of one from several is set
/// - enabled, disabled: whether it can be pressed
/// - hidden: it belongs to the page on the screen, but is not shown
/// - pending, settled: whether it waits for the main unit to confirm a press
/// - chosen: it is marked as the present choice of a list
QString fault(const Step& step);

/// \return what a report says behind the text of a button: "on", "off, pending", "disabled"; empty
/// for a key without a lamp that can be pressed.
QString mark(const QAbstractButton& button);

} // namespace keyState
