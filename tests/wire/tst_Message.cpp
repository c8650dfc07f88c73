#include "support/TestMain.h"
#include "wire/Limits.h"
#include "wire/Message.h"

using namespace Qt::StringLiterals;

class tst_Message : public QObject
{
    Q_OBJECT

private slots:
    void the_frame_characters_are_stx_2_and_eot_4()
    {
        QCOMPARE(wire::Stx.unicode(), char16_t(2));
        QCOMPARE(wire::Eot.unicode(), char16_t(4));
        QCOMPARE(wire::frame(u"PONG"_s), u"\x02PONG\x04"_s);
    }

    void fields_are_split_at_every_comma_between_the_ends_data()
    {
        QTest::addColumn<QString>("message");
        QTest::addColumn<QStringList>("fields");
        QTest::newRow("word only") << u"\x02PING\x04"_s << QStringList{u"PING"_s};
        QTest::newRow("fields") << u"\x02SK,Tuner CH1\x04"_s
                                << QStringList{u"SK"_s, u"Tuner CH1"_s};
        QTest::newRow("empty fields are kept")
            << u"\x02,a,,b,\x04"_s << QStringList{u""_s, u"a"_s, u""_s, u"b"_s, u""_s};
        QTest::newRow("first and last character are dropped whatever they are")
            << u"xVERy"_s << QStringList{u"VER"_s};
        QTest::newRow("two characters") << u"\x02\x04"_s << QStringList{u""_s};
        QTest::newRow("one character") << u"\x04"_s << QStringList{u""_s};
        QTest::newRow("none") << QString() << QStringList{u""_s};
    }

    void fields_are_split_at_every_comma_between_the_ends()
    {
        QFETCH(QString, message);
        QTEST(wire::fields(message), "fields");
    }

    void an_integer_is_read_from_its_field_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<int>("number");
        QTest::newRow("positive") << u"12"_s << 12;
        QTest::newRow("negative") << u"-3"_s << -3;
        QTest::newRow("zero") << u"0"_s << 0;
        QTest::newRow("largest") << u"2147483647"_s << 2147483647;
    }

    void an_integer_is_read_from_its_field()
    {
        QFETCH(QString, field);
        int number = 99;
        QVERIFY(wire::readInt({u"x"_s, field}, 1, number));
        QTEST(number, "number");
    }

    void a_field_that_is_no_integer_changes_nothing_data()
    {
        QTest::addColumn<QStringList>("fields");
        QTest::newRow("no fields") << QStringList();
        QTest::newRow("too few fields") << QStringList{u"1"_s};
        QTest::newRow("empty") << QStringList{u"1"_s, u""_s};
        QTest::newRow("text") << QStringList{u"1"_s, u"x"_s};
        QTest::newRow("fraction") << QStringList{u"1"_s, u"1.5"_s};
        QTest::newRow("too large") << QStringList{u"1"_s, u"2147483648"_s};
    }

    void a_field_that_is_no_integer_changes_nothing()
    {
        QFETCH(QStringList, fields);
        int number = 99;
        QVERIFY(!wire::readInt(fields, 1, number));
        QCOMPARE(number, 99);
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
        QCOMPARE(wire::toPrintable(u"\x02"_s + u"a\\b"_s + QChar(0xe9) + u"\x04"_s),
            u"\\x02a\\\\b\\xe9\\x04"_s);
    }

    void escapes_are_read_wherever_they_stand_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("text");
        QTest::newRow("a backslash alone") << u"\\\\"_s << u"\\"_s;
        QTest::newRow("a backslash at the end") << u"a\\\\"_s << u"a\\"_s;
        QTest::newRow("a backslash before x") << u"\\\\x41"_s << u"\\x41"_s;
        QTest::newRow("two backslashes") << u"\\\\\\\\"_s << u"\\\\"_s;
        QTest::newRow("a number alone") << u"\\x41"_s << u"A"_s;
        QTest::newRow("a number in the middle") << u"a\\x4142"_s << u"aA42"_s;
        QTest::newRow("two numbers") << u"\\x41\\x42"_s << u"AB"_s;
    }

    void escapes_are_read_wherever_they_stand()
    {
        QFETCH(QString, line);
        QTEST(wire::fromPrintable(line), "text");
    }

    void a_backslash_that_starts_no_escape_stands_for_itself_data()
    {
        QTest::addColumn<QString>("line");
        QTest::newRow("at the end") << u"a\\"_s;
        QTest::newRow("no hexadecimal digits") << u"\\xzz"_s;
        QTest::newRow("cut off") << u"\\x0"_s;
        QTest::newRow("another letter") << u"\\n"_s;
    }

    void a_backslash_that_starts_no_escape_stands_for_itself()
    {
        QFETCH(QString, line);
        QCOMPARE(wire::fromPrintable(line), line);
    }

    void fields_beyond_the_limit_are_left_out()
    {
        QString body;
        for (qsizetype n = 0; n < wire::MaxFields + 2; ++n) {
            body += QString::number(n) + u',';
        }
        const QStringList fields = wire::fields(wire::frame(body));
        QCOMPARE(fields.size(), wire::MaxFields);
        for (qsizetype n = 0; n < fields.size(); ++n) {
            QCOMPARE(fields.at(n), QString::number(n));
        }
    }
};

QN740_TEST_MAIN(tst_Message)
#include "tst_Message.moc"
