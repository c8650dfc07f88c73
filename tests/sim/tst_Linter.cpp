// The check of menu files: every code by its example in docs/lint.md, the files of tests/lint, and
// the tables of sizes against the panel's own keys and lists.
#include "app/MainWindow.h"
#include "app/Rooms.h"
#include "menus/Key.h"
#include "menus/KeyBoard.h"
#include "menus/ListGrid.h"
#include "menus/MenuMessages.h"
#include "popups/Choices.h"
#include "popups/PopUpDialog.h"
#include "sim/lint/LabelRoom.h"
#include "sim/lint/Linter.h"
#include "sim/lint/ListRules.h"
#include "sim/lint/Report.h"
#include "sim/menus/MenuFields.h"
#include "sim/unit/MenuFile.h"
#include "support/TestMain.h"
#include "touch/TextButton.h"
#include "wire/Commands.h"

#include <QElapsedTimer>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>

#include <limits>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString Root = QStringLiteral(QT_TESTCASE_SOURCEDIR "/../");

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Returns a text with "«3 × x»" written out.
QString expanded(QString text)
{
    static const QRegularExpression form(u"«(\\d+) × ([^»]+)»"_s);
    for (auto match = form.match(text); match.hasMatch(); match = form.match(text)) {
        text.replace(match.capturedStart(), match.capturedLength(),
            match.captured(2).repeated(match.captured(1).toInt()));
    }
    return text;
}

// A section of docs/lint.md.
struct Section
{
    QString code;
    QString title;
    QString severity;
    QString kind; // of its two examples: "menu", "json" or "path"
    QString bad;
    QString good;
};

QList<Section> sections()
{
    static const QRegularExpression form(
        u"\n### (QN\\d+): ([^\n]+) \\((\\w+)\\)\n\n[^`#]*(?:`[^`\n]+`[^`#]*)*"
        "```(\\w+) bad\n(.*?)\n```\n```(\\w+) good\n(.*?)\n```\n"_s,
        QRegularExpression::DotMatchesEverythingOption);
    QList<Section> all;
    auto matches = form.globalMatch(QString::fromUtf8(contents(Root + u"docs/lint.md"_s)));
    while (matches.hasNext()) {
        const auto match = matches.next();
        all.append({match.captured(1), match.captured(2), match.captured(3), match.captured(4),
            expanded(match.captured(5)), expanded(match.captured(7))});
    }
    return all;
}

QList<lint::Finding> findingsOf(const QString& kind, const QString& example)
{
    if (kind == u"path"_s) {
        return lint::check(MenuFile::load(Root + example));
    }
    return lint::check(MenuFile::parse(example.toUtf8(), u"example."_s + kind));
}

QList<lint::Finding> findingsIn(const QByteArray& text)
{
    return lint::check(MenuFile::parse(text, u"f"_s));
}

QStringList codesOf(const QList<lint::Finding>& findings)
{
    QStringList codes;
    for (const lint::Finding& finding : findings) {
        codes += finding.code;
    }
    return codes;
}

QStringList codesIn(const QByteArray& text)
{
    return codesOf(findingsIn(text));
}

QString reportOf(const MenuFile& file)
{
    return lint::findingsText({file.name(), file.messageCount(), lint::check(file)});
}

// A panel whose messages come from a test.
struct Panel
{
    Panel()
    {
        window.show();
        const bool isExposed = QTest::qWaitForWindowExposed(&window);
        Q_ASSERT(isExposed);
        Q_UNUSED(isExposed)
    }
    void send(const QString& body) { window.process_mess(u'\x02' + body + u'\x04'); }
    KeyBoard* menu(const QString& name) { return window.rooms().menus->book.find(name); }
    MainWindow window;
};

PanelMenu::Kind kindOf(const KeyBoard& menu)
{
    return menu.kind() == KeyBoard::Kind::Main ? PanelMenu::Kind::Main
        : menu.kind() == KeyBoard::Kind::Pax   ? PanelMenu::Kind::Pax
                                               : PanelMenu::Kind::Plain;
}

} // namespace

