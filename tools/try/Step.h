#pragma once

#include <QList>
#include <QPoint>
#include <QString>

/// What a step of a scenario does.
enum class Verb {
    Send,            ///< sends a message to the panel
    Raw,             ///< sends bytes to the panel as they are
    Menus,           ///< sends the menus of a file
    Answers,         ///< decides whether the unit confirms what a key sends
    Press,           ///< presses a key or button
    Hold,            ///< holds a key or button down for a time
    Touch,           ///< touches a point of the screen
    Type,            ///< types into the open editor and confirms
    Choose,          ///< takes an item of the open list
    Slide,           ///< drags the open slider to a value
    Open,            ///< shows a menu
    Expect,          ///< waits for the next message of the panel
    ExpectNot,       ///< makes sure that the panel has not sent a message
    ExpectScreen,    ///< waits until a text is on the screen
    ExpectNotScreen, ///< waits until a text is not on the screen
    ExpectState,     ///< waits until a key has a state
    Picture,         ///< writes a picture of the screen
    Compare,         ///< compares the screen with a picture
    Wait             ///< lets time pass
};

/// A word that a step begins with.
struct StepWord
{
    const char* word; ///< the word itself
    Verb verb;        ///< what it means
    const char* form; ///< the whole step, for help and reports
    const char* does; ///< what it does, for the help
};

/// \return all words, in the order in which the help lists them.
const QList<StepWord>& stepWords();

/// One step of a scenario.
struct Step
{
    Verb verb = Verb::Wait; ///< what it does
    int line = 0;           ///< where it stands in the file, from 1
    QString source;         ///< the line as it was written, without blanks around it
    QString subject;        ///< label, pattern, text, file name, entry, or the message's body
    QString detail;         ///< unit of an entry, or name of a state
    int number = 0;         ///< which of several like keys, value of a slider, or allowed points
    int ms = 0;             ///< time in ms
    QPoint point;           ///< where to touch, in pixels of the screen
};
