#include "sim/ReplayScore.h"

#include "sim/Recording.h"
#include "wire/Message.h"

#include <QRegularExpression>

namespace {

// Out: how an answer to the body looks, as a pattern for the frame; empty when there is none.
QString answerTo(const QString& body)
{
    if (body == QLatin1String("PING")) {
        return QStringLiteral("\x02PONG\x04");
    }
    if (body == QLatin1String("VER")) {
        return QStringLiteral("\x02[0-9.]+\x04");
    }
    if (body == QLatin1String("Slave")) {
        return QStringLiteral("\x02Slave,-?[0-9]+\x04");
    }
    // three texts without a frame, which come in one go
    return body == QLatin1String("ST,1") ? QStringLiteral("D1:SPEN:1.*") : QString();
}

// Out: whether the frame answers one of these; that one is taken out of them.
bool takeOwed(QStringList& owed, const QString& frame)
{
    for (qsizetype i = 0; i < owed.size(); ++i) {
        const QRegularExpression form(QRegularExpression::anchoredPattern(owed.at(i)));
        if (form.match(frame).hasMatch()) {
            owed.removeAt(i);
            return true;
        }
    }
    return false;
}

} // namespace

ReplayScore::ReplayScore(const QList<wire::TraceLine>& lines)
    : m_lines(lines)
    , m_cameBack(lines.size(), false)
{
    constexpr qsizetype MostOwed = 1000; // of questions to a panel that never answered
    QStringList owed;
    for (const wire::TraceLine& line : lines) {
        if (!line.in) {
            m_kinds += takeOwed(owed, line.frame) ? Kind::Answer : Kind::Pressed;
            continue;
        }
        m_kinds += Kind::Sent;
        const QString pattern = Recording::isFramed(line.frame)
            ? answerTo(line.frame.mid(1, line.frame.size() - 2))
            : QString();
        if (!pattern.isEmpty() && owed.size() < MostOwed) {
            owed += pattern;
        }
    }
}

void ReplayScore::take(const QString& frame, qsizetype played)
{
    // an answer stands behind its question and in front of the next line that is not played yet
    qsizetype due = played;
    while (due < m_lines.size() && !m_lines.at(due).in) {
        ++due;
    }
    if (match(Kind::Answer, frame, m_lastAnswer + 1, due, m_lastAnswer) ||
        match(Kind::Pressed, frame, m_lastPressed + 1, m_lines.size(), m_lastPressed)) {
        return;
    }
    m_unexpected += 1;
    if (m_unexpectedFrames.size() < MostLines) {
        m_unexpectedFrames += wire::toPrintable(frame);
    }
}

bool ReplayScore::match(
    Kind kind, const QString& frame, qsizetype from, qsizetype to, qsizetype& last)
{
    for (qsizetype i = from; i < to; ++i) {
        if (m_kinds.at(i) == kind && m_lines.at(i).frame == frame) {
            m_cameBack[i] = true;
            last = i;
            return true;
        }
    }
    return false;
}

qsizetype ReplayScore::expected() const
{
    return m_lines.size() - m_kinds.count(Kind::Sent);
}

qsizetype ReplayScore::returned() const
{
    return m_cameBack.count(true);
}

bool ReplayScore::allAnswersCame() const
{
    for (qsizetype i = 0; i < m_lines.size(); ++i) {
        if (isAnswer(i) && !cameBack(i)) {
            return false;
        }
    }
    return true;
}

QStringList ReplayScore::report() const
{
    QStringList details;
    for (qsizetype i = 0; i < m_lines.size(); ++i) {
        if (m_kinds.at(i) != Kind::Sent && !cameBack(i)) {
            details += (isAnswer(i) ? QLatin1String("missing: ") : QLatin1String("not pressed: ")) +
                m_lines.at(i).text();
        }
    }
    for (const QString& frame : m_unexpectedFrames) {
        details += QLatin1String("unexpected: ") + frame;
    }
    const qsizetype count = details.size() + m_unexpected - m_unexpectedFrames.size();
    QStringList all{QStringLiteral("%1 of %2 frames came back").arg(returned()).arg(expected())};
    all += details.mid(0, MostLines);
    if (count > MostLines) {
        all += QStringLiteral("%1 more").arg(count - MostLines);
    }
    return all;
}
