#include "plot/TextFlow.h"
#include "support/TestMain.h"

namespace {

// Ten pixels a character.
int widthOf(const QString& text)
{
    return static_cast<int>(text.size()) * 10;
}

} // namespace

class tst_TextFlow : public QObject
{
    Q_OBJECT

private slots:
    void parts_share_a_line_while_there_is_room_data()
    {
        QTest::addColumn<int>("room");
        QTest::addColumn<QStringList>("lines");
        // "aaaa", three blanks, "bbbb", three blanks, "cccc"
        QTest::newRow("all three") << 180 << QStringList{"aaaa   bbbb   cccc"};
        QTest::newRow("two") << 179 << QStringList{"aaaa   bbbb", "cccc"};
        QTest::newRow("just two") << 110 << QStringList{"aaaa   bbbb", "cccc"};
        QTest::newRow("one") << 109 << QStringList{"aaaa", "bbbb", "cccc"};
        QTest::newRow("none") << 5 << QStringList{"aaaa", "bbbb", "cccc"};
    }

    void parts_share_a_line_while_there_is_room()
    {
        QFETCH(int, room);
        const TextFlow flow =
            TextFlow::flow({{"aaaa", "aaaa"}, {"bbbb", "bbbb"}, {"cccc", "cccc"}}, room, widthOf);
        QTEST(flow.lines, "lines");
        QCOMPARE(flow.singleWidth.has_value(), flow.lines.size() == 1);
    }

    void the_widest_form_of_a_part_decides_where_a_line_ends()
    {
        const TextFlow narrow = TextFlow::flow({{"a", "aaaa"}, {"b", "bbbb"}}, 109, widthOf);
        QCOMPARE(narrow.lines, QStringList({"a", "b"}));
        const TextFlow wide = TextFlow::flow({{"a", "aaaa"}, {"b", "bbbb"}}, 110, widthOf);
        QCOMPARE(wide.lines, QStringList({"a   b"}));
        QCOMPARE(wide.singleWidth, std::optional<int>(110));
    }

    void a_part_that_says_nothing_leaves_no_gap_but_keeps_its_room()
    {
        const TextFlow shared = TextFlow::flow({{"", "aaaa"}, {"b", "bbbb"}}, 110, widthOf);
        QCOMPARE(shared.lines, QStringList({"b"}));
        const TextFlow apart = TextFlow::flow({{"", "aaaa"}, {"b", "bbbb"}}, 109, widthOf);
        QCOMPARE(apart.lines, QStringList({"b"}));
        QVERIFY(!apart.singleWidth);
    }

    void nothing_to_say_makes_no_line()
    {
        const TextFlow flow = TextFlow::flow({}, 100, widthOf);
        QVERIFY(flow.lines.isEmpty());
        QCOMPARE(flow.singleWidth, std::optional<int>(0));
    }
};

QN740_TEST_MAIN(tst_TextFlow)
#include "tst_TextFlow.moc"
