// These tests check entries that the number pad accepts or cancels, and how long the pad lives. See
// also tst_PopUpNumberPadLayout.cpp, tst_PopUpNumberPadErrors.cpp and tst_PopUpNumberPadSteps.cpp.
#include "popups/NumberPadRun.h"
#include "support/TestMain.h"

#include <QMessageBox>

using namespace Qt::StringLiterals;

using namespace numberPadRun;
using namespace padScreen;

class tst_PopUpNumberPad : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(QApplication::activeModalWidget(), nullptr); }

    void what_is_typed_is_shown()
    {
        run({}, [](QWidget* dialog) {
            QCOMPARE(entry(dialog), u"      "_s);
            QVERIFY(press(dialog, {u"1"_s, u"2"_s, u"."_s, u"0"_s}));
            QCOMPARE(entry(dialog), u"      12.0"_s);
            QVERIFY(press(dialog, {u"BackSpace"_s}));
            QCOMPARE(entry(dialog), u"      12."_s);
        });
    }

    void a_frequency_is_shown_with_its_unit()
    {
        Opening opening;
        opening.type = 1;
        run(opening, [](QWidget* dialog) {
            QCOMPARE(entry(dialog), u"       MHz "_s);
            QVERIFY(press(dialog, {u"1"_s, u"2"_s}));
            QCOMPARE(entry(dialog), u"      12 MHz "_s);
            QVERIFY(press(dialog, {u"BackSpace"_s}));
            QCOMPARE(entry(dialog), u"      1 MHz "_s);
            QVERIFY(press(dialog, {u"CE/Cancel"_s}));
            QCOMPARE(entry(dialog), u"       MHz "_s);
        });
    }

    void an_accepted_entry_is_returned_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("ranges");
        QTest::addColumn<QStringList>("keys");
        QTest::addColumn<double>("value");
        QTest::newRow("0") << 0 << "0 100" << QStringList{u"4"_s, u"2"_s, u"Enter"_s} << 42.0;
        QTest::newRow("0, negative")
            << 0 << "-10 10" << QStringList{u"4"_s, u"-"_s, u"Enter"_s} << -4.0;
        QTest::newRow("0, minus first")
            << 0 << "-10 10" << QStringList{u"-"_s, u"4"_s, u"Enter"_s} << -4.0;
        QTest::newRow("0, sign changed")
            << 0 << "-10 10" << QStringList{u"-"_s, u"4"_s, u"+"_s, u"Enter"_s} << 4.0;
        QTest::newRow("1") << 1 << "950 2150"
                           << QStringList{u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"."_s, u"5"_s, u"MHz"_s}
                           << 1234.5;
        QTest::newRow("2, Mbps") << 2 << "1 1e9" << QStringList{u"2"_s, u"Mbps"_s} << 2000000.0;
        QTest::newRow("2, Kbps") << 2 << "1 1e9" << QStringList{u"2"_s, u"Kbps"_s} << 2000.0;
        QTest::newRow("2, bps") << 2 << "1 1e9" << QStringList{u"2"_s, u"bps"_s} << 2.0;
        QTest::newRow("3, MHz") << 3 << "1 1e9" << QStringList{u"7"_s, u"0"_s, u"MHz"_s}
                                << 70000000.0;
        QTest::newRow("3, KHz") << 3 << "1 1e9" << QStringList{u"7"_s, u"0"_s, u"KHz"_s} << 70000.0;
        QTest::newRow("3, Hz") << 3 << "1 1e9" << QStringList{u"7"_s, u"0"_s, u"Hz"_s} << 70.0;
        QTest::newRow("4") << 4 << "0 3.2" << QStringList{u"3"_s, u"."_s, u"1"_s, u"Enter"_s}
                           << 3.1;
        QTest::newRow("5") << 5 << "0 100" << QStringList{u"5"_s, u"0"_s, u"%"_s} << 0.5;
        QTest::newRow("6") << 6 << "0 100" << QStringList{u"5"_s, u"Enter"_s} << 5.0;
        QTest::newRow("6, special") << 6 << "0 100" << QStringList{u"Auto"_s} << -1.0;
        QTest::newRow("7") << 7 << "0 9999"
                           << QStringList{u"0"_s, u"0"_s, u"4"_s, u"2"_s, u"Enter"_s} << 42.0;
        QTest::newRow("8") << 8 << "0 65535"
                           << QStringList{u"B"_s, u"E"_s, u"E"_s, u"F"_s, u"Enter"_s} << 48879.0;
        QTest::newRow("low bound") << 0 << "5 6" << QStringList{u"5"_s, u"Enter"_s} << 5.0;
        QTest::newRow("high bound") << 0 << "5 6" << QStringList{u"6"_s, u"Enter"_s} << 6.0;
        QTest::newRow("zero") << 0 << "0 6" << QStringList{u"0"_s, u"Enter"_s} << 0.0;
    }
    void an_accepted_entry_is_returned()
    {
        QFETCH(int, type);
        QFETCH(QString, ranges);
        QFETCH(QStringList, keys);
        Opening opening;
        opening.type = type;
        opening.ranges = ranges;
        opening.special = u"-1 Auto"_s;
        bool closed = false;
        const double value = run(opening, [&](QWidget* dialog) {
            QVERIFY(press(dialog, keys));
            closed = !dialog->isVisible();
        });
        QVERIFY(closed);
        QTEST(value, "value");
    }

    void clear_first_clears_and_then_cancels()
    {
        QCOMPARE(run({},
                     [](QWidget* dialog) {
                         QVERIFY(press(dialog, {u"1"_s, u"2"_s, u"CE/Cancel"_s}));
                         QCOMPARE(entry(dialog), u"      "_s);
                         QVERIFY(dialog->isVisible());
                         QVERIFY(press(dialog, {u"CE/Cancel"_s}));
                         QVERIFY(!dialog->isVisible());
                     }),
            -9990000000.0);
    }

    void a_cancelled_percentage_is_not_divided()
    {
        Opening opening;
        opening.type = 5;
        QCOMPARE(run(opening, [](QWidget* dialog) { QVERIFY(press(dialog, {u"CE/Cancel"_s})); }),
            -9990000000.0);
    }

    void a_dialog_closed_from_outside_is_cancelled()
    {
        QCOMPARE(run({}, [](QWidget* dialog) { dialog->close(); }), -9990000000.0);
    }

    void the_label_of_the_special_key_data()
    {
        QTest::addColumn<QString>("special");
        QTest::addColumn<QString>("label");
        QTest::addColumn<double>("value");
        QTest::newRow("value and text") << "-1 Auto"
                                        << "Auto" << -1.0;
        QTest::newRow("text of two words") << "0 Auto Level"
                                           << "Auto Level" << 0.0;
        QTest::newRow("value alone") << "99"
                                     << "99" << 99.0;
        QTest::newRow("values") << "55 60 70"
                                << "55" << 55.0;
        QTest::newRow("no number") << "Auto"
                                   << "Auto" << 0.0;
    }
    void the_label_of_the_special_key()
    {
        QFETCH(QString, special);
        QFETCH(QString, label);
        Opening opening;
        opening.type = 6;
        opening.ranges = u"1000 2000"_s;
        opening.special = special;
        const double value = run(opening, [&](QWidget* dialog) {
            QVERIFY(above(dialog, u"BackSpace"_s, label));
            QVERIFY(press(dialog, {label}));
        });
        QTEST(value, "value");
    }

    void without_a_special_value_there_is_no_special_key()
    {
        PopUpNumberPad pad;
        Opening opening;
        opening.type = 6;
        run(pad, opening, [&](QWidget* dialog) {
            pad.special_key_ent();
            QVERIFY(dialog->isVisible());
            QCOMPARE(dialog->findChildren<QPushButton*>().size(), 14);
        });
    }

    void the_last_key_is_remembered_as_a_number()
    {
        PopUpNumberPad pad;
        pad.num_button_clicked(u"7"_s);
        QCOMPARE(pad.lastKeyValue(), 7);
        pad.num_button_clicked(u"."_s);
        QCOMPARE(pad.lastKeyValue(), 0);
    }

    void a_range_is_written_with_its_units()
    {
        QCOMPARE(
            PopUpNumberPad::range_string(qMakePair(1000.0, 2e6), 2), u"1.0 Kbps to 2.0 Mbps"_s);
    }

    void every_opening_starts_again()
    {
        PopUpNumberPad pad;
        Opening opening;
        opening.type = 1;
        opening.ranges = SevenRanges;
        run(pad, opening, [](QWidget* dialog) {
            QVERIFY(press(dialog, {u"1"_s, u"2"_s, u"Step\r\n0.1 MHz"_s}));
        });
        opening.ranges = u"1 2"_s;
        run(pad, opening, [](QWidget* dialog) {
            QCOMPARE(entry(dialog), u"       MHz "_s);
            QCOMPARE(labelText(dialog, "rangeLabel"), u"Valid Range(s)(MHz): (1.0 to 2.0)"_s);
            QVERIFY(buttonWithText(dialog, u"Step\r\n0.1 MHz"_s) != nullptr);
        });
    }

    void a_pad_that_is_open_is_not_opened_twice()
    {
        PopUpNumberPad pad;
        run(pad, {}, [&pad](QWidget* dialog) {
            QCOMPARE(pad.new_pop_NumberPad(u"b"_s, u""_s, 0, 0, u""_s, u""_s, u""_s, false),
                -9990000000.0);
            QCOMPARE(QApplication::activeModalWidget(), dialog);
        });
    }

    void a_pad_deleted_while_it_is_open_is_cancelled()
    {
        const int before = topLevels();
        auto* pad = new PopUpNumberPad;
        play([pad](QWidget* /*dialog*/) { delete pad; });
        QCOMPARE(pad->new_pop_NumberPad(u"a"_s, u"0 1"_s, 0, 5, u""_s, u""_s, u""_s, false),
            -9990000000.0);
        QCOMPARE(topLevels(), before);
    }

    void a_pad_deleted_under_its_error_box_is_cancelled()
    {
        const int before = topLevels();
        auto* pad = new PopUpNumberPad;
        play([pad](QWidget* dialog) {
            play([pad](QWidget* box) {
                QVERIFY(qobject_cast<QMessageBox*>(box) != nullptr);
                delete pad;
            });
            buttonWithText(dialog, u"Enter"_s)->click();
        });
        QCOMPARE(pad->new_pop_NumberPad(u"a"_s, u"0 1"_s, 0, 0, u""_s, u""_s, u""_s, false),
            -9990000000.0);
        QCOMPARE(topLevels(), before);
    }

    void slots_of_a_closed_pad_do_nothing()
    {
        PopUpNumberPad pad;
        pad.num_button_clicked(u"1"_s);
        pad.plus_sign();
        pad.minus_sign();
        pad.backspace();
        pad.change_step();
        pad.up_rf();
        pad.down_rf();
        pad.special_key_ent();
        pad.clear_entry();
        pad.clear_entry();
        QVERIFY(!pad.up_dwn_check_number(1.0));
    }

    void numbers_from_the_wire_of_any_size_are_shown()
    {
        for (int type = 0; type < Types; ++type) {
            for (const double value : {1e300, -1e300, qInf(), -qInf(), qQNaN()}) {
                Opening opening;
                opening.type = type;
                opening.current = value;
                opening.ranges = u"-1e308 1e308:nan inf:-inf nan"_s;
                run(opening, [](QWidget* dialog) {
                    QVERIFY(ScreenArea.contains(dialog->frameGeometry()));
                    grabScreen();
                });
            }
        }
    }

    void opening_and_cancelling_leaves_nothing_behind()
    {
        PopUpNumberPad pad;
        const auto openAndCancel = [&pad](int type) {
            Opening opening;
            opening.type = type;
            opening.special = u"-1 Auto"_s;
            run(pad, opening, [](QWidget* dialog) { QVERIFY(press(dialog, {u"CE/Cancel"_s})); });
        };
        openAndCancel(0);
        const int before = topLevels();
        for (int i = 0; i < 300; ++i) {
            openAndCancel(i % Types);
        }
        QCOMPARE(topLevels(), before);
        QCOMPARE(pad.findChildren<QObject*>().size(), 0);
    }
};

QN740_TEST_MAIN(tst_PopUpNumberPad)
#include "tst_PopUpNumberPad.moc"
