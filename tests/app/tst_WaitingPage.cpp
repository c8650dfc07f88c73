// These tests check the page that is shown in place of a menu page that is gone, over the line and
// with real touches.
#include "app/Rooms.h"
#include "menus/KeyBoard.h"
#include "menus/MenuMessages.h"
#include "scopes/ScopesPage.h"
#include "spectrum/SpectralCard.h"
#include "spectrum/SpectrumMessages.h"
#include "support/Panel.h"
#include "support/TestMain.h"
#include "tools/screen/Part.h"

#include <QStatusBar>

using namespace Qt::StringLiterals;

class tst_WaitingPage : public QObject
{
    Q_OBJECT

    static const QWidget* shown(const Panel& panel)
    {
        return panel.window.rooms().stack->currentWidget();
    }

    static bool isWaiting(const Panel& panel)
    {
        return shown(panel)->objectName() == QLatin1String("waitingPage");
    }

    static QPushButton* button(const Panel& panel, const char* name)
    {
        return part<QPushButton>(panel.window, name);
    }

    // Starts with the three menus and the spectrum, then touches the view button this many times.
    static void start(Panel& panel, int touches)
    {
        panel.say({"AK,Tuner CH1,k,Key,5,K:,,0,,0,0,1", "CM,Main,Tuner CH1,k", "MS,Big,Tuner CH1,k",
            "SK,Tuner CH1", "ST,1"});
        for (int i = 0; i < touches; ++i) {
            clickOn(button(panel, "scopesButton"));
        }
    }

    static void addDisplays()
    {
        QTest::addColumn<int>("touches");
        QTest::newRow("the scopes") << 1;
        QTest::newRow("the spectrum") << 2;
    }

private slots:
    void init() { linkMode::store(linkMode::None); }

    void the_view_button_leads_from_a_display_to_it_when_the_menu_is_gone_data() { addDisplays(); }
    void the_view_button_leads_from_a_display_to_it_when_the_menu_is_gone()
    {
        QFETCH(int, touches);
        Panel panel;
        start(panel, touches);
        panel.say({"CLEAR"});
        QVERIFY(panel.window.displayActive());
        QVERIFY(!isWaiting(panel));
        while (panel.window.displayActive()) {
            clickOn(button(panel, "scopesButton"));
        }
        QVERIFY(isWaiting(panel));
        QCOMPARE(button(panel, "scopesButton")->text(), u"Scopes"_s);
        clickOn(button(panel, "scopesButton"));
        QCOMPARE(shown(panel), panel.window.rooms().scopes);
        QCOMPARE(button(panel, "scopesButton")->text(), u"Spectrum"_s);
    }

    void main_menu_leads_from_a_display_to_it_when_it_is_gone_data() { addDisplays(); }
    void main_menu_leads_from_a_display_to_it_when_it_is_gone()
    {
        QFETCH(int, touches);
        Panel panel;
        start(panel, touches);
        panel.say({"CLEAR"});
        clickOn(button(panel, "mainMenuButton"));
        QCOMPARE(panel.heard(), framed("Main"));
        QVERIFY(isWaiting(panel));
        QVERIFY(!panel.window.displayActive());
        QCOMPARE(button(panel, "scopesButton")->text(), u"Scopes"_s);
        // The next menu that the unit chooses is shown.
        panel.say({"AK,New,k,Key,5,K:,,0,,0,0,1", "SK,New"});
        QCOMPARE(shown(panel), panel.window.rooms().menus->book.find(u"New"_s)->frame);
    }

    void main_menu_leads_from_another_menu_to_it_when_it_is_gone()
    {
        Panel panel;
        start(panel, 0);
        panel.say({"CLEAR", "AK,New,k,Key,5,K:,,0,,0,0,1", "SK,New"});
        clickOn(button(panel, "mainMenuButton"));
        QCOMPARE(panel.heard(), framed("Main"));
        QVERIFY(isWaiting(panel));
        // The menu that exists is found again.
        clickOn(button(panel, "scopesButton"));
        clickOn(button(panel, "scopesButton"));
        clickOn(button(panel, "scopesButton"));
        QCOMPARE(shown(panel), panel.window.rooms().menus->book.find(u"New"_s)->frame);
    }

    void PAX_shows_it_without_the_status_bar_when_its_page_is_gone_data()
    {
        QTest::addColumn<int>("touches");
        QTest::newRow("the menus") << 0;
        QTest::newRow("the scopes") << 1;
        QTest::newRow("the spectrum") << 2;
    }
    void PAX_shows_it_without_the_status_bar_when_its_page_is_gone()
    {
        QFETCH(int, touches);
        Panel panel;
        start(panel, touches);
        panel.say({"CLEAR", "PAX,1"});
        QVERIFY(panel.window.statusBar()->isHidden());
        QVERIFY(isWaiting(panel));
        QVERIFY(!panel.window.displayActive());
        // The unit leaves the page by new menus and by the end of the PAX menu.
        panel.say({"AK,New,k,Key,5,K:,,0,,0,0,1", "SK,New"});
        QCOMPARE(shown(panel), panel.window.rooms().menus->book.find(u"New"_s)->frame);
        panel.say({"PAX,0"});
        QVERIFY(panel.window.statusBar()->isVisible());
        QCOMPARE(button(panel, "scopesButton")->text(), u"Scopes"_s);
    }

    void it_stays_when_PAX_ends_until_there_is_a_menu()
    {
        Panel panel;
        start(panel, 1);
        panel.say({"CLEAR", "PAX,1", "PAX,0"});
        QVERIFY(isWaiting(panel));
        QVERIFY(panel.window.statusBar()->isVisible());
        QCOMPARE(button(panel, "scopesButton")->text(), u"Scopes"_s);
    }

    void PAX_without_a_PAX_menu_ever_does_nothing_data() { addDisplays(); }
    void PAX_without_a_PAX_menu_ever_does_nothing()
    {
        QFETCH(int, touches);
        Panel panel;
        panel.say({"ST,1"});
        for (int i = 0; i < touches; ++i) {
            clickOn(button(panel, "scopesButton"));
        }
        const QWidget* before = shown(panel);
        panel.say({"CLEAR", "PAX,1"});
        QVERIFY(panel.window.statusBar()->isVisible());
        QCOMPARE(shown(panel), before);
        QVERIFY(panel.window.displayActive());
    }
};

QN740_TEST_MAIN(tst_WaitingPage)
#include "tst_WaitingPage.moc"
