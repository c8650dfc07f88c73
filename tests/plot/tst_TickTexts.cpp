#include "plot/TickTexts.h"
#include "support/TestMain.h"

class tst_TickTexts : public QObject
{
    Q_OBJECT

private slots:
    void all_ticks_have_the_decimals_that_the_longest_needs_data()
    {
        QTest::addColumn<QVector<double>>("positions");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("whole numbers")
            << QVector<double>{60, 70, 80} << QStringList{"60", "70", "80"};
        QTest::newRow("halves") << QVector<double>{55, 62.5, 70}
                                << QStringList{"55.0", "62.5", "70.0"};
        QTest::newRow("eighths") << QVector<double>{66.25, 68.125, 70}
                                 << QStringList{"66.250", "68.125", "70.000"};
        QTest::newRow("at most four decimals")
            << QVector<double>{0.123456, 1} << QStringList{"0.1235", "1.0000"};
        QTest::newRow("a rounding error counts as exact")
            << QVector<double>{0.1 + 0.2, 1} << QStringList{"0.3", "1.0"};
        QTest::newRow("negative") << QVector<double>{-0.5, 0.5} << QStringList{"-0.5", "0.5"};
        QTest::newRow("none") << QVector<double>() << QStringList();
    }

    void all_ticks_have_the_decimals_that_the_longest_needs()
    {
        QFETCH(QVector<double>, positions);
        QTEST(tickTexts::texts(positions), "expected");
    }
};

QN740_TEST_MAIN(tst_TickTexts)
#include "tst_TickTexts.moc"