class tst_Linter : public QObject
{
    Q_OBJECT

private slots:
    void the_document_has_a_section_for_every_code()
    {
        QStringList documented;
        for (const Section& section : sections()) {
            documented +=
                section.code + u": "_s + section.title + u" ("_s + section.severity + u')';
        }
        QStringList known;
        for (const lint::Code& code : lint::codes()) {
            known += QLatin1String(code.name) + u": "_s + QLatin1String(code.title) + u" ("_s +
                lint::severityName(code.severity) + u')';
        }
        QCOMPARE(documented, known);
        QCOMPARE(QSet<QString>(known.begin(), known.end()).size(), known.size());
    }

    void the_example_of_a_code_has_it_and_the_mended_one_has_none_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("bad");
        QTest::addColumn<QString>("good");
        for (const Section& section : sections()) {
            QTest::newRow(qPrintable(section.code)) << section.kind << section.bad << section.good;
        }
    }

    void the_example_of_a_code_has_it_and_the_mended_one_has_none()
    {
        QFETCH(QString, kind);
        QFETCH(QString, bad);
        QFETCH(QString, good);
        QCOMPARE(codesOf(findingsOf(kind, bad)),
            QStringList{QString::fromUtf8(QTest::currentDataTag())});
        QCOMPARE(codesOf(findingsOf(kind, good)), QStringList());
    }

    void the_files_of_tests_lint_have_what_is_written_beside_them_data()
    {
        QTest::addColumn<QString>("name");
        const QStringList names =
            QDir(Root + u"tests/lint"_s).entryList({u"*.menu"_s, u"*.json"_s}, QDir::Files);
        for (const QString& name : names) {
            QTest::newRow(qPrintable(name)) << name;
        }
    }

    void the_files_of_tests_lint_have_what_is_written_beside_them()
    {
        QFETCH(QString, name);
        const QString path = Root + u"tests/lint/"_s + name;
        const QString expected = QString::fromUtf8(contents(path + u".expected"_s));
        QVERIFY(!expected.isEmpty());
        QCOMPARE(reportOf(MenuFile::parse(contents(path), name)), expected);
    }

    void the_files_of_tests_lint_have_every_code()
    {
        QSet<QString> found;
        const QDir directory(Root + u"tests/lint"_s);
        for (const QString& name : directory.entryList({u"*.menu"_s, u"*.json"_s}, QDir::Files)) {
            for (const QString& code :
                codesOf(lint::check(MenuFile::load(directory.filePath(name))))) {
                found.insert(code);
            }
        }
        found.insert(codesOf(lint::check(MenuFile::load(directory.filePath(u"none"_s)))).value(0));
        for (const lint::Code& code : lint::codes()) {
            QVERIFY2(found.contains(QLatin1String(code.name)), code.name);
        }
    }

    void the_built_in_menus_have_no_finding()
    {
        QCOMPARE(reportOf(MenuFile::builtIn()), QString());
    }

    void the_examples_of_the_protocol_have_no_finding()
    {
        const QString document = QString::fromUtf8(contents(Root + u"docs/protocol.md"_s));
        static const QRegularExpression block(
            u"\n```menu\n(.*?)```"_s, QRegularExpression::DotMatchesEverythingOption);
        auto matches = block.globalMatch(document);
        int count = 0;
        while (matches.hasNext()) {
            const auto match = matches.next();
            const auto line = document.left(match.capturedStart()).count(u'\n') + 1;
            const QString name = u"docs/protocol.md, block behind line %1"_s.arg(line);
            QCOMPARE(reportOf(MenuFile::parse(match.captured(1).toUtf8(), name)), QString());
            count += 1;
        }
        QVERIFY(count > 30);
    }

    // Details that the examples do not show

    void good_menus_have_no_finding_data()
    {
        QTest::addColumn<QByteArray>("text");
        const auto row = [](const char* name, const QByteArray& text) {
            QTest::newRow(name) << text;
        };
        const QByteArray shown = "\nSK,M\n";
        row("empty file", "");
        row("special value outside the range", "AK,M,a,L,1,A:,1 9,6,-1 Auto,-1,0,1" + shown);
        row("percentage on its bound", "AK,M,a,L,1,A:,0 58,5,,0.58,0,1" + shown);
        row("no value yet", "AK,M,a,L,1,A:,5 9,0,,0,0,1" + shown);
        row("PIN", "AK,M,a,L,1,A:,0 9999,7,,123456,0,1" + shown);
        row("a trailing colon of a list", "AK,M,a,L,2,A:,,0,0 Off:1 On:,0,0,1" + shown);
        row("exactly 400 choices",
            "# qn740: ignore QN405\nAK,M,a,L,2,A:,,16," + QByteArray("1 A:").repeated(400) +
                ",0,0,1" + shown);
        row("commands that end in another separator",
            "AK,M,a,L,5,A=,,0,,0,0,1\nAK,M,b,L,5,A ,,0,,0,0,1" + shown);
        row("a slider below zero in dB", "AK,M,a,Level dB,3,A:,0 -60,0,,-3,0,1" + shown);
        row("a slider whose value lies between", "AK,M,a,L,3,A:,60 0,0,,24.5,0,1" + shown);
        row("six own keys of a main menu and five copies", [] {
            QByteArray text;
            for (char id = 'a'; id < 'g'; ++id) {
                text += QByteArray("AK,Demod 1,") + id + ",L,5,A:,,0,,0,0,1\n";
                text += id == 'f' ? QByteArray() : QByteArray("CM,Main,Demod 1,") + id + '\n';
            }
            for (char id = 'A'; id < 'F'; ++id) {
                text += QByteArray("AK,Main,") + id + ",L,5,A:,,0,,0,0,1\n";
            }
            return text + "AK,Main,F,Demod,5,SK:Demod 1:,,0,,0,0,1\n";
        }());
        row("a copy that is enabled again",
            "AK,Demod 1,a,L,5,A:,,0,,0,0,0\nCK,Demod 1,a,0\nCM,Main,Demod 1,a\nCK,Demod 1,a,0");
        row("a state shown by the copy's own CK",
            "AK,Demod 1,a,L,5,A:,,0,,0,0,0\nCM,Main,Demod 1,a\nCK,Main,a,0");
        row("keys are defined before and after CLEAR",
            "AK,M,a,L,5,A:,,0,,0,0,1\nSK,M\nCLEAR\nAK,M,a,L,5,A:,,0,,0,0,1\nSK,M");
        row("the label with the biggest letters",
            "AK,M,a," + QByteArray(27, 'W') + ",5,A:,,0,,0,0,1" + shown);
        row("PAX with four own keys", [] {
            QByteArray text = "AK,M,z,L,5,A:,,0,,0,0,1\nMS,PAX,M,z\n";
            for (char id = 'a'; id < 'f'; ++id) {
                text += QByteArray("AK,PAX,") + id + ",L,5,A:,,0,,0,0,1\n";
            }
            return text + "PAX,1";
        }());
        row("an editor that opens at once", "IK,Unlock,1,SYS:PIN:,0 9999,7,");
        row("a message box with a flag that is empty", "DB,Text,\nDB,KILLBOX\nDB,Text,0");
        row("an unknown word in JSON, silenced",
            R"({"version":1,"content":[{"message":"NEW","ignore":["QN101"]}]})");
        row("blank behind a range", "AK,M,a,L,1,A:,1 9 :20 30 ,0,,25,0,1\nSK,M");
        row("blank behind a slider's range", "AK,M,a,L,3,A:,60 0 ,0,1: 5,5,0,1\nSK,M");
        row("the whole file silenced", "AK,M,a,L,5,A,,0,,0,0,1\n# qn740: ignore-file QN602 QN204");
    }

    void good_menus_have_no_finding()
    {
        QFETCH(QByteArray, text);
        QCOMPARE(reportOf(MenuFile::parse(text, u"f"_s)), QString());
    }

    void faulty_menus_have_their_findings_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("codes");
        const auto row = [](const char* name, const QByteArray& text, const char* codes) {
            QTest::newRow(name) << text << QString::fromUtf8(codes);
        };
        const QByteArray shown = "\nSK,M\n";
        row("comma in an item", "AK,M,a,L,2,A:,,0,0 A,B:1 C,0,0,1" + shown, "QN108");
        row("comma in the text of a box", "DB,Fault, call service,1", "QN108");
        row("comma in a text of the status bar", "SB,0,Wait, please", "QN108");
        row("two commas in a label of IK", "IK,A, B, C,1,P:,0 9,0,", "QN108");
        row("slider in fractions", "AK,M,a,L,3,A:,6.5 0,0,,0,0,1" + shown, "QN305");
        row("slider that stands still", "AK,M,a,L,3,A:,5 5,0,,5,0,1" + shown, "QN305");
        row("range with two blanks", "AK,M,a,L,1,A:,1  9,0,,0,0,1" + shown, "QN305");
        row("one range of two is bad", "AK,M,a,L,1,A:,1 9:x,0,,0,0,1" + shown, "QN305");
        row("unit behind a range", "AK,M,a,L,1,A:,1 9 MHz,0,,5,0,1" + shown, "QN312");
        row("unit behind a slider's range", "AK,M,a,L,3,A:,60 0 dB,0,,5,0,1" + shown, "QN312");
        row("a second range without a colon", "AK,M,a,L,1,A:,1 9 20 30,0,,5,0,1" + shown, "QN312");
        row("step in fractions", "AK,M,a,L,3,A:,60 0,0,1.5:5,5,0,1" + shown, "QN310");
        row("value of CV", "AK,M,a,L,1,A:,1 9,0,,5,0,1\nCV,M,a,0,0" + shown, "QN308");
        row("value of IK", "IK,L,1,A:,1 9,0,,,12", "QN308");
        row("command of IK", "IK,L,5,A,,0,", "QN602");
        row("EI for a toggle", "AK,M,a,L,0,A:,,0,,0,0,1\nEI,M,a,0" + shown, "QN407");
        row("EI below zero", "AK,M,a,L,2,A:,,0,0 A,0,0,1\nEI,M,a,-1" + shown, "QN407");
        row("columns below zero", "AK,M,a,L,2,A:,,-1,0 A,0,0,1" + shown, "QN303");
        row("12 files of 4 rows",
            "AK,M,a,L,4,A:,,0," + QByteArray("1 FILE:").repeated(19) + ",0,0,1" + shown, "QN404");
        row(
            "sixth copy over an own key",
            [] {
                QByteArray text = "AK,Demod 1,a,L,5,A:,,0,,0,0,1\nCM,Main,Demod 1,a\n"
                                  "AK,Main,z,Own,5,A:,,0,,0,0,1\n";
                for (char id = 'a'; id < 'g'; ++id) {
                    text += QByteArray("AK,Tuner CH1,") + id + ",L,5,A:,,0,,0,0,1\n";
                    text += QByteArray("CM,Main,Tuner CH1,") + id + '\n';
                }
                return text;
            }(),
            "QN501");
        row(
            "eleventh copy of the PAX main menu over Span",
            [] {
                QByteArray text;
                for (char id = 'a'; id < 'l'; ++id) {
                    text += QByteArray("AK,M,") + id + ",L,5,A:,,0,,0,0,1\n";
                    text += QByteArray("MS,PAX,M,") + id + '\n';
                }
                return text + "PAX,1";
            }(),
            "QN501");
        row(
            "sixth own key of the PAX main menu",
            [] {
                QByteArray text = "AK,M,z,L,5,A:,,0,,0,0,1\nMS,PAX,M,z\n";
                for (char id = 'a'; id < 'g'; ++id) {
                    text += QByteArray("AK,PAX,") + id + ",L,5,A:,,0,,0,0,1\n";
                }
                return text + "PAX,1";
            }(),
            "QN503");
        row("a copy made after CK",
            "AK,Demod 1,a,L,5,A:,,0,,0,0,0\nCK,Demod 1,a,0\nCM,Main,Demod 1,a", "QN505");
        row("enabled again by AK alone",
            "AK,M,a,L,5,A:,,0,,0,0,0\nCK,M,a,0\nAK,M,a,L,5,A:,,0,,0,0,1" + shown, "QN505");
        row("a menu that CLEAR deletes", "AK,M,a,L,5,A:,,0,,0,0,1\nSK,M\nCLEAR\nSK,M", "QN201");
        row("a menu that only an unreachable one opens",
            "AK,M,a,L,5,SK:N:,,0,,0,0,1\nAK,N,a,L,5,SK:M:,,0,,0,0,1", "QN204 QN204");
        row("PAX without its menu", "AK,M,a,L,5,PAX:1:,,0,,0,0,1" + shown, "QN203");
        row("a long label on the PAX main menu is drawn, on the page it is not",
            "AK,M,a," + QByteArray(29, 'W') + ",5,A:,,0,,0,0,1\nMS,PAX,M,a\nSK,M\nPAX,1", "QN601");
        row("MS into the main menu",
            "AK,Demod 1,a,L,5,A:,,0,,0,0,1\nCM,Main,Demod 1,a\nMS,Main,Demod 1,b\nMS,Main,Demod 1,a",
            "QN202 QN504 QN504");
        row("span", "SP,3,0\nSP,0,-1\nSP,2,9", "QN702 QN702");
        row("colour and trace", "LC,7,4\nLC,7,-1\nLC,7,3\nLC,7,0", "QN704 QN704");
        row("phase", "PM,-0.2,1,1\nPM,-0.1,1,1\nPM,1.06,1,1\nPM,1.07,1,1", "QN711 QN711");
    }

    void faulty_menus_have_their_findings()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, codes);
        QCOMPARE(codesIn(text).join(u' '), codes);
    }

    void a_comment_silences_the_next_message_only()
    {
        const QByteArray key = "AK,M,a,L,5,A,,0,,0,0,1\n";
        const QByteArray other = "AK,M,b,L,5,A,,0,,0,0,1\nSK,M\n";
        QCOMPARE(
            codesIn("# qn740: ignore QN602\n\n# more\n" + key + other), QStringList{u"QN602"_s});
        QCOMPARE(findingsIn("# qn740: ignore QN602\n" + key + other).first().place.line, 3);
        QCOMPARE(codesIn("#qn740:ignore QN101, QN602 a reason, QN201\n" + key + other).size(), 1);
        QCOMPARE(codesIn("# qn740: ignore QN601\n" + key + other).size(), 2);
        QCOMPARE(codesIn("# qn740: ignore-file QN602\n" + key + other), QStringList());
        QCOMPARE(codesIn(key + other + "# qn740: ignore-file QN602"), QStringList());
    }

    void a_comment_that_is_not_understood_is_reported_data()
    {
        QTest::addColumn<QByteArray>("comment");
        for (const char* comment : {"# qn740:", "# qn740: ignore", "# qn740: ignroe QN602",
                 "# qn740: ignore 602", "# qn740: ignore qn602", "# qn740: ignore QN"}) {
            QTest::newRow(comment) << QByteArray(comment);
        }
    }

    void a_comment_that_is_not_understood_is_reported()
    {
        QFETCH(QByteArray, comment);
        QCOMPARE(codesIn(comment + "\nPING"), QStringList{u"QN110"_s});
    }

    void findings_are_sorted_by_line_and_code()
    {
        const QByteArray text = "SK,N\nAK,M,a,,5,A,,0,,0,0,0\nXX\nSM,9,1\n";
        QStringList lines;
        for (const lint::Finding& finding : findingsIn(text)) {
            lines += QString::number(finding.place.line) + finding.code;
        }
        QCOMPARE(lines,
            (QStringList{u"1QN201"_s, u"2QN204"_s, u"2QN505"_s, u"2QN602"_s, u"2QN604"_s,
                u"3QN101"_s, u"4QN701"_s}));
    }

    void the_text_counts_what_is_more_than_a_hundred_findings()
    {
        const MenuFile file = MenuFile::parse(QByteArray("SK,N\n").repeated(250), u"f"_s);
        const QStringList lines = reportOf(file).split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 101);
        QCOMPARE(lines.last(), u"f: 150 more"_s);
    }

    void the_json_report_has_every_finding_with_its_members()
    {
        const MenuFile file =
            MenuFile::parse("SK,a\"b\\\\\nSM,9,1\nAK,M,a,L,5,A,,0,,0,0,1\nSK,M", u"f"_s);
        const QByteArray text =
            lint::toJson({{file.name(), file.messageCount(), lint::check(file)}});
        QJsonParseError error;
        const QJsonObject report = QJsonDocument::fromJson(text, &error).object();
        QCOMPARE(error.error, QJsonParseError::NoError);
        QCOMPARE(report.value(u"version"_s).toInt(), 1);
        QCOMPARE(report.value(u"errors"_s).toInt(), 2);
        QCOMPARE(report.value(u"warnings"_s).toInt(), 1);
        QCOMPARE(report.value(u"notes"_s).toInt(), 0);
        const QJsonArray findings = report.value(u"findings"_s).toArray();
        QCOMPARE(findings.size(), 3);
        QCOMPARE(findings.first().toObject(),
            (QJsonObject{{u"file"_s, u"f"_s}, {u"line"_s, 1}, {u"severity"_s, u"error"_s},
                {u"code"_s, u"QN201"_s}, {u"text"_s, u"there is no menu \"a\"b\\\\\""_s},
                {u"hint"_s, u""_s}, {u"pointer"_s, u""_s}}));
        QCOMPARE(
            report.value(u"files"_s).toArray().first().toObject().value(u"messages"_s).toInt(), 4);
    }

    // Any bytes and any length

    void any_bytes_give_findings_and_no_crash()
    {
        QRandomGenerator random(7);
        const QByteArray parts("AKSKCMMSPAX,,,,,:::0123456789-. abc\n\n#\\x{}[]\"\xff\xc3\x02");
        const QByteArray good = contents(Root + u"sim/menus/qn740.menu"_s).left(20000);
        for (int round = 0; round < 300; ++round) {
            QByteArray text = round % 2 == 0 ? good.mid(random.bounded(15000), 1500) : QByteArray();
            for (int i = 0; i < 400; ++i) {
                const char byte = parts.at(random.bounded(int(parts.size())));
                text.insert(random.bounded(int(text.size()) + 1), byte);
            }
            const MenuFile file = MenuFile::parse(text, u"f"_s);
            const auto findings = lint::check(file);
            QVERIFY(findings.size() >= file.errors().size() || file.errors().size() > 100);
        }
    }

    void the_effort_grows_with_the_length_data()
    {
        QTest::addColumn<QByteArray>("line"); // "#" is the number of the line
        QTest::newRow("keys of one menu") << QByteArray("AK,M,#,L,5,A:,,0,,0,0,1\n");
        QTest::newRow("menus") << QByteArray("AK,#,a,L,5,SK:M:,,0,,0,0,1\n");
        QTest::newRow("copies") << QByteArray("CM,Main,Tuner CH1,a\nCK,Tuner CH1,a,0\n");
        QTest::newRow("faults") << QByteArray("AK,M,a,x,y,z,1,2,3,4,5,6,7,8,9,10\n");
        QTest::newRow("PAX") << QByteArray("MS,PAX,Tuner CH1,a\nPAX,1\n");
    }

    void the_effort_grows_with_the_length()
    {
        QFETCH(QByteArray, line);
        const auto timeFor = [&line](int lines) {
            QByteArray text = "AK,Tuner CH1,a,L,5,A:,,0,,0,0,1\n";
            for (int i = 0; i < lines; ++i) {
                text += QByteArray(line).replace('#', QByteArray::number(i));
            }
            qint64 best = std::numeric_limits<qint64>::max(); // of three, as others use the machine
            for (int run = 0; run < 3; ++run) {
                QElapsedTimer timer;
                timer.start();
                const auto findings = lint::check(MenuFile::parse(text, u"f"_s));
                Q_UNUSED(findings)
                best = qMin(best, qMax(qint64{1}, timer.elapsed()));
            }
            return best;
        };
        const qint64 few = timeFor(2500);
        const qint64 many = timeFor(10000);
        // four times the lines; a quadratic effort would be sixteen times
        QVERIFY2(many <= 9 * few + 30, qPrintable(u"%1 ms and %2 ms"_s.arg(few).arg(many)));
    }

    // The tables against the panel itself

    void letters_are_as_wide_as_the_panel_draws_them()
    {
        Panel panel;
        panel.send(u"AK,M,a,L,5,A:,,0,,0,0,1"_s);
        panel.send(u"MS,PAX,M,a"_s);
        for (const QString& name : {u"M"_s, u"PAX"_s}) {
            QFont font = panel.menu(name)->buttons.first()->font();
            font.setPixelSize(TextButton::Limits.minPixels);
            const QFontMetricsF metrics(font);
            QCOMPARE(QFontInfo(font).family(), u"DejaVu Sans"_s);
            QCOMPARE(QFontMetrics(font).lineSpacing(), labelRoom::LineHeight);
            for (int code = 0; code < 256; ++code) {
                const QChar letter(static_cast<ushort>(code));
                if (code >= 0x20 && code != 0xad && (code < 0x7f || code >= 0xa0)) {
                    QVERIFY2(qAbs(labelRoom::letterWidth(letter) / 64.0 -
                                 metrics.horizontalAdvance(letter)) < 0.02,
                        qPrintable(QString::number(code)));
                }
            }
        }
    }

    void keys_are_as_large_as_on_the_panel()
    {
        Panel panel;
        for (int i = 0; i < 40; ++i) {
            panel.send(u"AK,M,k%1,L,5,A:,,0,,0,0,1"_s.arg(i));
            if (i < 9) {
                panel.send(u"MS,PAX,M,k%1"_s.arg(i));
            }
        }
        const QStringList sources{u"Tuner CH1"_s, u"Tuner CH2"_s, u"Demod 1"_s, u"Demod 2"_s,
            u"Demod 3"_s, u"Combiner"_s};
        for (const QString& source : sources) {
            for (int i = 0; i < 5; ++i) {
                panel.send(u"AK,%1,k%2,L,5,A:,,0,,0,0,1"_s.arg(source).arg(i));
                panel.send(u"CM,Main,%1,k%2"_s.arg(source).arg(i));
            }
        }
        panel.send(u"SK,M"_s);
        compareSizes(
            panel, u"M"_s, [](int) { return KeyGroup::Page; }, 0);
        panel.send(u"SK,Main"_s);
        for (int options = 1; options <= 6; ++options) {
            panel.send(u"AK,Main,o%1,L,5,A:,,0,,0,0,1"_s.arg(options));
            compareSizes(
                panel, u"Main"_s,
                [](int at) { return at < 30 ? KeyGroup::Channel1 : KeyGroup::Options; }, options);
        }
        panel.send(u"PAX,1"_s);
        for (int options = 1; options <= 5; ++options) {
            panel.send(u"AK,PAX,o%1,L,5,A:,,0,,0,0,1"_s.arg(options));
            compareSizes(
                panel, u"PAX"_s,
                [](int at) { return at < 9 ? KeyGroup::Channel1 : KeyGroup::Options; }, options);
        }
    }

    void labels_are_called_too_long_when_the_panel_shortens_them()
    {
        Panel panel;
        panel.send(u"AK,M,a,L,5,A:,,0,,0,0,1"_s);
        QFont font = panel.menu(u"M"_s)->buttons.first()->font();
        QRandomGenerator random(3);
        const QString letters = u"abcdefghij klmnop qrstuvw xyzABCDEFGHIJKLMNOPWM0123456789-/."_s;
        int same = 0;
        int tooLong = 0;
        constexpr int Rounds = 400;
        for (int round = 0; round < Rounds; ++round) {
            QString label;
            const int length = random.bounded(20, 90);
            for (int i = 0; i < length; ++i) {
                label += letters.at(random.bounded(int(letters.size())));
            }
            label = label.simplified();
            const QSize room(117, 53); // of a key of a plain page
            const bool cut =
                TextFit::fit(label, font, room, TextButton::Limits).text.endsWith(QChar(0x2026));
            tooLong += cut ? 1 : 0;
            same += cut == !labelRoom::fits(label, {123, 59}, false) ? 1 : 0;
        }
        QVERIFY(tooLong > Rounds / 10 && tooLong < Rounds * 9 / 10);
        // Kerning and the blanks at line ends make a few labels on the border differ.
        QVERIFY2(same >= Rounds * 95 / 100, qPrintable(u"%1 of %2"_s.arg(same).arg(Rounds)));
    }

    void lists_have_the_cells_of_the_panels_lists_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("columns");
        for (int columns = 0; columns <= 16; ++columns) {
            QTest::addRow("selection of %d columns", columns)
                << int(menuFields::SelectionKey) << columns;
        }
        QTest::newRow("files") << int(menuFields::FileKey) << 0;
    }

    void lists_have_the_cells_of_the_panels_lists()
    {
        QFETCH(int, type);
        QFETCH(int, columns);
        const bool isFile = type == menuFields::FileKey;
        // the margins that the two lists give to their windows
        PopUpDialog dialog({}, {}, {}, isFile ? 3 : 6);
        if (isFile) {
            dialog.column()->setSpacing(3);
        }
        const int room = dialog.maxContentHeight();
        for (int count = 1; count <= 200; ++count) {
            const QString options = QStringList(count, u"1 A"_s).join(u':');
            const lint::ListCells cells =
                lint::listCells({u"M"_s, u"a"_s, u"L"_s, QString::number(type), u"A:"_s, {},
                    QString::number(columns), options, u"0"_s, u"0"_s, u"1"_s});
            const ListGrid wanted =
                isFile ? ListGrid::forFiles(options) : ListGrid::forChoices(options, columns);
            const choices::Grid grid(wanted.rows, wanted.columns, isFile ? 2 : 1);
            const int fixed = isFile ? 2 : 1;
            QCOMPARE(cells.rows, grid.rows());
            QCOMPARE(cells.columns, grid.columns());
            QCOMPARE(cells.doesScroll, grid.shownRows(count, room) < grid.rowsFor(count));
            int covered = -1;
            for (int at = count - 1; at >= 0 && !cells.doesScroll; --at) {
                const choices::Cell cell = grid.cell(at);
                const bool isCovered =
                    cell == grid.cancelCell() || (isFile && cell == grid.newFileCell());
                covered = isCovered ? at : covered;
            }
            QCOMPARE(cells.firstCovered(count), covered);
            QCOMPARE(cells.fixed, fixed);
        }
    }

