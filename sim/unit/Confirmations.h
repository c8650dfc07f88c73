#pragma once

#include <QList>
#include <QString>

/// Which messages of the panel the unit answers in another way than it should, and how.
///
/// A pattern stands for bodies of messages, as "R1:FREQ:*": "*" for any characters, "?" for any
/// one. A message that several patterns stand for is not confirmed when one of them says so, or
/// else refused when one says so; its delay is that of the pattern that was given last.
class Confirmations
{
public:
    static constexpr int MaxDelayMs = 600000;   ///< of a confirmation
    static constexpr qsizetype MaxRules = 1000; ///< further ones are a fault

    /// What the unit does with a message.
    enum class Answer {
        Confirm, ///< with the value that was asked for
        Refuse,  ///< with the value from before
        Silent   ///< nothing is sent
    };

    /// What becomes of one message.
    struct Fate
    {
        Answer answer = Answer::Confirm; ///< what is sent
        int delayMs = 0;                 ///< how much later it is sent, 0 to MaxDelayMs
    };

    /// Adds a rule. \param pattern which messages are refused, or not confirmed
    /// \return why it is not taken; empty when it is
    ///@{
    QString refuse(const QString& pattern);
    QString silence(const QString& pattern);
    ///@}
    /// Adds a delay. \param text "MS" for all messages, or "MS:PATTERN"
    /// \return why it is not taken; empty when it is
    QString delay(const QString& text);
    /// Forgets all rules: everything is confirmed again, at once.
    void clear() { m_rules.clear(); }

    /// \return what becomes of a message with this body
    Fate fateOf(const QString& body) const;

    /// Whether a pattern stands for all of the text.
    static bool fits(const QString& pattern, const QString& text);

private:
    struct Rule
    {
        QString pattern;
        Answer answer;
        int delayMs; // -1: the rule says nothing about the time
    };

    QString add(const Rule& rule, const char* word);

    QList<Rule> m_rules;
};
