#pragma once

#include <QString>

// What is a message to the panel: one of its 24 command words with enough fields for what it does,
// numbers where numbers are read.
namespace rules {

// Of a message's body, in characters.
inline constexpr qsizetype LongestMessage = 65536;

// In: the body of a message (fields separated by ",", no frame characters, characters 0 to 255, at
// most LongestMessage of them).
// Out: empty when it is one, otherwise the reason why not, as "AK needs 11 fields, this has 9".
// Fields beyond those that the panel reads are no fault.
QString fault(const QString& body);

// The reason of one that is too long.
QString tooLong();

} // namespace rules
