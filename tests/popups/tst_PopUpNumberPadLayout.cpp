// These tests check how the number pad looks: its window, keys and lines of text for every type of
// number.
#include "popups/NumberPadRun.h"
#include "support/TestMain.h"

#include <QDialog>
#include <QMainWindow>

using namespace Qt::StringLiterals;

using namespace numberPadRun;
using namespace padScreen;

class tst_PopUpNumberPadLayout : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(QApplication::activeModalWidget(), nullptr); }

    void the_dialog_is_frameless_and_of_fixed_size()
    {
        run({}, [](QWidget* dialog) {
            QCOMPARE(dialog->objectName(), u"PopUpNumberPad"_s);
            QVERIFY(qobject_cast<QDialog*>(dialog) != nullptr);
            QCOMPARE(dialog->size(), QSize(795, 478));
            QCOMPARE(dialog->minimumSize(), dialog->maximumSize());
            QVERIFY(dialog->windowFlags() & Qt::FramelessWindowHint);
            QVERIFY(dialog->windowFlags() & Qt::CustomizeWindowHint);
            QVERIFY(dialog->windowFlags() & Qt::WindowTitleHint);
            QCOMPARE(dialog->windowTitle(), u"Title"_s);
            QCOMPARE(labelText(dialog, "titleLabel"), u"Title"_s);
            QCOMPARE(dialog->findChild<QLabel*>(u"titleLabel"_s)->height(), 45);
        });
    }

    void nothing_overlaps_and_every_key_can_be_touched_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("mirrored");
        QTest::addColumn<QString>("ranges");
        QTest::addColumn<QString>("title");
        for (int type = 0; type < Types; ++type) {
            for (const bool mirrored : {false, true}) {
                QTest::addRow("%d %d", type, mirrored) << type << mirrored << "0 100"
                                                       << "Title";
                QTest::addRow("%d %d full", type, mirrored)
                    << type << mirrored << SevenRanges << QString(60, u'W');
            }
        }
        QStringList many;
        for (int i = 0; i < 200; ++i) {
            many += u"-1234567 1e300"_s;
        }
        QTest::newRow("200 ranges") << 0 << false << many.join(u":"_s) << QString(1000, u'W');
    }
    void nothing_overlaps_and_every_key_can_be_touched()
    {
        QFETCH(int, type);
        QFETCH(bool, mirrored);
        QFETCH(QString, ranges);
        QFETCH(QString, title);
        Opening opening;
        opening.type = type;
        opening.mirrored = mirrored;
        opening.ranges = ranges;
        opening.title = title;
        opening.special = u"-1 "_s + title;
        bool ran = false;
        run(opening, [&ran](QWidget* dialog) {
            QVERIFY(ScreenArea.contains(dialog->frameGeometry()));
            const QList<QWidget*> widgets = shown(dialog);
            QVERIFY(widgets.size() >= 4 + 12);
            for (const QWidget* widget : widgets) {
                const QRect its = place(dialog, widget);
                QVERIFY(dialog->rect().contains(its));
                for (const QWidget* other : widgets) {
                    QVERIFY(other == widget || !its.intersects(place(dialog, other)));
                }
                if (qobject_cast<const QPushButton*>(widget) != nullptr) {
                    QVERIFY2(its.width() >= MinKey && its.height() >= MinKey,
                        qPrintable(u"%1 x %2"_s.arg(its.width()).arg(its.height())));
                    QCOMPARE(dialog->childAt(its.center()), widget);
                }
            }
            ran = true;
        });
        QVERIFY(ran);
    }

    void each_type_has_its_keys_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QStringList>("keys");
        const QStringList point{u"."_s};
        QTest::newRow("0") << 0 << point + QStringList{u"+"_s, u"-"_s, u"Enter"_s};
        QTest::newRow("1") << 1
                           << point +
                QStringList{u"Step\r\n0.1 MHz"_s, u"Step Up"_s, u"Step Down"_s, u"MHz"_s};
        QTest::newRow("2") << 2 << point + QStringList{u"Mbps"_s, u"Kbps"_s, u"bps"_s};
        QTest::newRow("3") << 3 << point + QStringList{u"MHz"_s, u"KHz"_s, u"Hz"_s};
        QTest::newRow("4") << 4 << point + QStringList{u"Enter"_s};
        QTest::newRow("5") << 5 << point + QStringList{u"%"_s};
        QTest::newRow("6") << 6 << point + QStringList{u"Auto Level"_s, u"Enter"_s};
        QTest::newRow("7") << 7 << point + QStringList{u"Enter"_s};
        QTest::newRow("8") << 8
                           << QStringList{
                                  u"A"_s, u"B"_s, u"C"_s, u"D"_s, u"E"_s, u"F"_s, u"Enter"_s};
        QTest::newRow("unknown") << 77 << point + QStringList{u"Enter"_s};
    }
    void each_type_has_its_keys()
    {
        QFETCH(int, type);
        QFETCH(QStringList, keys);
        keys += {u"0"_s, u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s, u"6"_s, u"7"_s, u"8"_s, u"9"_s,
            u"CE/Cancel"_s, u"BackSpace"_s};
        keys.sort();
        Opening opening;
        opening.type = type;
        opening.special = u"-1 Auto Level"_s;
        QStringList found;
        run(opening, [&found](QWidget* dialog) {
            const auto buttons = dialog->findChildren<QPushButton*>();
            for (const QPushButton* button : buttons) {
                found += button->text();
            }
        });
        found.sort();
        QCOMPARE(found, keys);
    }

    void a_pad_over_the_panels_window_stays_inside_the_screen_data()
    {
        QTest::addColumn<QRect>("window");
        QTest::newRow("at the corner") << QRect(0, 0, 800, 480);
        QTest::newRow("moved") << QRect(150, 90, 800, 480);
        QTest::newRow("moved out") << QRect(-500, -300, 800, 480);
        QTest::newRow("small") << QRect(10, 10, 200, 100);
    }
    void a_pad_over_the_panels_window_stays_inside_the_screen()
    {
        QFETCH(QRect, window);
        QMainWindow panel;
        panel.setGeometry(window);
        panel.show();
        QRect frame;
        QRect box;
        run({}, [&](QWidget* dialog) {
            frame = dialog->frameGeometry();
            play([&box](QWidget* top) { box = top->frameGeometry(); });
            QVERIFY(press(dialog, {u"Enter"_s}));
        });
        QCOMPARE(frame.size(), QSize(795, 478));
        QVERIFY(ScreenArea.contains(frame));
        QVERIFY(!box.isEmpty() && ScreenArea.contains(box));
    }

    void digits_stand_as_on_a_calculator()
    {
        run({}, [](QWidget* dialog) {
            QVERIFY(leftOf(dialog, u"7"_s, u"8"_s) && leftOf(dialog, u"8"_s, u"9"_s));
            QVERIFY(leftOf(dialog, u"1"_s, u"2"_s) && leftOf(dialog, u"2"_s, u"3"_s));
            QVERIFY(above(dialog, u"7"_s, u"4"_s) && above(dialog, u"4"_s, u"1"_s) &&
                above(dialog, u"1"_s, u"0"_s));
            QVERIFY(leftOf(dialog, u"0"_s, u"."_s) && leftOf(dialog, u"."_s, u"CE/Cancel"_s));
            QVERIFY(leftOf(dialog, u"9"_s, u"BackSpace"_s) && leftOf(dialog, u"6"_s, u"+"_s));
            QVERIFY(leftOf(dialog, u"3"_s, u"-"_s) && leftOf(dialog, u"CE/Cancel"_s, u"Enter"_s));
        });
    }

    void mirrored_digits_stand_as_on_a_telephone()
    {
        Opening opening;
        opening.mirrored = true;
        run(opening, [](QWidget* dialog) {
            QVERIFY(leftOf(dialog, u"7"_s, u"8"_s) && leftOf(dialog, u"8"_s, u"9"_s));
            QVERIFY(leftOf(dialog, u"1"_s, u"2"_s) && leftOf(dialog, u"2"_s, u"3"_s));
            QVERIFY(above(dialog, u"1"_s, u"4"_s) && above(dialog, u"4"_s, u"7"_s) &&
                above(dialog, u"7"_s, u"0"_s));
            QVERIFY(leftOf(dialog, u"3"_s, u"BackSpace"_s));
        });
    }

    void the_keys_of_a_frequency_stand_in_the_last_column()
    {
        Opening opening;
        opening.type = 1;
        run(opening, [](QWidget* dialog) {
            QVERIFY(above(dialog, u"BackSpace"_s, u"Step\r\n0.1 MHz"_s));
            QVERIFY(above(dialog, u"Step\r\n0.1 MHz"_s, u"Step Up"_s));
            QVERIFY(above(dialog, u"Step Up"_s, u"Step Down"_s) &&
                above(dialog, u"Step Down"_s, u"MHz"_s));
            QVERIFY(leftOf(dialog, u"9"_s, u"Step\r\n0.1 MHz"_s));
            QVERIFY(place(dialog, buttonWithText(dialog, u"BackSpace"_s)).center().y() ==
                place(dialog, dialog->findChild<QWidget*>(u"entryLabel"_s)).center().y());
        });
    }

    void the_unit_keys_stand_in_the_last_column_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QStringList>("keys");
        QTest::newRow("2") << 2 << QStringList{u"BackSpace"_s, u"bps"_s, u"Kbps"_s, u"Mbps"_s};
        QTest::newRow("3") << 3 << QStringList{u"BackSpace"_s, u"Hz"_s, u"KHz"_s, u"MHz"_s};
    }
    void the_unit_keys_stand_in_the_last_column()
    {
        QFETCH(int, type);
        QFETCH(QStringList, keys);
        Opening opening;
        opening.type = type;
        run(opening, [&keys](QWidget* dialog) {
            QVERIFY(leftOf(dialog, u"9"_s, keys.at(0)) && above(dialog, keys.at(0), keys.at(1)));
            QVERIFY(above(dialog, keys.at(1), keys.at(2)) && above(dialog, keys.at(2), keys.at(3)));
            QVERIFY(leftOf(dialog, u"CE/Cancel"_s, keys.at(3)));
        });
    }

    void hexadecimal_letters_stand_in_one_block()
    {
        Opening opening;
        opening.type = 8;
        run(opening, [](QWidget* dialog) {
            QVERIFY(leftOf(dialog, u"A"_s, u"B"_s) && leftOf(dialog, u"C"_s, u"D"_s));
            QVERIFY(leftOf(dialog, u"E"_s, u"F"_s));
            QVERIFY(above(dialog, u"A"_s, u"C"_s) && above(dialog, u"C"_s, u"E"_s));
            QVERIFY(leftOf(dialog, u"9"_s, u"A"_s) && leftOf(dialog, u"B"_s, u"BackSpace"_s));
            QVERIFY(leftOf(dialog, u"D"_s, u"CE/Cancel"_s) &&
                above(dialog, u"BackSpace"_s, u"CE/Cancel"_s));
            QVERIFY(leftOf(dialog, u"0"_s, u"Enter"_s));
            QVERIFY(place(dialog, buttonWithText(dialog, u"Enter"_s)).center().x() ==
                place(dialog, buttonWithText(dialog, u"CE/Cancel"_s)).center().x());
        });
    }

    void the_style_sheets_are_exact()
    {
        Opening opening;
        run(opening, [](QWidget* dialog) {
            const auto sheet = [dialog](const char* key) {
                return buttonWithText(dialog, QString::fromUtf8(key))->styleSheet();
            };
            QCOMPARE(sheet("5"),
                u"QPushButton {background-color: #919191;  font-size: 26px; } QPushButton:pressed {background-color: #4169e1; font-weight: 480}"_s);
            QCOMPARE(sheet("."), sheet("5"));
            QCOMPARE(sheet("CE/Cancel"),
                u"QPushButton {background-color:red; color:white; font-size: 26px; } QPushButton:pressed {background-color: #4169e1;}"_s);
            QCOMPARE(sheet("BackSpace"),
                u"QPushButton {background-color:#b0c4de; color:black; font-size: 26px; } QPushButton:pressed {background-color: #4169e1;} "_s);
            QCOMPARE(sheet("+"), sheet("BackSpace"));
            QCOMPARE(sheet("Enter"),
                u"QPushButton {background-color:green; color:black; font-size: 26px; } QPushButton:pressed {background-color: #4169e1;} "_s);
            QCOMPARE(dialog->findChild<QLabel*>(u"entryLabel"_s)->styleSheet(),
                u"background-color: white; font-size: 32px"_s);
            QCOMPARE(dialog->findChild<QLabel*>(u"currentValueLabel"_s)->styleSheet(),
                u"background-color: darkBlue; color:white; font-size: 18 px"_s);
            QCOMPARE(dialog->findChild<QLabel*>(u"titleLabel"_s)->styleSheet(),
                u"QLabel{color:white; background:rgb(66,89,148); font-size: 18px;}"_s);
            QCOMPARE(dialog->findChild<QLabel*>(u"rangeLabel"_s)->styleSheet(),
                u"QLabel{background:blue; color:white}"_s);
        });
    }

    void the_current_value_is_large_enough_to_read()
    {
        run({}, [](QWidget* dialog) {
            const auto* label = dialog->findChild<QLabel*>(u"currentValueLabel"_s);
            QCOMPARE(QFontInfo(label->font()).pixelSize(), 18);
            QVERIFY(label->height() >= 70 && label->width() >= 150);
        });
    }

    void range_and_current_value_of_each_type_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("range");
        QTest::addColumn<QString>("current");
        QTest::newRow("0") << 0 << "Valid Range(s): 0 to 100"
                           << "      Current Value: 7.00      ";
        QTest::newRow("1") << 1 << "Valid Range(s)(MHz): (0 to 100.0)"
                           << "Current Value:\r\n7.0 MHz";
        QTest::newRow("2") << 2 << "Valid Range(s): 0.0 bps to 100.0 bps"
                           << "      Current Value: 7.00 bps      ";
        QTest::newRow("5") << 5 << "Valid Range(s): 0 to 100"
                           << "      Current Value: 700.00 %      ";
        QTest::newRow("7") << 7 << "Title"
                           << "Enter PIN to unlock ";
        QTest::newRow("8") << 8 << "Valid Range(s): 0 to 64"
                           << "      Current Value: 7      ";
    }
    void range_and_current_value_of_each_type()
    {
        QFETCH(int, type);
        Opening opening;
        opening.type = type;
        opening.current = 7.0;
        QString range;
        QString current;
        run(opening, [&](QWidget* dialog) {
            range = labelText(dialog, "rangeLabel");
            current = labelText(dialog, "currentValueLabel");
        });
        QTEST(range, "range");
        QTEST(current, "current");
    }

    void a_value_text_replaces_the_current_value()
    {
        for (int type = 0; type < Types; ++type) {
            Opening opening;
            opening.type = type;
            opening.valueText = u"Locked <b>now</b>"_s;
            run(opening, [](QWidget* dialog) {
                QCOMPARE(labelText(dialog, "currentValueLabel"), u"Locked <b>now</b>"_s);
            });
        }
    }
};

QN740_TEST_MAIN(tst_PopUpNumberPadLayout)
#include "tst_PopUpNumberPadLayout.moc"
