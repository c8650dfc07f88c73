#include "popups/EditedLine.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

class tst_EditedLine : public QObject
{
    Q_OBJECT

private slots:
    void keys_edit_at_the_cursor_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<int>("cursor");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("after");
        QTest::addColumn<int>("newCursor");
        QTest::addColumn<bool>("selected");
        QTest::newRow("first character") << "" << 0 << "a"
                                         << "a" << 1 << true;
        QTest::newRow("in the middle") << "ac" << 1 << "b"
                                       << "abc" << 2 << true;
        QTest::newRow("at the end") << "ab" << 2 << "7"
                                    << "ab7" << 3 << true;
        QTest::newRow("backspace") << "abc" << 2 << "BACKSPACE"
                                   << "ac" << 1 << false;
        QTest::newRow("backspace behind the first character") << "abc" << 1 << "BACKSPACE"
                                                              << "bc" << 0 << false;
        QTest::newRow("backspace in any case") << "abc" << 3 << "BackSpace"
                                               << "ab" << 2 << false;
        QTest::newRow("backspace at the start") << "abc" << 0 << "BACKSPACE"
                                                << "abc" << 0 << false;
        QTest::newRow("del") << "abc" << 1 << "DEL"
                             << "ac" << 1 << false;
        QTest::newRow("del contained") << "abc" << 0 << "a del key"
                                       << "bc" << 0 << false;
        QTest::newRow("del at the end") << "abc" << 3 << "DEL"
                                        << "abc" << 3 << false;
        QTest::newRow("left") << "abc" << 2 << "<<-"
                              << "abc" << 1 << false;
        QTest::newRow("left at the start") << "abc" << 0 << "<<-"
                                           << "abc" << 0 << false;
        QTest::newRow("right") << "abc" << 2 << "->>"
                               << "abc" << 3 << false;
        QTest::newRow("right by one character") << "abc" << 0 << "->>"
                                                << "abc" << 1 << false;
        QTest::newRow("right at the end") << "abc" << 3 << "->>"
                                          << "abc" << 3 << false;
        QTest::newRow("caps") << "abc" << 1 << "CAPS"
                              << "abc" << 1 << false;
        QTest::newRow("no text") << "abc" << 1 << ""
                                 << "abc" << 1 << false;
        QTest::newRow("cursor behind the end") << "abc" << 99 << "d"
                                               << "abcd" << 4 << true;
        QTest::newRow("cursor before the start") << "abc" << -9 << "BACKSPACE"
                                                 << "abc" << 0 << false;
    }
    void keys_edit_at_the_cursor()
    {
        QFETCH(QString, before);
        QFETCH(int, cursor);
        QFETCH(QString, key);
        const EditedLine line = EditedLine{before, cursor, false}.after(key, 100);
        QTEST(line.text, "after");
        QTEST(line.cursor, "newCursor");
        QTEST(line.insertedSelected, "selected");
    }

    void a_full_line_takes_no_more_characters()
    {
        const EditedLine line = EditedLine{u"abc"_s, 1, true}.after(u"x"_s, 3);
        QCOMPARE(line.text, u"abc"_s);
        QCOMPARE(line.cursor, 1);
        QVERIFY(!line.insertedSelected);
    }

    void any_text_that_contains_return_in_any_case_ends_the_entry()
    {
        QVERIFY(EditedLine::isReturn(u"RETURN"_s));
        QVERIFY(EditedLine::isReturn(u"the Return key"_s));
        QVERIFY(!EditedLine::isReturn(u"R"_s));
    }
};

QN740_TEST_MAIN(tst_EditedLine)
#include "tst_EditedLine.moc"
