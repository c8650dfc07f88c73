// Recordings: reading, and what a replay makes of their lines.
#include "Target.h"

#include "sim/replay/Recording.h"
#include "sim/replay/ReplayScore.h"
#include "wire/Message.h"
#include "wire/Trace.h"

#include <algorithm>
#include <cmath>

namespace {

// Only these characters can go over the line.
bool isLatin1(const QString& text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() <= 0xff; });
}

} // namespace

void fuzz::takeRecording(const QByteArray& input)
{
    const Recording recording = Recording::parse(input);
    ReplayScore score(recording.lines());
    qsizetype played = 0;
    for (const wire::TraceLine& line : recording.lines()) {
        const auto again = wire::TraceLine::fromText(line.text());
        FUZZ_CHECK(again.has_value());
        FUZZ_CHECK(again->in == line.in && (again->frame == line.frame || !isLatin1(line.frame)));
        FUZZ_CHECK(std::isfinite(line.seconds));
        ++played;
        if (!line.in) {
            score.take(line.frame, played);
        }
        static_cast<void>(Recording::isFramed(line.frame));
    }
    FUZZ_CHECK(score.returned() <= score.expected());
    FUZZ_CHECK(!score.report().isEmpty());
    const QString text = QString::fromLatin1(input);
    FUZZ_CHECK(wire::fromPrintable(wire::toPrintable(text)) == text);
}
