#include "menus/GroupCells.h"

#include "menus/KeyBoard.h"
#include "support/TestMain.h"

class tst_GroupCells : public QObject
{
    Q_OBJECT

private slots:
    void each_source_menu_has_its_column_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<int>("col");
        QTest::newRow("tuner 1") << "Tuner CH1" << 0;
        QTest::newRow("demodulator 1") << "Demod 1" << 1;
        QTest::newRow("tuner 2") << "Tuner CH2" << 2;
        QTest::newRow("demodulator 2") << "Demod 2" << 3;
        QTest::newRow("combiner") << "Combiner" << 4;
        QTest::newRow("demodulator 3") << "Demod 3" << 5;
    }
    void each_source_menu_has_its_column()
    {
        QFETCH(QString, source);
        QFETCH(int, col);
        KeyBoard menu;
        menu.new_mm_keyboard(QStringLiteral("Main"), 5, 5);
        for (int row = 0; row < 8; ++row) {
            const auto cell = groupCells::nextOfColumn(menu, source);
            QCOMPARE(cell.row, row);
            QCOMPARE(cell.col, col);
        }
    }

    void each_source_menu_has_a_counter_of_its_own()
    {
        KeyBoard menu;
        menu.new_mm_keyboard(QStringLiteral("Main"), 5, 5);
        const QStringList sources{QStringLiteral("Tuner CH1"), QStringLiteral("Tuner CH2"),
            QStringLiteral("Demod 1"), QStringLiteral("Demod 2"), QStringLiteral("Demod 3"),
            QStringLiteral("Combiner")};
        for (int row = 0; row < 3; ++row) {
            for (const QString& source : sources) {
                QCOMPARE(groupCells::nextOfColumn(menu, source).row, row);
            }
        }
        QCOMPARE(menu.fixedCol, 0);
        QCOMPARE(menu.fixedRow, 0);
    }

    void copies_from_an_unknown_source_menu_always_get_the_first_cell_data()
    {
        QTest::addColumn<QString>("source");
        for (const char* name : {"", "tuner ch1", "Tuner CH1 ", "Demod 4", "Main"}) {
            QTest::newRow(name) << QString::fromLatin1(name);
        }
    }
    void copies_from_an_unknown_source_menu_always_get_the_first_cell()
    {
        QFETCH(QString, source);
        KeyBoard menu;
        menu.new_mm_keyboard(QStringLiteral("Main"), 5, 5);
        for (int i = 0; i < 3; ++i) {
            const auto cell = groupCells::nextOfColumn(menu, source);
            QCOMPARE(cell.row, 0);
            QCOMPARE(cell.col, 0);
        }
        for (const int row : menu.groupRows) {
            QCOMPARE(row, 0);
        }
    }

    void fixed_cells_fill_two_columns_row_by_row()
    {
        KeyBoard menu;
        menu.new_PAX_mm_keyboard(QStringLiteral("PAX"), 5, 2);
        for (int i = 0; i < 12; ++i) {
            const auto cell = groupCells::nextFixed(menu);
            QCOMPARE(cell.row, i / 2);
            QCOMPARE(cell.col, i % 2);
        }
    }

    void on_the_PAX_main_menu_the_tuners_share_the_counters_of_the_fixed_cells()
    {
        KeyBoard menu;
        menu.new_PAX_mm_keyboard(QStringLiteral("PAX"), 5, 2);
        QCOMPARE(groupCells::nextOfColumn(menu, QStringLiteral("Tuner CH1")).row, 0);
        QCOMPARE(menu.fixedCol, 1);
        QCOMPARE(groupCells::nextOfColumn(menu, QStringLiteral("Tuner CH2")).row, 0);
        QCOMPARE(menu.fixedRow, 1);
        QCOMPARE(groupCells::nextOfColumn(menu, QStringLiteral("Demod 1")).row, 0);
        QCOMPARE(menu.fixedCol, 1);
        QCOMPARE(menu.fixedRow, 1);
    }
};

QN740_TEST_MAIN(tst_GroupCells)
#include "tst_GroupCells.moc"
