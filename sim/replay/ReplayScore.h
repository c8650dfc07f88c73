#pragma once

#include "wire/Trace.h"

#include <QList>
#include <QString>
#include <QStringList>

// What of a recording came back from the panel it is played to.
//
// The recording's "out" lines are of two kinds. Answers follow from what the unit sent before: to
// "PING", "VER", "Slave" and "ST,1". All others are the operator's: a fresh panel sends them only
// if somebody presses the same keys again. What the panel sends is set against the answers that are
// due, in their order, then against the operator's lines in theirs; what fits neither is
// unexpected.
class ReplayScore
{
public:
    explicit ReplayScore(const QList<wire::TraceLine>& lines);

    // line: a number of the list. Whether it is an answer of the panel; whether it came back.
    bool isAnswer(qsizetype line) const { return m_kinds.value(line) == Kind::Answer; }
    bool cameBack(qsizetype line) const { return m_cameBack.value(line); }

    // In: what came from the panel, with its frame characters if it has them; how many lines of the
    // recording are played, which is as far as answers are due.
    void take(const QString& frame, qsizetype played);

    // How many "out" lines there are, and how many of them came back.
    qsizetype expected() const;
    qsizetype returned() const;
    bool allAnswersCame() const;
    // Whether all answers came and nothing else but what the operator had pressed.
    bool isGood() const { return allAnswersCame() && m_unexpected == 0; }

    // "199 of 200 frames came back", then a line for each that did not ("missing", or "not pressed"
    // for the operator's), and for each unexpected one; up to MaxLines of these.
    QStringList report() const;
    static constexpr int MaxLines = 100;

private:
    enum class Kind { Sent, Answer, Pressed };

    bool match(Kind kind, const QString& frame, qsizetype from, qsizetype to, qsizetype& last);

    const QList<wire::TraceLine> m_lines;
    QList<Kind> m_kinds;
    QList<bool> m_cameBack;
    qsizetype m_lastAnswer = -1;
    qsizetype m_lastPressed = -1;
    QStringList m_unexpectedFrames; // the first MaxLines of them
    qsizetype m_unexpected = 0;
};
