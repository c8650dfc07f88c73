#pragma once

#include "wire/Commands.h"

#include <QList>
#include <QString>
#include <QStringList>

/// How the fields of the messages are called in a menu file in JSON.
///
/// The types of the fields are those of wire/Commands.h; a field that repeats ("HM") is an array.
namespace menuFields {

/// Positions of the fields of "AK", behind the command word.
enum KeyField {
    Menu,    ///< name of the menu
    Id,      ///< identifier of the key
    Label,   ///< text of the key
    Type,    ///< what a press does
    Command, ///< what is sent in front of the value
    Units,   ///< ranges
    Param,   ///< kind of a number, read-out of a slider, columns of a list
    Options, ///< items, steps or the special value
    Value,   ///< current value
    Toggle,  ///< "1" is set
    State,   ///< 1 shown, 0 disabled, 2 hidden
    Fixed    ///< "1" is a fixed cell of the PAX main menu
};

/// The numbers of the key types.
enum KeyType {
    ToggleKey,    ///< sends 0 or 1 and shows which
    NumberKey,    ///< opens the number pad
    SelectionKey, ///< opens a list
    SliderKey,    ///< opens a slider
    FileKey,      ///< opens a list of files
    CommandKey,   ///< sends 0 or 1
    AddressKey,   ///< opens the address pad
    KeyTypes      ///< how many there are
};

/// \return the names of the fields of a command, in their order; empty for an unknown word.
QStringList names(const QString& word);

/// \return the name of a key type, "toggle"; empty for a number that is no type.
QString typeName(int type);

/// \return the number of a key type as text, "0" for "toggle"; \a name itself when it is no type.
QString typeText(const QString& name);

} // namespace menuFields
