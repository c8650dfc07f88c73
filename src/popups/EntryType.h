#pragma once

#include <QString>

/// What kind of number is typed on the number pad, and the texts that depend on it alone.
namespace entryType {

/// The values are those of a key's integer parameter. Any other value is a plain number with an
/// "Enter" key and no unit.
enum Type {
    Signed = 0,     ///< With "+" and "-".
    Frequency = 1,  ///< In MHz, with step keys.
    BitRate = 2,    ///< In bit/s, with unit keys instead of "Enter".
    Hertz = 3,      ///< In Hz, with unit keys instead of "Enter".
    Angle = 4,      ///< In rad.
    Percentage = 5, ///< Typed in percent, returned as a fraction.
    Special = 6,    ///< With a key that takes a special value.
    Pin = 7,        ///< A code that unlocks something.
    Hexadecimal = 8 ///< With the keys "A" to "F".
};

/// \return the unit as the error box shows it; empty for types without one.
QString unit(int type);

/// \return the text of the current-value label, including the blanks around it.
/// \param type  see Type
/// \param value in the unit of the ranges: MHz, bit/s, Hz; a percentage as a fraction, so that 0.5
/// reads "50.00 %"
QString currentValueText(int type, float value);

/// \return the nearest single-precision number, the largest one for numbers beyond it. Any number
/// may come from the wire.
float toSingle(double value);

/// \return the integer part of \a value in upper-case hexadecimal, limited to 0 and 2^64 - 1; "0"
/// for NaN.
QString toHexadecimal(double value);

} // namespace entryType
