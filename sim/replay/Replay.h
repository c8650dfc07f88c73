#pragma once

#include "sim/line/PanelLink.h"
#include "sim/replay/Recording.h"
#include "sim/replay/ReplayScore.h"

#include <QElapsedTimer>
#include <QTimer>

// Plays a recording to the panel: sends its "in" lines as they are, byte for byte, once the panel
// has opened the line, and sets what comes back against its "out" lines.
//
// At its own pace each line waits for its time; fast, they follow each other at once. Either way an
// "out" line that is an answer holds those behind it until it comes, or for a second, so that
// questions and answers stay in step; what the operator had pressed is not waited for. The end is
// told by finished(), when all is sent and nothing is missing any more, when the panel has been
// quiet for a while, or when it goes.
class Replay final : public PanelLink
{
    Q_OBJECT

public:
    enum class Pace { Recorded, Fast };

    static constexpr int AnswerMs = 1000; // the longest wait for an answer
    static constexpr int LastMs = 3000;   // the longest quiet at the end while answers are missing
    static constexpr int SettleMs = 300;  // what may still come when none is

    Replay(PseudoTerminal& line, const Recording& recording, Pace pace,
        const LineFaults& faults = {}, QObject* parent = nullptr);

    const ReplayScore& score() const { return m_score; }

signals:
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
