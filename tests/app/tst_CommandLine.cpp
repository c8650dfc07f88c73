#include "app/CommandLine.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(CommandLine::Action)

class tst_CommandLine : public QObject
{
    Q_OBJECT

private slots:
    void the_arguments_say_what_is_to_be_done_data()
    {
        using Action = CommandLine::Action;
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<Action>("action");
        const auto row = [](const char* arguments, Action action) {
            QTest::newRow(arguments) << QString::fromUtf8(arguments) << action;
        };
        row("", Action::Run);
        row("-noK7150", Action::Run);
        row("-platform vnc:port=5900", Action::Run);
        row("--platform vnc:port=5900 -noK7150", Action::Run);
        row("-platform=offscreen", Action::Run);
        row("-style windows -reverse", Action::Run);
        row("--version", Action::ShowVersion);
        row("--help", Action::ShowHelp);
        row("-h", Action::ShowHelp);
        row("-noK7150 --version", Action::ShowVersion);
        row("-platform --version", Action::Run); // the name of a platform
        row("--noK7150", Action::Refuse);
        row("-nok7150", Action::Refuse);
        row("-noK7150x", Action::Refuse);
        row("-reverse=1x --help", Action::Refuse);
        row("--self-test", Action::SelfTest);
        row("--self-test -platform linuxfb", Action::SelfTest);
        row("--show-touch -platform linuxfb", Action::ShowTouch);
        row("--self-test --wrong", Action::Refuse);
        row("--show-touch --help", Action::ShowHelp);
        row("ttyO1", Action::Refuse);
        row("-", Action::Refuse);
        row("--", Action::Refuse);
        row("--version --wrong", Action::ShowVersion);
        row("--wrong --version", Action::Refuse);
    }

    void the_arguments_say_what_is_to_be_done()
    {
        QFETCH(QString, arguments);
        const CommandLine line(arguments.split(u' ', Qt::SkipEmptyParts));
        QTEST(line.action(), "action");
        const bool prints = line.action() == CommandLine::Action::ShowVersion ||
            line.action() == CommandLine::Action::ShowHelp ||
            line.action() == CommandLine::Action::Refuse;
        QCOMPARE(line.text().isEmpty(), !prints);
    }

    void the_platform_is_that_of_the_option_else_of_the_environment_data()
    {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QString>("platform");
        QTest::newRow("none") << QString() << u"eglfs"_s;
        QTest::newRow("option") << u"-platform linuxfb"_s << u"linuxfb"_s;
        QTest::newRow("two dashes") << u"--platform linuxfb"_s << u"linuxfb"_s;
        QTest::newRow("equals sign")
            << u"-platform=linuxfb:fb=/dev/fb1"_s << u"linuxfb:fb=/dev/fb1"_s;
        QTest::newRow("other option") << u"-style windows"_s << u"eglfs"_s;
    }

    void the_platform_is_that_of_the_option_else_of_the_environment()
    {
        QFETCH(QString, arguments);
        const QByteArray kept = qgetenv("QT_QPA_PLATFORM");
        qputenv("QT_QPA_PLATFORM", "eglfs");
        const CommandLine line(arguments.split(u' ', Qt::SkipEmptyParts));
        qputenv("QT_QPA_PLATFORM", kept);
        QTEST(line.platform(), "platform");
    }

    void a_refusal_names_the_option_and_where_to_look_data()
    {
        QTest::addColumn<QString>("argument");
        QTest::addColumn<QString>("text");
        QTest::newRow("unknown") << u"-x"_s
                                 << u"qn740-panel: unknown option -x; --help lists the options"_s;
        QTest::newRow("lower case")
            << u"-nok7150"_s << u"qn740-panel: unknown option -nok7150; it is spelled -noK7150"_s;
        QTest::newRow("two dashes")
            << u"--noK7150"_s << u"qn740-panel: unknown option --noK7150; it is spelled -noK7150"_s;
    }

    void a_refusal_names_the_option_and_where_to_look()
    {
        QFETCH(QString, argument);
        QTEST(CommandLine({argument}).text(), "text");
    }

    void the_help_names_every_option_and_exit_status()
    {
        const QString help = CommandLine({u"--help"_s}).text();
        for (const auto& word :
            {u"-noK7150"_s, u"--version"_s, u"--help"_s, u"QN740_DEV"_s, u"QN740_SPLASH_MS"_s,
                u"QN740_SCALE"_s, u"QN740_ROTATION"_s, u"QN740_REMOTE_SOCKET"_s,
                u"QN740_SPECTRUM_SOCKET"_s, u"QN740_SCOPE_SOCKET"_s, u"--self-test"_s,
                u"--show-touch"_s, u"0  after SIGTERM"_s, u"1  a fault"_s, u"2  unknown option"_s,
                u"3  another panel"_s, u"4  no screen"_s, u"5  out of memory"_s}) {
            QVERIFY2(help.contains(word), qPrintable(word));
        }
        constexpr qsizetype Columns = 100;
        const QStringList lines = help.split(u'\n');
        for (const QString& line : lines) {
            QVERIFY2(line.size() <= Columns, qPrintable(line));
        }
    }
};

QN740_TEST_MAIN(tst_CommandLine)
#include "tst_CommandLine.moc"
