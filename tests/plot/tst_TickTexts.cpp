#include "plot/TickTexts.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

class tst_TickTexts : public QObject
{
    Q_OBJECT

private slots:
    void all_ticks_have_the_decimals_that_the_longest_needs_data()
    {
        QTest::addColumn<QVector<double>>("positions");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("whole numbers")
            << QVector<double>{60, 70, 80} << QStringList{u"60"_s, u"70"_s, u"80"_s};
        QTest::newRow("halves") << QVector<double>{55, 62.5, 70}
                                << QStringList{u"55.0"_s, u"62.5"_s, u"70.0"_s};
        QTest::newRow("eighths") << QVector<double>{66.25, 68.125, 70}
                                 << QStringList{u"66.250"_s, u"68.125"_s, u"70.000"_s};
        QTest::newRow("at most four decimals")
            << QVector<double>{0.123456, 1} << QStringList{u"0.1235"_s, u"1.0000"_s};
        QTest::newRow("a rounding error counts as exact")
            << QVector<double>{0.1 + 0.2, 1} << QStringList{u"0.3"_s, u"1.0"_s};
        QTest::newRow("negative") << QVector<double>{-0.5, 0.5} << QStringList{u"-0.5"_s, u"0.5"_s};
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
