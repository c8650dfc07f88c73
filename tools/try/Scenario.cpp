#include "tools/try/Scenario.h"

#include "sim/unit/MenuFile.h"
#include "tools/try/StepParser.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

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
