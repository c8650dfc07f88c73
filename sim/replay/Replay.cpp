#include "sim/replay/Replay.h"

#include "sim/line/PseudoTerminal.h"
#include "wire/Message.h"

#include <limits>

namespace {

// Returns the pause from one line to the next, none when the clock was set back or when another log
// begins.
qint64 gapMs(const wire::TraceLine& from, const wire::TraceLine& to)
{
    constexpr double MillisecondsASecond = 1000.0;
    constexpr double Longest = std::numeric_limits<int>::max();
    const double gap = (to.seconds - from.seconds) * MillisecondsASecond;
    return gap > 0.0 ? static_cast<qint64>(qMin(gap, Longest)) : 0;
}

} // namespace

Replay::Replay(PseudoTerminal& line, const Recording& recording, Pace pace,
    const LineFaults& faults, QObject* parent)
    : PanelLink(line, faults, parent)
    , m_lines(recording.lines())
    , m_pace(pace)
    , m_score(m_lines)
{
    for (QTimer* timer : {&m_pause, &m_answerWait, &m_end}) {
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
    }
    connect(&m_pause, &QTimer::timeout, this, &Replay::proceed);
    connect(&m_answerWait, &QTimer::timeout, this, [this] {
        m_gaveUp = true;
        proceed();
    });
    connect(&m_end, &QTimer::timeout, this, &Replay::finish);
    if (line.isOpen()) {
        panelCame();
    }
}

void Replay::panelCame()
{
    if (m_state == State::Waiting) {
        m_state = State::Playing;
        m_clock.start();
        proceed();
    }
}

void Replay::panelWent()
{
    if (m_state != State::Waiting) {
        finish();
    }
}

void Replay::handle(const QString& text, bool framed)
{
    m_score.take(framed ? wire::frame(text) : text, m_next);
    if (m_state == State::Ending) {
        awaitEnd();
    } else {
        proceed();
    }
}

void Replay::lineFree()
{
    proceed();
}

void Replay::proceed()
{
    while (m_state == State::Playing && !busy()) {
        if (m_next == m_lines.size()) {
            m_state = State::Ending;
            awaitEnd();
            return;
        }
        const wire::TraceLine line = m_lines.at(m_next);
        if (isHeld(line)) {
            return;
        }
        // counted as played before it is sent: the answer may come at once
        next();
        play(line);
    }
}

// Returns whether the line has to wait; what it waits for then calls proceed().
bool Replay::isHeld(const wire::TraceLine& line)
{
    return line.in ? m_pace == Pace::Recorded && isTimeHeld() : isAnswerHeld();
}

bool Replay::isAnswerHeld()
{
    if (!m_score.isAnswer(m_next) || m_score.cameBack(m_next) || m_gaveUp) {
        return false;
    }
    if (!m_answerWait.isActive()) {
        m_answerWait.start(AnswerMs);
    }
    return true;
}

bool Replay::isTimeHeld()
{
    const qint64 left = m_dueMs - m_clock.elapsed();
    if (left <= 0) {
        return false;
    }
    m_pause.start(static_cast<int>(qMin<qint64>(left, std::numeric_limits<int>::max())));
    return true;
}

void Replay::play(const wire::TraceLine& line)
{
    if (line.in && write(line.frame.toLatin1()) && Recording::isFramed(line.frame)) {
        emit sent(line.frame.mid(1, line.frame.size() - 2));
    }
}

void Replay::next()
{
    m_answerWait.stop();
    m_gaveUp = false;
    ++m_next;
    if (m_next < m_lines.size()) {
        m_dueMs += gapMs(m_lines.at(m_next - 1), m_lines.at(m_next));
    }
}

void Replay::awaitEnd()
{
    m_end.start(m_score.allAnswersCame() ? SettleMs : LastMs);
}

void Replay::finish()
{
    if (m_state != State::Done) {
        m_state = State::Done;
        m_end.stop();
        emit finished();
    }
}
