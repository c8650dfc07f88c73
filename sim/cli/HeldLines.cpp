#include "sim/cli/HeldLines.h"

HeldLines::HeldLines(QObject* parent)
    : QObject(parent)
{
    m_clock.start();
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &HeldLines::goOn);
}

void HeldLines::add(const QString& text, const QString& frame)
{
    if (m_lines.size() >= MaxLines) {
        removeFirst(1);
    }
    m_lines.append({text, frame, m_clock.elapsed() + HoldMs});
    goOn();
}

bool HeldLines::took(const QString& frame)
{
    for (qsizetype i = 0; i < m_lines.size(); ++i) {
        if (m_lines.at(i).frame == frame) {
            removeFirst(i + 1);
            m_notBeforeMs = m_clock.elapsed() + GraceMs;
            goOn();
            return true;
        }
    }
    return false;
}

void HeldLines::release()
{
    removeFirst(m_lines.size());
}

void HeldLines::removeFirst(qsizetype count)
{
    for (qsizetype i = 0; i < count; ++i) {
        const QString text = m_lines.takeFirst().text;
        if (!text.isEmpty()) {
            emit line(text);
        }
    }
}

// Lets go what need not wait, and comes back when the first line has waited long enough.
void HeldLines::goOn()
{
    while (!m_lines.isEmpty()) {
        const Line& first = m_lines.constFirst();
        const qint64 due = first.frame.isEmpty() ? m_notBeforeMs : first.dueMs;
        const qint64 left = qMax(due, m_notBeforeMs) - m_clock.elapsed();
        if (left > 0) {
            m_timer.start(static_cast<int>(left));
            return;
        }
        removeFirst(1);
    }
    m_timer.stop();
}
