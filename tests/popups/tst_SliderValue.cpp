#include "popups/SliderValue.h"
#include "support/TestMain.h"

#include <QLoggingCategory>
#include <QRegularExpression>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace {
constexpr int Lowest = std::numeric_limits<int>::min();
constexpr int Highest = std::numeric_limits<int>::max();
} // namespace

class tst_SliderValue : public QObject
{
    Q_OBJECT

private slots:
    void the_range_text_has_the_maximum_first_data()
    {
        QTest::addColumn<QString>("range");
        QTest::addColumn<int>("minimum");
        QTest::addColumn<int>("maximum");
        QTest::addColumn<float>("scale");
        QTest::newRow("plain") << "100 0" << 0 << 100 << 1.0F;
        QTest::newRow("negative minimum") << "50 -50" << -50 << 50 << 2.0F;
        QTest::newRow("swapped") << "0 100" << 0 << 100 << 1.0F;
        QTest::newRow("equal") << "7 7" << 7 << 7 << 100.0F / 7;
        QTest::newRow("zero") << "0 0" << 0 << 0 << 0.0F;
        QTest::newRow("maximum zero") << "0 -60" << -60 << 0 << 0.0F;
        QTest::newRow("empty") << "" << 0 << 0 << 0.0F;
        QTest::newRow("no minimum") << "20" << 0 << 20 << 5.0F;
        QTest::newRow("junk") << "abc def" << 0 << 0 << 0.0F;
        QTest::newRow("no numbers") << "nan nan" << 0 << 0 << 0.0F;
        QTest::newRow("a third field") << "10 5 3" << 5 << 10 << 10.0F;
        QTest::newRow("too far") << "99999999999 -inf" << Lowest << Highest
                                 << 100.0F / 2147483648.0F;
        QTest::newRow("all of an int")
            << "2147483647 -2147483648" << Lowest << Highest << 100.0F / 2147483648.0F;
        QTest::newRow("above a thousand million")
            << "2000000000 1500000000" << 1500000000 << 2000000000 << 100.0F / 2e9F;
    }
    void the_range_text_has_the_maximum_first()
    {
        QFETCH(QString, range);
        const SliderValue value(QString(), QString(), range, 0);
        QTEST(value.minimum(), "minimum");
        QTEST(value.maximum(), "maximum");
        QTEST(value.scale(), "scale");
    }

