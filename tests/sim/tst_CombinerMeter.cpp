#include "sim/unit/CombinerMeter.h"
#include "sim/unit/MessageRules.h"
#include "sim/unit/UnitState.h"
#include "support/TestMain.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

class tst_CombinerMeter : public QObject
{
    Q_OBJECT

private slots:
    void it_measures_only_while_a_scope_is_on()
    {
        UnitState unit;
        const CombinerMeter meter(unit, 1);
        QSignalSpy tells(&meter, &CombinerMeter::tells);
        QTest::qWait(2 * CombinerMeter::PeriodMs); // no event marks that nothing is sent
        QCOMPARE(tells.size(), 0);
        unit.setScopeMode(2, 1);
        QTRY_VERIFY(tells.size() >= 2);
        QVERIFY(tells.at(0).at(0).toString().startsWith(u"PM,"_s));
    }

    void a_measurement_is_a_message_with_values_of_the_display()
    {
        UnitState unit;
        CombinerMeter meter(unit, 7);
        QSet<QString> phases;
        for (int i = 0; i < 500; ++i) {
            const QString body = meter.next();
            QVERIFY2(rules::fault(body).isEmpty(), qPrintable(body));
            const QStringList fields = body.split(u',');
            QVERIFY(fields.at(1).toDouble() >= 0.0 && fields.at(1).toDouble() <= 1.0);
            for (const int magnitude : {fields.at(2).toInt(), fields.at(3).toInt()}) {
                QVERIFY2(magnitude >= 60 && magnitude <= 80, qPrintable(body));
            }
            phases += fields.at(1);
        }
        QVERIFY(phases.size() > 20); // the phase varies
    }

    void a_tuner_that_receives_nothing_has_no_magnitude()
    {
        UnitState unit;
        CombinerMeter meter(unit, 7);
        unit.takeCommand(u"R2:FREQ:1700"_s);
        const QStringList fields = meter.next().split(u',');
        QVERIFY(fields.at(2).toInt() > 60);
        QVERIFY(fields.at(3).toInt() < 10);
    }

    void the_same_seed_measures_the_same()
    {
        const UnitState unit;
        CombinerMeter one(unit, 3);
        CombinerMeter same(unit, 3);
        CombinerMeter other(unit, 4);
        QStringList first;
        QStringList second;
        QStringList third;
        for (int i = 0; i < 50; ++i) {
            first += one.next();
            second += same.next();
            third += other.next();
        }
        QCOMPARE(first, second);
        QVERIFY(first != third);
    }
};

QN740_TEST_MAIN(tst_CombinerMeter)
#include "tst_CombinerMeter.moc"
