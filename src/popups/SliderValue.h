#pragma once

#include "popups/Limits.h"

#include <QList>
#include <QString>

#include <limits>
#include <optional>

/// What a slider shows and sends, without its window: its bounds from the range text, the read-out
/// of a value, the message of a position and whether a step may be taken.
class SliderValue
{
public:
    /// How the read-out shows a value. Any other number: as dB when the setting's name has "dB" in
    /// it, otherwise as a percentage of the maximum.
    enum Type {
        Hexadecimal = 9, ///< "0xFF"; negative values as 32 bits.
        Plain = 10       ///< "7"
    };

    /// Bounds beyond these, which are those of an int, are moved to them.
    ///@{
    static constexpr int LowestBound = std::numeric_limits<int>::min();
    static constexpr int HighestBound = std::numeric_limits<int>::max();
    ///@}
    /// More steps than this do not fit on the screen; those behind are left out, which is logged at
    /// debug level.
    static constexpr int MaxSteps = popUpLimits::MaxSteps;

    /// A value without a range: 0.
    SliderValue() = default;
    /// Makes a value with its range.
    /// \param name    of the setting
    /// \param command prefix of its messages
    /// \param range   "maximum minimum" as two integers; what is not a number counts as 0, swapped
    /// bounds are put in order
    /// \param type    of the read-out, see Type
    SliderValue(QString name, QString command, const QString& range, int type);

    /// \return the lower bound.
    int minimum() const { return m_minimum; }
    /// \return the upper bound.
    int maximum() const { return m_maximum; }
    /// \return percent for each unit of the value: 100 / maximum, or 0 with a maximum of 0.
    float scale() const { return m_scale; }

    /// \return the slider's position for a value, without its fraction and within the bounds.
    /// \param value any number, NaN and infinity included
    int position(double value) const;
    /// \return the text of a value within the bounds, such as "50.00%", "12.00dB", "0xFF" or "7".
    /// \param value as for position()
    QString readout(double value) const;
    /// \return the finished message of a position, frame characters included.
    QString message(int position) const;
    /// \return the position after a step, nothing when it would lie outside the bounds.
    /// \param position the one before
    /// \param step     with its sign
    std::optional<int> stepped(int position, int step) const;

    /// \return the magnitudes of the steps in a text, in the same order; what is not a number or is
    /// 0 is left out, and a magnitude is at most HighestBound.
    /// \param text integers separated by ":"
    static QList<int> steps(const QString& text);

private:
    double bounded(double value) const;

    QString m_name;
    QString m_command;
    int m_type = 0;
    int m_minimum = 0;
    int m_maximum = 0;
    float m_scale = 0;
};
