// Menu files in JSON and as a graph: each message comes back as it was, the schema takes what is
// written, faults name their place. And the colours for editors know every word.
#include "sim/lint/Linter.h"
#include "sim/menus/JsonText.h"
#include "sim/menus/MenuFields.h"
#include "sim/menus/MenuGraph.h"
#include "sim/menus/MenuJson.h"
#include "sim/unit/MenuFile.h"
#include "support/TestMain.h"
#include "wire/Commands.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <ctime>

using namespace Qt::StringLiterals;

namespace {

const QString Root = QStringLiteral(QT_TESTCASE_SOURCEDIR "/../");

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Returns the text of each block of a document whose fence begins so.
QList<QByteArray> blocks(const QString& document, const QString& fence)
{
    const QRegularExpression form(
        u"\n```"_s + fence + u"\n(.*?\n)```"_s, QRegularExpression::DotMatchesEverythingOption);
    QList<QByteArray> all;
    auto matches = form.globalMatch(QString::fromUtf8(contents(Root + document)));
    while (matches.hasNext()) {
        all += matches.next().captured(1).toUtf8();
    }
    return all;
}

QStringList bodiesOf(const MenuContent& content)
{
    QStringList bodies;
    for (const MenuStep& step : content.steps) {
        bodies += step.kind == MenuStep::Kind::Wait ? u"wait %1"_s.arg(step.waitMs) : step.body;
    }
    return bodies;
}

// The files whose messages have to come back.
QList<QPair<QString, MenuFile>> files()
{
    QList<QPair<QString, MenuFile>> all{{u"built-in"_s, MenuFile::builtIn()}};
    const auto add = [&all](const QString& name, const QByteArray& text) {
        const MenuFile file = MenuFile::parse(text, name);
        if (!file.steps().isEmpty()) {
            all.append({u"%1 %2"_s.arg(name).arg(all.size()), file});
        }
    };
    for (const QByteArray& text : blocks(u"docs/protocol.md"_s, u"menu"_s)) {
        add(u"protocol"_s, text);
    }
    for (const QByteArray& text : blocks(u"docs/lint.md"_s, u"menu (?:bad|good)"_s)) {
        add(u"check"_s, text);
    }
    for (const QByteArray& text : blocks(u"docs/menu-files.md"_s, u"json"_s)) {
        add(u"JSON"_s, text);
    }
    return all;
}

QString textOf(const QList<lint::Finding>& findings)
{
    QStringList codes;
    for (const lint::Finding& finding : findings) {
        codes += finding.code + u' ' + finding.text;
    }
    codes.sort(); // the lines of the two forms differ
    return codes.join(u'\n');
}

QByteArray withContent(const QByteArray& content)
{
    return "{\"version\": 1, \"content\": [" + content + "]}";
}

} // namespace

class tst_MenuJson : public QObject
{
    Q_OBJECT

private slots:
    // There and back

    void every_example_comes_back_as_it_was()
    {
        const auto all = files();
        QVERIFY(all.size() > 100);
        for (const auto& [name, file] : all) {
            const QByteArray json = menuJson::write(file.content());
            const MenuFile back = MenuFile::parse(json, u"back.json"_s);
            QVERIFY2(back.errors().isEmpty(), qPrintable(name + back.errors().join(u'\n')));
            QCOMPARE(bodiesOf(back.content()), bodiesOf(file.content()));
            QCOMPARE(menuJson::write(back.content()), json);
        }
    }

    void the_check_finds_the_same_in_both_forms()
    {
        const auto all = files();
        for (const auto& [name, file] : all) {
            const MenuFile back = MenuFile::parse(menuJson::write(file.content()), u"back.json"_s);
            if (file.errors().isEmpty()) {
                QCOMPARE(textOf(lint::check(back)), textOf(lint::check(file)));
            }
        }
    }

