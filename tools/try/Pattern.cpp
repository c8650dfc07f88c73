#include "tools/try/Pattern.h"

bool matches(const QString& pattern, const QString& text, bool anywhere)
{
    const QString wanted = anywhere ? u'*' + pattern + u'*' : pattern;
    qsizetype star = -1;  // the last "*" that was reached
    qsizetype behind = 0; // where the text that follows that "*" begins at the earliest
    qsizetype in = 0;     // of the pattern
    for (qsizetype at = 0; at < text.size();) {
        if (in < wanted.size() && wanted.at(in) == u'*') {
            star = in++;
            behind = at;
        } else if (in < wanted.size() && wanted.at(in) == text.at(at)) {
            ++in;
            ++at;
        } else if (star >= 0) {
            // The "*" stands for one more character.
            in = star + 1;
            at = ++behind;
        } else {
            return false;
        }
    }
    while (in < wanted.size() && wanted.at(in) == u'*') {
        ++in;
    }
    return in == wanted.size();
}
