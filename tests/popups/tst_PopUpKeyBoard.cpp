#include "popups/PopUpKeyBoard.h"
#include "support/PopUps.h"
#include "support/TestMain.h"

#include <limits>

using namespace Qt::StringLiterals;

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
        return popUp.new_pop_keyboard(list, u"Mode"_s, rows, columns, disabled, keepLarge);
    }

    static QString pressed(const QString& list, const QString& text)
    {
        PopUpKeyBoard popUp;
        whenModal([&](QWidget* modal) { popUps::press(modal, text); });
        return popUp.new_pop_keyboard(list, u"Mode"_s, 4, 4, false);
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
        const QString value = pressed(u"0 Off:1 On:xyz A b c"_s, text);
        QTEST(value, "value");
    }

    void a_second_call_forgets_the_first_selection()
    {
        PopUpKeyBoard popUp;
        whenModal([](QWidget* modal) { popUps::press(modal, u"On"_s); });
        QCOMPARE(popUp.new_pop_keyboard(u"0 Off:1 On"_s, u"Mode"_s, 4, 4, false), u"1"_s);
        whenModal([](QWidget* modal) { popUps::press(modal, u"Cancel"_s); });
        QCOMPARE(popUp.new_pop_keyboard(u"0 Off:1 On"_s, u"Mode"_s, 4, 4, false), QString());
    }

    void the_dialog_has_its_title_sheet_and_flags()
    {
        PopUpKeyBoard popUp;
        whenModal([](QWidget* modal) {
            QCOMPARE(modal->objectName(), u"PopUpKeyBoard"_s);
            QCOMPARE(modal->size(), QSize(795, 478));
            QCOMPARE(modal->windowTitle(), u"Select I & Q value"_s);
            QCOMPARE(modal->styleSheet(),
                u"background-color:LightGray; border-width: 2px; border-style: solid; "_s
                u"border-color: black; font-size: 16px; border-radius: 4px;"_s);
            const auto* title = modal->findChild<QLabel*>(u"titleLabel"_s);
            QVERIFY(title != nullptr);
            QCOMPARE(title->text(), u"Select I & Q value"_s);
            QCOMPARE(title->height(), 45);
            QCOMPARE(title->styleSheet(),
                u"QLabel{color:white; background:rgb(66,89,148); font-size: 18px;}"_s);
            QCOMPARE(buttonWithText(modal, u"Cancel"_s)->styleSheet(),
                u"QPushButton {background-color:red; color:white; font-size: 26px; } "_s
                u"QPushButton:pressed {background-color: #4169e1;}"_s);
            popUps::dialog(modal)->reject();
        });
        popUp.new_pop_keyboard(u"0 Off"_s, u"I && Q"_s, 4, 4, false);
    }

    void styles_follow_the_length_of_the_text()
    {
        const QString large = u"QPushButton {background-color: #919191; color:black; font-size: "_s
                              u"28px;} QPushButton:pressed {background-color: #4169e1;}"_s;
        const QString small = u"QPushButton {background-color: #919191; color:black; font-size: "_s
                              u"18px;} QPushButton:pressed {background-color: #4169e1;}"_s;
        run(u"0 Off:1 Sixteen charact.:2 eleven char"_s, 4, 3, {}, false, [&](QWidget* modal) {
            QCOMPARE(buttonWithText(modal, u"Off"_s)->styleSheet(), large);
            QCOMPARE(buttonWithText(modal, u"eleven char"_s)->styleSheet(), small);
            QCOMPARE(buttonWithText(modal, u"Sixteen charact\n."_s)->styleSheet(), small);
        });
        run(u"0 Sixteen charact."_s, 4, 3, {}, true, [&](QWidget* modal) {
            QCOMPARE(buttonWithText(modal, u"Sixteen charact."_s)->styleSheet(), large);
        });
    }

    void a_disabled_choice_is_dark_and_does_nothing()
    {
        const QString answer = run(u"0 Off:1 On"_s, 4, 4, {0}, false, [](QWidget* modal) {
            QPushButton* off = buttonWithText(modal, u"Off"_s);
            QVERIFY(!off->isEnabled());
            QCOMPARE(off->styleSheet(),
                u"QPushButton {background-color: #2f4f4f; color:#808080; font-size: 28px;} "_s
                u"QPushButton:pressed {background-color: #4169e1;}"_s);
            QVERIFY(buttonWithText(modal, u"On"_s)->isEnabled());
            clickOn(off);
            QVERIFY(modal->isVisible());
        });
        QVERIFY(answer.isEmpty());
    }

    void empty_items_make_no_button()
    {
        run(u"0 Eye Pattern:1 Constellation:2 Off:"_s, 4, 4, {}, false, [](QWidget* modal) {
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
        const QString longText(58, u'W');
        for (const QString& text : {u"text"_s, longText}) {
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
            QCOMPARE(modal->findChild<QLabel*>(u"titleLabel"_s)->text().size(), 73);
            popUps::dialog(modal)->reject();
        });
        popUp.new_pop_keyboard(u"0 Off"_s, QString(60, u'W'), 4, 4, false);
    }

    void cancel_lies_over_the_choice_in_its_cell()
    {
        const QString answer = run(popUps::list(18, u"c"_s), 4, 4, {}, false, [](QWidget* modal) {
            QPushButton* cancel = buttonWithText(modal, u"Cancel"_s);
            QPushButton* covered = buttonWithText(modal, u"c15"_s);
            QCOMPARE(covered->geometry(), cancel->geometry());
            QCOMPARE(popUps::onTopOf(covered), cancel);
            QVERIFY(buttonWithText(modal, u"c16"_s)->y() > cancel->y());
            clickOn(cancel);
            QVERIFY(!modal->isVisible());
        });
        QVERIFY(answer.isEmpty());
    }

    void a_choice_below_the_last_row_can_be_pressed()
    {
        QCOMPARE(pressed(popUps::list(18, u"c"_s), u"c17"_s), u"17"_s);
    }

    void the_pop_up_may_be_deleted_while_it_is_open()
    {
        auto* popUp = new PopUpKeyBoard;
        whenModal([&](QWidget* modal) {
            delete popUp;
            popUps::press(modal, u"Off"_s);
        });
        QCOMPARE(popUp->new_pop_keyboard(u"0 Off"_s, u"Mode"_s, 4, 4, false), QString());
    }
};

QN740_TEST_MAIN(tst_PopUpKeyBoard)
#include "tst_PopUpKeyBoard.moc"