private:
    // Compares the keys of a menu on the screen with the table: the smallest of each group has the
    // size of the table, or is a few pixels larger where the table has one size for several.
    template <class Group>
    void compareSizes(Panel& panel, const QString& name, Group groupAt, int options)
    {
        KeyBoard* menu = panel.menu(name);
        QVERIFY(menu != nullptr && menu->frame->isVisible());
        QCoreApplication::sendPostedEvents();
        QHash<int, QSize> smallest;
        for (int at = 0; at < menu->buttons.size(); ++at) {
            const QPushButton* button = menu->buttons.at(at);
            if (button->isVisible()) {
                QSize& size = smallest[int(groupAt(at))];
                size = size.isValid() ? size.boundedTo(button->size()) : button->size();
            }
        }
        for (auto it = smallest.cbegin(); it != smallest.cend(); ++it) {
            const QSize known = labelRoom::keySize(kindOf(*menu), KeyGroup(it.key()), options);
            const QSize more = it.value() - known;
            const QString report = u"%1, group %2, %3 options: %4 x %5 on the panel"_s.arg(name)
                                       .arg(it.key())
                                       .arg(options)
                                       .arg(it.value().width())
                                       .arg(it.value().height());
            QVERIFY2(more.width() >= 0 && more.height() >= 0, qPrintable(report));
            if (name != u"PAX"_s) {
                QVERIFY2(more.width() <= 12 && more.height() <= 4, qPrintable(report));
            }
        }
    }
};

QN740_TEST_MAIN(tst_Linter)
#include "tst_Linter.moc"
