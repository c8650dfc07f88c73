// Menu files: reading, the check, writing them as JSON and reading that again.
#include "Target.h"

#include "sim/lint/Linter.h"
#include "sim/lint/Report.h"
#include "sim/menus/JsonText.h"
#include "sim/menus/MenuGraph.h"
#include "sim/menus/MenuJson.h"
#include "sim/unit/MenuFile.h"

#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace {

void checkSame(const QList<MenuStep>& before, const QList<MenuStep>& after)
{
    FUZZ_CHECK(before.size() == after.size());
    for (qsizetype i = 0; i < before.size(); ++i) {
        FUZZ_CHECK(before.at(i).kind == after.at(i).kind);
        FUZZ_CHECK(before.at(i).body == after.at(i).body);
        FUZZ_CHECK(before.at(i).waitMs == after.at(i).waitMs);
    }
}

void takeFile(const QByteArray& input, const QString& name)
{
    const MenuFile file = MenuFile::parse(input, name);
    FUZZ_CHECK(file.messageCount() <= file.steps().size());
    FUZZ_CHECK(file.errors().size() <= 101);
    lint::FileReport report{file.name(), file.messageCount(), lint::check(file)};
    static_cast<void>(lint::findingsText(report) + lint::summaryText(report));
    FUZZ_CHECK(!QJsonDocument::fromJson(lint::toJson({report})).isNull());
    static_cast<void>(menuGraph(file.content()));
    const QByteArray written = menuJson::write(file.content());
    FUZZ_CHECK(!QJsonDocument::fromJson(written).isNull());
    const MenuContent again = menuJson::read(written);
    FUZZ_CHECK(again.faults.isEmpty());
    checkSame(file.steps(), again.steps);
}

} // namespace

void fuzz::takeMenuFile(const QByteArray& input)
{
    takeFile(input, u"a.menu"_s);
}

void fuzz::takeJson(const QByteArray& input)
{
    const JsonResult ours = json::read(input);
    QJsonParseError fault{};
    const QJsonDocument theirs = QJsonDocument::fromJson(input, &fault);
    // Qt takes what is no object or array for a fault, and a name that occurs twice for none.
    if (ours.fault.isEmpty() && ours.value.kind >= JsonValue::Kind::Array) {
        FUZZ_CHECK(!theirs.isNull());
    }
    takeFile(input, u"a.json"_s);
}
