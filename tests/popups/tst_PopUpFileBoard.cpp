#include "popups/PopUpFileBoard.h"
#include "support/PopUps.h"
#include "support/TestMain.h"

class tst_PopUpFileBoard : public QObject
{
    Q_OBJECT

    static QString run(const QString& files, const std::function<void(QWidget*)>& then)
    {
        PopUpFileBoard popUp;
        whenModal(then);
        return popUp.new_pop_fileboard(files, "Store", 4, 4);
    }

private slots:
    void a_pressed_file_returns_its_value()
    {
        QCOMPARE(run("a1 Night setup:a2 Day",
                     [](QWidget* modal) { popUps::press(modal, "Night setup"); }),
            QString("a1"));
    }

    void cancel_returns_nothing()
    {
        QCOMPARE(
            run("a1 Night", [](QWidget* modal) { popUps::press(modal, "Cancel"); }), QString());
    }

    void a_typed_name_is_returned()
    {
        QCOMPARE(run("a1 Night",
                     [](QWidget* modal) {
                         whenModal([](QWidget* name) {
                             popUps::press(name, "x");
                             popUps::press(name, "1");
                             popUps::press(name, "RETURN");
                         });
                         popUps::press(modal, "New File");
                     }),
            QString("x1"));
    }

    void a_cancelled_name_leaves_the_board_open()
    {
        const QString answer = run("a1 Night", [](QWidget* modal) {
            whenModal([](QWidget* name) {
                QCOMPARE(name->objectName(), QString("FileNameEdit"));
                popUps::press(name, "x");
                popUps::dialog(name)->reject();
            });
            popUps::press(modal, "New File");
            QVERIFY(modal->isVisible());
            popUps::press(modal, "Cancel");
        });
        QVERIFY(answer.isEmpty());
    }

    void an_empty_name_leaves_the_board_open()
    {
        const QString answer = run("a1 Night", [](QWidget* modal) {
            whenModal([](QWidget* name) { popUps::press(name, "RETURN"); });
            popUps::press(modal, "New File");
            QVERIFY(modal->isVisible());
            popUps::press(modal, "Night");
        });
        QCOMPARE(answer, QString("a1"));
    }

    void the_dialog_has_its_title_sheet_and_flags()
    {
        run("a1 Night:a2 Day", [](QWidget* modal) {
            QCOMPARE(modal->objectName(), QString("PopUpFileBoard"));
            QCOMPARE(modal->windowTitle(), QString("Select Store value"));
            QCOMPARE(modal->styleSheet(),
                QString("background-color:darkgray; border-width: 2px; border-style: solid; "
                        "border-color: black; font-size: 16px; border-radius: 4px;"));
            const QPushButton* newFile = buttonWithText(modal, "New File");
            const QPushButton* cancel = buttonWithText(modal, "Cancel");
            QCOMPARE(newFile->y(), cancel->y());
            QVERIFY(newFile->geometry().right() < cancel->x());
            QCOMPARE(newFile->styleSheet(),
                QString("QPushButton {background-color:green; color:white;} QPushButton:pressed "
                        "{background-color: #4169e1;}"));
            QCOMPARE(buttonWithText(modal, "Day")->styleSheet(),
                QString("QPushButton {background-color: #919191; color:black;} "
                        "QPushButton:pressed {background-color: #4169e1;}"));
            popUps::dialog(modal)->reject();
        });
    }

    void a_long_text_is_neither_broken_nor_shrunk_in_its_sheet()
    {
        run("1 A text of more than fifteen characters", [](QWidget* modal) {
            QVERIFY(buttonWithText(modal, "A text of more than fifteen characters") != nullptr);
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
        QTest::newRow("60") << 60 << 5 << 34;
        QTest::newRow("one column") << 3 << 1 << 47;
    }
    void every_board_lies_inside_the_screen()
    {
        QFETCH(int, count);
        QFETCH(int, columns);
        QFETCH(int, leastHeight);
        const QString longText(58, 'W');
        for (const QString& text : {QString("file"), longText}) {
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
        run(popUps::list(18, "f"), [](QWidget* modal) {
            QCOMPARE(
                popUps::onTopOf(buttonWithText(modal, "f14")), buttonWithText(modal, "New File"));
            QCOMPARE(
                popUps::onTopOf(buttonWithText(modal, "f15")), buttonWithText(modal, "Cancel"));
            popUps::press(modal, "Cancel");
        });
    }

    void the_board_may_be_deleted_while_the_name_is_typed()
    {
        auto* popUp = new PopUpFileBoard;
        whenModal([&](QWidget* modal) {
            whenModal([&](QWidget* name) {
                delete popUp;
                popUps::press(name, "x");
                popUps::press(name, "RETURN");
            });
            popUps::press(modal, "New File");
            popUps::dialog(modal)->reject();
        });
        QCOMPARE(popUp->new_pop_fileboard("a1 Night", "Store", 4, 4), QString());
    }
};

QN740_TEST_MAIN(tst_PopUpFileBoard)
#include "tst_PopUpFileBoard.moc"
