#include "support/TestMain.h"
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
};

QN740_TEST_MAIN(tst_Message)
#include "tst_Message.moc"
