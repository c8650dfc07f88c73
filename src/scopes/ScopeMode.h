#pragma once

#include <QString>

#include <optional>

// What a demodulator's scope may show, and the four numbers under which that is known.
struct ScopeMode
{
    QString label; // of the mode button; %1 stands for the demodulator's number
    int plotType;  // as Scope::setPlotType() takes it; "Off" keeps the eye pattern's
    int stored;    // 0 off, 1 eye pattern, 2 constellation, 3 SDI
    int command;   // what the demodulator is told with "DSDM", and what "SM" carries

    QString buttonText(int demodulator) const { return label.arg(demodulator); }

    // Out: the body of the command that sets the demodulator to this mode.
    QString commandText(int demodulator) const
    {
        return QStringLiteral("D%1:DSDM:%2").arg(demodulator).arg(command);
    }

    // The choices of the "Scope Mode" list: value, blank, text.
    static QString choices();

    // In: the value of a choice, 0 to 2; its numbers are not those of the commands. Out: nothing
    // for any other value.
    static std::optional<ScopeMode> ofChoice(int choice);

    // In: the mode that "SM" carries, 0 to 3. Out: nothing for any other value.
    static std::optional<ScopeMode> ofMessage(int mode);
};
