#pragma once

#include <QString>

#include <optional>

/// What a demodulator's scope may show, and the four numbers under which that is known.
///
/// Quirk: the numbers of one mode differ between the message, the list, the command and the stored
/// mode, and "Off" has the plot type of the eye pattern. See "Quirks" in docs/architecture.md.
struct ScopeMode
{
    QString label; ///< Text of the mode button; %1 stands for the demodulator's number.
    int plotType;  ///< As Scope::setPlotType() takes it; "Off" keeps the eye pattern's.
    int stored;    ///< 0 off, 1 eye pattern, 2 constellation, 3 SDI.
    int command;   ///< Sent to the demodulator with "DSDM", and carried by "SM".

    /// \return the text of the mode button.
    QString buttonText(int demodulator) const { return label.arg(demodulator); }

    /// \return the body of the command that sets the demodulator to this mode.
    QString commandText(int demodulator) const
    {
        return QStringLiteral("D%1:DSDM:%2").arg(demodulator).arg(command);
    }

    /// \return the choices of the "Scope Mode" list, separated by ":": value, blank, text.
    static QString choices();

    /// \param choice the value of a choice, 0 to 2; these numbers are not those of the commands.
    /// \return nothing for any other value.
    static std::optional<ScopeMode> ofChoice(int choice);

    /// \param mode the mode that "SM" carries, 0 to 3.
    /// \return nothing for any other value.
    static std::optional<ScopeMode> ofMessage(int mode);
};
