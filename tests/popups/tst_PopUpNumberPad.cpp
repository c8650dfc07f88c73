#include "popups/PopUpNumberPad.h"
#include "support/Screen.h"
#include "support/TestMain.h"

#include <QDialog>
#include <QLabel>
#include <QMainWindow>
#include <QMessageBox>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>

namespace {

constexpr int Types = 9;
constexpr int LeastKey = 47;
const QRect ScreenArea(0, 0, 800, 480);
const QString SevenRanges("950 2150:70 140:1 2:3 4:5 6:7 8:9 10");

// The arguments of an opening, with what most tests do not care for.
struct Opening
{
    int type = 0;
    QString ranges = "0 100";
    double current = 0.0;
    QString special;
    QString command = "CMD";
    QString valueText;
    bool mirrored = false;
    QString title = "Title";
};

// Lets the script play the operator in the next modal dialog and closes what it has left open.
void play(const std::function<void(QWidget*)>& script)
{
    whenModal([script](QWidget* dialog) {
        const QPointer<QWidget> guard(dialog);
        script(dialog);
        if (guard != nullptr && guard->isVisible()) {
            guard->close();
        }
    });
}

double run(PopUpNumberPad& pad, const Opening& opening, const std::function<void(QWidget*)>& script)
{
    play(script);
    return pad.new_pop_NumberPad(opening.title, opening.ranges, opening.current, opening.type,
        opening.special, opening.command, opening.valueText, opening.mirrored);
}

double run(const Opening& opening, const std::function<void(QWidget*)>& script)
{
    PopUpNumberPad pad;
    return run(pad, opening, script);
}

// Out: whether all keys were there and got a click.
bool press(const QWidget* dialog, const QStringList& keys)
{
    for (const QString& key : keys) {
        QPushButton* button = buttonWithText(dialog, key);
        if (button == nullptr) {
            qWarning("no key %s", qPrintable(key));
            return false;
        }
        clickOn(button);
    }
    return true;
}

QString labelText(const QWidget* dialog, const char* name)
{
    const auto* label = dialog->findChild<QLabel*>(name);
    return label != nullptr ? label->text() : QString("(no label)");
}

QString entry(const QWidget* dialog)
{
    return labelText(dialog, "entryLabel");
}

QRect place(const QWidget* dialog, const QWidget* child)
{
    return {child->mapTo(dialog, QPoint(0, 0)), child->size()};
}

// Keys and labels, what the operator sees.
QList<QWidget*> shown(const QWidget* dialog)
{
    QList<QWidget*> widgets;
    const auto all = dialog->findChildren<QWidget*>();
    for (QWidget* widget : all) {
        const bool seen = qobject_cast<QLabel*>(widget) || qobject_cast<QPushButton*>(widget);
        if (seen && widget->isVisible()) {
            widgets += widget;
        }
    }
    return widgets;
}

// Where a key stands: row and column counted by the distinct centres of keys of the same size.
bool above(const QWidget* dialog, const QString& upper, const QString& lower)
{
    const QRect high = place(dialog, buttonWithText(dialog, upper));
    const QRect low = place(dialog, buttonWithText(dialog, lower));
    return high.bottom() < low.top() && high.center().x() == low.center().x();
}

bool leftOf(const QWidget* dialog, const QString& left, const QString& right)
{
    const QRect first = place(dialog, buttonWithText(dialog, left));
    const QRect second = place(dialog, buttonWithText(dialog, right));
    return first.right() < second.left() && first.center().y() == second.center().y();
}

QString framedMessage(const QString& body)
{
    return QChar(0x02) + body + QChar(0x04);
}

int topLevels()
{
    return static_cast<int>(QApplication::topLevelWidgets().size());
}

} // namespace