    void the_position_drops_the_fraction_and_stays_within_the_bounds_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("position");
        const double infinite = std::numeric_limits<double>::infinity();
        QTest::newRow("inside") << 12.0 << 12;
        QTest::newRow("fraction") << 12.99 << 12;
        QTest::newRow("negative fraction") << -3.7 << -3;
        QTest::newRow("above") << 101.0 << 100;
        QTest::newRow("below") << -11.0 << -10;
        QTest::newRow("huge") << 1e30 << 100;
        QTest::newRow("infinite") << infinite << 100;
        QTest::newRow("minus infinite") << -infinite << -10;
        QTest::newRow("no number") << std::nan("") << -10;
    }
    void the_position_drops_the_fraction_and_stays_within_the_bounds()
    {
        QFETCH(double, value);
        const SliderValue slider(QString(), QString(), u"100 -10"_s, 0);
        QTEST(slider.position(value), "position");
    }

    void the_readout_follows_the_type_and_the_name_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("range");
        QTest::addColumn<int>("type");
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("percentage") << "Volume"
                                    << "100 0" << 0 << 50.0 << "50.00%";
        QTest::newRow("percentage of 255") << "Volume"
                                           << "255 0" << 3 << 200.0 << "78.43%";
        QTest::newRow("full scale") << "Volume"
                                    << "3 0" << 0 << 3.0 << "100.00%";
        QTest::newRow("maximum zero") << "Volume"
                                      << "0 -5" << 0 << -3.0 << "0.00%";
        QTest::newRow("dB") << "Gain (dB)"
                            << "60 0" << 0 << 12.0 << "12.00dB";
        QTest::newRow("fraction of dB") << "Gain dB"
                                        << "60 0" << 0 << 12.5 << "12.50dB";
        QTest::newRow("DB is not dB") << "Gain DB"
                                      << "100 0" << 0 << 12.0 << "12.00%";
        QTest::newRow("hexadecimal") << "Gain dB"
                                     << "255 0" << 9 << 171.0 << "0xAB";
        QTest::newRow("hexadecimal fraction") << "Gain"
                                              << "255 0" << 9 << 10.9 << "0xA";
        QTest::newRow("negative hexadecimal") << "Gain"
                                              << "5 -5" << 9 << -1.0 << "0xFFFFFFFF";
        QTest::newRow("integer") << "Gain dB"
                                 << "100 0" << 10 << 42.0 << "42";
        QTest::newRow("above the maximum") << "Gain dB"
                                           << "60 0" << 0 << 1e30 << "60.00dB";
        QTest::newRow("no number") << "Gain dB"
                                   << "60 1" << 0 << std::nan("") << "1.00dB";
    }
    void the_readout_follows_the_type_and_the_name()
    {
        QFETCH(QString, name);
        QFETCH(QString, range);
        QFETCH(int, type);
        QFETCH(double, value);
        QTEST(SliderValue(name, QString(), range, type).readout(value), "text");
    }

    void a_message_is_the_command_and_the_integer()
    {
        const SliderValue value(u"Gain"_s, u"GA "_s, u"100 -100"_s, 0);
        QCOMPARE(value.message(51), u"\x02GA 51\x04"_s);
        QCOMPARE(value.message(-7), u"\x02GA -7\x04"_s);
    }

    void a_step_past_an_end_is_not_taken()
    {
        const SliderValue value(u"Gain"_s, u"G"_s, u"100 0"_s, 0);
        QCOMPARE(value.stepped(95, 5), std::optional<int>(100));
        QCOMPARE(value.stepped(97, 5), std::nullopt);
        QCOMPARE(value.stepped(5, -5), std::optional<int>(0));
        QCOMPARE(value.stepped(3, -5), std::nullopt);
        QCOMPARE(value.stepped(100, std::numeric_limits<int>::max()), std::nullopt);
        QCOMPARE(value.stepped(0, std::numeric_limits<int>::min()), std::nullopt);
    }

    void the_steps_are_the_numbers_of_the_list_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QList<int>>("steps");
        QTest::newRow("none") << "" << QList<int>{};
        QTest::newRow("one") << "5" << QList<int>{5};
        QTest::newRow("in their order") << "10:1:5" << QList<int>{10, 1, 5};
        QTest::newRow("empty items") << ":1::2:" << QList<int>{1, 2};
        QTest::newRow("junk and zero") << "a:0:3" << QList<int>{3};
        QTest::newRow("negative") << "-4" << QList<int>{4};
        QTest::newRow("above a thousand million") << "2000000000" << QList<int>{2000000000};
        QTest::newRow("beyond an int") << "-2147483648:99999999999" << QList<int>{Highest, Highest};
    }
    void the_steps_are_the_numbers_of_the_list()
    {
        QFETCH(QString, text);
        QTEST(SliderValue::steps(text), "steps");
    }

    void steps_that_are_left_out_are_logged_at_debug_level()
    {
        QLoggingCategory::setFilterRules(u"qn740.popups.debug=true"_s);
        QTest::ignoreMessage(
            QtDebugMsg, QRegularExpression(u"slider: the steps after 20 are left out$"_s));
        SliderValue::steps(u"1:"_s.repeated(21));
        QLoggingCategory::setFilterRules(QString());
    }

    void more_steps_than_fit_are_left_out()
    {
        QCOMPARE(SliderValue::steps(u"1:"_s.repeated(20)).size(), 20);
        QCOMPARE(SliderValue::steps(u"1:"_s.repeated(500)).size(), SliderValue::MaxSteps);
    }
};

QN740_TEST_MAIN(tst_SliderValue)
#include "tst_SliderValue.moc"
