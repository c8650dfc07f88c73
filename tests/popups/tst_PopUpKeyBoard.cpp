#include "popups/PopUpKeyBoard.h"
#include "support/PopUps.h"
#include "support/TestMain.h"

#include <limits>

class tst_PopUpKeyBoard : public QObject
{
    Q_OBJECT

    // Runs the list, hands its dialog to `then` and closes it.
    static QString run(const QString& list, int rows, int columns, const QList<int>& disabled,
        bool keepLarge, const std::function<void(QWidget*)>& then)
    {
        PopUpKeyBoard popUp;
        whenModal([&](QWidget* modal) {
            then(modal);
            popUps::dialog(modal)->reject();
        });
        return popUp.new_pop_keyboard(list, "Mode", rows, columns, disabled, keepLarge);
    }

    static QString pressed(const QString& list, const QString& text)
    {
        PopUpKeyBoard popUp;
        whenModal([&](QWidget* modal) { popUps::press(modal, text); });
        return popUp.new_pop_keyboard(list, "Mode", 4, 4, false);
    }

private slots:
    void a_pressed_choice_returns_its_value_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("value");
        QTest::newRow("first") << "Off"
                               << "0";
        QTest::newRow("second") << "On"
                                << "1";
        QTest::newRow("with blanks") << "A b c"
                                     << "xyz";
        QTest::newRow("cancel") << "Cancel"
                                << "";
    }
    void a_pressed_choice_returns_its_value()
    {
        QFETCH(QString, text);
        const QString value = pressed("0 Off:1 On:xyz A b c", text);
        QTEST(value, "value");
    }

    void a_second_call_forgets_the_first_selection()
    {
        PopUpKeyBoard popUp;
        whenModal([](QWidget* modal) { popUps::press(modal, "On"); });
        QCOMPARE(popUp.new_pop_keyboard("0 Off:1 On", "Mode", 4, 4, false), QString("1"));
        whenModal([](QWidget* modal) { popUps::press(modal, "Cancel"); });
        QCOMPARE(popUp.new_pop_keyboard("0 Off:1 On", "Mode", 4, 4, false), QString());
    }

    void the_dialog_has_its_title_sheet_and_flags()
    {
        PopUpKeyBoard popUp;
        whenModal([](QWidget* modal) {
            QCOMPARE(modal->objectName(), QString("PopUpKeyBoard"));
            QCOMPARE(modal->size(), QSize(795, 478));
            QCOMPARE(modal->windowTitle(), QString("Select I & Q value"));
            QCOMPARE(modal->styleSheet(),
                QString("background-color:LightGray; border-width: 2px; border-style: solid; "
                        "border-color: black; font-size: 16px; border-radius: 4px;"));
            const auto* title = modal->findChild<QLabel*>("titleLabel");
            QVERIFY(title != nullptr);
            QCOMPARE(title->text(), QString("Select I & Q value"));
            QCOMPARE(title->height(), 45);
            QCOMPARE(title->styleSheet(),
                QString("QLabel{color:white; background:rgb(66,89,148); font-size: 18px;}"));
            QCOMPARE(buttonWithText(modal, "Cancel")->styleSheet(),
                QString("QPushButton {background-color:red; color:white; font-size: 26px; } "
                        "QPushButton:pressed {background-color: #4169e1;}"));
            popUps::dialog(modal)->reject();
        });
        popUp.new_pop_keyboard("0 Off", "I && Q", 4, 4, false);
    }

    void styles_follow_the_length_of_the_text()
    {
        const QString large = "QPushButton {background-color: #919191; color:black; font-size: "
                              "28px;} QPushButton:pressed {background-color: #4169e1;}";
        const QString small = "QPushButton {background-color: #919191; color:black; font-size: "
                              "18px;} QPushButton:pressed {background-color: #4169e1;}";
        run("0 Off:1 Sixteen charact.:2 eleven char", 4, 3, {}, false, [&](QWidget* modal) {
            QCOMPARE(buttonWithText(modal, "Off")->styleSheet(), large);
            QCOMPARE(buttonWithText(modal, "eleven char")->styleSheet(), small);
            QCOMPARE(buttonWithText(modal, "Sixteen charact\n.")->styleSheet(), small);
        });
        run("0 Sixteen charact.", 4, 3, {}, true, [&](QWidget* modal) {
            QCOMPARE(buttonWithText(modal, "Sixteen charact.")->styleSheet(), large);
        });
    }

    void a_disabled_choice_is_dark_and_does_nothing()
    {
        const QString answer = run("0 Off:1 On", 4, 4, {0}, false, [](QWidget* modal) {
            QPushButton* off = buttonWithText(modal, "Off");
            QVERIFY(!off->isEnabled());
            QCOMPARE(off->styleSheet(),
                QString("QPushButton {background-color: #2f4f4f; color:#808080; font-size: 28px;} "
                        "QPushButton:pressed {background-color: #4169e1;}"));
            QVERIFY(buttonWithText(modal, "On")->isEnabled());
            clickOn(off);
            QVERIFY(modal->isVisible());
        });
        QVERIFY(answer.isEmpty());
    }

    void empty_items_make_no_button()
    {
        run("0 Eye Pattern:1 Constellation:2 Off:", 4, 4, {}, false, [](QWidget* modal) {
            QCOMPARE(modal->findChildren<QPushButton*>().size(), 4); // with "Cancel"
        });
    }

    void every_list_lies_inside_the_screen_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("columns");
        QTest::addColumn<int>("leastHeight");
        QTest::newRow("1") << 1 << 4 << 4 << 47;
        QTest::newRow("4") << 4 << 4 << 4 << 47;
        QTest::newRow("17") << 17 << 4 << 5 << 47;
        QTest::newRow("30") << 30 << 6 << 6 << 47;
        QTest::newRow("50") << 50 << 6 << 9 << 47;
        QTest::newRow("60") << 60 << 9 << 6 << 37;
        QTest::newRow("60 in three columns") << 60 << 4 << 3 << 15;
        QTest::newRow("none") << 0 << 4 << 4 << 47;
        QTest::newRow("one cell") << 3 << 1 << 1 << 47;
        QTest::newRow("senseless") << 3 << -1 << std::numeric_limits<int>::max() << 47;
    }
    void every_list_lies_inside_the_screen()
    {
        QFETCH(int, count);
        QFETCH(int, rows);
        QFETCH(int, columns);
        QFETCH(int, leastHeight);
        const QString longText(58, 'W');
        for (const QString& text : {QString("text"), longText}) {
            run(popUps::list(count, text), rows, columns, {}, true, [&](QWidget* modal) {
                QVERIFY(popUps::isInsideScreen(modal));
                QVERIFY(popUps::isCentred(modal));
                const auto buttons = modal->findChildren<QPushButton*>();
                QCOMPARE(buttons.size(), count + 1);
                for (const QPushButton* button : buttons) {
                    QVERIFY2(button->height() >= leastHeight,
                        qPrintable(QString::number(button->height())));
                    QVERIFY(button->width() >= 45);
                }
            });
        }
    }

    void a_long_title_stays_inside()
    {
        PopUpKeyBoard popUp;
        whenModal([](QWidget* modal) {
            QVERIFY(popUps::isInsideScreen(modal));
            QCOMPARE(modal->findChild<QLabel*>("titleLabel")->text().size(), 73);
            popUps::dialog(modal)->reject();
        });
        popUp.new_pop_keyboard("0 Off", QString(60, 'W'), 4, 4, false);
    }

    void cancel_lies_over_the_choice_in_its_cell()
    {
        const QString answer = run(popUps::list(18, "c"), 4, 4, {}, false, [](QWidget* modal) {
            QPushButton* cancel = buttonWithText(modal, "Cancel");
            QPushButton* covered = buttonWithText(modal, "c15");
            QCOMPARE(covered->geometry(), cancel->geometry());
            QCOMPARE(popUps::onTopOf(covered), cancel);
            QVERIFY(buttonWithText(modal, "c16")->y() > cancel->y());
            clickOn(cancel);
            QVERIFY(!modal->isVisible());
        });
        QVERIFY(answer.isEmpty());
    }

    void a_choice_below_the_last_row_can_be_pressed()
    {
        QCOMPARE(pressed(popUps::list(18, "c"), "c17"), QString("17"));
    }

    void the_pop_up_may_be_deleted_while_it_is_open()
    {
        auto* popUp = new PopUpKeyBoard;
        whenModal([&](QWidget* modal) {
            delete popUp;
            popUps::press(modal, "Off");
        });
        QCOMPARE(popUp->new_pop_keyboard("0 Off", "Mode", 4, 4, false), QString());
    }
};

QN740_TEST_MAIN(tst_PopUpKeyBoard)
#include "tst_PopUpKeyBoard.moc"
