#include "plot/TextFlow.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

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
        QTest::newRow("all three") << 180 << QStringList{u"aaaa   bbbb   cccc"_s};
        QTest::newRow("two") << 179 << QStringList{u"aaaa   bbbb"_s, u"cccc"_s};
        QTest::newRow("just two") << 110 << QStringList{u"aaaa   bbbb"_s, u"cccc"_s};
        QTest::newRow("one") << 109 << QStringList{u"aaaa"_s, u"bbbb"_s, u"cccc"_s};
        QTest::newRow("none") << 5 << QStringList{u"aaaa"_s, u"bbbb"_s, u"cccc"_s};
    }

    void parts_share_a_line_while_there_is_room()
    {
        QFETCH(int, room);
        const TextFlow flow =
            TextFlow::flow({{u"aaaa"_s, u"aaaa"_s}, {u"bbbb"_s, u"bbbb"_s}, {u"cccc"_s, u"cccc"_s}},
                room, widthOf);
        QTEST(flow.lines, "lines");
        QCOMPARE(flow.singleWidth.has_value(), flow.lines.size() == 1);
    }

    void the_widest_form_of_a_part_decides_where_a_line_ends()
    {
        const TextFlow narrow =
            TextFlow::flow({{u"a"_s, u"aaaa"_s}, {u"b"_s, u"bbbb"_s}}, 109, widthOf);
        QCOMPARE(narrow.lines, QStringList({u"a"_s, u"b"_s}));
        const TextFlow wide =
            TextFlow::flow({{u"a"_s, u"aaaa"_s}, {u"b"_s, u"bbbb"_s}}, 110, widthOf);
        QCOMPARE(wide.lines, QStringList({u"a   b"_s}));
        QCOMPARE(wide.singleWidth, std::optional<int>(110));
    }

    void a_part_that_says_nothing_leaves_no_gap_but_keeps_its_room()
    {
        const TextFlow shared =
            TextFlow::flow({{u""_s, u"aaaa"_s}, {u"b"_s, u"bbbb"_s}}, 110, widthOf);
        QCOMPARE(shared.lines, QStringList({u"b"_s}));
        const TextFlow apart =
            TextFlow::flow({{u""_s, u"aaaa"_s}, {u"b"_s, u"bbbb"_s}}, 109, widthOf);
        QCOMPARE(apart.lines, QStringList({u"b"_s}));
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
