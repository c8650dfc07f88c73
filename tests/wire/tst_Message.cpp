#include "support/TestMain.h"
#include "wire/Message.h"

class tst_Message : public QObject
{
    Q_OBJECT

private slots:
    void the_frame_characters_are_stx_2_and_eot_4()
    {
        QCOMPARE(wire::Stx.unicode(), char16_t(2));
        QCOMPARE(wire::Eot.unicode(), char16_t(4));
        QCOMPARE(wire::frame("PONG"), QString("\x02PONG\x04"));
    }

    void fields_are_split_at_every_comma_between_the_ends_data()
    {
        QTest::addColumn<QString>("message");
        QTest::addColumn<QStringList>("fields");
        QTest::newRow("word only") << QString("\x02PING\x04") << QStringList{"PING"};
        QTest::newRow("fields") << QString("\x02SK,Tuner CH1\x04")
                                << QStringList{"SK", "Tuner CH1"};
        QTest::newRow("empty fields are kept")
            << QString("\x02,a,,b,\x04") << QStringList{"", "a", "", "b", ""};
        QTest::newRow("the ends are dropped unseen") << QString("xVERy") << QStringList{"VER"};
        QTest::newRow("two characters") << QString("\x02\x04") << QStringList{""};
        QTest::newRow("one character") << QString("\x04") << QStringList{""};
        QTest::newRow("none") << QString() << QStringList{""};
    }

    void fields_are_split_at_every_comma_between_the_ends()
    {
        QFETCH(QString, message);
        QTEST(wire::fields(message), "fields");
    }

    void every_byte_survives_the_printable_form()
    {
        QString all;
        for (int code = 0; code < 256; ++code) {
            all += QChar(code);
        }
        const QString line = wire::toPrintable(all);
        for (const QChar c : line) {
            QVERIFY(c.unicode() >= 0x20 && c.unicode() <= 0x7e);
        }
        QCOMPARE(wire::fromPrintable(line), all);
    }

    void printable_text_is_written_as_it_is_and_the_rest_escaped()
    {
        QCOMPARE(wire::toPrintable(QString("\x02") + "a\\b" + QChar(0xe9) + "\x04"),
            QString("\\x02a\\\\b\\xe9\\x04"));
    }

    void a_backslash_that_starts_no_escape_stands_for_itself_data()
    {
        QTest::addColumn<QString>("line");
        QTest::newRow("at the end") << QString("a\\");
        QTest::newRow("no hexadecimal digits") << QString("\\xzz");
        QTest::newRow("cut off") << QString("\\x0");
        QTest::newRow("another letter") << QString("\\n");
    }

    void a_backslash_that_starts_no_escape_stands_for_itself()
    {
        QFETCH(QString, line);
        QCOMPARE(wire::fromPrintable(line), line);
    }
};

QN740_TEST_MAIN(tst_Message)
#include "tst_Message.moc"
