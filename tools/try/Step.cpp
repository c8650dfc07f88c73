#include "tools/try/Step.h"

const QList<StepWord>& stepWords()
{
    static const QList<StepWord> words{
        {"menus", Verb::Menus, "menus [FILE]", "sends the menus of FILE, or the built-in ones"},
        {"send", Verb::Send, "send BODY", "sends a message to the panel"},
        {"raw", Verb::Raw, "raw BYTES", "sends bytes as they are"},
        {"answers", Verb::Answers, "answers on|off", "whether the unit confirms; on at the start"},
        {"open", Verb::Open, "open \"MENU\"", "lets the unit show a menu"},
        {"press", Verb::Press, "press \"LABEL\" [N]", "presses the (Nth) key with this label"},
        {"hold", Verb::Hold, "hold \"LABEL\" TIME", "holds a key down"},
        {"touch", Verb::Touch, "touch X Y", "touches a point of the screen"},
        {"type", Verb::Type, "type ENTRY [UNIT]", "types into the open editor and confirms"},
        {"choose", Verb::Choose, "choose \"TEXT\"", "takes an item of the open list"},
        {"slide", Verb::Slide, "slide VALUE", "drags the open slider to a value"},
        {"expect", Verb::Expect, "expect \"BODY\" [TIME]", "the next message of the panel"},
        {"expect-not", Verb::ExpectNot, "expect-not \"BODY\" [TIME]",
            "no such message since the last one expected"},
        {"expect-screen", Verb::ExpectScreen, "expect-screen \"TEXT\"",
            "a text stands on the screen"},
        {"expect-not-screen", Verb::ExpectNotScreen, "expect-not-screen \"TEXT\"",
            "a text does not stand on the screen"},
        {"expect-state", Verb::ExpectState,
            "expect-state \"LABEL\" "
            "on|off|enabled|disabled|hidden|pending|settled|chosen [N]",
            "what a key shows"},
        {"picture", Verb::Picture, "picture NAME.png", "writes a picture of the screen"},
        {"compare", Verb::Compare, "compare NAME.png [POINTS]",
            "compares the screen with a picture"},
        {"wait", Verb::Wait, "wait TIME", "lets time pass, 500ms or 1.5s"},
    };
    return words;
}
