#include "sim/unit/Confirmations.h"

namespace {

constexpr int AnyTime = -1;

} // namespace

QString Confirmations::refuse(const QString& pattern)
{
    return add({pattern, Answer::Refuse, AnyTime}, "refuse");
}

QString Confirmations::silence(const QString& pattern)
{
    return add({pattern, Answer::Silent, AnyTime}, "silent");
}

QString Confirmations::delay(const QString& text)
{
    const qsizetype colon = text.indexOf(QLatin1Char(':'));
    bool ok = false;
    const int ms = text.left(colon < 0 ? text.size() : colon).toInt(&ok);
    if (!ok || ms < 0 || ms > MaxDelayMs) {
        return QStringLiteral("delay needs a time in milliseconds from 0 to %1, and may have "
                              "\":PATTERN\" behind it")
            .arg(MaxDelayMs);
    }
    const QString pattern = colon < 0 ? QStringLiteral("*") : text.mid(colon + 1);
    return add({pattern, Answer::Confirm, ms}, "delay");
}

QString Confirmations::add(const Rule& rule, const char* word)
{
    if (rule.pattern.isEmpty()) {
        return QStringLiteral("%1 needs a pattern, as R1:FREQ:*").arg(QLatin1String(word));
    }
    if (m_rules.size() >= MaxRules) {
        return QStringLiteral("there are %1 patterns already").arg(MaxRules);
    }
    m_rules.append(rule);
    return {};
}

Confirmations::Fate Confirmations::fateOf(const QString& body) const
{
    Fate fate;
    for (const Rule& rule : m_rules) {
        if (!fits(rule.pattern, body)) {
            continue;
        }
        if (rule.delayMs != AnyTime) {
            fate.delayMs = rule.delayMs;
        } else if (fate.answer != Answer::Silent) {
            fate.answer = rule.answer;
        }
    }
    return fate;
}

// Each "*" takes as little as possible at first, and one character more whenever what follows it
// does not fit; only the last one has to be tried again.
bool Confirmations::fits(const QString& pattern, const QString& text)
{
    qsizetype p = 0;
    qsizetype t = 0;
    qsizetype star = -1;
    qsizetype taken = 0;
    while (t < text.size()) {
        const bool isStar = p < pattern.size() && pattern.at(p) == QLatin1Char('*');
        if (isStar) {
            star = p++;
            taken = t;
        } else if (p < pattern.size() &&
            (pattern.at(p) == QLatin1Char('?') || pattern.at(p) == text.at(t))) {
            ++p;
            ++t;
        } else if (star >= 0) {
            p = star + 1;
            t = ++taken;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern.at(p) == QLatin1Char('*')) {
        ++p;
    }
    return p == pattern.size();
}
