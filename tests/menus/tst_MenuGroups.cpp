#include "menus/MenuGroups.h"

#include "support/TestMain.h"

class tst_MenuGroups : public QObject
{
    Q_OBJECT

private slots:
    void a_cell_lies_in_the_group_of_its_row_and_column_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("col");
        QTest::addColumn<QString>("group");
        QTest::addColumn<int>("groupRow");
        QTest::addColumn<int>("groupCol");
        QTest::newRow("first cell") << 0 << 0 << "Channel 1" << 0 << 0;
        QTest::newRow("end of channel 1") << 4 << 1 << "Channel 1" << 4 << 1;
        QTest::newRow("start of channel 2") << 0 << 2 << "Channel 2" << 0 << 0;
        QTest::newRow("end of channel 2") << 4 << 3 << "Channel 2" << 4 << 1;
        QTest::newRow("start of combiner") << 0 << 4 << "Combiner" << 0 << 0;
        QTest::newRow("end of combiner") << 4 << 5 << "Combiner" << 4 << 1;
        QTest::newRow("start of options") << 5 << 0 << "Options" << 0 << 0;
        QTest::newRow("options have one row") << 9 << 3 << "Options" << 0 << 3;
        QTest::newRow("options have any column") << 5 << 12 << "Options" << 0 << 12;
        QTest::newRow("right of combiner") << 4 << 6 << "" << 0 << 0;
        QTest::newRow("negative row") << -1 << 0 << "" << 0 << 0;
        QTest::newRow("negative column") << 0 << -1 << "" << 0 << 0;
        QTest::newRow("negative column below") << 5 << -1 << "" << 0 << 0;
    }

    void a_cell_lies_in_the_group_of_its_row_and_column()
    {
        QFETCH(int, row);
        QFETCH(int, col);
        QFETCH(QString, group);
        QWidget page;
        const auto groups = menuGroups::addFourGroups(new QGridLayout(&page), QString());
        const auto cell = groups.grids.at(row, col);
        if (group.isEmpty()) {
            QVERIFY(cell.grid == nullptr);
            return;
        }
        QVERIFY(cell.grid != nullptr);
        QCOMPARE(qobject_cast<QGroupBox*>(cell.grid->parentWidget())->title(), group);
        QTEST(cell.row, "groupRow");
        QTEST(cell.col, "groupCol");
    }

    void cells_of_a_group_that_is_missing_lie_nowhere()
    {
        QGridLayout channel1;
        const menuGroups::GroupGrids groups{&channel1, nullptr, nullptr, nullptr};
        QCOMPARE(groups.at(0, 0).grid, &channel1);
        QVERIFY(groups.at(0, 2).grid == nullptr);
        QVERIFY(groups.at(0, 4).grid == nullptr);
        QVERIFY(groups.at(5, 0).grid == nullptr);
    }

    void the_options_lie_below_the_other_three_groups()
    {
        QWidget page;
        auto* outer = new QGridLayout(&page);
        const QString sheet = QStringLiteral("QGroupBox {color: yellow;}");
        const auto groups = menuGroups::addFourGroups(outer, sheet);
        const QList<QGroupBox*> above{groups.channel1, groups.channel2, groups.combiner};
        for (int col = 0; col < 3; ++col) {
            QCOMPARE(outer->itemAtPosition(0, col)->widget(), above.at(col));
            QCOMPARE(outer->itemAtPosition(1, col)->widget(), groups.options);
            QCOMPARE(above.at(col)->styleSheet(), sheet);
        }
        QVERIFY(outer->itemAtPosition(2, 0) == nullptr && outer->itemAtPosition(0, 3) == nullptr);
        QCOMPARE(groups.options->styleSheet(), sheet);
        QCOMPARE(groups.channel1->layout(), groups.grids.channel1);
        QCOMPARE(groups.options->layout(), groups.grids.options);
    }
};

QN740_TEST_MAIN(tst_MenuGroups)
#include "tst_MenuGroups.moc"
