#include "support/TestMain.h"
#include "wire/SpanTable.h"

using namespace Qt::StringLiterals;

class tst_SpanTable : public QObject
{
    Q_OBJECT

private slots:
    void each_span_has_the_values_of_the_unit_data()
    {
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("fftParam");
        QTest::addColumn<QString>("code");
        QTest::addColumn<double>("spanMHz");
        QTest::addColumn<QVector<double>>("ticks");
        using Ticks = QVector<double>;
        QTest::newRow("0") << "1 MHz  "
                           << "12"
                           << "3990" << 1.199056 << Ticks{69.5, 69.75, 70, 70.25, 70.5};
        QTest::newRow("1") << "3 MHz  "
                           << "12"
                           << "3812" << 3.235677106 << Ticks{68.5, 69.25, 70, 70.75, 71.5};
        QTest::newRow("2") << "5 MHz  "
                           << "12"
                           << "3622" << 5.361816 << Ticks{67.5, 68.75, 70, 71.25, 72.5};
        QTest::newRow("3") << "7.5 Mhz"
                           << "11"
                           << "1694" << 8.066406308 << Ticks{66.25, 68.125, 70, 71.875, 73.75};
        QTest::newRow("4") << "10 MHz "
                           << "11"
                           << "1574" << 10.723632 << Ticks{65, 67.5, 70, 72.5, 75};
        QTest::newRow("5") << "15 MHz "
                           << "11"
                           << "1338" << 16.17838553 << Ticks{62.5, 66.25, 70, 73.75, 77.5};
        QTest::newRow("6") << "20 MHz "
                           << "10"
                           << "0550" << 21.447264 << Ticks{60, 65, 70, 75, 80};
        QTest::newRow("7") << "25 MHz "
                           << "10"
                           << "0432" << 26.97916686 << Ticks{57.5, 63.75, 70, 76.25, 82.5};
        QTest::newRow("8") << "30 MHz "
                           << "10"
                           << "0314" << 32.35677106 << Ticks{55, 62.5, 70, 77.5, 85};
        QTest::newRow("9") << "40 MHz "
                           << "10"
                           << "0066" << 43.347002 << Ticks{50, 60, 70, 80, 90};
    }

    void each_span_has_the_values_of_the_unit()
    {
        const SpanInfo& span = spanTable().at(QString::fromUtf8(QTest::currentDataTag()).toInt());
        QTEST(QString::fromUtf8(span.label), "label");
        QCOMPARE(QString::fromUtf8(span.label).size(), 7);
        QTEST(QString::fromUtf8(span.fftParam), "fftParam");
        QTEST(QString::fromUtf8(span.code), "code");
        QTEST(span.spanMHz, "spanMHz");
        QTEST(span.ticks, "ticks");
    }

    void there_are_ten_spans() { QCOMPARE(spanTable().size(), 10); }

    void an_entry_keeps_its_five_values()
    {
        const SpanInfo span("label", "param", "code", 1.5, {1, 2, 3, 4, 5});
        QCOMPARE(QString::fromUtf8(span.label), u"label"_s);
        QCOMPARE(QString::fromUtf8(span.fftParam), u"param"_s);
        QCOMPARE(QString::fromUtf8(span.code), u"code"_s);
        QCOMPARE(span.spanMHz, 1.5);
        QCOMPARE(span.ticks, QVector<double>({1, 2, 3, 4, 5}));
    }

    void all_ticks_lie_inside_the_analysed_width()
    {
        for (const SpanInfo& span : spanTable()) {
            QCOMPARE(span.ticks.size(), 5);
            QCOMPARE(span.ticks.at(2), SpanCentreMHz);
            QVERIFY(span.ticks.first() > SpanCentreMHz - span.spanMHz / 2);
            QVERIFY(span.ticks.last() < SpanCentreMHz + span.spanMHz / 2);
        }
    }
};

QN740_TEST_MAIN(tst_SpanTable)
#include "tst_SpanTable.moc"
