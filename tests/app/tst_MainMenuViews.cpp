// These tests check which page is shown after the messages of the main menus, over the line and
// with real touches.
#include "app/MenuNavigation.h"
#include "app/Rooms.h"
#include "menus/Key.h"
#include "menus/KeyBoard.h"
#include "menus/MenuMessages.h"
#include "support/Panel.h"
#include "support/TestMain.h"
#include "tools/screen/Part.h"
#include "touch/TextButton.h"

#include <QStatusBar>

namespace {

const QByteArray SourceKey("AK,Tuner CH1,k,Source,0,K:,,0,,0,0,1");
const QByteArray CopyToMain("CM,Main,Tuner CH1,k");
const QByteArray CopyToPax("MS,Big,Tuner CH1,k");

} // namespace

class tst_MainMenuViews : public QObject
{
    Q_OBJECT

    static KeyBoard* menu(const Panel& panel, const char* name)
    {
        return panel.window.rooms().menus->book.find(QLatin1String(name));
    }

    static void deleteCleared()
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

private slots:
    void init() { linkMode::store(linkMode::None); }

    void the_main_menu_button_does_nothing_without_a_main_menu()
    {
        Panel panel;
        const QWidget* shown = panel.window.rooms().stack->currentWidget();
        clickOn(part<QPushButton>(panel.window, "mainMenuButton"));
        QCOMPARE(panel.heard(), QByteArray());
        QCOMPARE(panel.window.rooms().stack->currentWidget(), shown);
        QCOMPARE(panel.window.mainMenuIndex(), -1);
        QCOMPARE(panel.window.paxMenuIndex(), -1);
        QCOMPARE(panel.window.rooms().navigation->paxListIndex(), -1);
    }

    void the_main_menu_button_shows_the_menu_and_informs_the_main_unit()
    {
        Panel panel;
        panel.say({SourceKey, CopyToMain, "AK,Extra,k,L,0,C,,0,,0,0,1", "SK,Extra"});
        QCOMPARE(panel.window.rooms().stack->currentWidget(), menu(panel, "Extra")->frame);
        QCOMPARE(panel.window.mainMenuIndex(), menu(panel, "Main")->stackIndex);
        panel.window.rooms().views->setCurrent(Views::Scopes);
        part<QPushButton>(panel.window, "scopesButton")->setText(QStringLiteral("Menu"));
        clickOn(part<QPushButton>(panel.window, "mainMenuButton"));
        QCOMPARE(panel.heard(), framed("Main"));
        QCOMPARE(panel.window.rooms().stack->currentWidget(), menu(panel, "Main")->frame);
        QCOMPARE(panel.window.rooms().views->menu.widget(), menu(panel, "Main")->frame);
        QCOMPARE(panel.window.rooms().views->current(), Views::Menus);
        QVERIFY(!panel.window.displayActive());
        QCOMPARE(part<QPushButton>(panel.window, "scopesButton")->text(), QStringLiteral("Scopes"));
    }

    void Main_is_not_widened_in_any_link_mode()
    {
        for (const int mode : {0, 1, 2}) {
            linkMode::store(mode);
            Panel panel;
            panel.say({SourceKey, CopyToMain});
            clickOn(part<QPushButton>(panel.window, "mainMenuButton"));
            QCOMPARE(panel.heard(), framed("Main"));
        }
    }

