#pragma once

#include "popups/PadScreen.h"
#include "popups/PopUpNumberPad.h"

using namespace Qt::StringLiterals;

// These functions open number pads for the tests.
namespace numberPadRun {

constexpr int Types = 9;
inline const QString SevenRanges = u"950 2150:70 140:1 2:3 4:5 6:7 8:9 10"_s;

// These are the arguments for opening a pad, with values that suit tests of other things.
struct Opening
{
    int type = 0;
    QString ranges = u"0 100"_s;
    double current = 0.0;
    QString special;
    QString command = u"CMD"_s;
    QString valueText;
    bool mirrored = false;
    QString title = u"Title"_s;
};

// Opens a pad, runs the script with its dialog and returns what the pad returns.
inline double run(
    PopUpNumberPad& pad, const Opening& opening, const std::function<void(QWidget*)>& script)
{
    padScreen::play(script);
    return pad.new_pop_NumberPad(opening.title, opening.ranges, opening.current, opening.type,
        opening.special, opening.command, opening.valueText, opening.mirrored);
}

// Does the same with a pad of its own.
inline double run(const Opening& opening, const std::function<void(QWidget*)>& script)
{
    PopUpNumberPad pad;
    return run(pad, opening, script);
}

} // namespace numberPadRun
