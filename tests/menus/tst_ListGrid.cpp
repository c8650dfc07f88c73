#include "menus/ListGrid.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

class tst_ListGrid : public QObject
{
    Q_OBJECT

private slots:
    void the_grid_follows_the_number_of_choices_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("param");
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("columns");
        QTest::newRow("1") << 1 << 0 << 4 << 4;
        QTest::newRow("16") << 16 << 0 << 4 << 4;
        QTest::newRow("17") << 17 << 0 << 4 << 5;
        QTest::newRow("21") << 21 << 0 << 4 << 5;
        QTest::newRow("22") << 22 << 0 << 6 << 6;
        QTest::newRow("47") << 47 << 0 << 6 << 6;
        QTest::newRow("48") << 48 << 0 << 6 << 9;
        QTest::newRow("51") << 51 << 0 << 6 << 9;
        QTest::newRow("52") << 52 << 0 << 9 << 6;
        QTest::newRow("500") << 500 << 0 << 9 << 6;
        QTest::newRow("17, 3 columns") << 17 << 3 << 4 << 3;
        QTest::newRow("60, 1 column") << 60 << 1 << 4 << 1;
        QTest::newRow("17, negative") << 17 << -1 << 4 << 5;
    }
    void the_grid_follows_the_number_of_choices()
    {
        QFETCH(int, count);
        QFETCH(int, param);
        QFETCH(int, rows);
        QFETCH(int, columns);
        const QString options = u"1 a:"_s.repeated(count - 1) + u"1 a"_s;
        QCOMPARE(ListGrid::forChoices(options, param), (ListGrid{rows, columns}));
    }

    void empty_items_count_too()
    {
        QCOMPARE(ListGrid::forChoices(u":"_s.repeated(16), 0), (ListGrid{4, 5}));
        QCOMPARE(ListGrid::forChoices(QString(), 0), (ListGrid{4, 4}));
    }

    void a_file_list_of_16_characters_gets_five_columns()
    {
        QCOMPARE(ListGrid::forFiles(QString()), (ListGrid{4, 4}));
        QCOMPARE(ListGrid::forFiles(QString(15, u'x')), (ListGrid{4, 4}));
        QCOMPARE(ListGrid::forFiles(QString(16, u'x')), (ListGrid{4, 5}));
    }
};

QN740_TEST_MAIN(tst_ListGrid)
#include "tst_ListGrid.moc"
