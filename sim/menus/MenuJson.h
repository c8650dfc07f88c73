#pragma once

#include "sim/menus/MenuStep.h"

#include <QByteArray>

/// Menu files in JSON; docs/menu.schema.json describes them.
///
///     {"version": 1, "content": [
///       {"menu": "Tuner CH1", "keys": [
///         {"id": "freq", "label": "RF Frequency", "type": "number", "command": "R1:FREQ:",
///          "ranges": [[2200, 2400]], "param": 1, "value": 2250.5}]},
///       {"wait": 500},
///       {"message": "SK", "menu": "Tuner CH1"}]}
///
/// The content is the messages in their order. What a key leaves out has a default: 0, an empty
/// text, and 1 for the state. Reading and writing keep every message exactly as it is: a number
/// that is not written as JSON writes it ("007") is a string.
namespace menuJson {

/// \return whether a text is JSON rather than lines of messages: it begins with "{".
bool isJson(const QByteArray& text);

/// Reads a menu file.
MenuContent read(const QByteArray& text);

/// Writes a menu file: every message and every wait, and the silences, with one key per line.
QByteArray write(const MenuContent& content);

} // namespace menuJson
