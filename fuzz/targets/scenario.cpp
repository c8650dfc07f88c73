// Scenarios of qn740-try: reading them, and patterns.
#include "Target.h"

#include "tools/try/Pattern.h"
#include "tools/try/Scenario.h"

using namespace Qt::StringLiterals;

void fuzz::takeScenario(const QByteArray& input)
{
    // A menu file that it names is looked for in a folder that does not exist.
    const Scenario scenario = Scenario::parse(input, u"/nonexistent/a.try"_s);
    for (const Step& step : scenario.steps()) {
        FUZZ_CHECK(step.line > 0);
        static_cast<void>(scenario.beside(step.subject));
    }
    const QString text = QString::fromLatin1(input);
    const QString pattern = text.section(u'\n', 0, 0);
    const QString rest = text.section(u'\n', 1);
    FUZZ_CHECK(matches(u"*"_s, rest));
    FUZZ_CHECK(matches(u'*' + pattern, pattern) && matches(pattern + u'*', pattern));
    FUZZ_CHECK(!matches(pattern, rest) || matches(pattern, rest, true));
}
