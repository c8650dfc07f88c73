#pragma once

#include <QString>
#include <QStringList>

/// The message of the front-panel link: STX, fields separated by ",", EOT. It is Latin-1 text, one
/// byte per character, without quoting and without a checksum. The same form goes both ways.
namespace wire {

constexpr QChar Stx{0x02}; ///< the first character of a message
constexpr QChar Eot{0x04}; ///< the last character of a message

/// \return STX + \a body + EOT.
QString frame(const QString& body);

/// \return the fields between the first and the last character of a message, whatever these two
/// are; empty fields are kept. A message of fewer than two characters gives one empty field.
QStringList fields(const QString& message);

/// Parses fields[at] as an integer. \return false when it is absent or not an integer; \a number
/// is then unchanged.
bool readInt(const QStringList& fields, qsizetype at, int& number);

/// \return the text on one line of printable ASCII: a backslash as "\\\\", every other character
/// outside 0x20..0x7e as "\\xHH". \param text characters 0 to 255
QString toPrintable(const QString& text);

/// The inverse of toPrintable(). A backslash that starts no such escape stands for itself.
QString fromPrintable(const QString& line);

} // namespace wire
