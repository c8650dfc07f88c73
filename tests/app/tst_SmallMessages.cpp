// These tests send "Slave" with its dialog, "SB", "DB", "IK" and "EI" over the line.
#include "app/Rooms.h"
#include "link/LinkControl.h"
#include "link/LinkModeDialog.h"
#include "menus/Key.h"
#include "menus/KeyBoard.h"
#include "menus/MenuMessages.h"
#include "support/Panel.h"
#include "support/TestMain.h"
#include "tools/screen/Part.h"

#include <QLabel>
#include <QMessageBox>
#include <QRadioButton>
#include <QStatusBar>

class tst_SmallMessages : public QObject
{
    Q_OBJECT

    static QList<QMessageBox*> shownBoxes()
    {
        QList<QMessageBox*> boxes;
        for (QWidget* top : QApplication::topLevelWidgets()) {
            auto* box = qobject_cast<QMessageBox*>(top);
            if (box != nullptr && box->isVisible()) {
                boxes += box;
            }
        }
        return boxes;
    }

    static bool isStored()
    {
        return QSettings(QStringLiteral("TORVA"), QStringLiteral("QN740KB"))
            .contains(QStringLiteral("Slave"));
    }

private slots:
    void init() { QSettings(QStringLiteral("TORVA"), QStringLiteral("QN740KB")).clear(); }

    void Slave_without_a_field_is_answered_with_the_mode_data()
    {
        QTest::addColumn<int>("mode");
        for (const int mode : {0, 1, 2, 7, -3}) {
            QTest::addRow("%d", mode) << mode;
        }
    }
    void Slave_without_a_field_is_answered_with_the_mode()
    {
        QFETCH(int, mode);
        linkMode::store(mode);
        Panel panel;
        QCOMPARE(panel.say({"Slave"}), framed("Slave," + QByteArray::number(mode)));
    }

