#include "popups/NumberEntry.h"
#include "popups/NumberRanges.h"
#include "support/TestMain.h"

#include <QRandomGenerator>

using namespace Qt::StringLiterals;

namespace {

NumberEntry typed(const QString& characters, int type = 0)
{
    NumberEntry entry(type);
    entry.append(characters);
    return entry;
}

NumberEntry::Checked checked(
    const QString& characters, int type, const QString& ranges, int multiplier = 0)
{
    return typed(characters, type).check(NumberRanges(ranges, type), multiplier);
}

// Returns random digits, at most `most` of them.
QString randomDigits(QRandomGenerator& random, int most)
{
    QString digits;
    for (int i = random.bounded(most + 1); i > 0; --i) {
        digits += QString::number(random.bounded(10));
    }
    return digits;
}

// Returns a decimal number with its point moved to the right, by working on its characters alone.
QString pointMoved(const QString& whole, const QString& fraction, int places)
{
    const QString filled = fraction.leftJustified(places, u'0');
    return u'0' + whole + filled.left(places) + u'.' + filled.mid(places) + u'0';
}

} // namespace

class tst_NumberEntry : public QObject
{
    Q_OBJECT

private slots:
    void an_entry_starts_as_six_blanks()
    {
        QCOMPARE(NumberEntry().text(), u"      "_s);
        QCOMPARE(NumberEntry(0).display(), u"      "_s);
        QCOMPARE(NumberEntry(1).display(), u"       MHz "_s);
        QCOMPARE(NumberEntry(3).display(), u"      "_s);
    }

    void characters_are_added_at_the_end_without_limit()
    {
        NumberEntry entry = typed(u"1"_s);
        entry.append(u"2."_s);
        QCOMPARE(entry.text(), u"      12."_s);
        QCOMPARE(typed(u"12"_s, 1).display(), u"      12 MHz "_s);
        entry.append(QString(5000, u'9'));
        QCOMPARE(entry.text().size(), 5009);
    }

