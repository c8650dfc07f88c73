#include "popups/EntryType.h"
#include "support/TestMain.h"

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

class tst_EntryType : public QObject
{
    Q_OBJECT

private slots:
    void the_numbers_of_the_types_are_those_of_the_messages()
    {
        using namespace entryType;
        const QList<int> types{
            Signed, Frequency, BitRate, Hertz, Angle, Percentage, Special, Pin, Hexadecimal};
        QCOMPARE(types, (QList<int>{0, 1, 2, 3, 4, 5, 6, 7, 8}));
    }

    void every_type_has_its_unit()
    {
        const QStringList units{
            u""_s, u"MHz"_s, u"bps"_s, u"Hz"_s, u"Rads"_s, u"%"_s, u""_s, u""_s, u""_s, u""_s};
        for (int type = 0; type < units.size(); ++type) {
            QCOMPARE(entryType::unit(type), units.at(type));
        }
        QCOMPARE(entryType::unit(-1), u""_s);
    }

    void the_current_value_of_each_type_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");
        const auto row = [](int type, double value, const QString& text) {
            QTest::addRow("%d: %s", type, qPrintable(text)) << type << value << text;
        };
        const auto framed = [](const char* text) {
            return u"      Current Value: "_s + QString::fromUtf8(text) + u"      "_s;
        };
        row(0, -12.5, framed("-12.50"));
        row(1, 2250.5, u"Current Value:\r\n2250.5 MHz"_s);
        row(1, 0, u"Current Value:\r\n0.0 MHz"_s);
        row(2, 1000, framed("1000.00 bps"));
        row(2, 1001, framed("1.00 kbps"));
        row(2, 1000000, framed("1000.00 kbps"));
        row(2, 1250000, framed("1.25 Mbps"));
        row(3, 1000, framed("1000.00 Hz"));
        row(3, 1500, framed("1.50 KHz"));
        row(3, 1000000, framed("1000.00 KHz"));
        row(3, 70000000, framed("70.00 MHz"));
        row(4, 3.14159, framed("3.14"));
        row(5, 0.5, framed("50.00 %"));
        row(6, 7, framed("7.00"));
        row(7, 1234, u"Enter PIN to unlock "_s);
        row(8, 48879, framed("BEEF"));
        row(8, -5, framed("0"));
        row(8, std::numeric_limits<double>::quiet_NaN(), framed("0"));
        row(8, 1e30, framed("FFFFFFFFFFFFFFFF"));
        row(9, 1, framed("1.00"));
        row(-1, 1, framed("1.00"));
    }
    void the_current_value_of_each_type()
    {
        QFETCH(int, type);
        QFETCH(double, value);
        QTEST(entryType::currentValueText(type, entryType::toSingle(value)), "text");
    }

    void a_number_too_large_for_single_precision_becomes_the_largest()
    {
        constexpr float Largest = std::numeric_limits<float>::max();
        QCOMPARE(entryType::toSingle(1e300), Largest);
        QCOMPARE(entryType::toSingle(-1e300), -Largest);
        QCOMPARE(entryType::toSingle(std::numeric_limits<double>::infinity()), Largest);
        QVERIFY(std::isnan(entryType::toSingle(std::numeric_limits<double>::quiet_NaN())));
        QCOMPARE(entryType::toSingle(0.1), 0.1F);
    }
};

QN740_TEST_MAIN(tst_EntryType)
#include "tst_EntryType.moc"
