#include "popups/PopUpFileBoard.h"
#include "support/PopUps.h"
#include "support/TestMain.h"
#include "touch/PresentMark.h"
#include "touch/Sizes.h"

#include <QScrollBar>

using namespace Qt::StringLiterals;

class tst_PopUpFileBoard : public QObject
{
    Q_OBJECT

    static QString run(const QString& files, const std::function<void(QWidget*)>& then)
    {
        PopUpFileBoard popUp;
        whenModal(then);
        return popUp.new_pop_fileboard(files, u"Store"_s, 4, 4);
    }

private slots:
    void a_pressed_file_returns_its_value()
    {
        QCOMPARE(run(u"a1 Night setup:a2 Day"_s,
                     [](QWidget* modal) { popUps::press(modal, u"Night setup"_s); }),
            u"a1"_s);
    }

    void cancel_returns_nothing()
    {
        QCOMPARE(run(u"a1 Night"_s, [](QWidget* modal) { popUps::press(modal, u"Cancel"_s); }),
            QString());
    }

    void a_typed_name_is_returned()
    {
        QCOMPARE(run(u"a1 Night"_s,
                     [](QWidget* modal) {
                         whenModal([](QWidget* name) {
                             popUps::press(name, u"x"_s);
                             popUps::press(name, u"1"_s);
                             popUps::press(name, u"RETURN"_s);
                         });
                         popUps::press(modal, u"New File"_s);
                     }),
            u"x1"_s);
    }

    void a_cancelled_name_leaves_the_board_open()
    {
        const QString answer = run(u"a1 Night"_s, [](QWidget* modal) {
            whenModal([](QWidget* name) {
                QCOMPARE(name->objectName(), u"FileNameEdit"_s);
                popUps::press(name, u"x"_s);
                popUps::dialog(name)->reject();
            });
            popUps::press(modal, u"New File"_s);
            QVERIFY(modal->isVisible());
            popUps::press(modal, u"Cancel"_s);
        });
        QVERIFY(answer.isEmpty());
    }

    void an_empty_name_leaves_the_board_open()
    {
        const QString answer = run(u"a1 Night"_s, [](QWidget* modal) {
            whenModal([](QWidget* name) { popUps::press(name, u"RETURN"_s); });
            popUps::press(modal, u"New File"_s);
            QVERIFY(modal->isVisible());
            popUps::press(modal, u"Night"_s);
        });
        QCOMPARE(answer, u"a1"_s);
    }

    void the_dialog_has_its_title_sheet_and_flags()
    {
        run(u"a1 Night:a2 Day"_s, [](QWidget* modal) {
            QCOMPARE(modal->objectName(), u"PopUpFileBoard"_s);
            QCOMPARE(modal->windowTitle(), u"Select Store value"_s);
            QCOMPARE(modal->styleSheet(),
                u"background-color:darkgray; border-width: 2px; border-style: solid; "_s
                u"border-color: black; font-size: 16px; border-radius: 4px;"_s);
            const QPushButton* newFile = buttonWithText(modal, u"New File"_s);
            const QPushButton* cancel = buttonWithText(modal, u"Cancel"_s);
            QCOMPARE(newFile->y(), cancel->y());
            QVERIFY(newFile->geometry().right() < cancel->x());
            QCOMPARE(newFile->styleSheet(),
                u"QPushButton {background-color:green; color:white;} QPushButton:pressed "_s
                u"{background-color: #4169e1;}"_s);
            QCOMPARE(buttonWithText(modal, u"Day"_s)->styleSheet(),
                u"QPushButton {background-color: #919191; color:black;} "_s
                u"QPushButton:pressed {background-color: #4169e1;}"_s);
            popUps::dialog(modal)->reject();
        });
    }

    void a_long_text_is_neither_broken_nor_shrunk_in_its_sheet()
    {
        run(u"1 A text of more than fifteen characters"_s, [](QWidget* modal) {
            QVERIFY(buttonWithText(modal, u"A text of more than fifteen characters"_s) != nullptr);
            popUps::dialog(modal)->reject();
        });
    }

