#pragma once

#include <QLatin1String>
#include <QList>
#include <QString>
#include <QStringList>

/// The words of the front-panel link.
namespace wire {

/// The command words, as they stand in the first field of a message.
namespace word {
/// A word; which way it goes and what follows it stands in toPanel() and fromPanel().
///@{
inline constexpr QLatin1String AK("AK");
inline constexpr QLatin1String SK("SK");
inline constexpr QLatin1String CK("CK");
inline constexpr QLatin1String CV("CV");
inline constexpr QLatin1String CM("CM");
inline constexpr QLatin1String SB("SB");
inline constexpr QLatin1String DB("DB");
inline constexpr QLatin1String Ping("PING");
inline constexpr QLatin1String Slave("Slave");
inline constexpr QLatin1String SQ("SQ");
inline constexpr QLatin1String SM("SM");
inline constexpr QLatin1String Ver("VER");
inline constexpr QLatin1String SH("SH");
inline constexpr QLatin1String MS("MS");
inline constexpr QLatin1String Pax("PAX");
inline constexpr QLatin1String LC("LC");
inline constexpr QLatin1String EI("EI");
inline constexpr QLatin1String SP("SP");
inline constexpr QLatin1String IK("IK");
inline constexpr QLatin1String SF("SF");
inline constexpr QLatin1String HM("HM");
inline constexpr QLatin1String ST("ST");
inline constexpr QLatin1String PM("PM");
inline constexpr QLatin1String Clear("CLEAR");
inline constexpr QLatin1String Pong("PONG");
inline constexpr QLatin1String Main("Main");
///@}
} // namespace word

/// The room of the panel that a command belongs to.
enum class Room {
    Link,    ///< the link itself, message boxes and the status bar
    Menus,   ///< menus and keys
    Scopes,  ///< the demodulators' scopes and the magnitude/phase display
    Spectrum ///< the spectrum page
};

/// What a field of a message has to be.
enum class FieldType {
    Text,      ///< anything
    Name,      ///< anything but empty
    Integer,   ///< decimal, may be negative
    Number,    ///< decimal, with or without a fraction or an exponent
    Flag,      ///< "0" or "1"
    Placement, ///< "0", "1" or empty
    State,     ///< "0", "1" or "2"
    Positions  ///< integers separated by ":", may be empty
};

/// One field behind a command word.
struct Field
{
    QLatin1String name;               ///< for reports: "key type"
    FieldType type = FieldType::Text; ///< what a sender has to put there
    bool isRequired = false; ///< whether the panel ignores a message whose field is of another type
};

/// A command word with the fields that follow it.
struct Command
{
    QLatin1String word;           ///< the first field of its messages
    Room room = Room::Link;       ///< who carries it out, or who sends it
    qsizetype minFields = 0;      ///< the panel ignores a message with fewer
    qsizetype completeFields = 0; ///< what a well-formed message has at least
    QList<Field> fields;          ///< the known fields, the optional ones included
    bool repeatsLast = false;     ///< whether further fields are of the last one's type

    /// \return the description of the field at position \a at; nullptr when the panel does not read
    /// a field there.
    const Field* field(qsizetype at) const;
};

/// \return the commands of the main unit to the panel.
const QList<Command>& toPanel();

/// \return the commands of the panel to the main unit. Beside them it sends what its keys are
/// defined to send, which has no command word, and its version without one.
const QList<Command>& fromPanel();

/// \return the command with exactly this word, nullptr when there is none.
/// \param commands toPanel() or fromPanel()
const Command* findCommand(const QList<Command>& commands, const QString& word);

/// \return whether a message to the panel with this word has as many fields as the panel needs.
/// \param word one of toPanel() \param fields what follows it
bool hasEnoughFields(QLatin1String word, const QStringList& fields);

/// \return the command of the panel that a message is: with its word, with as many fields as the
/// command has, and all of their types; nullptr for anything else, such as what a key sends.
/// \param message the fields of the message, the word included
const Command* commandFromPanel(const QStringList& message);

/// \return whether the text is a value of this type.
bool fits(FieldType type, const QString& text);

/// \return what a value of this type is, for reports: "a whole number"; empty for Text, where
/// nothing is wrong.
QString description(FieldType type);

/// \return text from the line as a report shows it: printable, and cut after 40 characters.
QString excerpt(const QString& text);

/// \return the report of a value that is not of its field's type: "SM: the mode must be a whole
/// number, not \"x\"". \param text the value, of any length
QString wrongValue(const Command& command, const Field& field, const QString& text);

/// \return why the panel ignores a message with this word and these fields, as far as their number
/// and types say: "AK: 9 fields, needs 11", "SM: the mode must be a whole number, not \"x\"",
/// "unknown word Foo". Empty when they do not.
QString whyIgnored(const QString& word, const QStringList& fields);

/// \return a message of a command, with its frame characters.
/// \param fields what follows the word
QString message(QLatin1String word, const QStringList& fields = {});

} // namespace wire
