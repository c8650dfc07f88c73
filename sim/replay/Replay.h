#pragma once

#include "sim/line/PanelLink.h"
#include "sim/replay/Recording.h"
#include "sim/replay/ReplayScore.h"

#include <QElapsedTimer>
#include <QTimer>

/// Replays a recording: once the panel has opened the line, sends the "in" lines byte for byte and
/// compares what comes back with the "out" lines.
///
/// At the recorded pace each line waits for its time; at the fast pace it follows at once. Either
/// way an "out" line that is an answer holds the lines after it until it comes, for a second at
/// most, so that questions and answers stay in step. What the operator had pressed is not waited
/// for. The replay ends when everything is sent and nothing is missing any more, when the panel has
/// been quiet for a while, or when it closes the line.
class Replay final : public PanelLink
{
    Q_OBJECT

public:
    /// How fast the lines follow each other.
    enum class Pace { Recorded, Fast };

    static constexpr int AnswerMs = 1000; ///< the longest wait for an answer
    static constexpr int LastMs =
        3000; ///< the longest silence at the end while answers are missing
    static constexpr int SettleMs = 300; ///< the wait for more at the end when no answer is missing

    /// \param line the unit's end of the line; must live longer than this
    Replay(PseudoTerminal& line, const Recording& recording, Pace pace,
        const LineFaults& faults = {}, QObject* parent = nullptr);

    /// \return what came back so far
    const ReplayScore& score() const { return m_score; }

signals:
    /// Emitted at the end of the replay.
    void finished();

private:
    enum class State { Waiting, Playing, Ending, Done };

    void panelCame() override;
    void panelWent() override;
    void handle(const QString& text, bool framed) override;
    void lineFree() override;
    void proceed();
    bool isHeld(const wire::TraceLine& line);
    bool isAnswerHeld();
    bool isTimeHeld();
    void play(const wire::TraceLine& line);
    void next();
    void awaitEnd();
    void finish();

    const QList<wire::TraceLine> m_lines;
    const Pace m_pace;
    ReplayScore m_score;
    State m_state = State::Waiting;
    qsizetype m_next = 0;
    qint64 m_dueMs = 0; // of the next line, since the beginning
    bool m_gaveUp = false;
    QElapsedTimer m_clock;
    QTimer m_pause;
    QTimer m_answerWait;
    QTimer m_end;
};