    void the_example_of_the_document_gives_its_messages()
    {
        const QByteArray text = blocks(u"docs/menu-files.md"_s, u"json"_s).value(0);
        const MenuFile file = MenuFile::parse(text, u"example"_s);
        QCOMPARE(file.errors(), QStringList());
        QCOMPARE(bodiesOf(file.content()),
            (QStringList{
                u"AK,Tuner CH1,freq,RF Frequency,1,R1:FREQ:,2200 2400:1435.5 1534.5,1,,2250.5,0,1"_s,
                u"AK,Tuner CH1,bw,IF BW,2,R1:IFBW:,,0,0 1 MHz:1 2 MHz,0,0,1"_s,
                u"AK,Tuner CH1,gain,Gain dB,3,R1:GAIN:,60 0,0,1:5,24,0,1"_s,
                u"AK,Tuner CH1,agc,AGC,0,R1:AGC:,,0,,0,1,1"_s, u"CK,Tuner CH1,agc,0"_s,
                u"wait 500"_s, u"SK,Tuner CH1"_s}));
    }

    void every_text_of_a_field_comes_back_data()
    {
        QTest::addColumn<QString>("body");
        const QStringList bodies{u"AK,M,a,L,1,C:,1 2,1,,2250.50,0,1"_s,
            u"AK,M,a,L,01,C:,1 2,+1,,1e3,0,1,"_s, u"AK,M,a,L, 1,C:,1.0 02,-0,,0.0,1,2,0"_s,
            u"AK,M,a,\"L\\\xe9\n\t\x01/,2,C:,,0,0 A:1 B:,-.5,0,0,1"_s,
            u"AK,M,a,L,2,C:,,0,A:1 B,0,0,1"_s, u"AK,M,a,L,2,C:,,0, A:007 B C: ,0,0,1,1,more,,x"_s,
            u"AK,M,a,L,3,C:,60 0 1,0,1:05,0,0,1"_s, u"AK,M,a,L,3,C:,1e1 -5,0,1,0,0,1"_s,
            u"AK,M,a,L,1,C:,1 2:,0,,0,0,1"_s, u"AK,M,a,L,1,C:,1 2:3,0,,0,0,1"_s,
            u"AK,M,a,L,9,C:,1 2,0,1 A,0,0,1"_s, u"AK,M,true,null,4,{},[],0,1 A,0,0,1"_s,
            u"CK,M,a,2"_s, u"CK,M,1,1"_s, u"CV,M,a,-0,1"_s, u"SB,0,"_s, u"SB,-5,x,y"_s, u"DB,T"_s,
            u"DB,T,1,2,3"_s, u"DB,"_s, u"Slave"_s, u"Slave,2"_s, u"PING"_s, u"PING,x"_s, u"VER"_s,
            u"HM,0"_s, u"HM,0,-20,-40.50"_s, u"EI,M,a,"_s, u"EI,M,a,0:2"_s, u"EI,M,a,::1"_s,
            u"IK,L,0,C,,0,"_s, u"IK,L,1,C,0 9,0,,text,1.50"_s, u"LC,5"_s, u"LC,5,3"_s, u"ST,1"_s,
            u"ST,x"_s, u"PAX,1"_s, u"PM,0.50,1,2"_s, u"CLEAR"_s, u"SM,1,2"_s, u"SF,0,2250.50"_s,
            u"SQ,1,-1"_s, u"SH,0,1"_s, u"SP,0,3"_s, u"CM,Main,M,a"_s, u"MS,PAX,M,a"_s, u"SK,M"_s};
        for (const QString& body : bodies) {
            QTest::newRow(qPrintable(body)) << body;
        }
    }

    void every_text_of_a_field_comes_back()
    {
        QFETCH(QString, body);
        MenuContent content;
        content.steps.append({MenuStep::Kind::Message, body, 0});
        const MenuContent back = menuJson::read(menuJson::write(content));
        QCOMPARE(back.faults.size(), 0);
        QCOMPARE(bodiesOf(back), QStringList{body});
    }

    void any_message_comes_back()
    {
        QRandomGenerator random(11);
        const QStringList texts{u"a"_s, u"0"_s, u"1"_s, u"-2.50"_s, u"1 2"_s, u"1 2:3 4"_s,
            u"x y"_s, u""_s, u" "_s, u"007"_s, u"1e400"_s, u"true"_s, u"\"\\\xff\x1f"_s, u"1:5"_s};
        int valid = 0;
        for (int round = 0; round < 4000; ++round) {
            const auto& words = wire::toPanel();
            QStringList fields{words.at(random.bounded(int(words.size()))).word};
            const int count = random.bounded(14);
            for (int i = 0; i < count; ++i) {
                fields += texts.at(random.bounded(int(texts.size())));
            }
            const auto line = MenuFile::parse(fields.join(u',').toLatin1(), u"f"_s);
            const MenuContent back = menuJson::read(menuJson::write(line.content()));
            QCOMPARE(bodiesOf(back), bodiesOf(line.content()));
            valid += int(line.steps().size());
        }
        QVERIFY(valid > 300);
    }