    void a_stored_mode_is_shown_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("label");
        QTest::newRow("0") << 0 << "";
        QTest::newRow("1") << 1 << "Diversity Mode";
        QTest::newRow("2") << 2 << "Frequency Diversity Mode";
        QTest::newRow("7") << 7 << "";
    }
    void a_stored_mode_is_shown()
    {
        QFETCH(int, mode);
        QFETCH(QString, label);
        linkMode::store(mode);
        const Panel panel;
        QCOMPARE(panel.window.rooms().link->mode(), mode);
        QCOMPARE(part<QLabel>(panel.window, "statusLabel")->text(), label);
    }

    void Slave_with_a_field_sets_the_mode_and_stores_it_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("label");
        QTest::addColumn<bool>("stored");
        const auto row = [](const char* message, int mode, const char* label, bool stored) {
            QTest::newRow(message) << QByteArray(message) << mode << label << stored;
        };
        row("Slave,0", 0, "", true);
        row("Slave,1", 1, "Diversity Mode", true);
        row("Slave,2", 2, "Frequency Diversity Mode", true);
        row("Slave,1,5,,x", 1, "Diversity Mode", true);
        row("Slave,7", 1, "Diversity Mode", true);
        row("Slave,-1", 1, "Diversity Mode", true);
        row("Slave,", 1, "Diversity Mode", false);
        row("Slave,x", 1, "Diversity Mode", false);
        row("Slave,0x2", 1, "Diversity Mode", false);
        row("Slave,2.0", 1, "Diversity Mode", false);
        row("Slave,99999999999", 1, "Diversity Mode", false);
    }
    void Slave_with_a_field_sets_the_mode_and_stores_it()
    {
        QFETCH(QByteArray, message);
        QFETCH(int, mode);
        QFETCH(QString, label);
        QFETCH(bool, stored);
        linkMode::store(1);
        Panel panel;
        QSettings(QStringLiteral("TORVA"), QStringLiteral("QN740KB")).clear();
        QCOMPARE(panel.say({message}), QByteArray());
        QCOMPARE(panel.window.rooms().link->mode(), mode);
        QCOMPARE(part<QLabel>(panel.window, "statusLabel")->text(), label);
        QCOMPARE(isStored(), stored);
        QCOMPARE(linkMode::stored(), stored ? mode : 0);
    }

    void an_unknown_mode_is_not_replaced_by_another_unknown_one()
    {
        linkMode::store(5);
        Panel panel;
        QCOMPARE(panel.say({"Slave,7", "Slave"}), framed("Slave,5"));
        QCOMPARE(linkMode::stored(), 5);
    }

    void the_dialog_opens_with_the_current_mode_and_sends_it_once_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("button");
        QTest::addColumn<QByteArray>("sent");
        QTest::newRow("0") << 0 << "noLinking" << framed("Slave,0");
        QTest::newRow("1") << 1 << "diversityLinking" << framed("Slave,1");
        QTest::newRow("2") << 2 << "frequencyDiversityLinking" << framed("Slave,2");
        QTest::newRow("5") << 5 << QString() << QByteArray();
    }
    void the_dialog_opens_with_the_current_mode_and_sends_it_once()
    {
        QFETCH(int, mode);
        QFETCH(QString, button);
        QFETCH(QByteArray, sent);
        linkMode::store(mode);
        Panel panel;
        clickOn(part<QPushButton>(panel.window, "linkButton"));
        QWidget* dialog = Panel::shownWindow("linkDialog");
        QVERIFY(dialog != nullptr);
        QVERIFY(!part<QPushButton>(panel.window, "linkButton")->isEnabled());
        QCOMPARE(panel.heard(), sent);
        QCOMPARE(panel.window.rooms().link->mode(), mode);
        QStringList checked;
        for (const QRadioButton* radio : dialog->findChildren<QRadioButton*>()) {
            if (radio->isChecked()) {
                checked += radio->objectName();
            }
        }
        QCOMPARE(checked.join(QLatin1Char(' ')), button);

        const QPointer<QWidget> guard = dialog;
        clickOn(buttonWithText(dialog, QStringLiteral("Close")));
        QVERIFY(part<QPushButton>(panel.window, "linkButton")->isEnabled());
        QTRY_VERIFY(guard == nullptr);
        QVERIFY(panel.window.findChild<LinkModeDialog*>() == nullptr);
        QCOMPARE(panel.heard(), QByteArray());
    }

    void a_touch_on_a_mode_sends_shows_and_stores_it()
    {
        Panel panel;
        clickOn(part<QPushButton>(panel.window, "linkButton"));
        QWidget* dialog = Panel::shownWindow("linkDialog");
        QVERIFY(QTest::qWaitForWindowExposed(dialog));
        panel.heard();
        struct Step
        {
            const char* button;
            int mode;
            const char* label;
        };
        for (const Step& step : {Step{"diversityLinking", 1, "Diversity Mode"},
                 Step{"frequencyDiversityLinking", 2, "Frequency Diversity Mode"},
                 Step{"noLinking", 0, ""},
                 Step{"frequencyDiversityLinking", 2, "Frequency Diversity Mode"}}) {
            auto* radio = dialog->findChild<QRadioButton*>(QLatin1String(step.button));
            clickOn(radio);
            QCOMPARE(panel.heard(), framed("Slave," + QByteArray::number(step.mode)));
            QCOMPARE(panel.window.rooms().link->mode(), step.mode);
            QCOMPARE(part<QLabel>(panel.window, "statusLabel")->text(), QLatin1String(step.label));
            QCOMPARE(linkMode::stored(), step.mode);
            clickOn(radio); // already chosen
            QCOMPARE(panel.heard(), QByteArray());
        }
    }

    void the_toggle_slots_act_on_true_only()
    {
        Panel panel;
        panel.window.div_tog(true);
        QCOMPARE(panel.heard(), framed("Slave,1"));
        panel.window.master_tog(false);
        panel.window.div_tog(false);
        panel.window.freq_tog(false);
        QCOMPARE(panel.heard(), QByteArray());
        QCOMPARE(panel.window.rooms().link->mode(), 1);
        panel.window.freq_tog(true);
        QCOMPARE(panel.heard(), framed("Slave,2"));
        panel.window.master_tog(true);
        QCOMPARE(panel.heard(), framed("Slave,0"));
        QCOMPARE(linkMode::stored(), 0);
    }

    void an_open_dialog_follows_the_main_unit()
    {
        Panel panel;
        clickOn(part<QPushButton>(panel.window, "linkButton"));
        panel.heard();
        QCOMPARE(panel.say({"Slave,2"}), QByteArray());
        QVERIFY(panel.window.findChild<LinkModeDialog*>()
                    ->findChild<QRadioButton*>(QStringLiteral("frequencyDiversityLinking"))
                    ->isChecked());
        QCOMPARE(panel.window.rooms().link->mode(), 2);
    }

    void only_one_dialog_opens()
    {
        Panel panel;
        panel.window.process_config_menu();
        const LinkModeDialog* first = panel.window.findChild<LinkModeDialog*>();
        panel.window.process_config_menu();
        QCOMPARE(panel.window.findChild<LinkModeDialog*>(), first);
        QCOMPARE(panel.heard(), framed("Slave,0"));
        for (int i = 0; i < 50; ++i) {
            clickOn(
                buttonWithText(panel.window.findChild<LinkModeDialog*>(), QStringLiteral("Close")));
            QTRY_VERIFY(panel.window.findChild<LinkModeDialog*>() == nullptr);
            clickOn(part<QPushButton>(panel.window, "linkButton"));
            QVERIFY(panel.window.findChild<LinkModeDialog*>() != nullptr);
        }
        int dialogs = 0;
        for (const QWidget* top : QApplication::topLevelWidgets()) {
            dialogs += top->objectName() == QLatin1String("linkDialog") ? 1 : 0;
        }
        QCOMPARE(dialogs, 1);
    }

    void SB_shows_its_text_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::addColumn<QString>("shown");
        const auto row = [](const char* message, const char* shown) {
            QTest::newRow(message) << QByteArray(message) << QString::fromLatin1(shown);
        };
        row("SB,0,Ready", "Ready");
        row("SB,60000,Ready", "Ready");
        row("SB,-5,Ready", "Ready");
        row("SB,0,Ready,more", "Ready");
        row("SB,0,", "");
        row("SB,0", "");
        row("SB,0,G\xfcte 100 \xb5V", "G\xfcte 100 \xb5V");
        row("SB,x,Ready", "TORVA QN740 - Start Up");
        row("SB,,Ready", "TORVA QN740 - Start Up");
        row("SB,1.5,Ready", "TORVA QN740 - Start Up");
        row("SB", "TORVA QN740 - Start Up");
    }
    void SB_shows_its_text()
    {
        QFETCH(QByteArray, message);
        QFETCH(QString, shown);
        Panel panel;
        QCOMPARE(panel.say({message}), QByteArray());
        QCOMPARE(panel.window.statusBar()->currentMessage(), shown);
    }

    void the_text_of_SB_disappears_after_its_time()
    {
        Panel panel;
        panel.say({"SB,50,Soon gone"});
        QTRY_COMPARE(panel.window.statusBar()->currentMessage(), QString());
    }

    void DB_opens_a_box_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("buttons");
        const auto row = [](const char* message, const char* text, int buttons) {
            QTest::newRow(message)
                << QByteArray(message)
                << QStringLiteral("<font size = 6>%1</font>").arg(QString::fromLatin1(text))
                << buttons;
        };
        row("DB,Text,1", "Text", 1);
        row("DB,Text", "Text", 0);
        row("DB,Text,0", "Text", 0);
        row("DB,Text,", "Text", 0);
        row("DB,Text,11", "Text", 0);
        row("DB,Text,1,rest", "Text", 1);
        row("DB,", "", 0);
        row("DB,killbox", "killbox", 0);
        row("DB,KILLBOX ", "KILLBOX ", 0);
        row("DB,100 %1 %2,1", "100 %1 %2", 1);
    }
    void DB_opens_a_box()
    {
        QFETCH(QByteArray, message);
        QFETCH(QString, text);
        QFETCH(int, buttons);
        Panel panel;
        QCOMPARE(panel.say({message}), QByteArray());
        QCOMPARE(shownBoxes().size(), 1);
        QCOMPARE(shownBoxes().first()->text(), text);
        QCOMPARE(shownBoxes().first()->buttons().size(), buttons);
        QVERIFY(!shownBoxes().first()->isModal());
    }

    void DB_without_a_field_does_nothing()
    {
        Panel panel;
        QCOMPARE(panel.say({"DB", "DB,KILLBOX"}), QByteArray());
        QCOMPARE(shownBoxes().size(), 0);
    }

    void KILLBOX_closes_every_box()
    {
        Panel panel;
        panel.say({"DB,One", "DB,Two,1"});
        QCOMPARE(shownBoxes().size(), 2);
        panel.say({"DB,KILLBOX,whatever"});
        QCOMPARE(shownBoxes().size(), 0);
        panel.say({"DB,KILLBOX", "DB,Three,1"});
        QCOMPARE(shownBoxes().size(), 1);
        QMessageBox* box = shownBoxes().first();
        QVERIFY(QTest::qWaitForWindowExposed(box));
        clickOn(box->buttons().first());
        QCOMPARE(shownBoxes().size(), 0);
    }

    void ten_thousand_boxes_leave_no_widgets()
    {
        Panel panel;
        const auto widgets = QApplication::allWidgets().size();
        QList<QByteArray> messages;
        for (int i = 0; i < 50; ++i) {
            messages += {"DB,Text,1", "DB,KILLBOX", "DB,Text", "DB,KILLBOX"};
        }
        for (int i = 0; i < 100; ++i) {
            panel.say(messages);
        }
        QTRY_COMPARE(QApplication::allWidgets().size(), widgets);
    }

    void a_box_can_be_closed_while_an_editor_is_open()
    {
        Panel panel;
        panel.say({"AK,M,k,Key,99,C,,0,,0,0,1", "SK,M"});
        QTRY_VERIFY(buttonWithText(panel.window.rooms().central, QStringLiteral("Key")) != nullptr);
        bool closed = false;
        whenModal([&](QWidget* editor) {
            panel.say({"DB,Look,1"});
            for (QMessageBox* box : shownBoxes()) {
                if (box != editor) {
                    const QPointer<QMessageBox> guard = box;
                    clickOn(box->buttons().first());
                    closed = guard == nullptr || !guard->isVisible();
                }
            }
            editor->close();
        });
        clickOn(buttonWithText(panel.window.rooms().central, QStringLiteral("Key")));
        QVERIFY(closed);
        QCOMPARE(shownBoxes().size(), 0);
    }

    void a_box_opened_over_an_editor_outlives_it()
    {
        Panel panel;
        panel.say({"AK,M,k,Key,99,C,,0,,0,0,1", "SK,M"});
        QTRY_VERIFY(buttonWithText(panel.window.rooms().central, QStringLiteral("Key")) != nullptr);
        whenModal([&](QWidget* editor) {
            panel.say({"DB,Look,1"});
            editor->close();
        });
        clickOn(buttonWithText(panel.window.rooms().central, QStringLiteral("Key")));
        QTest::qWait(50);
        QCOMPARE(shownBoxes().size(), 1);
        QVERIFY(shownBoxes().first()->windowHandle()->isVisible());
        clickOn(shownBoxes().first()->buttons().first());
        QCOMPARE(shownBoxes().size(), 0);
    }

    void IK_presses_a_key_at_once_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::addColumn<QByteArray>("sent");
        QTest::newRow("toggle") << QByteArray("IK,L,0,X1:,,0,") << framed("X1:1");
        QTest::newRow("command") << QByteArray("IK,L,5,X1:,,0,,,") << QByteArray();
        QTest::newRow("command with a value") << QByteArray("IK,L,5,X1:,,0,,,2") << framed("X1:1");
        QTest::newRow("five fields") << QByteArray("IK,L,5,X1:,,0") << QByteArray();
        QTest::newRow("no fields") << QByteArray("IK") << QByteArray();
        QTest::newRow("no type") << QByteArray("IK,L,,X1:,,0,") << QByteArray();
        QTest::newRow("no parameter") << QByteArray("IK,L,0,X1:,,,") << QByteArray();
    }
    void IK_presses_a_key_at_once()
    {
        QFETCH(QByteArray, message);
        QFETCH(QByteArray, sent);
        Panel panel;
        QCOMPARE(panel.say({message}), sent);
        // Each message creates a new key, which is off again.
        QCOMPARE(panel.say({message}), sent);
    }

    void IK_opens_its_editor_inside_the_call()
    {
        Panel panel;
        const auto widgets = QApplication::allWidgets().size();
        bool opened = false;
        whenModal([&](QWidget* dialog) {
            auto* box = qobject_cast<QMessageBox*>(dialog);
            opened = box != nullptr &&
                box->text() == QStringLiteral("A key_button was pushed Unknown X:");
            dialog->close();
        });
        panel.say({"IK,Unknown,77,X:,,0,"});
        QVERIFY(opened);
        QTRY_COMPARE(QApplication::allWidgets().size(), widgets);
    }

    void EI_locks_choices_of_a_key_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::addColumn<QList<int>>("locked");
        const QList<int> before{9};
        QTest::newRow("several positions") << QByteArray("EI,M,k,0:2:3") << QList<int>{0, 2, 3};
        QTest::newRow("one position") << QByteArray("EI,M,k,4,rest") << QList<int>{4};
        QTest::newRow("no position") << QByteArray("EI,M,k,") << QList<int>{};
        QTest::newRow("items that are not positions")
            << QByteArray("EI,M,k,a::-1:1.5:6") << QList<int>{6};
        QTest::newRow("two fields") << QByteArray("EI,M,k") << before;
        QTest::newRow("no fields") << QByteArray("EI") << before;
        QTest::newRow("no key") << QByteArray("EI,M,x,1") << before;
        QTest::newRow("no menu") << QByteArray("EI,N,k,1") << before;
    }
    void EI_locks_choices_of_a_key()
    {
        QFETCH(QByteArray, message);
        QFETCH(QList<int>, locked);
        Panel panel;
        panel.say({"AK,M,k,Key,2,C,,0,0 A:1 B,0,0,1", "EI,M,k,9", message});
        QCOMPARE(panel.window.rooms().menus->book.find(QStringLiteral("M"))->keys.first()->itemIds,
            locked);
    }
};

QN740_TEST_MAIN(tst_SmallMessages)
#include "tst_SmallMessages.moc"
