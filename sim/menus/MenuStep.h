#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// Where something stands in a menu file.
struct MenuPlace
{
    int line = 0;    ///< from 1; 0 for the file as a whole
    QString pointer; ///< JSON only: the place as a JSON pointer, such as "/content/2/keys/0"

    /// \return whether both are the same place.
    bool operator==(const MenuPlace& other) const
    {
        return line == other.line && pointer == other.pointer;
    }
};

/// One step of a menu file: a message to send, or a time to wait. Bytes that are no message are
/// only typed.
struct MenuStep
{
    /// What the step does.
    enum class Kind {
        Message, ///< a message to the panel
        Wait,    ///< a pause
        Raw      ///< bytes, which are only typed
    };
    Kind kind = Kind::Message; ///< which of the next two members counts
    QString body;              ///< of a message, without STX and EOT, or the bytes of Raw;
                               ///< characters 0 to 255
    int waitMs = 0;            ///< of a wait, 0 to 600000
    MenuPlace place{};         ///< where the step stands in its file
};

/// Why a part of a menu file is refused.
struct MenuFault
{
    /// The kinds of faults.
    enum class Kind {
        None,        ///< no fault
        Unreadable,  ///< the file cannot be read
        UnknownWord, ///< no command word
        TooFew,      ///< fewer fields than the command needs
        WrongValue,  ///< a field is not of its type
        Unsendable,  ///< a character that cannot be sent
        TooLong,     ///< a message longer than the panel takes
        Wait,        ///< a wait without a good time
        Comma,       ///< JSON: a text with a comma, which would end its field
        Json         ///< not a menu file in JSON
    };
    Kind kind = Kind::None; ///< what it is
    QString text;           ///< the reason, in words; empty when there is no fault
    MenuPlace place{};      ///< where it stands
    QString body{};         ///< of a message that is refused; empty for other faults
};

/// A comment that silences findings of the check.
struct MenuSilence
{
    MenuPlace comment;      ///< where the comment itself stands
    MenuPlace target;       ///< what it silences; line 0 for the whole file
    QStringList codes;      ///< what it silences: "QN404"
    bool understood = true; ///< false for a comment that begins "qn740:" and goes on otherwise
};

/// What stands in a menu file.
struct MenuContent
{
    QList<MenuStep> steps;       ///< in the order of the file
    QList<MenuFault> faults;     ///< in the order of the lines; the steps are those without a fault
    QList<MenuSilence> silences; ///< in the order of the file
};
