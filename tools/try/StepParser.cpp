#include "tools/try/StepParser.h"

#include "sim/unit/MenuFile.h"
#include "wire/Message.h"

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr int MaxMs = 600'000;
constexpr int MsPerSecond = 1000;

struct Token
{
    QString text;
    bool quoted = false;
};

// Cuts a line into words and quoted texts, in which \" stands for a quote and \\ for a backslash.
// Returns nothing when a quote is not closed.
std::optional<QList<Token>> tokens(const QString& line)
{
    QList<Token> all;
    for (qsizetype at = 0; at < line.size();) {
        if (line.at(at).isSpace()) {
            ++at;
            continue;
        }
        Token token{{}, line.at(at) == u'"'};
        if (!token.quoted) {
            while (at < line.size() && !line.at(at).isSpace()) {
                token.text += line.at(at++);
            }
            all += token;
            continue;
        }
        for (++at; at < line.size() && line.at(at) != u'"'; ++at) {
            const bool escaped = line.at(at) == u'\\' && at + 1 < line.size() &&
                (line.at(at + 1) == u'"' || line.at(at + 1) == u'\\');
            at += escaped ? 1 : 0;
            token.text += line.at(at);
        }
        if (at++ >= line.size()) {
            return std::nullopt;
        }
        all += token;
    }
    return all;
}

// Reads "500ms", "1s" or "1.5s".
bool readTime(const QString& text, int* ms)
{
    const bool inMs = text.endsWith(u"ms"_s);
    if (!inMs && !text.endsWith(u's')) {
        return false;
    }
    bool ok = false;
    const double number = text.chopped(inMs ? 2 : 1).toDouble(&ok);
    const double time = number * (inMs ? 1 : MsPerSecond);
    if (!ok || time < 0 || time > MaxMs) {
        return false;
    }
    *ms = qRound(time);
    return true;
}

bool readNumber(const QString& text, int* number)
{
    bool ok = false;
    *number = text.toInt(&ok);
    return ok;
}

bool readCount(const QString& text, int* count)
{
    return readNumber(text, count) && *count > 0;
}

// Reads the subject, a quoted text, and what may follow it.
bool readQuoted(const QList<Token>& words, Step* step)
{
    if (words.isEmpty() || !words.first().quoted || words.size() > 2) {
        return false;
    }
    step->subject = words.first().text;
    if (words.size() == 1) {
        return true;
    }
    const QString& last = words.at(1).text;
    switch (step->verb) {
    case Verb::Press:
        return readCount(last, &step->number);
    case Verb::Expect:
    case Verb::ExpectNot:
        return readTime(last, &step->ms);
    default:
        return false;
    }
}

bool readHold(const QList<Token>& words, Step* step)
{
    return words.size() == 2 && readQuoted(words.mid(0, 1), step) &&
        readTime(words.at(1).text, &step->ms);
}

bool readState(const QList<Token>& words, Step* step)
{
    static const QStringList known{u"on"_s, u"off"_s, u"enabled"_s, u"disabled"_s, u"hidden"_s,
        u"pending"_s, u"settled"_s, u"chosen"_s};
    if (words.size() < 2 || words.size() > 3 || !readQuoted(words.mid(0, 1), step)) {
        return false;
    }
    step->detail = words.at(1).text;
    return known.contains(step->detail) &&
        (words.size() == 2 || readCount(words.at(2).text, &step->number));
}

bool readTyped(const QList<Token>& words, Step* step)
{
    if (words.isEmpty() || words.size() > 2 || words.first().text.isEmpty()) {
        return false;
    }
    step->subject = words.first().text;
    step->detail = words.size() == 2 ? words.at(1).text : QString();
    return true;
}

bool readPicture(const QList<Token>& words, Step* step)
{
    const qsizetype most = step->verb == Verb::Compare ? 2 : 1;
    if (words.isEmpty() || words.size() > most) {
        return false;
    }
    step->subject = words.first().text;
    return step->subject.endsWith(u".png"_s) && !step->subject.contains(u'/') &&
        (words.size() == 1 || readCount(words.at(1).text, &step->number));
}

bool readPoint(const QList<Token>& words, Step* step)
{
    constexpr int Width = 800;
    constexpr int Height = 480;
    int x = -1;
    int y = -1;
    const bool ok = words.size() == 2 && readNumber(words.at(0).text, &x) &&
        readNumber(words.at(1).text, &y) && x >= 0 && x < Width && y >= 0 && y < Height;
    step->point = {x, y};
    return ok;
}

bool readSingle(const QList<Token>& words, Step* step)
{
    if (words.size() != 1) {
        return false;
    }
    step->subject = words.first().text;
    switch (step->verb) {
    case Verb::Answers:
        return step->subject == u"on"_s || step->subject == u"off"_s;
    case Verb::Slide:
        return readNumber(step->subject, &step->number);
    default:
        return readTime(step->subject, &step->ms);
    }
}

bool readMenus(const QList<Token>& words, Step* step)
{
    step->subject = words.isEmpty() ? QString() : words.first().text;
    return words.size() <= 1;
}

bool readArguments(const QList<Token>& words, Step* step)
{
    switch (step->verb) {
    case Verb::Menus:
        return readMenus(words, step);
    case Verb::Answers:
    case Verb::Slide:
    case Verb::Wait:
        return readSingle(words, step);
    case Verb::Hold:
        return readHold(words, step);
    case Verb::ExpectState:
        return readState(words, step);
    case Verb::Type:
        return readTyped(words, step);
    case Verb::Picture:
    case Verb::Compare:
        return readPicture(words, step);
    case Verb::Touch:
        return readPoint(words, step);
    default:
        return readQuoted(words, step);
    }
}

// The body of a message: the rest of the line as in a menu file, or in quotes.
QString readBody(const QString& rest, Step* step)
{
    QString body = rest;
    if (rest.startsWith(u'"')) {
        const auto quoted = tokens(rest);
        if (!quoted || quoted->size() != 1) {
            return u"a quote is not closed, or something follows it"_s;
        }
        body = quoted->first().text;
    }
    if (step->verb == Verb::Raw) {
        step->subject = wire::fromPrintable(body);
        return body.isEmpty() ? u"no bytes"_s : QString();
    }
    const MenuFile::Line line = MenuFile::parseLine(body.toUtf8());
    if (!line.step || line.step->kind != MenuStep::Kind::Message) {
        return line.fault.isEmpty() ? u"no message"_s : line.fault;
    }
    step->subject = line.step->body;
    return {};
}

QString parseRest(const StepWord& word, const QString& rest, Step* step)
{
    if (word.verb == Verb::Send || word.verb == Verb::Raw) {
        return readBody(rest, step);
    }
    const auto words = tokens(rest);
    if (!words) {
        return u"a quote is not closed"_s;
    }
    return readArguments(*words, step) ? QString() : u"the form is: "_s + QLatin1String(word.form);
}

} // namespace

stepParser::Result stepParser::parse(const QString& line)
{
    const auto end = std::find_if(line.begin(), line.end(), [](QChar c) { return c.isSpace(); });
    const QString first = line.left(end - line.begin());
    const auto& words = stepWords();
    const auto word = std::find_if(words.begin(), words.end(),
        [&first](const StepWord& one) { return first == QLatin1String(one.word); });
    if (word == words.end()) {
        return {{}, u"unknown step \"%1\""_s.arg(first)};
    }
    Result result;
    result.step.verb = word->verb;
    result.step.source = line;
    result.fault = parseRest(*word, line.mid(first.size()).trimmed(), &result.step);
    return result;
}
