#pragma once

#include <QString>

class Key;

/// What a key is, in words for a design review.
namespace keyText {

/// \return what kind of key it is: "number, frequency in MHz".
QString kind(const Key& key);

/// \return what it sends: "R1:FREQ:value", "R1:AGC:0 or R1:AGC:1".
QString sends(const Key& key);

/// \return its ranges, choices, files or steps; empty for a key that has none.
QString values(const Key& key);

/// \return the menu that its command opens ("SK:Tuner CH1:", "PAX:0:Start:"); empty for none.
QString opens(const Key& key);

/// \return whether a press opens a modal editor.
bool hasEditor(int type);

} // namespace keyText
