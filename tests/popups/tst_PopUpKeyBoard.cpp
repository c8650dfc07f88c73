#include "popups/PopUpKeyBoard.h"

#include "menus/ListGrid.h"
#include "support/PopUps.h"
#include "support/TestMain.h"
#include "touch/PresentMark.h"
#include "touch/Sizes.h"

#include <QScrollBar>

#include <limits>

using namespace Qt::StringLiterals;

class tst_PopUpKeyBoard : public QObject
{
    Q_OBJECT

    // Runs the list, passes its dialog to `then` and closes it.
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

    static QRect placeIn(const QWidget* modal, const QWidget* part)
    {
        return {part->mapTo(modal, QPoint()), part->size()};
    }

    // Moves a finger from one place of the dialog to another in small steps.
    static void drag(QWidget* modal, QPoint from, QPoint to)
    {
        QTest::mousePress(modal->windowHandle(), Qt::LeftButton, {}, from);
        for (int step = 1; step <= 10; ++step) {
            QTest::mouseMove(modal->windowHandle(), from + (to - from) * step / 10);
        }
        QTest::mouseRelease(modal->windowHandle(), Qt::LeftButton, {}, to);
    }

    // Adds the choices whose middle a finger can touch while the list is scrolled as it is.
    static void collectReached(QWidget* modal, QSet<QWidget*>& reached)
    {
        const auto buttons = popUps::scrolled(modal)->findChildren<QPushButton*>();
        for (QPushButton* button : buttons) {
            if (popUps::onTopOf(button) == button) {
                reached += button;
            }
        }
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
        QTest::newRow("60 in three columns") << 60 << 4 << 3 << 47;
        QTest::newRow("60, the last that does not scroll") << 60 << 4 << 6 << 37;
        QTest::newRow("61") << 61 << 4 << 6 << 47;
        QTest::newRow("40 in two columns") << 40 << 4 << 2 << 47;
        QTest::newRow("40 in one column") << 40 << 4 << 1 << 47;
        QTest::newRow("100") << 100 << 9 << 6 << 37;
        QTest::newRow("400") << 400 << 9 << 6 << 37;
        QTest::newRow("sixteen rows") << 3 << 16 << 4 << 37;
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

    void the_choice_under_cancel_cannot_be_chosen_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("param");
        QTest::addColumn<int>("covered"); // counted from 1; 0: none
        const auto row = [](int count, int covered) {
            QTest::addRow("%d", count) << count << 0 << covered;
        };
        row(1, 0);
        row(15, 0);
        row(16, 16);
        row(17, 0);
        row(19, 0);
        row(20, 20);
        row(21, 20);
        row(22, 0);
        row(35, 0);
        row(36, 36);
        row(47, 36);
        row(48, 0);
        row(51, 0);
        row(52, 0);
        row(53, 0);
        row(54, 54);
        row(60, 54);
        row(61, 54);
        row(100, 54);
        QTest::addRow("11 in three columns") << 11 << 3 << 0;
        QTest::addRow("12 in three columns") << 12 << 3 << 12;
        QTest::addRow("40 in two columns") << 40 << 2 << 8;
    }
    void the_choice_under_cancel_cannot_be_chosen()
    {
        QFETCH(int, count);
        QFETCH(int, param);
        QFETCH(int, covered);
        const QString list = popUps::list(count, u"c"_s);
        const ListGrid grid = ListGrid::forChoices(list, param);
        int found = 0;
        run(list, grid.rows, grid.columns, {}, false, [&](QWidget* modal) {
            const QPushButton* cancel = buttonWithText(modal, u"Cancel"_s);
            for (int i = 0; i < count; ++i) {
                if (popUps::onTopOf(buttonWithText(modal, u"c%1"_s.arg(i))) == cancel) {
                    QCOMPARE(found, 0);
                    found = i + 1;
                }
            }
        });
        QCOMPARE(found, covered);
    }

    void choices_of_a_scrolling_list_begin_in_their_cells()
    {
        run(popUps::list(100, u"c"_s), 9, 6, {}, false, [](QWidget* modal) {
            const QScrollArea* view = popUps::scrolled(modal);
            QVERIFY(view != nullptr);
            const QPushButton* cancel = buttonWithText(modal, u"Cancel"_s);
            const QRect last = placeIn(modal, cancel);
            for (int i = 0; i < 54; ++i) {
                const QRect place = placeIn(modal, buttonWithText(modal, u"c%1"_s.arg(i)));
                QCOMPARE(place.x() == last.x(), i % 6 == 5);
                QVERIFY(qAbs(place.y() - last.y()) <= 1 ? i / 6 == 8 : i / 6 < 8);
            }
            QCOMPARE(view->verticalScrollBar()->width(), touch::ScrollBarWidth);
            QVERIFY(view->verticalScrollBar()->isVisible());
        });
    }

