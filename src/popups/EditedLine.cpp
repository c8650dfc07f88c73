#include "popups/EditedLine.h"

#include <algorithm>

namespace {
bool has(const QString& key, const QString& word)
{
    return key.contains(word, Qt::CaseInsensitive);
}
} // namespace

EditedLine EditedLine::after(const QString& key, int maxLength) const
{
    EditedLine line{text, std::clamp(cursor, 0, static_cast<int>(text.size())), false};
    if (key.size() == 1) {
        if (line.text.size() < maxLength) {
            line.text.insert(line.cursor, key);
            ++line.cursor;
            line.insertedSelected = true;
        }
    } else if (has(key, QStringLiteral("BACKSPACE"))) {
        if (line.cursor > 0) {
            --line.cursor;
            line.text.remove(line.cursor, 1);
        }
    } else if (has(key, QStringLiteral("DEL"))) {
        line.text.remove(line.cursor, 1);
    } else if (has(key, QStringLiteral("<<-"))) {
        line.cursor = std::max(0, line.cursor - 1);
    } else if (has(key, QStringLiteral("->>"))) {
        line.cursor = std::min(static_cast<int>(line.text.size()), line.cursor + 1);
    }
    return line;
}

bool EditedLine::isReturn(const QString& key)
{
    return has(key, QStringLiteral("RETURN"));
}