class tst_PopUpNumberPad : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(QApplication::activeModalWidget(), nullptr); }

    void the_dialog_is_frameless_and_of_fixed_size()
    {
        run({}, [](QWidget* dialog) {
            QCOMPARE(dialog->objectName(), "PopUpNumberPad");
            QVERIFY(qobject_cast<QDialog*>(dialog) != nullptr);
            QCOMPARE(dialog->size(), QSize(795, 478));
            QCOMPARE(dialog->minimumSize(), dialog->maximumSize());
            QVERIFY(dialog->windowFlags() & Qt::FramelessWindowHint);
            QVERIFY(dialog->windowFlags() & Qt::CustomizeWindowHint);
            QVERIFY(dialog->windowFlags() & Qt::WindowTitleHint);
            QCOMPARE(dialog->windowTitle(), "Title");
            QCOMPARE(labelText(dialog, "titleLabel"), "Title");
            QCOMPARE(dialog->findChild<QLabel*>("titleLabel")->height(), 45);
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
                    << type << mirrored << SevenRanges << QString(60, 'W');
            }
        }
        QStringList many;
        for (int i = 0; i < 200; ++i) {
            many += "-1234567 1e300";
        }
        QTest::newRow("200 ranges") << 0 << false << many.join(":") << QString(1000, 'W');
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
        opening.special = "-1 " + title;
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
                    QVERIFY2(its.width() >= LeastKey && its.height() >= LeastKey,
                        qPrintable(QString("%1 x %2").arg(its.width()).arg(its.height())));
                    QCOMPARE(dialog->childAt(its.center()), widget);
                }
            }
            ran = true;
        });
        QVERIFY(ran);
    }

    void the_keys_of_each_type_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QStringList>("keys");
        const QStringList point{"."};
        QTest::newRow("0") << 0 << point + QStringList{"+", "-", "Enter"};
        QTest::newRow("1") << 1
                           << point + QStringList{"Step\r\n0.1 MHz", "Step Up", "Step Down", "MHz"};
        QTest::newRow("2") << 2 << point + QStringList{"Mbps", "Kbps", "bps"};
        QTest::newRow("3") << 3 << point + QStringList{"MHz", "KHz", "Hz"};
        QTest::newRow("4") << 4 << point + QStringList{"Enter"};
        QTest::newRow("5") << 5 << point + QStringList{"%"};
        QTest::newRow("6") << 6 << point + QStringList{"Auto Level", "Enter"};
        QTest::newRow("7") << 7 << point + QStringList{"Enter"};
        QTest::newRow("8") << 8 << QStringList{"A", "B", "C", "D", "E", "F", "Enter"};
        QTest::newRow("unknown") << 77 << point + QStringList{"Enter"};
    }
    void the_keys_of_each_type()
    {
        QFETCH(int, type);
        QFETCH(QStringList, keys);
        keys += {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "CE/Cancel", "BackSpace"};
        keys.sort();
        Opening opening;
        opening.type = type;
        opening.special = "-1 Auto Level";
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
            QVERIFY(press(dialog, {"Enter"}));
        });
        QCOMPARE(frame.size(), QSize(795, 478));
        QVERIFY(ScreenArea.contains(frame));
        QVERIFY(!box.isEmpty() && ScreenArea.contains(box));
    }

    void digits_stand_as_on_a_calculator()
    {
        run({}, [](QWidget* dialog) {
            QVERIFY(leftOf(dialog, "7", "8") && leftOf(dialog, "8", "9"));
            QVERIFY(leftOf(dialog, "1", "2") && leftOf(dialog, "2", "3"));
            QVERIFY(above(dialog, "7", "4") && above(dialog, "4", "1") && above(dialog, "1", "0"));
            QVERIFY(leftOf(dialog, "0", ".") && leftOf(dialog, ".", "CE/Cancel"));
            QVERIFY(leftOf(dialog, "9", "BackSpace") && leftOf(dialog, "6", "+"));
            QVERIFY(leftOf(dialog, "3", "-") && leftOf(dialog, "CE/Cancel", "Enter"));
        });
    }

    void mirrored_digits_stand_as_on_a_telephone()
    {
        Opening opening;
        opening.mirrored = true;
        run(opening, [](QWidget* dialog) {
            QVERIFY(leftOf(dialog, "7", "8") && leftOf(dialog, "8", "9"));
            QVERIFY(leftOf(dialog, "1", "2") && leftOf(dialog, "2", "3"));
            QVERIFY(above(dialog, "1", "4") && above(dialog, "4", "7") && above(dialog, "7", "0"));
            QVERIFY(leftOf(dialog, "3", "BackSpace"));
        });
    }

    void the_keys_of_a_frequency_stand_in_the_last_column()
    {
        Opening opening;
        opening.type = 1;
        run(opening, [](QWidget* dialog) {
            QVERIFY(above(dialog, "BackSpace", "Step\r\n0.1 MHz"));
            QVERIFY(above(dialog, "Step\r\n0.1 MHz", "Step Up"));
            QVERIFY(above(dialog, "Step Up", "Step Down") && above(dialog, "Step Down", "MHz"));
            QVERIFY(leftOf(dialog, "9", "Step\r\n0.1 MHz"));
            QVERIFY(place(dialog, buttonWithText(dialog, "BackSpace")).center().y() ==
                place(dialog, dialog->findChild<QWidget*>("entryLabel")).center().y());
        });
    }

    void the_unit_keys_stand_in_the_last_column_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QStringList>("keys");
        QTest::newRow("2") << 2 << QStringList{"BackSpace", "bps", "Kbps", "Mbps"};
        QTest::newRow("3") << 3 << QStringList{"BackSpace", "Hz", "KHz", "MHz"};
    }
    void the_unit_keys_stand_in_the_last_column()
    {
        QFETCH(int, type);
        QFETCH(QStringList, keys);
        Opening opening;
        opening.type = type;
        run(opening, [&keys](QWidget* dialog) {
            QVERIFY(leftOf(dialog, "9", keys.at(0)) && above(dialog, keys.at(0), keys.at(1)));
            QVERIFY(above(dialog, keys.at(1), keys.at(2)) && above(dialog, keys.at(2), keys.at(3)));
            QVERIFY(leftOf(dialog, "CE/Cancel", keys.at(3)));
        });
    }

    void hexadecimal_letters_stand_in_one_block()
    {
        Opening opening;
        opening.type = 8;
        run(opening, [](QWidget* dialog) {
            QVERIFY(leftOf(dialog, "A", "B") && leftOf(dialog, "C", "D"));
            QVERIFY(leftOf(dialog, "E", "F"));
            QVERIFY(above(dialog, "A", "C") && above(dialog, "C", "E"));
            QVERIFY(leftOf(dialog, "9", "A") && leftOf(dialog, "B", "BackSpace"));
            QVERIFY(leftOf(dialog, "D", "CE/Cancel") && above(dialog, "BackSpace", "CE/Cancel"));
            QVERIFY(leftOf(dialog, "0", "Enter"));
            QVERIFY(place(dialog, buttonWithText(dialog, "Enter")).center().x() ==
                place(dialog, buttonWithText(dialog, "CE/Cancel")).center().x());
        });
    }

    void the_styles_are_the_systems_own()
    {
        Opening opening;
        run(opening, [](QWidget* dialog) {
            const auto sheet = [dialog](const char* key) {
                return buttonWithText(dialog, key)->styleSheet();
            };
            QCOMPARE(sheet("5"),
                "QPushButton {background-color: #919191;  font-size: 26px; } QPushButton:pressed {background-color: #4169e1; font-weight: 480}");
            QCOMPARE(sheet("."), sheet("5"));
            QCOMPARE(sheet("CE/Cancel"),
                "QPushButton {background-color:red; color:white; font-size: 26px; } QPushButton:pressed {background-color: #4169e1;}");
            QCOMPARE(sheet("BackSpace"),
                "QPushButton {background-color:#b0c4de; color:black; font-size: 26px; } QPushButton:pressed {background-color: #4169e1;} ");
            QCOMPARE(sheet("+"), sheet("BackSpace"));
            QCOMPARE(sheet("Enter"),
                "QPushButton {background-color:green; color:black; font-size: 26px; } QPushButton:pressed {background-color: #4169e1;} ");
            QCOMPARE(dialog->findChild<QLabel*>("entryLabel")->styleSheet(),
                "background-color: white; font-size: 32px");
            QCOMPARE(dialog->findChild<QLabel*>("currentValueLabel")->styleSheet(),
                "background-color: darkBlue; color:white; font-size: 18 px");
            QCOMPARE(dialog->findChild<QLabel*>("titleLabel")->styleSheet(),
                "QLabel{color:white; background:rgb(66,89,148); font-size: 18px;}");
            QCOMPARE(dialog->findChild<QLabel*>("rangeLabel")->styleSheet(),
                "QLabel{background:blue; color:white}");
        });
    }

    void the_current_value_is_large_enough_to_read()
    {
        run({}, [](QWidget* dialog) {
            const auto* label = dialog->findChild<QLabel*>("currentValueLabel");
            QCOMPARE(QFontInfo(label->font()).pixelSize(), 18);
            QVERIFY(label->height() >= 70 && label->width() >= 150);
        });
    }

    void the_lines_above_the_keys_data()
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
    void the_lines_above_the_keys()
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

    void a_value_text_stands_for_the_current_value()
    {
        for (int type = 0; type < Types; ++type) {
            Opening opening;
            opening.type = type;
            opening.valueText = "Locked <b>now</b>";
            run(opening, [](QWidget* dialog) {
                QCOMPARE(labelText(dialog, "currentValueLabel"), "Locked <b>now</b>");
            });
        }
    }

    void what_is_typed_is_shown()
    {
        run({}, [](QWidget* dialog) {
            QCOMPARE(entry(dialog), "      ");
            QVERIFY(press(dialog, {"1", "2", ".", "0"}));
            QCOMPARE(entry(dialog), "      12.0");
            QVERIFY(press(dialog, {"BackSpace"}));
            QCOMPARE(entry(dialog), "      12.");
        });
    }

    void a_frequency_is_shown_with_its_unit()
    {
        Opening opening;
        opening.type = 1;
        run(opening, [](QWidget* dialog) {
            QCOMPARE(entry(dialog), "       MHz ");
            QVERIFY(press(dialog, {"1", "2"}));
            QCOMPARE(entry(dialog), "      12 MHz ");
            QVERIFY(press(dialog, {"BackSpace"}));
            QCOMPARE(entry(dialog), "      1 MHz ");
            QVERIFY(press(dialog, {"CE/Cancel"}));
            QCOMPARE(entry(dialog), "       MHz ");
        });
    }

    void an_accepted_entry_is_returned_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("ranges");
        QTest::addColumn<QStringList>("keys");
        QTest::addColumn<double>("value");
        QTest::newRow("0") << 0 << "0 100" << QStringList{"4", "2", "Enter"} << 42.0;
        QTest::newRow("0, negative") << 0 << "-10 10" << QStringList{"4", "-", "Enter"} << -4.0;
        QTest::newRow("0, minus first") << 0 << "-10 10" << QStringList{"-", "4", "Enter"} << -4.0;
        QTest::newRow("0, sign changed")
            << 0 << "-10 10" << QStringList{"-", "4", "+", "Enter"} << 4.0;
        QTest::newRow("1") << 1 << "950 2150" << QStringList{"1", "2", "3", "4", ".", "5", "MHz"}
                           << 1234.5;
        QTest::newRow("2, Mbps") << 2 << "1 1e9" << QStringList{"2", "Mbps"} << 2000000.0;
        QTest::newRow("2, Kbps") << 2 << "1 1e9" << QStringList{"2", "Kbps"} << 2000.0;
        QTest::newRow("2, bps") << 2 << "1 1e9" << QStringList{"2", "bps"} << 2.0;
        QTest::newRow("3, MHz") << 3 << "1 1e9" << QStringList{"7", "0", "MHz"} << 70000000.0;
        QTest::newRow("3, KHz") << 3 << "1 1e9" << QStringList{"7", "0", "KHz"} << 70000.0;
        QTest::newRow("3, Hz") << 3 << "1 1e9" << QStringList{"7", "0", "Hz"} << 70.0;
        QTest::newRow("4") << 4 << "0 3.2" << QStringList{"3", ".", "1", "Enter"} << 3.1;
        QTest::newRow("5") << 5 << "0 100" << QStringList{"5", "0", "%"} << 0.5;
        QTest::newRow("6") << 6 << "0 100" << QStringList{"5", "Enter"} << 5.0;
        QTest::newRow("6, special") << 6 << "0 100" << QStringList{"Auto"} << -1.0;
        QTest::newRow("7") << 7 << "0 9999" << QStringList{"0", "0", "4", "2", "Enter"} << 42.0;
        QTest::newRow("8") << 8 << "0 65535" << QStringList{"B", "E", "E", "F", "Enter"} << 48879.0;
        QTest::newRow("low bound") << 0 << "5 6" << QStringList{"5", "Enter"} << 5.0;
        QTest::newRow("high bound") << 0 << "5 6" << QStringList{"6", "Enter"} << 6.0;
        QTest::newRow("zero") << 0 << "0 6" << QStringList{"0", "Enter"} << 0.0;
    }
    void an_accepted_entry_is_returned()
    {
        QFETCH(int, type);
        QFETCH(QString, ranges);
        QFETCH(QStringList, keys);
        Opening opening;
        opening.type = type;
        opening.ranges = ranges;
        opening.special = "-1 Auto";
        bool closed = false;
        const double value = run(opening, [&](QWidget* dialog) {
            QVERIFY(press(dialog, keys));
            closed = !dialog->isVisible();
        });
        QVERIFY(closed);
        QTEST(value, "value");
    }

    void clear_clears_first_and_cancels_then()
    {
        QCOMPARE(run({},
                     [](QWidget* dialog) {
                         QVERIFY(press(dialog, {"1", "2", "CE/Cancel"}));
                         QCOMPARE(entry(dialog), "      ");
                         QVERIFY(dialog->isVisible());
                         QVERIFY(press(dialog, {"CE/Cancel"}));
                         QVERIFY(!dialog->isVisible());
                     }),
            -9990000000.0);
    }

    void a_cancelled_percentage_is_not_divided()
    {
        Opening opening;
        opening.type = 5;
        QCOMPARE(run(opening, [](QWidget* dialog) { QVERIFY(press(dialog, {"CE/Cancel"})); }),
            -9990000000.0);
    }

    void a_dialog_closed_from_outside_is_cancelled()
    {
        QCOMPARE(run({}, [](QWidget* dialog) { dialog->close(); }), -9990000000.0);
    }

    void an_invalid_entry_shows_what_would_be_valid()
    {
        Opening opening;
        opening.type = 2;
        opening.ranges = "10 20:1 5";
        run(opening, [](QWidget* dialog) {
            bool seen = false;
            play([&seen](QWidget* top) {
                auto* box = qobject_cast<QMessageBox*>(top);
                QVERIFY(box != nullptr);
                QCOMPARE(box->windowTitle(), "Out Of Range");
                QCOMPARE(box->text(), "<font size = 5>Invalid Entry       2  Kbps</font>");
                QCOMPARE(box->informativeText(),
                    "<font size = 6>Valid Range(s)</font><br><font size = 7><b>1.0 bps to 5.0 bps<br>10.0 bps to 20.0 bps</b></font>");
                QCOMPARE(box->buttons().size(), 1);
                QCOMPARE(box->button(QMessageBox::Ok)->styleSheet(), "font: 28px");
                QVERIFY(!box->windowIcon().isNull());
                QVERIFY(box->width() >= 600);
                QVERIFY(ScreenArea.contains(box->frameGeometry()));
                seen = true;
                clickOn(box->button(QMessageBox::Ok));
            });
            QVERIFY(press(dialog, {"2", "Kbps"}));
            QVERIFY(seen);
            QVERIFY(dialog->isVisible());
            QCOMPARE(entry(dialog), "       bps");
            QVERIFY(press(dialog, {"3"}));
            QCOMPARE(entry(dialog), "       3");
        });
    }

    void the_error_box_lies_inside_the_screen_data()
    {
        QTest::addColumn<QString>("ranges");
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("digits");
        QTest::newRow("no range") << "" << 0 << 1;
        QTest::newRow("one") << "2000 3000" << 0 << 1;
        QTest::newRow("seven") << SevenRanges << 0 << 1;
        QTest::newRow("seven of a frequency") << SevenRanges << 1 << 1;
        QTest::newRow("sixty") << QStringList(QList<QString>(60, "2000 3000")).join(":") << 2 << 1;
        QTest::newRow("long numbers") << "1e299 1e300" << 1 << 1;
        QTest::newRow("long entry") << "2 3" << 0 << 200;
    }
    void the_error_box_lies_inside_the_screen()
    {
        QFETCH(QString, ranges);
        QFETCH(int, type);
        QFETCH(int, digits);
        Opening opening;
        opening.type = type;
        opening.ranges = ranges;
        bool seen = false;
        run(opening, [&](QWidget* dialog) {
            QVERIFY(press(dialog, QStringList(QList<QString>(digits, "0"))));
            play([&seen](QWidget* top) {
                auto* box = qobject_cast<QMessageBox*>(top);
                QVERIFY(box != nullptr);
                const QRect frame = box->frameGeometry();
                QVERIFY2(ScreenArea.contains(frame),
                    qPrintable(QString("%1 %2 %3 %4")
                                   .arg(frame.x())
                                   .arg(frame.y())
                                   .arg(frame.width())
                                   .arg(frame.height())));
                const QPoint off = frame.center() - ScreenArea.center();
                QVERIFY(qAbs(off.x()) <= 1 && qAbs(off.y()) <= 1);
                const QPushButton* ok = qobject_cast<QPushButton*>(box->button(QMessageBox::Ok));
                QVERIFY(box->rect().contains(place(box, ok)));
                QVERIFY(ok->width() >= LeastKey && ok->height() >= LeastKey);
                for (const QWidget* widget : shown(box)) {
                    QVERIFY(widget == ok || widget->objectName() == "qt_msgbox_informativelabel" ||
                        !place(box, widget).intersects(place(box, ok)));
                }
                seen = true;
                clickOn(box->button(QMessageBox::Ok));
            });
            (type == 2 ? buttonWithText(dialog, "bps")
                       : buttonWithText(dialog, type == 1 ? "MHz" : "Enter"))
                ->click();
        });
        QVERIFY(seen);
    }

    void more_ranges_than_the_screen_holds_are_scrolled_with_a_finger()
    {
        Opening opening;
        opening.ranges = QStringList(QList<QString>(60, "2000 3000")).join(":");
        bool seen = false;
        run(opening, [&seen](QWidget* dialog) {
            play([&seen](QWidget* box) {
                const auto* area = box->findChild<QScrollArea*>();
                QVERIFY(area != nullptr);
                QScrollBar* bar = area->verticalScrollBar();
                QVERIFY(bar->isVisible() && bar->width() >= LeastKey && bar->maximum() > 0);
                bar->setValue(bar->maximum());
                const QWidget* text = area->widget();
                QCOMPARE(text->mapTo(area, text->rect().bottomLeft()).y(),
                    area->viewport()->rect().bottom());
                seen = true;
            });
            QVERIFY(press(dialog, {"Enter"}));
        });
        QVERIFY(seen);
    }

    void no_entry_is_no_number()
    {
        PopUpNumberPad pad;
        QSignalSpy valid(&pad, &PopUpNumberPad::valid_entry);
        bool seen = false;
        run(pad, {}, [&](QWidget* dialog) {
            play([&seen](QWidget* box) {
                seen = qobject_cast<QMessageBox*>(box) != nullptr;
                box->close();
            });
            QVERIFY(press(dialog, {"Enter"}));
        });
        QVERIFY(seen);
        QCOMPARE(valid.size(), 0);
    }

    void a_step_sends_the_new_value_at_once()
    {
        PopUpNumberPad pad;
        QSignalSpy sent(&pad, &Key::response_message);
        Opening opening;
        opening.type = 1;
        opening.ranges = "70 140:200 300";
        opening.current = 100.0;
        opening.command = "RF1";
        run(pad, opening, [&](QWidget* dialog) {
            QVERIFY(press(dialog, {"Step Up"}));
            QCOMPARE(sent.size(), 1);
            QCOMPARE(sent.at(0).at(0).toString(), framedMessage("RF1100.1"));
            QCOMPARE(labelText(dialog, "currentValueLabel"), "Current Value:\r\n100.1 MHz");
            QVERIFY(press(dialog, {"Step Down", "Step Down"}));
            QCOMPARE(sent.last().at(0).toString(), framedMessage("RF199.9"));
            QVERIFY(dialog->isVisible());
            QCOMPARE(entry(dialog), "       MHz ");
        });
        QCOMPARE(sent.size(), 3);
    }

    void a_step_out_of_every_range_does_nothing()
    {
        PopUpNumberPad pad;
        QSignalSpy sent(&pad, &Key::response_message);
        Opening opening;
        opening.type = 1;
        opening.ranges = "70 140:200 300";
        opening.current = 140.0;
        run(pad, opening, [&](QWidget* dialog) {
            QVERIFY(press(dialog, {"Step Up"}));
            QCOMPARE(sent.size(), 0);
            QCOMPARE(labelText(dialog, "currentValueLabel"), "Current Value:\r\n140.0 MHz");
            // by 100 it reaches the next range
            QVERIFY(press(dialog, {"Step\r\n0.1 MHz", "Step\r\n1.0 MHz", "Step\r\n10.0 MHz"}));
            QVERIFY(press(dialog, {"Step Up"}));
            QCOMPARE(sent.last().at(0).toString(), framedMessage("CMD240.0"));
        });
        QCOMPARE(sent.size(), 1);
    }

    void steps_are_counted_in_single_precision()
    {
        PopUpNumberPad pad;
        QSignalSpy sent(&pad, &Key::response_message);
        Opening opening;
        opening.type = 1;
        opening.ranges = "0 1e6";
        opening.current = 99999.0;
        // near 100,000 single precision knows only multiples of 1/128
        float expected = 99999.0F;
        for (int i = 0; i < 200; ++i) {
            expected += 0.1F;
        }
        run(pad, opening, [&](QWidget* /*dialog*/) {
            for (int i = 0; i < 200; ++i) {
                pad.up_rf();
            }
        });
        const QString text = QString::number(static_cast<double>(expected), 'f', 1);
        QVERIFY(text != "100019.0");
        QCOMPARE(sent.last().at(0).toString(), framedMessage("CMD" + text));
    }

    void the_step_cycles()
    {
        Opening opening;
        opening.type = 1;
        run(opening, [](QWidget* dialog) {
            QVERIFY(press(dialog,
                {"Step\r\n0.1 MHz", "Step\r\n1.0 MHz", "Step\r\n10.0 MHz", "Step\r\n100.0 MHz",
                    "Step\r\n0.1 MHz"}));
        });
    }

    void the_step_keys_repeat_while_they_are_held()
    {
        Opening opening;
        opening.type = 1;
        run(opening, [](QWidget* dialog) {
            for (const char* text : {"Step Up", "Step Down"}) {
                const QPushButton* key = buttonWithText(dialog, text);
                QVERIFY(key->autoRepeat());
                QCOMPARE(key->autoRepeatDelay(), 500);
                QCOMPARE(key->autoRepeatInterval(), 200);
            }
            QVERIFY(!buttonWithText(dialog, "Step\r\n0.1 MHz")->autoRepeat());
        });
    }

    void a_held_step_key_sends_again_and_again()
    {
        PopUpNumberPad pad;
        QSignalSpy sent(&pad, &Key::response_message);
        Opening opening;
        opening.type = 1;
        opening.ranges = "0 1000";
        run(pad, opening, [&](QWidget* dialog) {
            QPushButton* up = buttonWithText(dialog, "Step Up");
            const QPoint at = up->mapTo(dialog, up->rect().center());
            QElapsedTimer timer;
            timer.start();
            QTest::mousePress(dialog->windowHandle(), Qt::LeftButton, {}, at);
            QTRY_VERIFY(sent.size() >= 3);
            // a coarse timer may fire 5 % early
            QVERIFY(timer.elapsed() >= (500 + 2 * 200) * 9 / 10);
            QTest::mouseRelease(dialog->windowHandle(), Qt::LeftButton, {}, at);
        });
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
        opening.ranges = "1000 2000";
        opening.special = special;
        const double value = run(opening, [&](QWidget* dialog) {
            QVERIFY(above(dialog, "BackSpace", label));
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
        pad.num_button_clicked("7");
        QCOMPARE(pad.lastKeyValue(), 7);
        pad.num_button_clicked(".");
        QCOMPARE(pad.lastKeyValue(), 0);
    }

    void a_range_as_text()
    {
        QCOMPARE(PopUpNumberPad::range_string(qMakePair(1000.0, 2e6), 2), "1.0 Kbps to 2.0 Mbps");
    }

    void every_opening_starts_afresh()
    {
        PopUpNumberPad pad;
        Opening opening;
        opening.type = 1;
        opening.ranges = SevenRanges;
        run(pad, opening, [](QWidget* dialog) {
            QVERIFY(press(dialog, {"1", "2", "Step\r\n0.1 MHz"}));
        });
        opening.ranges = "1 2";
        run(pad, opening, [](QWidget* dialog) {
            QCOMPARE(entry(dialog), "       MHz ");
            QCOMPARE(labelText(dialog, "rangeLabel"), "Valid Range(s)(MHz): (1.0 to 2.0)");
            QVERIFY(buttonWithText(dialog, "Step\r\n0.1 MHz") != nullptr);
        });
    }

    void a_pad_that_is_open_is_not_opened_twice()
    {
        PopUpNumberPad pad;
        run(pad, {}, [&pad](QWidget* dialog) {
            QCOMPARE(pad.new_pop_NumberPad("b", "", 0, 0, "", "", "", false), -9990000000.0);
            QCOMPARE(QApplication::activeModalWidget(), dialog);
        });
    }

    void a_pad_deleted_while_it_is_open_is_cancelled()
    {
        const int before = topLevels();
        auto* pad = new PopUpNumberPad;
        play([pad](QWidget* /*dialog*/) { delete pad; });
        QCOMPARE(pad->new_pop_NumberPad("a", "0 1", 0, 5, "", "", "", false), -9990000000.0);
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
            buttonWithText(dialog, "Enter")->click();
        });
        QCOMPARE(pad->new_pop_NumberPad("a", "0 1", 0, 0, "", "", "", false), -9990000000.0);
        QCOMPARE(topLevels(), before);
    }

    void slots_of_a_closed_pad_are_harmless()
    {
        PopUpNumberPad pad;
        pad.num_button_clicked("1");
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
                opening.ranges = "-1e308 1e308:nan inf:-inf nan";
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
            opening.special = "-1 Auto";
            run(pad, opening, [](QWidget* dialog) { QVERIFY(press(dialog, {"CE/Cancel"})); });
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
