#pragma once

#include <QString>
#include <QStringList>

// The message of the front-panel link: STX, fields separated by ",", EOT. Latin-1 text, one byte
// a character; no quoting, no checksum. The same form goes both ways.
namespace wire {

constexpr QChar Stx{0x02};
constexpr QChar Eot{0x04};

// In: the text between the frame characters. Out: STX + body + EOT.
QString frame(const QString& body);

// In: a message with its frame characters. Out: the fields between its first and its last
// character, whatever these two are; empty fields are kept. A message of fewer than two characters
// gives one empty field.
QStringList fields(const QString& message);

// In: any text of characters 0 to 255. Out: the same on one line of printable ASCII: a backslash as
// "\\", every other character outside 0x20..0x7e as "\xHH".
QString toPrintable(const QString& text);

// The inverse of toPrintable(). A backslash that starts no such escape stands for itself.
QString fromPrintable(const QString& line);

} // namespace wire