    void a_touched_toggle_is_marked_until_the_main_unit_confirms_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("CV for the source") << QByteArray("CV,Tuner CH1,k,0,1");
        QTest::newRow("CV for the copy") << QByteArray("CV,Main,k,0,1");
        QTest::newRow("CV that refuses") << QByteArray("CV,Tuner CH1,k,0,0");
        QTest::newRow("CK for the source") << QByteArray("CK,Tuner CH1,k,1");
        QTest::newRow("AK for the source") << SourceKey;
    }
    void a_touched_toggle_is_marked_until_the_main_unit_confirms()
    {
        QFETCH(QByteArray, answer);
        Panel panel;
        panel.say({SourceKey, CopyToMain, "SK,Main"});
        auto* key = qobject_cast<TextButton*>(menu(panel, "Main")->buttons.constFirst());
        const QString sheet = key->styleSheet();
        QCOMPARE(key->marks().lamp, keyMarks::Lamp::Off);
        clickOn(key);
        QCOMPARE(panel.heard(), framed("K:1"));
        QVERIFY(key->marks().isPending);
        QCOMPARE(key->marks().lamp, keyMarks::Lamp::Off);
        QCOMPARE(key->styleSheet(), sheet);
        panel.say({"PING"});
        QVERIFY(key->marks().isPending);
        panel.say({answer});
        QVERIFY(!key->marks().isPending);
    }

    void an_ampersand_in_the_name_of_a_menu_is_shown_in_the_status_bar()
    {
        Panel panel;
        panel.say({"AK,R & D,k,L,0,C,,0,,0,0,1", "SK,R & D"});
        QCOMPARE(part<QStatusBar>(panel.window, "statusBar")->currentMessage(),
            QStringLiteral("QN740 Menu - R & D"));
    }

    void a_main_menu_without_a_name_is_not_made()
    {
        Panel panel;
        panel.say({SourceKey, CopyToPax, "MS", "MS,", "CM", "CM,,Tuner CH1,k"});
        QCOMPARE(panel.window.rooms().views->paxMenu.widget(), menu(panel, "Big")->frame);
        QVERIFY(menu(panel, "") == nullptr);
    }

    void the_index_of_a_deleted_main_menu_is_kept()
    {
        Panel panel;
        panel.say({SourceKey, CopyToMain, "SK,Main"});
        panel.say({"CLEAR"});
        deleteCleared();
        const int index = panel.window.mainMenuIndex();
        QVERIFY(index >= 0);
        panel.say({"AK,Old,k,L,0,C,,0,,0,0,1", "CLEAR"});
        deleteCleared();
        QCOMPARE(panel.window.mainMenuIndex(), index);
        panel.say({"AK,New,k,L,0,C,,0,,0,0,1", "SK,New"});
        clickOn(part<QPushButton>(panel.window, "mainMenuButton"));
        QCOMPARE(panel.heard(), framed("Main"));
        QCOMPARE(panel.window.rooms().stack->currentWidget()->objectName(),
            QStringLiteral("waitingPage"));
        panel.say({SourceKey, CopyToMain});
        clickOn(part<QPushButton>(panel.window, "mainMenuButton"));
        QCOMPARE(panel.heard(), framed("Main"));
        QCOMPARE(panel.window.rooms().stack->currentWidget(), menu(panel, "Main")->frame);
    }

    void a_hundred_immediate_redefinitions_show_the_right_pages()
    {
        Panel panel;
        const auto widgets = [] { return QApplication::allWidgets().size(); };
        qsizetype before = 0;
        for (int i = 0; i < 100; ++i) {
            QList<QByteArray> messages{"CLEAR"};
            for (int key = 0; key < 40; ++key) {
                messages += "AK,Tuner CH1,k" + QByteArray::number(key) + ",L,0,C,,0,,0,0,1";
            }
            messages += {SourceKey, CopyToMain, CopyToPax, "AK,Extra,k,L,0,C,,0,,0,0,1"};
            messages += i % 2 == 0 ? "SK,Extra" : "SK,Main";
            panel.say(messages);
            deleteCleared();
            QCOMPARE(panel.window.rooms().stack->currentWidget(),
                menu(panel, i % 2 == 0 ? "Extra" : "Main")->frame);
            clickOn(part<QPushButton>(panel.window, "mainMenuButton"));
            QCOMPARE(panel.window.rooms().stack->currentWidget(), menu(panel, "Main")->frame);
            panel.say({"PAX,1"});
            QCOMPARE(panel.window.rooms().stack->currentWidget(), menu(panel, "Big")->frame);
            panel.say({"PAX,0"});
            QVERIFY(i < 2 || widgets() == before);
            before = widgets();
        }
    }

    void a_plain_Main_becomes_the_main_menu_when_CM_names_it()
    {
        Panel panel;
        panel.say({"AK,Main,own,Own,0,C,,0,,0,0,1", SourceKey});
        QCOMPARE(panel.window.mainMenuIndex(), -1);
        panel.say({CopyToMain});
        QCOMPARE(panel.window.mainMenuIndex(), menu(panel, "Main")->stackIndex);
        clickOn(part<QPushButton>(panel.window, "mainMenuButton"));
        QTRY_VERIFY(
            buttonWithText(panel.window.rooms().central, QStringLiteral("Source")) != nullptr);
        QVERIFY(buttonWithText(panel.window.rooms().central, QStringLiteral("Own")) != nullptr);
        panel.heard();
        clickOn(buttonWithText(panel.window.rooms().central, QStringLiteral("Source")));
        QCOMPARE(panel.heard(), framed("K:1"));
    }

    void a_copy_sends_and_follows_its_source_over_the_line()
    {
        Panel panel;
        panel.say({SourceKey, CopyToMain, "SK,Main"});
        QTRY_VERIFY(
            buttonWithText(panel.window.rooms().central, QStringLiteral("Source")) != nullptr);
        QPushButton* button =
            buttonWithText(panel.window.rooms().central, QStringLiteral("Source"));
        clickOn(button);
        QCOMPARE(panel.heard(), framed("K:1"));
        QVERIFY(!button->styleSheet().contains(QLatin1String("green")));
        panel.say({"CV,Tuner CH1,k,1,1"});
        QVERIFY(button->styleSheet().contains(QLatin1String("green")));
        panel.say({"CK,Tuner CH1,k,2"});
        QVERIFY(!button->isVisible());
        panel.say({"CK,Tuner CH1,k,1", "AK,Tuner CH1,k,Renamed,0,K:,,0,,0,1,1"});
        QVERIFY(button->isVisible());
        QCOMPARE(button->text(), QStringLiteral("Renamed"));
    }

    void PAX_shows_its_menu_without_the_status_bar()
    {
        Panel panel;
        panel.say({SourceKey, CopyToPax});
        QCOMPARE(panel.window.paxMenuIndex(), menu(panel, "Big")->stackIndex);
        QCOMPARE(panel.window.rooms().navigation->paxListIndex(), 3);
        panel.window.rooms().views->setCurrent(Views::Scopes);
        QCOMPARE(panel.say({"PAX,1"}), QByteArray());
        QCOMPARE(panel.window.rooms().stack->currentWidget(), menu(panel, "Big")->frame);
        QCOMPARE(panel.window.rooms().views->menu.widget(), menu(panel, "Big")->frame);
        QVERIFY(!panel.window.displayActive());
        QVERIFY(panel.window.statusBar()->isHidden());
        // "SK" leaves this menu like any other.
        panel.say({"SK,Tuner CH1"});
        QCOMPARE(panel.window.rooms().stack->currentWidget(), menu(panel, "Tuner CH1")->frame);
        panel.say({"PAX,0"});
        QVERIFY(panel.window.statusBar()->isVisible());
        QCOMPARE(panel.window.rooms().stack->currentWidget(), menu(panel, "Tuner CH1")->frame);
    }

    void other_fields_of_PAX_are_ignored_data()
    {
        QTest::addColumn<QByteArray>("message");
        for (const char* message : {"PAX", "PAX,", "PAX,2", "PAX,on", "PAX,01", "pax,1"}) {
            QTest::newRow(message) << QByteArray(message);
        }
    }
    void other_fields_of_PAX_are_ignored()
    {
        QFETCH(QByteArray, message);
        Panel panel;
        panel.say({SourceKey, CopyToPax, "PAX,1", message});
        QVERIFY(panel.window.statusBar()->isHidden());
        panel.say({"PAX,0", message});
        QVERIFY(panel.window.statusBar()->isVisible());
    }

    void without_a_PAX_menu_the_status_bar_stays()
    {
        Panel panel;
        const QWidget* shown = panel.window.rooms().stack->currentWidget();
        panel.say({"PAX,1"});
        QVERIFY(panel.window.statusBar()->isVisible());
        QCOMPARE(panel.window.rooms().stack->currentWidget(), shown);
    }

    void the_list_position_of_a_deleted_PAX_menu_is_harmless()
    {
        Panel panel;
        panel.say({SourceKey, CopyToPax, "PAX,1", "CLEAR"});
        deleteCleared();
        QCOMPARE(panel.window.rooms().navigation->paxListIndex(), 3);
        panel.say({"PAX,0", "PAX,1"}); // with an empty list
        panel.say({"AK,A,k,L,0,C,,0,,0,0,1", "AK,B,k,L,0,C,,0,,0,0,1", "AK,C,k,L,0,C,,0,,0,0,1",
            "AK,D,k,L,0,C,,0,,0,0,1", "SK,D", "PAX,0", "PAX,1"}); // another menu is at its position
        QCOMPARE(panel.window.rooms().stack->currentWidget()->objectName(),
            QStringLiteral("waitingPage"));
        panel.say({SourceKey, CopyToPax, "PAX,1"});
        QCOMPARE(panel.window.rooms().navigation->paxListIndex(), 5);
        QCOMPARE(panel.window.rooms().stack->currentWidget(), menu(panel, "Big")->frame);
    }

    void the_special_menu_becomes_the_main_menu()
    {
        Panel panel;
        panel.say({"AK,Main,own,Own,0,C:,,0,,0,0,1", "AK,Extra,k,L,0,C,,0,,0,0,1", "SK,Extra"});
        panel.window.process_special_menu();
        const QPointer<QWidget> page = panel.window.rooms().stack->currentWidget();
        QCOMPARE(page->objectName(), QStringLiteral("specialPage"));
        QCOMPARE(panel.window.rooms().stack->indexOf(page), panel.window.mainMenuIndex());
        panel.say({"SK,Extra"});
        clickOn(part<QPushButton>(panel.window, "mainMenuButton"));
        QCOMPARE(panel.heard(), framed("Main"));
        QCOMPARE(panel.window.rooms().stack->currentWidget(), page);
        QTRY_VERIFY(buttonWithText(page, QStringLiteral("Own")) != nullptr);
        clickOn(buttonWithText(page, QStringLiteral("Own")));
        QCOMPARE(panel.heard(), framed("C:1"));
        panel.say({"CLEAR"});
        deleteCleared();
        QVERIFY(page == nullptr);
        QCOMPARE(panel.window.rooms().stack->currentWidget()->objectName(),
            QStringLiteral("waitingPage"));
    }

    void without_a_Main_there_is_no_special_menu()
    {
        Panel panel;
        const QWidget* shown = panel.window.rooms().stack->currentWidget();
        panel.window.process_special_menu();
        QCOMPARE(panel.window.rooms().stack->currentWidget(), shown);
        QCOMPARE(panel.window.mainMenuIndex(), -1);
    }

    void the_special_menu_ends_another_view()
    {
        Panel panel;
        panel.say({"AK,Main,own,Own,0,C:,,0,,0,0,1"});
        panel.window.rooms().views->setCurrent(Views::Spectrum);
        panel.window.process_special_menu();
        QVERIFY(!panel.window.displayActive());
        QCOMPARE(part<QPushButton>(panel.window, "scopesButton")->text(), QStringLiteral("Scopes"));
    }

    void button_pushed_shows_its_box()
    {
        Panel panel;
        QString text;
        whenModal([&](QWidget* box) {
            text = box->findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))->text();
            box->close();
        });
        panel.window.button_pushed();
        QCOMPARE(text, QStringLiteral("A button was pushed"));
    }
};

QN740_TEST_MAIN(tst_MainMenuViews)
#include "tst_MainMenuViews.moc"
