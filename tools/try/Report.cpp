#include "tools/try/Report.h"

#include "wire/Message.h"

#include <QXmlStreamWriter>

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

constexpr int Decimals = 2;

QString seconds(double time)
{
    return QString::number(time, 'f', Decimals);
}

QString where(const Outcome& outcome)
{
    return outcome.step.line > 0 ? u"%1:%2"_s.arg(outcome.path).arg(outcome.step.line)
                                 : outcome.path;
}

QString block(const QString& title, const QStringList& lines)
{
    QString text = u"  %1:\n"_s.arg(title);
    for (const QString& line : lines) {
        text += u"    %1\n"_s.arg(line);
    }
    return text;
}

QString details(const Outcome& outcome)
{
    return u"%1: %2\n"_s.arg(where(outcome), outcome.step.source) +
        u"  %1\n"_s.arg(outcome.reason) + block(u"on the screen"_s, outcome.screen) +
        block(u"last messages"_s, outcome.traffic) + u"  picture: %1\n"_s.arg(outcome.picture);
}

qsizetype failures(const QList<Outcome>& outcomes)
{
    return std::count_if(
        outcomes.begin(), outcomes.end(), [](const Outcome& outcome) { return !outcome.passed; });
}

double total(const QList<Outcome>& outcomes)
{
    return std::accumulate(outcomes.begin(), outcomes.end(), 0.0,
        [](double sum, const Outcome& outcome) { return sum + outcome.seconds; });
}

// XML has no form for most control characters: they are written as in the reports of messages.
QString forXml(const QString& text)
{
    QString plain;
    for (const QChar c : text) {
        const bool allowed = c >= u' ' || c == u'\n' || c == u'\t';
        plain += allowed ? QString(c) : wire::toPrintable(c);
    }
    return plain;
}

} // namespace

QString report::text(const Outcome& outcome)
{
    const QString line = u"%1  %2 (%3 s)\n"_s.arg(
        outcome.passed ? u"pass"_s : u"FAIL"_s, outcome.name, seconds(outcome.seconds));
    return outcome.passed ? line : line + details(outcome);
}

QString report::summary(const QList<Outcome>& outcomes)
{
    const qsizetype failed = failures(outcomes);
    return u"%1 %2: %3 passed, %4 failed, %5 s\n"_s.arg(outcomes.size())
        .arg(outcomes.size() == 1 ? u"scenario"_s : u"scenarios"_s)
        .arg(outcomes.size() - failed)
        .arg(failed)
        .arg(seconds(total(outcomes)));
}

QByteArray report::junit(const QList<Outcome>& outcomes)
{
    QByteArray bytes;
    QXmlStreamWriter xml(&bytes);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(u"testsuites"_s);
    xml.writeStartElement(u"testsuite"_s);
    xml.writeAttribute(u"name"_s, u"qn740-try"_s);
    xml.writeAttribute(u"tests"_s, QString::number(outcomes.size()));
    xml.writeAttribute(u"failures"_s, QString::number(failures(outcomes)));
    xml.writeAttribute(u"time"_s, seconds(total(outcomes)));
    for (const Outcome& outcome : outcomes) {
        xml.writeStartElement(u"testcase"_s);
        xml.writeAttribute(u"classname"_s, u"qn740-try"_s);
        xml.writeAttribute(u"name"_s, outcome.name);
        xml.writeAttribute(u"file"_s, outcome.path);
        xml.writeAttribute(u"time"_s, seconds(outcome.seconds));
        if (!outcome.passed) {
            xml.writeStartElement(u"failure"_s);
            xml.writeAttribute(u"message"_s,
                forXml(u"%1: %2: %3"_s.arg(where(outcome), outcome.step.source, outcome.reason)));
            xml.writeCharacters(forXml(details(outcome)));
            xml.writeEndElement();
        }
        xml.writeEndElement();
    }
    xml.writeEndDocument();
    return bytes;
}
