// These tests run the program that runs scenarios, and check how it reads them, what it prints when
// one fails, and how it ends. The scenarios of the operator's workflows are a test of their own.
#include "support/Program.h"
#include "support/TestMain.h"
#include "tools/try/Pattern.h"
#include "tools/try/Pictures.h"
#include "tools/try/Scenario.h"

#include <QDir>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace {

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString document()
{
    return QString::fromUtf8(contents(QString::fromUtf8(QN740_ROOT "/docs/try.md")));
}

// Returns the text of the document's block of a kind: "```scenario".
QString block(const QString& kind)
{
    return document().section(u"```"_s + kind + u'\n', 1, 1).section(u"```"_s, 0, 0);
}

// Times differ from run to run.
QString withoutTimes(const QString& text)
{
    QString plain = text;
    return plain.replace(QRegularExpression(u"\\d+\\.\\d+ s"_s), u"T s"_s);
}

} // namespace

class tst_Try : public QObject
{
    Q_OBJECT

    // Writes a scenario into the folder of the test.
    void write(const QString& name, const QString& text)
    {
        QFile file(m_folder->filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text.toUtf8());
    }

    // Runs the program in the folder of the test and keeps what it has printed.
    int run(const QStringList& arguments)
    {
        QProcess program;
        program.setWorkingDirectory(m_folder->path());
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(u"QT_QPA_PLATFORM"_s); // it has a screen of its own
        program.setProcessEnvironment(environment);
        program.start(QString::fromUtf8(QN740_TRY), arguments);
        if (!program.waitForFinished(60000)) {
            program.kill();
            program.waitForFinished();
        }
        m_output = QString::fromUtf8(program.readAllStandardOutput());
        m_errors = QString::fromUtf8(program.readAllStandardError());
        return program.exitStatus() == QProcess::NormalExit ? program.exitCode() : -1;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_output;
    QString m_errors;

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void a_line_is_read_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("verb");
        QTest::addColumn<QString>("subject");
        QTest::addColumn<QString>("detail");
        QTest::addColumn<int>("number");
        QTest::addColumn<int>("ms");
        const auto row = [](const char* line, Verb verb, const char* subject,
                             const char* detail = "", int number = 0, int ms = 0) {
            QTest::newRow(line) << QString::fromUtf8(line) << int(verb)
                                << QString::fromUtf8(subject) << QString::fromUtf8(detail) << number
                                << ms;
        };
        row("send SK,Tuner CH1", Verb::Send, "SK,Tuner CH1");
        row("send \"SK,Tuner CH1\"", Verb::Send, "SK,Tuner CH1");
        row("send DB,\\x41", Verb::Send, "DB,A");
        row("raw \\x02CV,x\\x04", Verb::Raw, "\002CV,x\004");
        row("menus", Verb::Menus, "");
        row("answers off", Verb::Answers, "off");
        row("open \"Tuner CH1\"", Verb::Open, "Tuner CH1");
        row("press \"Say \\\"1\\\\2\\\"\"", Verb::Press, "Say \"1\\2\"");
        row("press \"AGC\" 2", Verb::Press, "AGC", "", 2);
        row("hold \"Step Up\" 1.5s", Verb::Hold, "Step Up", "", 0, 1500);
        row("touch 799 479", Verb::Touch, "");
        row("type 2250.5 MHz", Verb::Type, "2250.5", "MHz");
        row("type -7", Verb::Type, "-7");
        row("choose \"8PSK\"", Verb::Choose, "8PSK");
        row("slide -3", Verb::Slide, "-3", "", -3);
        row("expect \"R1:*\" 2s", Verb::Expect, "R1:*", "", 0, 2000);
        row("expect-not \"*\"", Verb::ExpectNot, "*");
        row("expect-screen \"a # b\"", Verb::ExpectScreen, "a # b");
        row("expect-state \"AGC\" pending 3", Verb::ExpectState, "AGC", "pending", 3);
        row("picture a.png", Verb::Picture, "a.png");
        row("compare a.png 20", Verb::Compare, "a.png", "", 20);
        row("wait 500ms", Verb::Wait, "500ms", "", 0, 500);
    }
    void a_line_is_read()
    {
        QFETCH(QString, line);
        const Scenario scenario =
            Scenario::parse(QString(u"# first\n\n  %1  \r\n"_s).arg(line).toUtf8(), u"a.try"_s);
        QCOMPARE(scenario.errors(), QStringList());
        QCOMPARE(scenario.steps().size(), 1);
        const Step& step = scenario.steps().constFirst();
        QCOMPARE(step.line, 3);
        QCOMPARE(step.source, line);
        QTEST(int(step.verb), "verb");
        QTEST(step.subject, "subject");
        QTEST(step.detail, "detail");
        QTEST(step.number, "number");
        QTEST(step.ms, "ms");
    }

