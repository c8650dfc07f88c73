#pragma once

#include <QString>

// What kind of number is typed on the number pad, and the texts that depend on it alone.
namespace entryType {

// The values are those of a key's integer parameter. Any other value is a plain number with an
// "Enter" key and no unit.
enum Type {
    Signed = 0,     // with "+" and "-"
    Frequency = 1,  // MHz, with step keys
    BitRate = 2,    // bit/s, unit keys instead of "Enter"
    Hertz = 3,      // Hz, unit keys instead of "Enter"
    Angle = 4,      // rad
    Percentage = 5, // typed in percent, returned as a fraction
    Special = 6,    // with a key that takes a special value
    Pin = 7,
    Hexadecimal = 8 // with the keys "A" to "F"
};

// The unit as the error box shows it; empty for types without one.
QString unit(int type);

// The text of the current-value label, blanks around it included. value: in the unit of the ranges
// (MHz, bit/s, Hz; a percentage as a fraction: 0.5 reads "50.00 %").
QString currentValueText(int type, float value);

// In: any number, one from the wire too. Out: the nearest single-precision number.
float toSingle(double value);

// In: any number. Out: its integer part in upper-case hexadecimal, limited to 0 and 2^64 - 1; a
// number that is none gives "0".
QString toHexadecimal(double value);

} // namespace entryType
