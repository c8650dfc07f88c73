#include "support/TestMain.h"
#include "wire/Trace.h"

using namespace Qt::StringLiterals;

class tst_Trace : public QObject
{
    Q_OBJECT

private slots:
    void a_line_has_time_direction_and_printable_frame()
    {
        QCOMPARE((wire::TraceLine{12.3456, true, u"\x02PING\x04"_s}.text()),
            u"12.346 in \\x02PING\\x04"_s);
        QCOMPARE((wire::TraceLine{0, false,
                     u"\x02"_s
                     u"a\xff\x04"_s}
                         .text()
                         .left(10)),
            u"0.000 out "_s);
    }

    void a_line_is_read_back_data()
    {
        QTest::addColumn<QString>("line");
        QTest::newRow("line alone") << "12.345 in \\x02PING\\x04";
        QTest::newRow("as the log writes it") << "qn740.link: 12.345 in \\x02PING\\x04";
        QTest::newRow("with the time of the log")
            << "2026-01-01T10:00:00.123 qn740.link: 12.345 in \\x02PING\\x04";
    }

    void a_line_is_read_back()
    {
        QFETCH(QString, line);
        const auto read = wire::TraceLine::fromText(line);
        QVERIFY(read);
        QCOMPARE(read->seconds, 12.345);
        QVERIFY(read->in);
        QCOMPARE(read->frame, u"\x02PING\x04"_s);
    }

    void all_characters_survive()
    {
        QString all;
        for (int code = 0; code < 256; ++code) {
            all += QChar(code);
        }
        const auto read = wire::TraceLine::fromText(wire::TraceLine{1, false, all}.text());
        QVERIFY(read && !read->in);
        QCOMPARE(read->frame, all);
    }

    void other_lines_are_not_trace_lines_data()
    {
        QTest::addColumn<QString>("line");
        QTest::newRow("empty") << "";
        QTest::newRow("prose") << "ttyO1 was lost: no such device";
        QTest::newRow("no decimals") << "12 in x";
        QTest::newRow("no direction") << "12.345 up x";
    }

    void other_lines_are_not_trace_lines()
    {
        QFETCH(QString, line);
        QVERIFY(!wire::TraceLine::fromText(line));
    }

    void the_time_of_a_line_advances()
    {
        const double first = wire::TraceLine::now(true, u""_s).seconds;
        QVERIFY(first >= 0.0 && first < 3600.0);
        QTRY_VERIFY(wire::TraceLine::now(true, u""_s).seconds > first);
    }
};

QN740_TEST_MAIN(tst_Trace)
#include "tst_Trace.moc"
