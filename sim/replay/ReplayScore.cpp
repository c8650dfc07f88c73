#include "sim/replay/ReplayScore.h"

#include "sim/replay/Recording.h"
#include "wire/Commands.h"
#include "wire/Message.h"

#include <QRegularExpression>

#include <array>
#include <optional>

namespace {

// The questions that a panel answers by itself. No frame answers two of them.
enum class Question { Ping, Version, LinkMode, SpectrumStart };
constexpr int Questions = 4;

// Returns the question that the body is.
std::optional<Question> questionIn(const QString& body)
{
    if (body == wire::word::Ping) {
        return Question::Ping;
    }
    if (body == wire::word::Ver) {
        return Question::Version;
    }
    if (body == wire::word::Slave) {
        return Question::LinkMode;
    }
    return body == QString(wire::word::ST + QLatin1String(",1"))
        ? std::optional(Question::SpectrumStart)
        : std::nullopt;
}

// Returns the question that the frame would answer.
std::optional<Question> questionAnsweredBy(const QString& frame)
{
    static const QRegularExpression version(QStringLiteral("\\A\x02[0-9.]+\x04\\z"));
    // three texts without a frame, which arrive together
    if (frame.startsWith(QLatin1String("D1:SPEN:1"))) {
        return Question::SpectrumStart;
    }
    const wire::Command* command =
        Recording::isFramed(frame) ? wire::commandFromPanel(wire::fields(frame)) : nullptr;
    if (command != nullptr && command->word == wire::word::Pong) {
        return Question::Ping;
    }
    if (command != nullptr && command->word == wire::word::Slave) {
        return Question::LinkMode;
    }
    return version.match(frame).hasMatch() ? std::optional(Question::Version) : std::nullopt;
}

} // namespace

ReplayScore::ReplayScore(const QList<wire::TraceLine>& lines)
    : m_lines(lines)
    , m_cameBack(lines.size(), false)
{
    std::array<qsizetype, Questions> open{}; // asked and not answered yet, of each
    const auto count = [&open](Question question) -> qsizetype& {
        return open.at(static_cast<size_t>(question));
    };
    for (const wire::TraceLine& line : lines) {
        if (!line.in) {
            const auto answered = questionAnsweredBy(line.frame);
            const bool isAnswer = answered && count(*answered) > 0;
            m_kinds += isAnswer ? Kind::Answer : Kind::Pressed;
            if (isAnswer) {
                count(*answered) -= 1;
            }
            continue;
        }
        m_kinds += Kind::Sent;
        if (Recording::isFramed(line.frame)) {
            if (const auto asked = questionIn(line.frame.mid(1, line.frame.size() - 2))) {
                count(*asked) += 1;
            }
        }
    }
}

void ReplayScore::take(const QString& frame, qsizetype played)
{
    // an answer comes after its question and before the next line that is not played yet
    qsizetype due = played;
    while (due < m_lines.size() && !m_lines.at(due).in) {
        ++due;
    }
    if (match(Kind::Answer, frame, m_lastAnswer + 1, due, m_lastAnswer) ||
        match(Kind::Pressed, frame, m_lastPressed + 1, m_lines.size(), m_lastPressed)) {
        return;
    }
    m_unexpected += 1;
    if (m_unexpectedFrames.size() < MaxLines) {
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
    all += details.mid(0, MaxLines);
    if (count > MaxLines) {
        all += QStringLiteral("%1 more").arg(count - MaxLines);
    }
    return all;
}
