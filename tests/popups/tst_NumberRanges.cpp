#include "popups/NumberRanges.h"
#include "support/TestMain.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace {

QString line(const QString& ranges, int type)
{
    return NumberRanges(ranges, type).padText();
}

const QString Indent(26, QLatin1Char(' '));

} // namespace

class tst_NumberRanges : public QObject
{
    Q_OBJECT

private slots:
    void ranges_are_sorted_by_their_low_bound()
    {
        const NumberRanges ranges(u"10 20:1 5"_s, 0);
        const QList<NumberRanges::Range> expected{{1, 5}, {10, 20}};
        QCOMPARE(ranges.ranges(), expected);
        QCOMPARE(ranges.padText(), u"1 to 5, 10 to 20"_s);
        QCOMPARE(ranges.errorText(), u"1 to 5\r\n10 to 20"_s);
    }

    void equal_low_bounds_keep_their_order()
    {
        const QList<NumberRanges::Range> expected{{1, 3}, {1, 9}, {1, 2}, {2, 0}};
        QCOMPARE(NumberRanges(u"2 0:1 3:1 9:1 2"_s, 0).ranges(), expected);
    }

    void items_that_are_not_ranges_are_ignored_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shown");
        QTest::newRow("empty") << ""
                               << "";
        QTest::newRow("only separators") << ":::"
                                         << "";
        QTest::newRow("one field") << "5:1 2"
                                   << "1 to 2";
        QTest::newRow("trailing separator") << "1 2:"
                                            << "1 to 2";
        QTest::newRow("third field") << "1 2 3"
                                     << "1 to 2";
        QTest::newRow("no numbers") << "a b"
                                    << "0 to 0";
        QTest::newRow("half a number") << "5 x"
                                       << "5 to 0";
        QTest::newRow("not a number") << "nan 7"
                                      << "0 to 7";
        QTest::newRow("two blanks: the second field is empty") << "1  2"
                                                               << "1 to 0";
    }
    void items_that_are_not_ranges_are_ignored()
    {
        QFETCH(QString, text);
        QTEST(line(text, 0), "shown");
    }

    void both_bounds_are_inside_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<bool>("inside");
        QTest::newRow("below") << 0.999 << false;
        QTest::newRow("low") << 1.0 << true;
        QTest::newRow("middle") << 3.0 << true;
        QTest::newRow("high") << 5.0 << true;
        QTest::newRow("between") << 7.0 << false;
        QTest::newRow("low of the second") << 10.0 << true;
        QTest::newRow("high of the second") << 20.0 << true;
        QTest::newRow("above") << 20.001 << false;
        QTest::newRow("nan") << std::numeric_limits<double>::quiet_NaN() << false;
        QTest::newRow("inf") << std::numeric_limits<double>::infinity() << false;
    }
    void both_bounds_are_inside()
    {
        QFETCH(double, value);
        QTEST(NumberRanges(u"10 20:1 5"_s, 0).contains(value), "inside");
    }

    void without_a_range_nothing_is_valid() { QVERIFY(!NumberRanges(u""_s, 0).contains(0.0)); }

    void three_ranges_stand_on_a_line()
    {
        QCOMPARE(line(u"1 2:3 4:5 6"_s, 0), u"1 to 2, 3 to 4, 5 to 6"_s);
        QCOMPARE(
            line(u"1 2:3 4:5 6:7 8"_s, 0), u"1 to 2, 3 to 4, 5 to 6\r\n"_s + Indent + u"7 to 8"_s);
        QCOMPARE(line(u"1 2:3 4:5 6:7 8:9 10:11 12:13 14"_s, 0),
            u"1 to 2, 3 to 4, 5 to 6\r\n"_s + Indent + u"7 to 8, 9 to 10, 11 to 12\r\n"_s + Indent +
                u"13 to 14"_s);
    }

    void six_ranges_end_without_a_line_break()
    {
        QCOMPARE(line(u"1 2:3 4:5 6:7 8:9 10:11 12"_s, 0),
            u"1 to 2, 3 to 4, 5 to 6\r\n"_s + Indent + u"7 to 8, 9 to 10, 11 to 12"_s);
    }

    void more_than_nine_ranges_are_all_kept()
    {
        QStringList items;
        for (int i = 0; i < 20; ++i) {
            items += u"%1 %2"_s.arg(100 + i).arg(100 + i);
        }
        const NumberRanges ranges(items.join(u":"_s), 0);
        QCOMPARE(ranges.ranges().size(), 20);
        QVERIFY(ranges.contains(119));
        const QStringList lines = ranges.padText().split(u"\r\n"_s);
        QCOMPARE(lines.size(), 7);
        QCOMPARE(lines.at(3), Indent + u"109 to 109, 110 to 110, 111 to 111"_s);
        QCOMPARE(lines.at(6), Indent + u"118 to 118, 119 to 119"_s);
        QCOMPARE(ranges.errorText().split(u"\r\n"_s).size(), 20);
    }

    void a_range_is_written_as_its_type_wants_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<double>("low");
        QTest::addColumn<double>("high");
        QTest::addColumn<QString>("text");
        const auto row = [](int type, double low, double high, const char* text) {
            QTest::addRow("%d: %s", type, text) << type << low << high << QString::fromUtf8(text);
        };
        row(0, -10, 10, "-10 to 10");
        row(0, -10, -2.5, "-10 to -2.5");
        row(0, 1234567, 0.00001, "1.23457e+06 to 1e-05");
        row(1, 70, 140, "(70.0 to 140.0)");
        row(1, 0, 1, "(0 to 1.0)");
        row(1, 0.4, 0.999, "(0 to 1)");
        row(1, -10.5, 10.26, "(-10.5 to 10.3)");
        row(2, 999, 1000, "999.0 bps to 1.0 Kbps");
        row(2, 999999, 1000000, "1000.0 Kbps to 1.0 Mbps");
        row(2, 0.5, 42500000, "0.5 bps to 42.5 Mbps");
        row(2, -2000, 2000000, "-2.0 Kbps to 2.0 Mbps");
        row(3, 999, 1000, "999.0 Hz to 1.0 KHz");
        row(3, 10, 70000000, "10.0 Hz to 70.0 MHz");
        row(4, -3.14159265, 3.14159265, "-3.14159 to 3.14159");
        row(5, 0, 100, "0 to 100");
        row(6, 0.25, 8, "0.25 to 8");
        row(7, 0, 9999, "0 to 9999");
        row(8, 10, 255, "A to FF");
        row(8, 0, 1e30, "0 to FFFFFFFFFFFFFFFF");
        row(8, -255, 16.9, "-FF to 10");
        row(42, 1, 2, "1 to 2");
    }
    void a_range_is_written_as_its_type_wants()
    {
        QFETCH(int, type);
        QFETCH(double, low);
        QFETCH(double, high);
        QTEST(NumberRanges::rangeString({low, high}, type), "text");
    }

    void the_range_line_of_each_type_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("text");
        for (const int type : {0, 4, 5, 6}) {
            QTest::addRow("%d", type) << type << "Valid Range(s): 1 to 5, 10 to 20";
        }
        QTest::newRow("1") << 1 << "Valid Range(s)(MHz): (1.0 to 5.0), (10.0 to 20.0)";
        QTest::newRow("2") << 2 << "Valid Range(s): 1.0 bps to 5.0 bps, 10.0 bps to 20.0 bps";
        QTest::newRow("3") << 3 << "Valid Range(s): 1.0 Hz to 5.0 Hz, 10.0 Hz to 20.0 Hz";
        QTest::newRow("7 shows the title") << 7 << "The title";
        QTest::newRow("8") << 8 << "Valid Range(s): 1 to 5, A to 14";
    }
    void the_range_line_of_each_type()
    {
        QFETCH(int, type);
        QTEST(NumberRanges(u"10 20:1 5"_s, type).rangeLine(u"The title"_s), "text");
    }

    void a_frequency_line_is_indented_by_five_more_blanks()
    {
        const NumberRanges ranges(u"1 2:3 4:5 6:7 8"_s, 1);
        QCOMPARE(ranges.rangeLine({}),
            u"Valid Range(s)(MHz): (1.0 to 2.0), (3.0 to 4.0), (5.0 to 6.0)\r\n     "_s + Indent +
                u"(7.0 to 8.0)"_s);
    }
};

QN740_TEST_MAIN(tst_NumberRanges)
#include "tst_NumberRanges.moc"
