#include "sim/unit/Confirmations.h"
#include "support/TestMain.h"

#include <QElapsedTimer>

using namespace Qt::StringLiterals;

using Answer = Confirmations::Answer;

class tst_Confirmations : public QObject
{
    Q_OBJECT

private slots:
    void a_pattern_stands_for_the_whole_text_data()
    {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("fits");
        QTest::newRow("the same") << "R1:AGC:1"
                                  << "R1:AGC:1" << true;
        QTest::newRow("only a beginning") << "R1:AGC"
                                          << "R1:AGC:1" << false;
        QTest::newRow("only an end") << "AGC:1"
                                     << "R1:AGC:1" << false;
        QTest::newRow("star at the end") << "R1:*"
                                         << "R1:AGC:1" << true;
        QTest::newRow("star for nothing") << "R1:*"
                                          << "R1:" << true;
        QTest::newRow("star in the middle") << "R*:1"
                                            << "R1:AGC:1" << true;
        QTest::newRow("star tried again") << "*1"
                                          << "R1:AGC:1" << true;
        QTest::newRow("star in vain") << "*2"
                                      << "R1:AGC:1" << false;
        QTest::newRow("two stars") << "*AGC*"
                                   << "R1:AGC:1" << true;
        QTest::newRow("any one character") << "R?:AGC:?"
                                           << "R2:AGC:0" << true;
        QTest::newRow("any one is not none") << "R1:AGC:1?"
                                             << "R1:AGC:1" << false;
        QTest::newRow("slash and line break") << "SYS:*:1"
                                              << "SYS:/a\n/b:1" << true;
        QTest::newRow("letters of a regular expression") << "R1.AGC:1"
                                                         << "R1:AGC:1" << false;
        QTest::newRow("case counts") << "r1:*"
                                     << "R1:AGC:1" << false;
        QTest::newRow("star for an empty text") << "*"
                                                << "" << true;
        QTest::newRow("empty pattern") << ""
                                       << "R1" << false;
    }

    void a_pattern_stands_for_the_whole_text()
    {
        QFETCH(QString, pattern);
        QFETCH(QString, text);
        QTEST(Confirmations::fits(pattern, text), "fits");
    }

    void a_pattern_with_many_stars_takes_no_time()
    {
        QElapsedTimer elapsed;
        elapsed.start();
        const QString pattern = QString(u"*a"_s).repeated(30) + u"*b"_s;
        QVERIFY(!Confirmations::fits(pattern, QString(u"a"_s).repeated(10000)));
        QVERIFY2(elapsed.elapsed() < 1000, QByteArray::number(elapsed.elapsed()));
    }

    void without_rules_everything_is_confirmed_at_once()
    {
        const Confirmations::Fate fate = Confirmations().fateOf(u"R1:AGC:1"_s);
        QCOMPARE(fate.answer, Answer::Confirm);
        QCOMPARE(fate.delayMs, 0);
    }

    void rules_count_for_the_messages_that_they_name()
    {
        Confirmations rules;
        QCOMPARE(rules.refuse(u"R1:*"_s), QString());
        QCOMPARE(rules.silence(u"D?:*"_s), QString());
        QCOMPARE(rules.delay(u"250:R?:FREQ:*"_s), QString());
        QCOMPARE(rules.fateOf(u"R1:AGC:1"_s).answer, Answer::Refuse);
        QCOMPARE(rules.fateOf(u"R1:AGC:1"_s).delayMs, 0);
        QCOMPARE(rules.fateOf(u"D2:RATE:5"_s).answer, Answer::Silent);
        QCOMPARE(rules.fateOf(u"R1:FREQ:2250"_s).answer, Answer::Refuse);
        QCOMPARE(rules.fateOf(u"R1:FREQ:2250"_s).delayMs, 250);
        QCOMPARE(rules.fateOf(u"R2:FREQ:2250"_s).answer, Answer::Confirm);
        rules.clear();
        QCOMPARE(rules.fateOf(u"R1:AGC:1"_s).answer, Answer::Confirm);
    }

    void silence_goes_before_refusal_and_the_last_delay_counts()
    {
        Confirmations rules;
        rules.silence(u"R1:AGC:*"_s);
        rules.refuse(u"R1:*"_s);
        rules.delay(u"100"_s);
        rules.delay(u"300:R1:*"_s);
        QCOMPARE(rules.fateOf(u"R1:AGC:1"_s).answer, Answer::Silent);
        QCOMPARE(rules.fateOf(u"R1:AGC:1"_s).delayMs, 300);
        QCOMPARE(rules.fateOf(u"SYS:X:1"_s).delayMs, 100);
    }

    void what_cannot_be_read_is_refused_with_the_reason_data()
    {
        QTest::addColumn<QString>("text");
        for (const char* text :
            {"", "x", "-1", "600001", "1.5", ":R1:*", "99999999999", "x:R1:*"}) {
            QTest::newRow(text) << QString::fromUtf8(text);
        }
    }

    void what_cannot_be_read_is_refused_with_the_reason()
    {
        QFETCH(QString, text);
        Confirmations rules;
        QCOMPARE(rules.delay(text),
            u"delay needs a time in milliseconds from 0 to 600000, and may have \":PATTERN\" behind it"_s);
        QCOMPARE(rules.fateOf(u"R1:AGC:1"_s).delayMs, 0);
    }

    void a_rule_without_a_pattern_is_refused()
    {
        Confirmations rules;
        QCOMPARE(rules.refuse(QString()), u"refuse needs a pattern, as R1:FREQ:*"_s);
        QCOMPARE(rules.silence(QString()), u"silent needs a pattern, as R1:FREQ:*"_s);
        QCOMPARE(rules.delay(u"5:"_s), u"delay needs a pattern, as R1:FREQ:*"_s);
    }

    void there_is_an_end_to_the_rules()
    {
        Confirmations rules;
        for (int i = 0; i < Confirmations::MaxRules; ++i) {
            QCOMPARE(rules.refuse(u"R1"_s), QString());
        }
        QCOMPARE(rules.refuse(u"R1"_s), u"there are 1000 patterns already"_s);
    }
};

QN740_TEST_MAIN(tst_Confirmations)
#include "tst_Confirmations.moc"
