#pragma once

#include <QString>

#include <optional>

namespace wire {

/// One frame of the front-panel link on one line of text, as the panel's debug log writes it and
/// the simulator records it and plays it back: "12.345 in \\x02PING\\x04".
struct TraceLine
{
    double seconds = 0.0; ///< since the recording program began
    bool in = false;      ///< whether it went into the panel; otherwise out of it
    QString frame;        ///< with its frame characters

    /// \return the line, without a line break: the time with three decimals, the frame printable.
    QString text() const;

    /// Reads a line of that form, or one with other text in front of it. \return nothing when it
    /// has another form.
    static std::optional<TraceLine> fromText(const QString& line);

    /// \return a line for a frame that goes in or out now.
    static TraceLine now(bool in, const QString& frame);
};

} // namespace wire
