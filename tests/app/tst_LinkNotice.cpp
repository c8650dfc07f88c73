// These tests check what the panel shows about its link to the main unit, over a real line and on
// the real window.
#include "app/Rooms.h"
#include "link/LinkControl.h"
#include "scopes/ScopesPage.h"
#include "scopes/StcMagPhasePlot.h"
#include "support/Panel.h"
#include "support/TestMain.h"
#include "tools/screen/Part.h"

#include <QLabel>
#include <QRegularExpression>
#include <QStatusBar>

using namespace Qt::StringLiterals;

namespace {

constexpr int LongMs = 20000;
const QString Lost = u"No connection to the main unit"_s;
const QString Silent = u"The main unit is silent"_s;

} // namespace

class tst_LinkNotice : public QObject
{
    Q_OBJECT

    static QLabel* notice(const Panel& panel) { return part<QLabel>(panel.window, "noticeLabel"); }

    // Returns the place of the notice in the window.
    static QRect place(const Panel& panel)
    {
        const QLabel* label = notice(panel);
        return {label->mapTo(&panel.window, QPoint()), label->size()};
    }

    static void lose(Panel& panel)
    {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^ttyO1 was lost: "_s));
        panel.unit.close();
        QTRY_COMPARE(panel.window.rooms().link->health(), LinkState::Closed);
    }

    static void ping(Panel& panel)
    {
        for (int i = 0; i < 4; ++i) {
            QVERIFY(panel.unit.write(framed("PING")));
            QTest::qWait(200);
        }
    }

private slots:
    void init() { linkMode::store(linkMode::None); }

    void all_is_well_while_the_line_is_open()
    {
        Panel panel;
        panel.say({"SB,0,Ready"});
        QCOMPARE(notice(panel)->text(), QString());
        QVERIFY(!notice(panel)->isVisible());
    }

    void a_line_that_is_missing_is_told_from_the_start()
    {
        DeviceDirectory devices;
        QTest::failOnWarning(QRegularExpression(u"ttyO1"_s));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^ttyO1 was not opened: "_s));
        MainWindow window;
        window.show();
        const auto* label = part<QLabel>(window, "noticeLabel");
        QCOMPARE(label->text(), Lost);
        QVERIFY(label->isVisible());
        QCOMPARE(label->window(), &window);
        QVERIFY(window.rooms().scopes->magPhasePlot()->isDimmed());
        devices.add(u"ttyO1"_s); // the process does not open it again
        QTest::qWait(2500);
        QCOMPARE(label->text(), Lost);
    }

    void a_line_that_is_lost_is_told_and_stays_so()
    {
        Panel panel;
        panel.say({"SB,0,Ready"});
        lose(panel);
        QCOMPARE(notice(panel)->text(), Lost);
        QVERIFY(notice(panel)->isVisible());
        QVERIFY(panel.window.statusBar()->isAncestorOf(notice(panel)));
        QCOMPARE(panel.window.statusBar()->currentMessage(), u"Ready"_s);
        panel.devices.add(u"ttyO1"_s);
        QTest::qWait(2500);
        QCOMPARE(notice(panel)->text(), Lost);
    }

    void a_unit_that_falls_silent_is_told_until_anything_arrives()
    {
        Panel panel;
        ping(panel);
        QVERIFY(!notice(panel)->isVisible());
        QTRY_COMPARE_WITH_TIMEOUT(notice(panel)->text(), Silent, LongMs);
        QVERIFY(notice(panel)->isVisible());
        QVERIFY(panel.unit.write("x"));
        QTRY_COMPARE(notice(panel)->text(), QString());
        QVERIFY(!notice(panel)->isVisible());
    }

    void the_magnitude_and_phase_display_is_dimmed_as_long_as_there_is_a_notice()
    {
        Panel panel;
        const auto isDimmed = [&] {
            return panel.window.rooms().scopes->magPhasePlot()->isDimmed();
        };
        ping(panel);
        QVERIFY(!isDimmed());
        QTRY_COMPARE_WITH_TIMEOUT(notice(panel)->text(), Silent, LongMs);
        QVERIFY(isDimmed());
        QVERIFY(panel.unit.write("x"));
        QTRY_VERIFY(!isDimmed());
        lose(panel);
        QVERIFY(isDimmed());
    }

    void on_the_PAX_menu_it_stands_over_the_bottom_edge()
    {
        Panel panel;
        panel.say({"AK,Tuner CH1,k,Key,5,K:,,0,,0,0,1", "MS,Big,Tuner CH1,k", "PAX,1"});
        QVERIFY(!notice(panel)->isVisible());
        ping(panel);
        QTRY_COMPARE_WITH_TIMEOUT(notice(panel)->text(), Silent, LongMs);
        QVERIFY(notice(panel)->isVisible());
        QCOMPARE(place(panel).bottom(), 479);
        panel.say({"PAX,0"});
        QVERIFY(!notice(panel)->isVisible());
        panel.say({"PAX,1"});
        lose(panel);
        QCOMPARE(notice(panel)->text(), Lost);
        QVERIFY(notice(panel)->isVisible());
        QCOMPARE(place(panel).bottom(), 479);
        QVERIFY(panel.window.rect().contains(place(panel)));
        // No part of the page covers the notice.
        QWidget* top = panel.window.childAt(place(panel).center());
        QVERIFY(top != nullptr);
        const QImage seen = panel.window.grab(place(panel)).toImage();
        QCOMPARE(seen.pixelColor(3, 3), QColor(0x8b, 0, 0));
        panel.window.paxMenuEnable(false);
        QVERIFY(panel.window.statusBar()->isAncestorOf(notice(panel)));
        QVERIFY(notice(panel)->isVisible());
    }

    void a_key_under_the_notice_can_be_pressed()
    {
        Panel panel;
        panel.say({"AK,Tuner CH1,k,Key,5,K:,,0,,0,0,1", "MS,Big,Tuner CH1,k"});
        lose(panel);
        panel.window.paxMenuEnable(true);
        QVERIFY(notice(panel)->testAttribute(Qt::WA_TransparentForMouseEvents));
        QVERIFY(panel.window.childAt(place(panel).center()) != notice(panel));
    }

    void it_leaves_the_buttons_and_the_link_mode_where_they_are()
    {
        Panel panel;
        panel.say({"Slave,2", "SB,0,A text of the main unit that is far too long for its place"});
        QTest::qWait(0);
        QList<QRect> before;
        const QStringList parts{
            u"statusLabel"_s, u"linkButton"_s, u"mainMenuButton"_s, u"scopesButton"_s};
        for (const QString& name : parts) {
            const auto* widget = panel.window.findChild<QWidget*>(name);
            before += QRect(widget->mapTo(&panel.window, QPoint()), widget->size());
        }
        lose(panel);
        QTest::qWait(0);
        for (const QString& name : parts) {
            const auto* widget = panel.window.findChild<QWidget*>(name);
            const QRect now(widget->mapTo(&panel.window, QPoint()), widget->size());
            QCOMPARE(now, before.takeFirst());
            QVERIFY2(!now.intersects(place(panel)), qPrintable(name));
        }
        QCOMPARE(
            notice(panel)->heightForWidth(notice(panel)->width()) <= notice(panel)->height(), true);
    }
};

QN740_TEST_MAIN(tst_LinkNotice)
#include "tst_LinkNotice.moc"