    // The window's height has no room for all rows of such a grid.
    void cancel_is_in_the_last_row_that_is_shown()
    {
        run(popUps::list(32, u"c"_s), 16, 2, {}, false, [](QWidget* modal) {
            const QPushButton* cancel = buttonWithText(modal, u"Cancel"_s);
            const QScrollArea* view = popUps::scrolled(modal);
            QVERIFY(view != nullptr);
            QCOMPARE(placeIn(modal, cancel).bottom(), placeIn(modal, view).bottom());
        });
    }

    void a_drag_scrolls_the_list_and_chooses_nothing()
    {
        const QString answer = run(popUps::list(100, u"c"_s), 9, 6, {}, false, [](QWidget* modal) {
            const QPushButton* cancel = buttonWithText(modal, u"Cancel"_s);
            const QRect before = placeIn(modal, cancel);
            drag(modal, {200, 400}, {200, 100});
            QVERIFY(modal->isVisible());
            QCOMPARE(popUps::scrolled(modal)->verticalScrollBar()->value(), 300);
            QCOMPARE(placeIn(modal, cancel), before);
        });
        QCOMPARE(answer, QString());
    }

    void every_choice_of_a_scrolling_list_can_be_reached_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("columns");
        QTest::newRow("100") << 100 << 9 << 6;
        QTest::newRow("96, a full last row") << 96 << 9 << 6;
        QTest::newRow("40 in two columns") << 40 << 4 << 2;
        QTest::newRow("40 in one column") << 40 << 4 << 1;
        QTest::newRow("sixteen rows") << 20 << 16 << 2;
    }
    void every_choice_of_a_scrolling_list_can_be_reached()
    {
        QFETCH(int, count);
        QFETCH(int, rows);
        QFETCH(int, columns);
        run(popUps::list(count, u"c"_s), rows, columns, {}, false, [&](QWidget* modal) {
            QScrollBar* bar = popUps::scrolled(modal)->verticalScrollBar();
            QSet<QWidget*> reached;
            for (int value = 0; value <= bar->maximum(); value += 20) {
                bar->setValue(value);
                collectReached(modal, reached);
            }
            bar->setValue(bar->maximum());
            collectReached(modal, reached);
            for (int i = 0; i < count; ++i) {
                QPushButton* button = buttonWithText(modal, u"c%1"_s.arg(i));
                QVERIFY2(reached.contains(button), qPrintable(button->text()));
            }
        });
    }

    void a_choice_that_was_scrolled_to_returns_its_value()
    {
        PopUpKeyBoard popUp;
        whenModal([](QWidget* modal) {
            drag(modal, {200, 400}, {200, 60});
            drag(modal, {200, 400}, {200, 60});
            popUps::press(modal, u"c99"_s);
        });
        QCOMPARE(
            popUp.new_pop_keyboard(popUps::list(100, u"c"_s), u"Mode"_s, 9, 6, false), u"99"_s);
    }

    void the_present_choice_is_marked_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<std::optional<double>>("value");
        QTest::addColumn<QString>("marked");
        using Value = std::optional<double>;
        QTest::newRow("nothing known") << "" << Value() << "";
        QTest::newRow("value") << "" << Value(1.0) << "On";
        QTest::newRow("text") << "Off" << Value() << "Off";
    }
    void the_present_choice_is_marked()
    {
        QFETCH(QString, text);
        QFETCH(std::optional<double>, value);
        QFETCH(QString, marked);
        PopUpKeyBoard popUp;
        popUp.setPresent({text, value});
        whenModal([&](QWidget* modal) {
            const auto marks = modal->findChildren<PresentMark*>();
            QCOMPARE(marks.size(), marked.isEmpty() ? 0 : 1);
            if (!marks.isEmpty()) {
                QCOMPARE(marks.first()->parentWidget(), buttonWithText(modal, marked));
            }
            popUps::dialog(modal)->reject();
        });
        popUp.new_pop_keyboard(u"0 Off:1 On"_s, u"Mode"_s, 4, 4, false);
    }

    void a_scrolling_list_opens_at_the_present_choice()
    {
        PopUpKeyBoard popUp;
        popUp.setPresent({QString(), 77.0});
        whenModal([&](QWidget* modal) {
            QPushButton* button = buttonWithText(modal, u"c77"_s);
            QCOMPARE(popUps::onTopOf(button), button);
            popUps::dialog(modal)->reject();
        });
        popUp.new_pop_keyboard(popUps::list(100, u"c"_s), u"Mode"_s, 9, 6, false);
    }

    void a_note_stands_in_the_title_line()
    {
        PopUpKeyBoard popUp;
        popUp.setNote(u"Demod 2"_s);
        whenModal([&](QWidget* modal) {
            QCOMPARE(modal->findChild<QLabel*>(u"noteLabel"_s)->text(), u"Demod 2"_s);
            QCOMPARE(modal->findChild<QLabel*>(u"titleLabel"_s)->text(), u"Select Mode value"_s);
            popUps::dialog(modal)->reject();
        });
        popUp.new_pop_keyboard(u"0 Off:1 On"_s, u"Mode"_s, 4, 4, false);
        run(u"0 Off"_s, 4, 4, {}, false,
            [](QWidget* modal) { QVERIFY(modal->findChild<QLabel*>(u"noteLabel"_s) == nullptr); });
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
