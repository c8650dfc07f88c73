#pragma once

#include "wire/Trace.h"

#include <QList>
#include <QString>
#include <QStringList>

/// Compares what the panel sends during a replay with what it sent in the recording.
///
/// The recording's "out" lines are of two kinds. Answers follow from what the unit sent before:
/// "PING", "VER", "Slave" and "ST,1". All others are the operator's: a panel sends them again only
/// if somebody presses the same keys. What the panel sends is compared with the answers that are
/// due, in their order, then with the operator's lines in theirs. What fits neither is unexpected.
class ReplayScore
{
public:
    /// A score for a recording of these \a lines.
    explicit ReplayScore(const QList<wire::TraceLine>& lines);

    /// Whether a line of the recording is an answer of the panel.
    bool isAnswer(qsizetype line) const { return m_kinds.value(line) == Kind::Answer; }
    /// Whether the panel has sent this line again.
    bool cameBack(qsizetype line) const { return m_cameBack.value(line); }

    /// Takes what came from the panel. \param frame with its frame characters, if it has them
    /// \param played how many lines of the recording have been played; answers to these are due
    void take(const QString& frame, qsizetype played);

    /// \return the number of "out" lines
    qsizetype expected() const;
    /// \return how many of the "out" lines came back
    qsizetype returned() const;
    /// Whether every answer came back.
    bool allAnswersCame() const;
    /// Whether every answer came back, and nothing else apart from the operator's lines.
    bool isGood() const { return allAnswersCame() && m_unexpected == 0; }

    /// \return "199 of 200 frames came back", then one line for each that did not ("missing", or
    /// "not pressed" for the operator's) and for each unexpected one, up to MaxLines of these
    QStringList report() const;
    static constexpr int MaxLines = 100; ///< about single frames in a report

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