    void every_board_lies_inside_the_screen_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("columns");
        QTest::addColumn<int>("leastHeight");
        QTest::newRow("none") << 0 << 4 << 47;
        QTest::newRow("3") << 3 << 4 << 47;
        QTest::newRow("20") << 20 << 5 << 47;
        QTest::newRow("60") << 60 << 5 << 47;
        QTest::newRow("400") << 400 << 5 << 47;
        QTest::newRow("one column") << 3 << 1 << 47;
    }
    void every_board_lies_inside_the_screen()
    {
        QFETCH(int, count);
        QFETCH(int, columns);
        QFETCH(int, leastHeight);
        const QString longText(58, u'W');
        for (const QString& text : {u"file"_s, longText}) {
            PopUpFileBoard popUp;
            whenModal([&](QWidget* modal) {
                QVERIFY(popUps::isInsideScreen(modal) && popUps::isCentred(modal));
                const auto buttons = modal->findChildren<QPushButton*>();
                QCOMPARE(buttons.size(), count + 2);
                for (const QPushButton* button : buttons) {
                    QVERIFY2(button->height() >= leastHeight,
                        qPrintable(QString::number(button->height())));
                }
                popUps::dialog(modal)->reject();
            });
            popUp.new_pop_fileboard(popUps::list(count, text), text, 4, columns);
        }
    }

    void new_file_and_cancel_lie_over_the_files_in_their_cells()
    {
        run(popUps::list(18, u"f"_s), [](QWidget* modal) {
            QCOMPARE(popUps::onTopOf(buttonWithText(modal, u"f14"_s)),
                buttonWithText(modal, u"New File"_s));
            QCOMPARE(popUps::onTopOf(buttonWithText(modal, u"f15"_s)),
                buttonWithText(modal, u"Cancel"_s));
            popUps::press(modal, u"Cancel"_s);
        });
    }

    void a_board_of_60_scrolls_under_new_file_and_cancel()
    {
        PopUpFileBoard popUp;
        whenModal([](QWidget* modal) {
            const QScrollArea* view = popUps::scrolled(modal);
            QVERIFY(view != nullptr);
            QCOMPARE(view->verticalScrollBar()->width(), touch::ScrollBarWidth);
            const QPushButton* newFile = buttonWithText(modal, u"New File"_s);
            const QPushButton* cancel = buttonWithText(modal, u"Cancel"_s);
            QCOMPARE(popUps::onTopOf(buttonWithText(modal, u"f18"_s)), newFile);
            QCOMPARE(popUps::onTopOf(buttonWithText(modal, u"f19"_s)), cancel);
            const QPoint at(100, 300);
            QTest::mousePress(modal->windowHandle(), Qt::LeftButton, {}, at);
            for (int y = at.y(); y >= 20; y -= 20) {
                QTest::mouseMove(modal->windowHandle(), {at.x(), y});
            }
            QTest::mouseRelease(modal->windowHandle(), Qt::LeftButton, {}, {at.x(), 20});
            QVERIFY(modal->isVisible());
            QCOMPARE(view->verticalScrollBar()->value(), 280);
            QCOMPARE(popUps::onTopOf(newFile), newFile);
            QCOMPARE(popUps::onTopOf(cancel), cancel);
            popUps::press(modal, u"f19"_s);
        });
        QCOMPARE(popUp.new_pop_fileboard(popUps::list(60, u"f"_s), u"Store"_s, 4, 5), u"19"_s);
    }

    void the_last_files_can_be_scrolled_out_from_under_the_keys()
    {
        PopUpFileBoard popUp;
        whenModal([](QWidget* modal) {
            QScrollBar* bar = popUps::scrolled(modal)->verticalScrollBar();
            bar->setValue(bar->maximum());
            popUps::press(modal, u"f59"_s);
        });
        QCOMPARE(popUp.new_pop_fileboard(popUps::list(60, u"f"_s), u"Store"_s, 4, 5), u"59"_s);
    }

    void the_present_file_is_marked()
    {
        PopUpFileBoard popUp;
        popUp.setPresent({u"Day"_s, std::nullopt});
        whenModal([](QWidget* modal) {
            const auto marks = modal->findChildren<PresentMark*>();
            QCOMPARE(marks.size(), 1);
            QCOMPARE(marks.first()->parentWidget(), buttonWithText(modal, u"Day"_s));
            popUps::dialog(modal)->reject();
        });
        popUp.new_pop_fileboard(u"a1 Night:a2 Day"_s, u"Store"_s, 4, 4);
    }

    void the_board_may_be_deleted_while_the_name_is_typed()
    {
        auto* popUp = new PopUpFileBoard;
        whenModal([&](QWidget* modal) {
            whenModal([&](QWidget* name) {
                delete popUp;
                popUps::press(name, u"x"_s);
                popUps::press(name, u"RETURN"_s);
            });
            popUps::press(modal, u"New File"_s);
            popUps::dialog(modal)->reject();
        });
        QCOMPARE(popUp->new_pop_fileboard(u"a1 Night"_s, u"Store"_s, 4, 4), QString());
    }
};

QN740_TEST_MAIN(tst_PopUpFileBoard)
#include "tst_PopUpFileBoard.moc"
