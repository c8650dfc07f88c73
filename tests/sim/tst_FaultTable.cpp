#include "sim/line/FaultTable.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

namespace {

FaultTable table()
{
    return FaultTable({{QLatin1String("lost"), QLatin1String("it is lost")},
        {QLatin1String("late"), QLatin1String("it is late")}});
}

} // namespace

class tst_FaultTable : public QObject
{
    Q_OBJECT

private slots:
    void a_new_table_has_no_fault()
    {
        QVERIFY(table().isEmpty());
        QCOMPARE(table().rate(QLatin1String("lost")), 0.0);
    }

    void rates_are_set_by_name()
    {
        FaultTable faults = table();
        QCOMPARE(faults.set(u"lost=0.25"_s), QString());
        QCOMPARE(faults.rate(QLatin1String("lost")), 0.25);
        QCOMPARE(faults.rate(QLatin1String("late")), 0.0);
        QVERIFY(!faults.isEmpty());
    }

    void several_come_with_commas_and_the_last_word_counts()
    {
        FaultTable faults = table();
        QCOMPARE(faults.set(u"lost=0.25,late=1,lost=0"_s), QString());
        QCOMPARE(faults.rate(QLatin1String("lost")), 0.0);
        QCOMPARE(faults.rate(QLatin1String("late")), 1.0);
        QCOMPARE(faults.set(u"late=0"_s), QString());
        QVERIFY(faults.isEmpty());
    }

    void unknown_faults_and_bad_rates_are_refused_with_the_reason_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("reason");
        const QString unknown = u"no fault \"%1\"; there are lost, late"_s;
        const QString rate = u"lost needs a rate from 0 to 1, as in lost=0.05"_s;
        QTest::newRow("name") << "Lost=1" << unknown.arg(u"Lost"_s);
        QTest::newRow("nothing") << "" << unknown.arg(u""_s);
        QTest::newRow("second name") << "lost=1,x" << unknown.arg(u"x"_s);
        QTest::newRow("no rate") << "lost" << rate;
        QTest::newRow("empty rate") << "lost=" << rate;
        QTest::newRow("text") << "lost=often" << rate;
        QTest::newRow("above 1") << "lost=1.01" << rate;
        QTest::newRow("below 0") << "lost=-0.1" << rate;
        QTest::newRow("nan") << "lost=nan" << rate;
        QTest::newRow("infinite") << "lost=inf" << rate;
    }

    void unknown_faults_and_bad_rates_are_refused_with_the_reason()
    {
        QFETCH(QString, text);
        FaultTable faults = table();
        QTEST(faults.set(text), "reason");
    }

    void the_help_names_each()
    {
        QCOMPARE(table().help(), u"  lost           it is lost\n  late           it is late\n"_s);
    }
};

QN740_TEST_MAIN(tst_FaultTable)
#include "tst_FaultTable.moc"
