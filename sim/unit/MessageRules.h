#pragma once

#include "sim/menus/MenuStep.h"

#include <QString>

/// What the simulator takes for a message to the panel: one of the command words of wire/Commands.h
/// with enough fields for what it does, and numbers where numbers are read.
namespace rules {

/// The length of a message's body, in characters, that is not exceeded.
inline constexpr qsizetype LongestMessage = 65536;

/// \param body fields separated by ",", without frame characters; characters 0 to 255, at most
/// LongestMessage of them
/// \return what is wrong with it, of kind None when the body is a message. Fields beyond those that
/// the panel reads are no fault.
MenuFault check(const QString& body);

/// \return the text of check(): empty when the body is a message, otherwise the reason why it is
/// not, as "AK needs 11 fields, this has 9".
QString fault(const QString& body);

/// \return the reason for a body that is too long.
QString tooLong();

} // namespace rules
