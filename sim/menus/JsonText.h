#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

/// One value of a JSON text, with the line where it begins.
///
/// Qt's own reader tells no lines and turns numbers into doubles. A menu file needs the line for
/// its reports, and the digits of a number exactly as they stand there.
struct JsonValue
{
    /// What a value is.
    enum class Kind {
        Null,   ///< null
        Bool,   ///< true or false
        Number, ///< its digits are in text
        String, ///< its characters are in text
        Array,  ///< its values are in items
        Object  ///< its members are in names and items
    };
    Kind kind = Kind::Null; ///< which of the other members count
    int line = 0;           ///< from 1
    QString text;           ///< of a string, or a number as it is written; "1" of true
    QStringList names;      ///< of an object's members, each of them once
    QList<JsonValue> items; ///< of an array or an object

    /// \return the member of an object with this name; nullptr when there is none.
    const JsonValue* member(const QString& name) const;
};

/// What reading a JSON text gives.
struct JsonResult
{
    JsonValue value; ///< the value, when fault is empty
    QString fault;   ///< why the text is refused
    int line = 0;    ///< where, from 1
};

/// Reading and writing JSON.
namespace json {

/// Reads a UTF-8 text that is one JSON value, nested at most 32 deep and of at most two million
/// values. A member that occurs twice is a fault.
JsonResult read(const QByteArray& text);

/// \return a string with its quotes; what is not printable ASCII as "\\uHHHH".
QString quoted(const QString& text);

/// \return whether a text is written as a JSON number is: "-1.5e3", but not "01", "+1" or "1.".
bool isNumber(const QString& text);

} // namespace json
