#pragma once

#include <QString>

#include <optional>

// One frame of the front-panel link on one line of text, as the panel's debug log writes it and the
// simulator records it and plays it back: "12.345 in \x02PING\x04".
namespace wire {

struct TraceLine
{
    double seconds = 0.0; // since the recording program began
    bool in = false;      // into the panel; otherwise out of it
    QString frame;        // with its frame characters

    // Out: the line, without a line break; the time with three decimals, the frame printable.
    QString text() const;

    // In: such a line, or one with other text in front of it. Out: nothing when it is none.
    static std::optional<TraceLine> fromText(const QString& line);

    // A line for a frame of this moment.
    static TraceLine now(bool in, const QString& frame);
};

} // namespace wire
