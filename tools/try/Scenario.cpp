#include "tools/try/Scenario.h"

#include "sim/unit/MenuFile.h"
#include "tools/try/StepParser.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

const QList<StepWord>& stepWords()
{
    static const QList<StepWord> words{
        {"menus", Verb::Menus, "menus [FILE]", "sends the menus of FILE, or the built-in ones"},
        {"send", Verb::Send, "send BODY", "sends a message to the panel"},
        {"raw", Verb::Raw, "raw BYTES", "sends bytes as they are"},
        {"answers", Verb::Answers, "answers on|off", "whether the unit confirms; on at the start"},
        {"open", Verb::Open, "open \"MENU\"", "lets the unit show a menu"},
        {"press", Verb::Press, "press \"LABEL\" [N]", "presses the (Nth) key with this label"},
        {"hold", Verb::Hold, "hold \"LABEL\" TIME", "holds a key down"},
        {"touch", Verb::Touch, "touch X Y", "touches a point of the screen"},
        {"type", Verb::Type, "type ENTRY [UNIT]", "types into the open editor and confirms"},
        {"choose", Verb::Choose, "choose \"TEXT\"", "takes an item of the open list"},
        {"slide", Verb::Slide, "slide VALUE", "drags the open slider to a value"},
        {"expect", Verb::Expect, "expect \"BODY\" [TIME]", "the next message of the panel"},
        {"expect-not", Verb::ExpectNot, "expect-not \"BODY\" [TIME]",
            "no such message since the last one expected"},
        {"expect-screen", Verb::ExpectScreen, "expect-screen \"TEXT\"",
            "a text stands on the screen"},
        {"expect-not-screen", Verb::ExpectNotScreen, "expect-not-screen \"TEXT\"",
            "a text does not stand on the screen"},
        {"expect-state", Verb::ExpectState,
            "expect-state \"LABEL\" "
            "on|off|enabled|disabled|hidden|pending|settled|chosen [N]",
            "what a key shows"},
        {"picture", Verb::Picture, "picture NAME.png", "writes a picture of the screen"},
        {"compare", Verb::Compare, "compare NAME.png [POINTS]",
            "compares the screen with a picture"},
        {"wait", Verb::Wait, "wait TIME", "lets time pass, 500ms or 1.5s"},
    };
    return words;
}

Scenario Scenario::load(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        Scenario none;
        none.m_path = path;
        none.m_errors += u"%1: %2"_s.arg(path, file.errorString());
        return none;
    }
    return parse(file.readAll(), path);
}

Scenario Scenario::parse(const QByteArray& text, const QString& path)
{
    Scenario scenario;
    scenario.m_path = path;
    int number = 0;
    const QStringList lines = QString::fromUtf8(text).split(u'\n');
    for (const QString& line : lines) {
        scenario.addLine(line.trimmed(), ++number);
    }
    if (scenario.m_steps.isEmpty() && scenario.m_errors.isEmpty()) {
        scenario.m_errors += path + u": no step"_s;
    }
    return scenario;
}

QString Scenario::name() const
{
    return QFileInfo(m_path).completeBaseName();
}

QString Scenario::beside(const QString& file) const
{
    return QFileInfo(m_path).dir().filePath(file);
}

void Scenario::addLine(const QString& line, int number)
{
    if (line.isEmpty() || line.startsWith(u'#')) {
        return;
    }
    stepParser::Result result = stepParser::parse(line);
    if (!result.fault.isEmpty()) {
        addError(number, result.fault);
        return;
    }
    result.step.line = number;
    if (result.step.verb == Verb::Menus && !result.step.subject.isEmpty()) {
        checkMenus(result.step);
    }
    m_steps += result.step;
}

void Scenario::checkMenus(const Step& step)
{
    const MenuFile menus = MenuFile::load(beside(step.subject));
    for (const QString& error : menus.errors()) {
        addError(step.line, error);
    }
}

void Scenario::addError(int line, const QString& reason)
{
    m_errors += u"%1:%2: %3"_s.arg(m_path).arg(line).arg(reason);
}

bool matches(const QString& pattern, const QString& text, bool anywhere)
{
    QStringList parts;
    for (const QString& part : pattern.split(u'*')) {
        parts += QRegularExpression::escape(part);
    }
    QString expression = parts.join(u".*"_s);
    if (!anywhere) {
        expression = QRegularExpression::anchoredPattern(expression);
    }
    const QRegularExpression regular(expression, QRegularExpression::DotMatchesEverythingOption);
    return regular.match(text).hasMatch();
}