    void silences_come_back()
    {
        const MenuFile file =
            MenuFile::parse("# qn740: ignore-file QN204\n# qn740: ignore QN602 QN604\n"
                            "AK,M,a,,0,C,,0,,0,0,1\n# qn740: ignore QN202\nCK,M,b,1\n",
                u"f"_s);
        QCOMPARE(textOf(lint::check(file)), QString());
        const MenuFile back = MenuFile::parse(menuJson::write(file.content()), u"f"_s);
        QCOMPARE(textOf(lint::check(back)), QString());
        QCOMPARE(menuJson::write(back.content()), menuJson::write(file.content()));
    }

    void the_names_of_the_fields_are_those_of_the_table()
    {
        for (const wire::Command& command : wire::toPanel()) {
            const QStringList names = menuFields::names(command.word);
            QCOMPARE(names.size(), command.fields.size());
            QCOMPARE(QSet<QString>(names.begin(), names.end()).size(), names.size());
        }
    }

    // Faults

    void faults_name_their_place_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("fault");
        const auto row = [](const QByteArray& text, const QString& fault) {
            QTest::newRow(text.left(70)) << text << fault;
        };
        row("{", u"f:1: a member's name in quotes is missing"_s);
        row("{\"version\": 1,\n\"content\": [\n", u"f:3: no JSON value begins here"_s);
        row("{\"version\": 1, \"content\": []", u"f:1: a \",\" or \"}\" is missing"_s);
        row("{\"version\": 1, \"content\": [1 2]}", u"f:1: a \",\" or \"]\" is missing"_s);
        row("{} x", u"f:1: something follows the end of the JSON text"_s);
        row("{\"a\": \"x\ny\"}", u"f:1: a control character in a string; is a quote missing?"_s);
        row("{\"a\": \"\\x\"}", u"f:1: no such escape in a string"_s);
        row("{\"a\": \"\\u12", u"f:1: no such escape in a string"_s);
        row("{\"a\": \"", u"f:1: a string without its closing quote"_s);
        row("{\"a\" 1}", u"f:1: a \":\" is missing"_s);
        row("{\"a\": 01}", u"f:1: no JSON value begins here"_s);
        row("{\n\"a\": \"\xff\"}", u"f:2: not UTF-8 text"_s);
        row("{\"version\": 1,\n\"version\": 1}", u"f:2: the member \"version\" occurs twice"_s);
        row("{" + QByteArray("\"a\":[").repeated(1) + QByteArray(100, '['),
            u"f:1: nested more than 32 deep"_s);
        row("{\"version\": 2, \"content\": []}", u"f:1: \"version\" must be 1"_s);
        row("{\"version\": 1}", u"f:1: \"content\" must be an array"_s);
        row("{\"version\": 1, \"content\": [],\n\"menus\": []}",
            u"f:2: /menus: unknown member \"menus\""_s);
        row(withContent("1"),
            u"f:1: /content/0: an object with \"keys\", \"message\" or \"wait\" is expected here"_s);
        row(withContent("{\"wait\": -1}"),
            u"f:1: /content/0: wait needs a time in milliseconds from 0 to 600000"_s);
        row(withContent("{\"wait\": 1.5}"),
            u"f:1: /content/0: wait needs a time in milliseconds from 0 to 600000"_s);
        row(withContent("\n{\"keys\": []}"), u"f:2: /content/0: \"menu\" is missing"_s);
        row(withContent("\n{\"menu\": \"M\", \"keys\": [\n{\"id\": \"a\"}]}"),
            u"f:3: /content/0/keys/0: \"type\" is missing"_s);
        row(withContent("\n{\"menu\": \"M\", \"keys\": [\n{\"id\": \"a\", \"type\": \"knob\"}]}"),
            u"f:3: /content/0/keys/0: AK: the key type must be a whole number, not \"knob\""_s);
        row(withContent("{\"menu\": \"M\", \"keys\": [{\"id\": \"a\", \"type\": 0, \"x~/\": 1}]}"),
            u"f:1: /content/0/keys/0/x~0~1: unknown member \"x~/\""_s);
        row(withContent(
                "{\"menu\": \"M\", \"keys\": [{\"id\": \"a\", \"type\": 1, \"ranges\": [[1, 2], 3]}]}"),
            u"f:1: /content/0/keys/0/ranges/1: an array is expected here"_s);
        row(withContent(
                "{\"menu\": \"M\", \"keys\": [{\"id\": \"a\", \"type\": 2, \"choices\": [{\"value\": 1, \"text\": \"A:B\"}]}]}"),
            u"f:1: /content/0/keys/0/choices/0: a choice holds no \":\", and its value no blank"_s);
        row(withContent("{\"message\": \"SB\", \"time\": 0, \"text\": \"a, b\"}"),
            u"f:1: /content/0/text: a comma cannot stand in a field: \"a, b\""_s);
        row(withContent("{\"message\": \"SB\", \"time\": 0, \"text\": \"\\u2026\"}"),
            u"f:1: /content/0: the character U+2026 is not in Latin-1 and cannot be sent"_s);
        row(withContent("{\"message\": \"SB\", \"text\": \"a\"}"),
            u"f:1: /content/0: \"time\" is missing"_s);
        row(withContent("{\"message\": \"SM\", \"demodulator\": 1}"),
            u"f:1: /content/0: SM needs 2 fields, this has 1"_s);
        row(withContent("{\"message\": \"XY\"}"),
            u"f:1: /content/0: unknown command word \"XY\""_s);
        row(withContent("{\"message\": \"SK\", \"menu\": null}"),
            u"f:1: /content/0/menu: a text or a number is expected here"_s);
    }

    void faults_name_their_place()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, fault);
        QVERIFY(!MenuFile::parse(text, u"f"_s).errors().isEmpty());
        QCOMPARE(MenuFile::parse(text, u"f"_s).errors().first(), fault);
    }

    void a_json_file_is_known_by_its_text_or_its_name()
    {
        QVERIFY(!MenuFile::parse("PING", u"a.menu"_s).steps().isEmpty());
        QVERIFY(MenuFile::parse("PING", u"a.JSON"_s).steps().isEmpty());
        const QByteArray text = withContent("{\"message\": \"PING\"}");
        for (const char* start : {"", " \r\n\t", "\xef\xbb\xbf"}) {
            QCOMPARE(MenuFile::parse(start + text, u"a.menu"_s).steps().size(), 1);
        }
    }

    void any_bytes_give_faults_and_no_crash()
    {
        QRandomGenerator random(5);
        const QByteArray good = menuJson::write(MenuFile::builtIn().content()).left(6000);
        const QByteArray parts("{}[]\":,\\u0n truefalsenull-1.e+\xff\xc3\n\x01");
        for (int round = 0; round < 300; ++round) {
            QByteArray text = round % 3 == 0 ? QByteArray("{") : good;
            for (int i = 0; i < 20; ++i) {
                const qsizetype at = random.bounded(int(text.size()));
                text[at] = parts.at(random.bounded(int(parts.size())));
                text.insert(at, parts.at(random.bounded(int(parts.size()))));
            }
            const MenuFile file = MenuFile::parse(text, u"f.json"_s);
            const auto findings = lint::check(file);
            QVERIFY(!file.errors().isEmpty() || !findings.isEmpty() || !file.steps().isEmpty());
        }
    }

    void the_effort_grows_with_the_length()
    {
        const auto timeFor = [](int keys) {
            QByteArray text;
            for (int i = 0; i < keys; ++i) {
                text += (i > 0 ? ",\n" : "") + QByteArray("{\"message\": \"SK\", \"menu\": \"M") +
                    QByteArray::number(i) + "\", \"ignore\": [\"QN201\"]}";
            }
            const auto start = std::clock(); // of this process alone, however loaded the machine is
            const MenuFile file = MenuFile::parse(withContent(text), u"f"_s);
            const auto findings = lint::check(file);
            const QByteArray written = menuJson::write(file.content());
            const auto ms = qint64{std::clock() - start} * 1000 / CLOCKS_PER_SEC;
            return findings.isEmpty() && !written.isEmpty() ? qMax(qint64{1}, ms) : -1;
        };
        const qint64 few = timeFor(2000);
        const qint64 many = timeFor(8000);
        QVERIFY(few > 0);
        QVERIFY2(
            many > 0 && many <= 9 * few + 30, qPrintable(u"%1 ms and %2 ms"_s.arg(few).arg(many)));
    }

    // The schema

    void the_schema_takes_what_is_written_and_refuses_what_is_not()
    {
        QTemporaryDir directory;
        const auto save = [&directory](const QString& name, const QByteArray& text) {
            QFile file(directory.filePath(name));
            file.open(QIODevice::WriteOnly);
            file.write(text);
        };
        const auto all = files();
        for (qsizetype i = 0; i < all.size(); ++i) {
            save(u"good%1.json"_s.arg(i), menuJson::write(all.at(i).second.content()));
        }
        save(u"good.json"_s, blocks(u"docs/menu-files.md"_s, u"json"_s).value(0));
        const QList<QByteArray> wrong{"{}", "{\"version\": 2, \"content\": []}",
            withContent("{\"wait\": -1}"),
            withContent("{\"menu\": \"M\", \"keys\": [{\"id\": \"a\"}]}"),
            withContent("{\"menu\": \"M\", \"keys\": [{\"id\": \"a\", \"type\": \"knob\"}]}"),
            withContent("{\"message\": \"XY\"}"), withContent("{\"message\": \"SK\"}"),
            withContent("{\"message\": \"SB\", \"time\": 0, \"text\": \"a, b\"}"),
            withContent("{\"message\": \"SM\", \"demodulator\": 1, \"mode\": 1, \"x\": 1}")};
        for (qsizetype i = 0; i < wrong.size(); ++i) {
            save(u"bad%1.json"_s.arg(i), wrong.at(i));
            QVERIFY(!MenuFile::parse(wrong.at(i), u"f"_s).errors().isEmpty());
        }
        QProcess validator;
        validator.start(u"/usr/bin/python3"_s,
            {Root + u"tests/sim/validate.py"_s, Root + u"docs/menu.schema.json"_s,
                directory.path()});
        QVERIFY(validator.waitForFinished());
        QCOMPARE(validator.readAllStandardError(), QByteArray());
        QCOMPARE(validator.readAllStandardOutput(),
            QByteArray("%1 good, %2 bad\n")
                .replace("%1", QByteArray::number(all.size() + 1))
                .replace("%2", QByteArray::number(wrong.size())));
    }

    // The graph

    void the_graph_has_the_menus_and_what_opens_them()
    {
        const MenuFile file = MenuFile::parse("AK,Gone,a,L,5,SK:M:,,0,,0,0,1\nCLEAR\n"
                                              "AK,M,a,To \"N\",5,SK:N\\\\&:,,0,,0,0,1\n"
                                              "AK,M,b,Lost,5,SK:None:,,0,,0,0,1\n"
                                              "AK,M,c,PAX,5,PAX:1:,,0,,0,0,1\n"
                                              "AK,N\\\\&,a,Back,5,SK:M:,,0,,0,0,1\n"
                                              "AK,Alone,a,L,0,A:,,0,,0,0,1\nMS,PAX,M,a\nSK,M\n",
            u"f"_s);
        QCOMPARE(menuGraph(file.content()),
            QByteArray(
                "digraph menus {\n"
                "  node [fontname=\"DejaVu Sans\"];\n"
                "  \"menu M\" [label=\"M\\n3 keys\", shape=box];\n"
                "  \"menu N\\\\&#38;\" [label=\"N\\\\&#38;\\n1 key\", shape=box];\n"
                "  \"menu Alone\" [label=\"Alone\\n1 key\", shape=box, style=dashed, color=red];\n"
                "  \"menu PAX\" [label=\"PAX\\n1 key\", shape=component];\n"
                "  \"menu M\" -> \"menu N\\\\&#38;\" [label=\"To \\\"N\\\"\"];\n"
                "  \"menu None\" [label=\"None?\", shape=box, style=dotted, color=red];\n"
                "  \"menu M\" -> \"menu None\" [label=\"Lost\"];\n"
                "  \"menu M\" -> \"menu PAX\" [label=\"PAX\"];\n"
                "  \"menu N\\\\&#38;\" -> \"menu M\" [label=\"Back\"];\n"
                "  \"menu PAX\" -> \"menu N\\\\&#38;\" [label=\"To \\\"N\\\"\"];\n"
                "}\n"));
    }

    void the_graph_of_any_menus_is_in_the_language()
    {
        // of the language of Graphviz what the graph uses: quoted names, attributes, arrows
        const QString name = u"\"(?:[^\"\\\\\\x00-\\x1f]|\\\\.)*\""_s;
        const QString value = u"(?:"_s + name + u"|[a-z]+)"_s;
        const QString attributes = u"\\[\\w+="_s + value + u"(?:, \\w+="_s + value + u")*\\]"_s;
        const QRegularExpression form(QRegularExpression::anchoredPattern(
            u"digraph menus \\{\n(?:  (?:node|%1|%1 -> %1) %2;\n)*\\}\n"_s.arg(name, attributes)));
        const auto all = files();
        for (const auto& [title, file] : all) {
            const QString graph = QString::fromLatin1(menuGraph(file.content()));
            QVERIFY2(form.match(graph).hasMatch(), qPrintable(title + graph));
        }
        for (const char* odd : {"\\\\", "\"", "a\\x0ab", "\\xe9&<>{}|", "\\\\\"", "--[]"}) {
            const QByteArray text = QByteArray("AK,%,a,%,5,SK:%:,,0,,0,0,1").replace("%", odd);
            const MenuFile file = MenuFile::parse(text, u"f"_s);
            QCOMPARE(file.errors(), QStringList());
            const QString graph = QString::fromLatin1(menuGraph(file.content()));
            QVERIFY2(form.match(graph).hasMatch(), qPrintable(graph));
        }
    }

    // The colours for editors

    void the_colours_for_vim_know_every_word()
    {
        const QString text =
            QString::fromUtf8(contents(Root + u"tools/editors/vim/syntax/qn740menu.vim"_s));
        static const QRegularExpression form(u"qn740Word \"\\^\\\\s\\*\\\\%\\(([^)]*)\\\\\\)"_s);
        QStringList words = form.match(text).captured(1).split(u"\\|"_s);
        compareWords(words);
    }

    void the_textmate_grammar_is_good_and_knows_every_word()
    {
        QJsonParseError error;
        const QJsonObject grammar = QJsonDocument::fromJson(
            contents(Root + u"tools/editors/textmate/qn740menu.tmLanguage.json"_s), &error)
                                        .object();
        QCOMPARE(error.error, QJsonParseError::NoError);
        QCOMPARE(grammar.value(u"scopeName"_s).toString(), u"source.qn740menu"_s);
        const QJsonObject rules = grammar.value(u"repository"_s).toObject();
        QStringList expressions;
        collect(grammar, rules, expressions);
        QVERIFY(expressions.size() > 8);
        for (const QString& expression : std::as_const(expressions)) {
            QVERIFY2(QRegularExpression(expression).isValid(), qPrintable(expression));
        }
        QStringList words;
        for (const char* rule : {"key", "named", "message"}) {
            const QString begin =
                rules.value(QLatin1String(rule)).toObject().value(u"begin"_s).toString();
            words += begin.section(u'(', 1).section(u')', 0, 0).split(u'|');
        }
        compareWords(words);
        const QRegularExpression wrong(
            rules.value(u"noMessage"_s).toObject().value(u"match"_s).toString());
        QVERIFY(wrong.match(u"XX,1"_s).hasMatch() && !wrong.match(u"# comment"_s).hasMatch());
    }

private:
    static void compareWords(QStringList words)
    {
        QStringList known;
        for (const wire::Command& command : wire::toPanel()) {
            known += command.word;
        }
        known.sort();
        words.sort();
        QCOMPARE(words, known);
    }

    // Collects the regular expressions; what a rule includes must exist.
    static void collect(const QJsonValue& value, const QJsonObject& rules, QStringList& expressions)
    {
        for (const QJsonValue& item : value.toArray()) {
            collect(item, rules, expressions);
        }
        const QJsonObject object = value.toObject();
        for (auto it = object.begin(); it != object.end(); ++it) {
            if (it.key() == u"match"_s || it.key() == u"begin"_s || it.key() == u"end"_s) {
                expressions += it.value().toString();
            } else if (it.key() == u"include"_s) {
                QVERIFY(rules.contains(it.value().toString().mid(1)));
            } else {
                collect(it.value(), rules, expressions);
            }
        }
    }
};

QN740_TEST_MAIN(tst_MenuJson)
#include "tst_MenuJson.moc"
