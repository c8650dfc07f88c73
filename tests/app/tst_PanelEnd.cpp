// These tests check what happens when the panel is deleted, whatever is open.
#include "app/MenuNavigation.h"
#include "app/Rooms.h"
#include "link/LinkControl.h"
#include "menus/KeyBoard.h"
#include "menus/MenuMessages.h"
#include "scopes/ScopesPage.h"
#include "spectrum/SpectrumMessages.h"
#include "support/Panel.h"
#include "support/TestMain.h"

#include <QPointer>

using namespace Qt::StringLiterals;

class tst_PanelEnd : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        linkMode::store(linkMode::None);
        m_panel = std::make_unique<Panel>();
    }

    void cleanup() { m_panel.reset(); }

    void it_ends_with_lent_displays_boxes_and_the_link_dialog()
    {
        openEverything();
        const QPointer<QWidget> dialog = Panel::shownWindow("linkDialog");
        const QPointer<QWidget> box = Panel::shownWindow("messageBox");
        QVERIFY(dialog != nullptr && box != nullptr);
        m_panel.reset();
        QVERIFY(dialog == nullptr && box == nullptr);
        QVERIFY(Panel::shownWindow("messageBox") == nullptr);
    }

    void another_panel_can_follow()
    {
        for (int round = 0; round < 3; ++round) {
            openEverything();
            m_panel.reset();
            m_panel = std::make_unique<Panel>();
        }
        QCOMPARE(m_panel->say({"Slave"}), framed("Slave,0"));
    }

    // When the children of the window are deleted, its members are already gone.
    void what_its_parts_say_while_they_go_reaches_nobody()
    {
        openEverything();
        const Rooms rooms = m_panel->window.rooms();
        int said = 0;
        connect(rooms.central, &QObject::destroyed, this, [&rooms, &said] {
            emit rooms.navigation->response(u"late"_s);
            emit rooms.navigation->menuShown(u"late"_s);
            emit rooms.navigation->statusBarWanted(true);
            emit rooms.menus->book.keyboard_response_message(u"late"_s);
            emit rooms.spectrum->response(u"late"_s);
            emit rooms.spectrum->started();
            emit rooms.spectrum->pageMissed();
            emit rooms.spectrum->lineColorSet(0, 0);
            emit rooms.link->modeChanged(u"late"_s);
            emit rooms.link->dialogOpened();
            emit rooms.link->dialogClosed();
            ++said;
        });
        m_panel.reset();
        QCOMPARE(said, 1);
    }

private:
    // Opens the PAX main menu with the displays that it borrows, more message boxes than can be
    // open at a time, and the dialog of link modes.
    void openEverything()
    {
        QList<QByteArray> messages{
            "AK,Test,k,Setting,0,C:,,0,,0,0,1", "MS,PAX,Test,k", "ST,1", "PAX,1"};
        for (int i = 0; i < 20; ++i) {
            messages += "DB,Look,1";
        }
        m_panel->say(messages);
        m_panel->window.process_config_menu();
        const Rooms& rooms = m_panel->window.rooms();
        QVERIFY(rooms.navigation->shownPaxPlace() != nullptr);
        const QWidget* const scope = rooms.scopes->scope(3);
        QVERIFY(!rooms.scopes->isAncestorOf(scope) && m_panel->window.isAncestorOf(scope));
    }

    std::unique_ptr<Panel> m_panel;
};

QN740_TEST_MAIN(tst_PanelEnd)
#include "tst_PanelEnd.moc"