    void a_wrong_line_is_refused_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char* line, const char* reason) {
            QTest::newRow(line) << QString::fromUtf8(line) << QString::fromUtf8(reason);
        };
        row("push \"AGC\"", "unknown step \"push\"");
        row("press AGC", "the form is: press \"LABEL\" [N]");
        row("press \"AGC\" 0", "the form is: press");
        row("press \"AGC", "a quote is not closed");
        row("hold \"AGC\"", "the form is: hold");
        row("hold \"AGC\" 3", "the form is: hold");
        row("touch 800 0", "the form is: touch");
        row("touch 0 480", "the form is: touch");
        row("type", "the form is: type");
        row("slide much", "the form is: slide");
        row("wait -1s", "the form is: wait");
        row("wait 601s", "the form is: wait");
        row("answers perhaps", "the form is: answers");
        row("expect \"A\" 2", "the form is: expect");
        row("expect-state \"A\" green", "the form is: expect-state");
        row("picture a.jpg", "the form is: picture");
        row("picture ../a.png", "the form is: picture");
        row("compare a.png -1", "the form is: compare");
        row("send CV,x", "CV needs");
        row("send \"SK,a\" b", "a quote is not closed, or something follows it");
        row("send", "no message");
        row("send wait 5", "no message");
        row("raw", "no bytes");
        row("menus nowhere.menu", "nowhere.menu: ");
    }
    void a_wrong_line_is_refused()
    {
        QFETCH(QString, line);
        QFETCH(QString, reason);
        const Scenario scenario = Scenario::parse(line.toUtf8() + "\nwait 1s\nfoo\n", u"a.try"_s);
        QCOMPARE(scenario.errors().size(), 2); // goes on to the last line
        QVERIFY2(scenario.errors().constFirst().startsWith(u"a.try:1: "_s + reason) ||
                scenario.errors().constFirst().contains(reason),
            qPrintable(scenario.errors().constFirst()));
        QCOMPARE(scenario.errors().constLast(), u"a.try:3: unknown step \"foo\""_s);
    }

    void a_star_stands_for_any_characters_data()
    {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("whole");
        QTest::addColumn<bool>("part");
        QTest::newRow("same") << "a.c"
                              << "a.c" << true << true;
        QTest::newRow("no expression") << "a.c"
                                       << "abc" << false << false;
        QTest::newRow("part") << "b"
                              << "abc" << false << true;
        QTest::newRow("star") << "a*c"
                              << "abbc" << true << true;
        QTest::newRow("star for nothing") << "abc*"
                                          << "abc" << true << true;
        QTest::newRow("only a star") << "*"
                                     << "" << true << true;
        QTest::newRow("star, too short") << "ab*bc"
                                         << "abc" << false << false;
        QTest::newRow("star that goes on") << "a*bd*"
                                           << "abcbbd" << true << true;
        QTest::newRow("end is not there") << "*ab"
                                          << "abc" << false << true;
        const QString zero = QChar(u'\0') + u"3"_s;
        QTest::newRow("character 0 before a digit") << zero << zero << true << true;
        // Each star could stand for anything, so that a simple search would never end.
        QTest::newRow("many stars")
            << QString(u"a*"_s).repeated(40) + u'b' << QString(200, u'a') << false << false;
    }
    void a_star_stands_for_any_characters()
    {
        QFETCH(QString, pattern);
        QFETCH(QString, text);
        QTEST(matches(pattern, text), "whole");
        QTEST(matches(pattern, text, true), "part");
    }

    void pictures_are_compared_point_by_point()
    {
        QImage one(20, 10, QImage::Format_RGB32);
        one.fill(Qt::black);
        QImage other = one;
        QCOMPARE(pictures::compare(one, other).points, 0);
        other.setPixelColor(3, 4, Qt::white);
        other.setPixelColor(7, 9, QColor(1, 0, 0));
        const pictures::Difference found = pictures::compare(one, other);
        QCOMPARE(found.points, 2);
        QCOMPARE(found.place, QRect(3, 4, 5, 6));
        QCOMPARE(found.picture.pixelColor(3, 4), QColor(220, 0, 0));
        QCOMPARE(found.picture.pixelColor(4, 4), found.picture.pixelColor(0, 0));
        QCOMPARE(pictures::compare(one, QImage()).points, 200);
    }

    void the_document_has_every_step_and_option()
    {
        QVERIFY(stepWords().size() >= 19);
        for (const StepWord& word : stepWords()) {
            const QString form = QString::fromUtf8(word.form).section(u" on|off|"_s, 0, 0);
            QVERIFY2(document().contains(u"\n`"_s + form), word.form);
        }
        QCOMPARE(run({u"--steps"_s}), 0);
        QCOMPARE(m_output.count(u'\n'), 2 * stepWords().size());
        QCOMPARE(run({u"--help"_s}), 0);
        const QRegularExpression option(u"\\n  (--[a-z-]+( <[A-Z]+>)?)"_s);
        int count = 0;
        for (auto all = option.globalMatch(m_output); all.hasNext(); ++count) {
            QString form = all.next().captured(1);
            form.remove(u'<').remove(u'>');
            const bool isOfQt = form == u"--help-all"_s;
            QVERIFY2(isOfQt || document().contains(u"| `%1` |"_s.arg(form)), qPrintable(form));
        }
        QVERIFY(count >= 9);
    }

    void a_failing_scenario_prints_what_the_document_shows()
    {
        write(u"attenuator.try"_s, block(u"scenario"_s));
        QCOMPARE(run({u"--step-time"_s, u"0.5"_s, u"attenuator.try"_s}), 1);
        QCOMPARE(withoutTimes(m_output), withoutTimes(block(u"output"_s)));
        const QImage picture(m_folder->filePath(u"try-out/attenuator-failed.png"_s));
        QCOMPARE(picture.size(), QSize(800, 480));
        QCOMPARE(m_errors, QString());
    }

    void the_outcome_is_written_for_ci()
    {
        write(u"a.try"_s, u"menus\nopen \"Start\"\n"_s);
        write(u"b.try"_s, u"send DB,<&\\x01\"\nexpect \"<&\" 1ms\n"_s);
        write(u"c.try"_s, u"open \"Nowhere\"\n"_s);
        QCOMPARE(run({u"--junit"_s, u"out.xml"_s, u"."_s}), 1);
        QVERIFY2(m_output.contains(u"3 scenarios: 1 passed, 2 failed"_s), qPrintable(m_output));
        QVERIFY2(m_output.contains(u"no menu \"Nowhere\"; there are: Loading, two"_s),
            qPrintable(m_output));
        QXmlStreamReader xml(contents(m_folder->filePath(u"out.xml"_s)));
        QStringList seen;
        while (!xml.atEnd()) {
            if (xml.readNext() == QXmlStreamReader::StartElement) {
                const auto attribute = [&xml](const char* name) {
                    return xml.attributes().value(QLatin1String(name)).toString();
                };
                seen += xml.name().toString() + u' ' + attribute("name") + attribute("message");
                if (xml.name() == u"testsuite"_s) {
                    QCOMPARE(attribute("tests"), u"3"_s);
                    QCOMPARE(attribute("failures"), u"2"_s);
                }
            }
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        QCOMPARE(seen,
            (QStringList{u"testsuites "_s, u"testsuite qn740-try"_s, u"testcase a"_s,
                u"testcase b"_s,
                u"failure ./b.try:2: expect \"<&\" 1ms: the panel has sent nothing more"_s,
                u"testcase c"_s,
                u"failure ./c.try:1: open \"Nowhere\": no menu \"Nowhere\"; there are: Loading, two"_s}));
    }

    void a_broken_scenario_runs_nothing()
    {
        write(u"a.try"_s, u"menus\n"_s);
        write(u"b.try"_s, u"press AGC\n"_s);
        QCOMPARE(run({u"a.try"_s, u"b.try"_s, u"c.try"_s}), 2);
        QCOMPARE(m_output, QString());
        QCOMPARE(m_errors,
            u"b.try:1: the form is: press \"LABEL\" [N]\nc.try: No such file or directory\n"_s);
        QCOMPARE(run({u"--list"_s, u"a.try"_s}), 0);
        QCOMPARE(m_output, u"a.try  1 steps\n"_s);
        QCOMPARE(run({u"--time"_s, u"none"_s, u"a.try"_s}), 2);
        QCOMPARE(run({}), 2);
    }

    void a_scenario_ends_in_time_whatever_is_open()
    {
        write(u"a.try"_s,
            u"menus\nopen \"System\"\npress \"Save*\"\npress \"New File\"\nwait 100s\n"_s);
        write(u"b.try"_s,
            u"menus\nopen \"Tuner CH1\"\npress \"Level Offset\"\ntype 99\npress \"7\"\n"_s);
        write(u"c.try"_s, u"menus\nopen \"Start\"\n"_s);
        QCOMPARE(run({u"--time"_s, u"2"_s, u"a.try"_s}), 1);
        QVERIFY2(m_output.contains(u"the scenario takes longer than 2 s"_s), qPrintable(m_output));
        QCOMPARE(run({u"--step-time"_s, u"0.5"_s, u"b.try"_s, u"c.try"_s}), 1);
        QVERIFY2(
            m_output.contains(u"no key \"7\" in the window that is open"_s), qPrintable(m_output));
        QVERIFY2(m_output.contains(u"2 scenarios: 1 passed, 1 failed"_s), qPrintable(m_output));
        QCOMPARE(run({u"--fail-fast"_s, u"--step-time"_s, u"0.5"_s, u"b.try"_s, u"c.try"_s}), 1);
        QVERIFY2(m_output.contains(u"1 scenario: 0 passed, 1 failed"_s), qPrintable(m_output));
    }

    void a_picture_is_compared_and_made_anew()
    {
        write(u"a.try"_s, u"menus\nopen \"Start\"\npicture b.png\ncompare a.png\n"_s);
        const QString reference = m_folder->filePath(u"a.png"_s);
        QCOMPARE(run({u"a.try"_s}), 1);
        QVERIFY2(m_output.contains(u"no picture ./a.png to compare with"_s), qPrintable(m_output));
        QCOMPARE(run({u"--update"_s, u"a.try"_s}), 0);
        QImage picture(reference);
        QCOMPARE(picture, QImage(m_folder->filePath(u"try-out/b.png"_s)));
        picture.setPixelColor(400, 20, Qt::red);
        picture.setPixelColor(402, 25, Qt::red);
        QVERIFY(picture.save(reference));
        QCOMPARE(run({u"--step-time"_s, u"0.1"_s, u"--out"_s, u"other"_s, u"a.try"_s}), 1);
        QVERIFY2(
            m_output.contains(u"2 points differ, between 400, 20 and 402, 25: other/a-diff.png"_s),
            qPrintable(m_output));
        const QImage difference(m_folder->filePath(u"other/a-diff.png"_s));
        QCOMPARE(difference.pixelColor(400, 20), QColor(220, 0, 0));
        write(u"a.try"_s, u"menus\nopen \"Start\"\ncompare a.png 2\n"_s);
        QCOMPARE(run({u"a.try"_s}), 0);
    }
};

QN740_TEST_MAIN(tst_Try)
#include "tst_Try.moc"
