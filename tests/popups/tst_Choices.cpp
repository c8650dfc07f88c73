#include "popups/ChoiceCells.h"
#include "popups/Choices.h"
#include "support/TestMain.h"

#include <QLoggingCategory>
#include <QRegularExpression>

#include <cmath>
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

    void what_is_left_out_is_logged_at_debug_level()
    {
        QLoggingCategory::setFilterRules(u"qn740.popups.debug=true"_s);
        QTest::ignoreMessage(
            QtDebugMsg, QRegularExpression(u"list: the choices after 400 are left out: 7$"_s));
        choices::parse(u"1 a:"_s.repeated(407));
        QTest::ignoreMessage(
            QtDebugMsg, QRegularExpression(u"list: 17 columns asked for, 16 shown$"_s));
        const Grid cut(4, 17);
        QCOMPARE(cut.columns(), 16);
        QLoggingCategory::setFilterRules(QString());
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

    void a_cell_has_room_for_a_key()
    {
        const ChoiceCells cells(Grid(2, 3), 4, 480, 1);
        for (int column = 0; column < 3; ++column) {
            QCOMPARE(cells.columnMinimumWidth(column), 150);
            QCOMPARE(cells.columnStretch(column), 1);
        }
        QCOMPARE(cells.columnCount(), 3);
        for (int row = 0; row < 2; ++row) {
            QCOMPARE(cells.rowMinimumHeight(row), 80);
            QCOMPARE(cells.rowStretch(row), 1);
        }
        QCOMPARE(cells.rowCount(), 2);
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

    void a_list_scrolls_where_its_rows_would_get_too_low_data()
    {
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("columns");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("shown");
        // In 415 pixels, ten rows are 40 pixels high and eleven rows 36.
        QTest::newRow("16") << 4 << 4 << 16 << 4;
        QTest::newRow("18") << 4 << 4 << 18 << 5;
        QTest::newRow("60") << 9 << 6 << 60 << 10;
        QTest::newRow("61") << 9 << 6 << 61 << 9;
        QTest::newRow("100") << 9 << 6 << 100 << 9;
        QTest::newRow("20 in two columns") << 4 << 2 << 20 << 10;
        QTest::newRow("21 in two columns") << 4 << 2 << 21 << 4;
        QTest::newRow("40 in one column") << 4 << 1 << 40 << 4;
        QTest::newRow("sixteen rows") << 16 << 4 << 3 << 10;
    }
    void a_list_scrolls_where_its_rows_would_get_too_low()
    {
        QFETCH(int, rows);
        QFETCH(int, columns);
        QFETCH(int, count);
        QTEST(Grid(rows, columns).shownRows(count, 415), "shown");
    }

    void a_blank_row_keeps_the_last_choices_from_under_the_fixed_keys_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("fixed");
        QTest::addColumn<int>("rows");
        QTest::newRow("cancel, last row full") << 80 << 1 << 21;
        QTest::newRow("cancel, last cell free") << 79 << 1 << 20;
        QTest::newRow("two keys, last row full") << 80 << 2 << 21;
        QTest::newRow("two keys, last cell free") << 79 << 2 << 21;
        QTest::newRow("two keys, two cells free") << 78 << 2 << 20;
    }
    void a_blank_row_keeps_the_last_choices_from_under_the_fixed_keys()
    {
        QFETCH(int, count);
        QFETCH(int, fixed);
        QTEST(Grid(4, 4).scrolledRows(count, fixed), "rows");
    }

    void the_present_choice_has_the_text_or_the_value_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("value"); // NaN: none is known
        QTest::addColumn<int>("at");
        const double none = std::numeric_limits<double>::quiet_NaN();
        QTest::newRow("nothing known") << "Modulation" << none << -1;
        QTest::newRow("value") << "Modulation" << 1.0 << 1;
        QTest::newRow("value 0") << "Modulation" << 0.0 << 0;
        QTest::newRow("no such value") << "Modulation" << 7.0 << -1;
        QTest::newRow("single precision") << "Modulation" << double{0.1F} << 2;
        QTest::newRow("text") << "ARTM CPM" << none << 3;
        QTest::newRow("the text counts more") << "ARTM CPM" << 1.0 << 3;
        QTest::newRow("text with a doubled &") << "I && Q" << none << 4;
        QTest::newRow("no text") << "" << none << -1;
    }
    void the_present_choice_has_the_text_or_the_value()
    {
        QFETCH(QString, text);
        QFETCH(double, value);
        const auto known = std::isnan(value) ? std::nullopt : std::optional<double>(value);
        const auto offered =
            choices::parse(u"0 PCM/FM:1 SOQPSK:0.1 Tenth:cpm ARTM CPM:iq I & Q:1 Again:  "_s);
        QTEST(choices::presentAt(offered, {text, known}), "at");
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
