#include "popups/Choices.h"
#include "support/TestMain.h"

#include <limits>

using namespace Qt::StringLiterals;

using choices::Cell;
using choices::Grid;

class tst_Choices : public QObject
{
    Q_OBJECT

private slots:
    void an_item_is_a_value_a_blank_and_a_text_data()
    {
        QTest::addColumn<QString>("list");
        QTest::addColumn<QStringList>("values");
        QTest::addColumn<QStringList>("texts");
        QTest::newRow("two") << "0 Off:1 On" << QStringList{u"0"_s, u"1"_s}
                             << QStringList{u"Off"_s, u"On"_s};
        QTest::newRow("further blanks stay")
            << "a b c  d" << QStringList{u"a"_s} << QStringList{u"b c  d"_s};
        QTest::newRow("trailing separator")
            << "0 Eye Pattern:1 Constellation:2 Off:" << QStringList{u"0"_s, u"1"_s, u"2"_s}
            << QStringList{u"Eye Pattern"_s, u"Constellation"_s, u"Off"_s};
        QTest::newRow("empty items")
            << "::1 a:: :2 b" << QStringList{u"1"_s, u"2"_s} << QStringList{u"a"_s, u"b"_s};
        QTest::newRow("no blank") << "QPSK" << QStringList{u"QPSK"_s} << QStringList{u"QPSK"_s};
        QTest::newRow("nothing") << "" << QStringList{} << QStringList{};
    }
    void an_item_is_a_value_a_blank_and_a_text()
    {
        QFETCH(QString, list);
        QStringList values;
        QStringList texts;
        for (const choices::Choice& choice : choices::parse(list)) {
            values += choice.value;
            texts += choice.text;
        }
        QTEST(values, "values");
        QTEST(texts, "texts");
    }

    void choices_beyond_the_limit_are_left_out()
    {
        QCOMPARE(choices::parse(u"1 a:"_s.repeated(5000)).size(), choices::MaxChoices);
    }

    void long_texts_are_small_and_broken_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("columns");
        QTest::addColumn<bool>("keepLarge");
        QTest::addColumn<bool>("small");
        QTest::addColumn<int>("breakAt"); // -1: none
        QTest::newRow("3 columns, 10") << 10 << 3 << false << false << -1;
        QTest::newRow("3 columns, 11") << 11 << 3 << false << true << -1;
        QTest::newRow("3 columns, 15") << 15 << 3 << false << true << -1;
        QTest::newRow("3 columns, 16") << 16 << 3 << false << true << 15;
        QTest::newRow("4 columns, 60") << 60 << 4 << false << true << 15;
        QTest::newRow("4 columns, 60, large") << 60 << 4 << true << false << -1;
        QTest::newRow("5 columns, 6") << 6 << 5 << false << false << -1;
        QTest::newRow("5 columns, 7") << 7 << 5 << false << true << -1;
        QTest::newRow("5 columns, 9") << 9 << 5 << false << true << -1;
        QTest::newRow("5 columns, 10") << 10 << 5 << false << true << 15;
        QTest::newRow("6 columns, 15") << 15 << 6 << false << true << 15;
        QTest::newRow("6 columns, 16") << 16 << 6 << false << true << 15;
        QTest::newRow("6 columns, 16, large") << 16 << 6 << true << false << -1;
    }
    void long_texts_are_small_and_broken()
    {
        QFETCH(int, length);
        QFETCH(int, columns);
        QFETCH(bool, keepLarge);
        QFETCH(int, breakAt);
        const QString text(length, u'x');
        const choices::Look look = choices::look(text, columns, keepLarge);
        QTEST(look.smallFont, "small");
        QCOMPARE(look.text.indexOf(u'\n'), breakAt);
        QString joined = look.text;
        QCOMPARE(joined.remove(u'\n').trimmed(), text);
    }

    void a_short_text_is_filled_up_to_the_break()
    {
        QCOMPARE(choices::look(u"ten chars!"_s, 6, false).text, u"ten chars!     \n"_s);
    }

    void choices_fill_the_rows()
    {
        const Grid grid(4, 3);
        QCOMPARE(grid.cell(0), (Cell{0, 0}));
        QCOMPARE(grid.cell(2), (Cell{0, 2}));
        QCOMPARE(grid.cell(3), (Cell{1, 0}));
        QCOMPARE(grid.cell(11), grid.cancelCell());
        QCOMPARE(grid.cell(12), (Cell{4, 0})); // below the last row
        QCOMPARE(grid.cancelCell(), (Cell{3, 2}));
        QCOMPARE(grid.newFileCell(), (Cell{3, 1}));
    }

    void rows_are_added_for_more_choices_than_cells()
    {
        const Grid grid(9, 6);
        QCOMPARE(grid.rowsFor(0), 9);
        QCOMPARE(grid.rowsFor(54), 9);
        QCOMPARE(grid.rowsFor(55), 10);
        QCOMPARE(grid.rowsFor(60), 10);
        QCOMPARE(grid.rowsFor(61), 11);
    }

    void grid_sizes_out_of_bounds_are_limited()
    {
        const int most = std::numeric_limits<int>::max();
        QCOMPARE(Grid(0, 0).cancelCell(), (Cell{0, 0}));
        QCOMPARE(Grid(-5, -5).cell(3), (Cell{3, 0}));
        QCOMPARE(Grid(most, most).columns(), choices::MaxLines);
        QCOMPARE(Grid(most, most).rows(), choices::MaxLines);
        QCOMPARE(Grid(4, 1, 2).columns(), 2);
    }
};

QN740_TEST_MAIN(tst_Choices)
#include "tst_Choices.moc"