    void backspace_removes_the_last_character_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::newRow("digits") << "12"
                                << "      1";
        QTest::newRow("zero") << "0"
                              << "      ";
        QTest::newRow("nothing") << ""
                                 << "      ";
        QTest::newRow("point alone") << "."
                                     << "      ";
        QTest::newRow("no number") << "1.2.3"
                                   << "      1.2.";
        QTest::newRow("letters") << "BE"
                                 << "      B";
    }
    void backspace_removes_the_last_character()
    {
        QFETCH(QString, before);
        NumberEntry entry = typed(before, 8);
        entry.backspace();
        QTEST(entry.text(), "after");
    }

    void backspace_does_not_change_a_negative_entry()
    {
        NumberEntry entry = typed(u"12"_s);
        entry.minus();
        entry.backspace();
        QCOMPARE(entry.text(), u"       -12"_s);
    }

    void backspace_leaves_six_blanks()
    {
        NumberEntry entry;
        entry.clearAfterError();
        QCOMPARE(entry.text(), u"       "_s);
        entry.backspace();
        QCOMPARE(entry.text(), u"      "_s);
        entry.backspace();
        QCOMPARE(entry.text(), u"      "_s);
    }

    void minus_puts_seven_blanks_and_a_minus_in_front()
    {
        NumberEntry entry = typed(u"12"_s);
        entry.minus();
        QCOMPARE(entry.text(), u"       -12"_s);
        NumberEntry first;
        first.minus();
        QCOMPARE(first.text(), u"       -"_s);
        first.append(u"5"_s);
        QCOMPARE(first.check(NumberRanges(u"-5 -5"_s, 0), 0).value, -5.0);
    }

    void a_second_minus_on_a_negative_entry_changes_nothing()
    {
        NumberEntry entry;
        entry.minus();
        entry.append(u"5"_s);
        entry.minus();
        QCOMPARE(entry.text(), u"       -5"_s);
    }

    void an_entry_that_reads_as_0_takes_another_minus_and_backspace_data()
    {
        QTest::addColumn<QString>("rest");
        for (const char* rest : {"", "0", "0."}) {
            QTest::addRow("'-%s'", rest) << QString::fromUtf8(rest);
        }
    }

    void an_entry_that_reads_as_0_takes_another_minus_and_backspace()
    {
        QFETCH(QString, rest);
        NumberEntry entry;
        entry.minus();
        entry.append(rest);
        entry.minus();
        QCOMPARE(entry.text(), u"       --"_s + rest);
        entry.plus();
        QCOMPARE(entry.text(), u"       --"_s + rest);
        entry.backspace();
        QCOMPARE(entry.text(), (u"       --"_s + rest).chopped(1));
    }

    void plus_removes_the_minus()
    {
        NumberEntry entry = typed(u"12"_s);
        entry.plus();
        QCOMPARE(entry.text(), u"      12"_s);
        entry.minus();
        entry.plus();
        QCOMPARE(entry.text(), u"       12"_s);
        entry.plus();
        QCOMPARE(entry.text(), u"       12"_s);
        entry.minus();
        QCOMPARE(entry.text(), u"       -12"_s);
    }

    void plus_does_not_remove_a_minus_without_digits()
    {
        NumberEntry entry;
        entry.minus();
        entry.plus();
        QCOMPARE(entry.text(), u"       -"_s);
    }

    void clearing_works_in_two_stages()
    {
        NumberEntry entry = typed(u"12"_s);
        QVERIFY(entry.clear());
        QCOMPARE(entry.text(), u"      "_s);
        QVERIFY(!entry.clear());
        QCOMPARE(entry.text(), u"      "_s);
    }

    void seven_blanks_after_an_error_are_cleared_before_the_pad_is_cancelled()
    {
        NumberEntry entry;
        entry.clearAfterError();
        QVERIFY(entry.clear());
        QVERIFY(!entry.clear());
    }

    void an_error_leaves_seven_blanks_and_the_unit()
    {
        const QStringList units{
            u""_s, u"MHz"_s, u"bps"_s, u"Hz"_s, u"Rads"_s, u"%"_s, u""_s, u""_s, u""_s};
        for (int type = 0; type < units.size(); ++type) {
            NumberEntry entry = typed(u"9"_s, type);
            QCOMPARE(entry.clearAfterError(), u"       "_s + units.at(type));
            QCOMPARE(entry.text(), u"       "_s);
        }
    }

    void numbers_inside_a_range_are_valid_data()
    {
        QTest::addColumn<QString>("characters");
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("ranges");
        QTest::addColumn<int>("multiplier");
        QTest::addColumn<bool>("valid");
        QTest::addColumn<double>("value");
        QTest::newRow("low") << "1" << 0 << "1 5" << 0 << true << 1.0;
        QTest::newRow("high") << "5" << 0 << "1 5" << 0 << true << 5.0;
        QTest::newRow("below") << "0.9" << 0 << "1 5" << 0 << false << 0.9;
        QTest::newRow("second range") << "12" << 0 << "10 20:1 5" << 0 << true << 12.0;
        QTest::newRow("no range") << "1" << 0 << "" << 0 << false << 1.0;
        QTest::newRow("kilo") << "2" << 2 << "2000 2000" << 3 << true << 2000.0;
        QTest::newRow("mega") << "2.5" << 3 << "1000000 3000000" << 6 << true << 2500000.0;
        QTest::newRow("kilo out") << "2" << 2 << "1 5" << 3 << false << 2000.0;
        QTest::newRow("other multiplier") << "2" << 2 << "1 5" << 4 << true << 2.0;
        QTest::newRow("percent") << "50" << 5 << "0 100" << 0 << true << 50.0;
        QTest::newRow("blank") << "" << 0 << "0 0" << 0 << false << 0.0;
        QTest::newRow("blank PIN") << "" << 7 << "0 9999" << 0 << false << 0.0;
        QTest::newRow("blank hexadecimal") << "" << 8 << "0 10" << 0 << false << 0.0;
        QTest::newRow("two points") << "1.2.3" << 0 << "0 9" << 0 << false << 0.0;
        QTest::newRow("point alone") << "." << 0 << "0 9" << 0 << false << 0.0;
        QTest::newRow("minus alone") << "-" << 0 << "-9 9" << 0 << false << 0.0;
        QTest::newRow("leading point") << ".5" << 0 << "0 9" << 0 << true << 0.5;
        QTest::newRow("trailing point") << "5." << 0 << "0 9" << 0 << true << 5.0;
        QTest::newRow("leading zeros") << "007" << 7 << "0 9999" << 0 << true << 7.0;
        QTest::newRow("nan") << "nan" << 0 << "0 9" << 0 << false << 0.0;
        QTest::newRow("too large") << QString(400, u'9') << 0 << "0 inf" << 0 << false << 0.0;
        QTest::newRow("hexadecimal") << "BEEF" << 8 << "0 65535" << 0 << true << 48879.0;
        QTest::newRow("lower-case hexadecimal") << "ff" << 8 << "255 255" << 0 << true << 255.0;
        QTest::newRow("digits are hexadecimal") << "10" << 8 << "16 16" << 0 << true << 16.0;
        QTest::newRow("hexadecimal times a thousand")
            << "A" << 8 << "0 65535" << 3 << true << 10000.0;
        QTest::newRow("1E5 is no power of ten") << "1E5" << 8 << "485 485" << 0 << true << 485.0;
        QTest::newRow("64 bits") << QString(16, u'F') << 8 << "0 1e20" << 0 << true
                                 << 18446744073709551615.0;
        QTest::newRow("65 bits") << QString(17, u'F') << 8 << "0 1e30" << 0 << false << 0.0;
    }
    void numbers_inside_a_range_are_valid()
    {
        QFETCH(QString, characters);
        QFETCH(int, type);
        QFETCH(QString, ranges);
        QFETCH(int, multiplier);
        const NumberEntry::Checked result = checked(characters, type, ranges, multiplier);
        QTEST(result.valid, "valid");
        QFETCH(bool, valid);
        if (valid) {
            QTEST(result.value, "value");
        }
    }

    void an_entry_times_its_unit_meets_a_bound_of_the_same_digits_data()
    {
        QTest::addColumn<QString>("characters");
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("multiplier");
        QTest::addColumn<QString>("ranges");
        QTest::addColumn<double>("value");
        QTest::newRow("1.001 Kbps") << "1.001" << 2 << 3 << "1001 2000" << 1001.0;
        QTest::newRow("16.1 Mbps, high") << "16.1" << 2 << 6 << "100 16100000" << 16100000.0;
        QTest::newRow("16.1 Mbps, low") << "16.1" << 2 << 6 << "16100000 2e7" << 16100000.0;
        QTest::newRow("1.001 KHz") << "1.001" << 3 << 3 << "1001 1001" << 1001.0;
        QTest::newRow("70.1 MHz") << "70.1" << 3 << 6 << "70100000 70100000" << 70100000.0;
        QTest::newRow("point at the end") << "5." << 2 << 3 << "5000 5000" << 5000.0;
        QTest::newRow("point in front") << ".0161" << 2 << 6 << "16100 16100" << 16100.0;
        QTest::newRow("below the unit") << "0.0011" << 2 << 3 << "1.1 1.1" << 1.1;
        QTest::newRow("leading zeros") << "0016.1" << 2 << 6 << "16100000 16100000" << 16100000.0;
    }
    void an_entry_times_its_unit_meets_a_bound_of_the_same_digits()
    {
        QFETCH(QString, characters);
        QFETCH(int, type);
        QFETCH(int, multiplier);
        QFETCH(QString, ranges);
        const NumberEntry::Checked result = checked(characters, type, ranges, multiplier);
        QVERIFY(result.valid);
        QTEST(result.value, "value");
    }

    void every_entry_times_its_unit_is_what_decimal_arithmetic_gives_data()
    {
        QTest::addColumn<int>("multiplier");
        QTest::newRow("thousand") << 3;
        QTest::newRow("million") << 6;
    }
    void every_entry_times_its_unit_is_what_decimal_arithmetic_gives()
    {
        QFETCH(int, multiplier);
        QRandomGenerator random(static_cast<quint32>(multiplier));
        for (int i = 0; i < 20'000; ++i) {
            const QString whole = randomDigits(random, 8);
            const QString fraction = randomDigits(random, 8);
            if (whole.isEmpty() && fraction.isEmpty()) {
                continue;
            }
            const bool hasPoint = !fraction.isEmpty() || random.bounded(2) == 1;
            const QString characters = whole + (hasPoint ? u"."_s : QString()) + fraction;
            const QString product = pointMoved(whole, fraction, multiplier);
            const NumberEntry::Checked result =
                checked(characters, 2, product + u' ' + product, multiplier);
            QVERIFY2(result.valid, qPrintable(characters + u" is not "_s + product));
            QCOMPARE(result.value, product.toDouble());
        }
    }

    void a_point_alone_is_no_number_in_any_unit()
    {
        for (const int multiplier : {0, 3, 6}) {
            for (const char* characters : {".", "", "1.2.3"}) {
                QVERIFY(
                    !checked(QString::fromUtf8(characters), 2, u"-1e30 1e30"_s, multiplier).valid);
            }
        }
    }

    void the_error_text_names_entry_prefix_and_unit_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("multiplier");
        QTest::addColumn<QString>("text");
        const auto row = [](int type, int multiplier, const char* end) {
            QTest::addRow("%d %d", type, multiplier)
                << type << multiplier
                << u"<font size = 5>Invalid Entry       2 %1</font>"_s.arg(QString::fromUtf8(end));
        };
        row(0, 0, " ");
        row(1, 0, " MHz");
        row(2, 0, " bps");
        row(2, 3, " Kbps");
        row(2, 6, " Mbps");
        row(3, 3, " KHz");
        row(4, 0, " Rads");
        row(5, 0, " %");
        row(8, 0, " ");
    }
    void the_error_text_names_entry_prefix_and_unit()
    {
        QFETCH(int, type);
        QFETCH(int, multiplier);
        QTEST(typed(u"2"_s, type).errorText(multiplier), "text");
    }

    void a_long_entry_is_shortened_in_the_error_text()
    {
        const QString text = typed(u"1"_s + QString(500, u'0') + u"7"_s).errorText(0);
        QVERIFY(text.startsWith(u"<font size = 5>Invalid Entry       1000"_s));
        QVERIFY(text.contains(QChar(0x2026)));
        QVERIFY(text.endsWith(u"0007  </font>"_s));
        // 36 characters in all, the last twelve of the entry among them
        QCOMPARE(text.count(u'0'), typed(u"1"_s).errorText(0).count(u'0') + 33 - 6);
        QVERIFY(text.size() < 90);
    }
};

QN740_TEST_MAIN(tst_NumberEntry)
#include "tst_NumberEntry.moc"
