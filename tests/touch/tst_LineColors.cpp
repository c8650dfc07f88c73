#include "support/Contrast.h"
#include "support/TestMain.h"
#include "touch/LineColors.h"

class tst_LineColors : public QObject
{
    Q_OBJECT

private slots:
    void the_contrast_formula_gives_known_ratios()
    {
        QCOMPARE(contrast::ratio(Qt::white, Qt::black), 21.0);
        QCOMPARE(contrast::ratio(Qt::black, Qt::black), 1.0);
        // #767676 is the lightest grey that has the contrast of 4.5 : 1 on white that WCAG 2
        // requires.
        QVERIFY(contrast::ratio(QColor(0x76, 0x76, 0x76), Qt::white) >= 4.5);
        QVERIFY(contrast::ratio(QColor(0x77, 0x77, 0x77), Qt::white) < 4.5);
        QVERIFY(contrast::ratio(Qt::blue, Qt::black) < 4.5);
    }

    void each_number_has_its_colour_data()
    {
        QTest::addColumn<int>("number");
        QTest::addColumn<QColor>("color");
        QTest::newRow("red") << 0 << QColor(255, 0, 0);
        QTest::newRow("green") << 1 << QColor(0, 255, 0);
        QTest::newRow("blue") << 2 << QColor(0x60, 0x90, 0xff);
        QTest::newRow("cyan") << 3 << QColor(0, 255, 255);
        QTest::newRow("magenta") << 4 << QColor(255, 0, 255);
        QTest::newRow("yellow") << 5 << QColor(255, 255, 0);
        QTest::newRow("white") << 6 << QColor(255, 255, 255);
        QTest::newRow("grey") << 7 << QColor(160, 160, 164);
    }

    void each_number_has_its_colour()
    {
        QFETCH(int, number);
        QTEST(lineColors::color(number), "color");
    }

    void each_colour_has_enough_contrast_to_black_data() { each_number_has_its_colour_data(); }

    void each_colour_has_enough_contrast_to_black()
    {
        QFETCH(int, number);
        const double ratio = contrast::ratio(lineColors::color(number), Qt::black);
        QVERIFY2(ratio >= 4.5, qPrintable(QString::number(ratio)));
    }

    void each_darker_colour_can_be_seen_on_black_data() { each_number_has_its_colour_data(); }

    void each_darker_colour_can_be_seen_on_black()
    {
        QFETCH(QColor, color);
        const QColor darker = lineColors::darker(color);
        const double ratio = contrast::ratio(darker, Qt::black);
        QVERIFY2(ratio >= contrast::Outline, qPrintable(QString::number(ratio)));
        QVERIFY(darker.value() <= color.value() * 3 / 4);
        QVERIFY(darker.value() >= color.value() / 2);
        QVERIFY(std::abs(darker.hue() - color.hue()) <= 1);
    }

    void a_bright_colour_becomes_half_as_bright()
    {
        QCOMPARE(lineColors::darker(Qt::white), QColor(Qt::white).darker(200));
        QCOMPARE(lineColors::darker(Qt::yellow), QColor(Qt::yellow).darker(200));
    }

    void a_colour_without_enough_contrast_becomes_no_darker()
    {
        QCOMPARE(lineColors::darker(Qt::blue), QColor(Qt::blue));
        QCOMPARE(lineColors::darker(Qt::black), QColor(Qt::black));
    }

    void the_light_blue_is_still_blue()
    {
        const int pureBlueHue = 240;
        QVERIFY(std::abs(lineColors::color(2).hue() - pureBlueHue) < 30);
    }

    void other_numbers_have_no_colour()
    {
        for (const int number : {-1, lineColors::Count, 1000, -2147483647 - 1, 2147483647}) {
            QVERIFY(!lineColors::color(number).isValid());
        }
    }
};

QN740_TEST_MAIN(tst_LineColors)
#include "tst_LineColors.moc"
