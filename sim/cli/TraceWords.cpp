#include "sim/cli/TraceWords.h"

#include "wire/Message.h"

#include <algorithm>

namespace {

QString firstField(const QString& frame)
{
    const qsizetype start = frame.startsWith(wire::Stx) ? 1 : 0;
    const QString rest = frame.mid(start).section(QLatin1Char(','), 0, 0);
    return rest.section(wire::Eot, 0, 0);
}

bool hasWord(const QStringList& words, const QString& field)
{
    return std::any_of(words.begin(), words.end(), [&field](const QString& word) {
        return field == word || field.startsWith(word + QLatin1Char(':'));
    });
}

} // namespace

bool TraceWords::show(const QString& frame) const
{
    const QString field = firstField(frame);
    return (only.isEmpty() || hasWord(only, field)) && !hasWord(never, field);
}
