#include "app/MenuNavigation.h"
#include "app/Views.h"
#include "menus/KeyBoard.h"
#include "menus/MainMenus.h"
#include "menus/MenuMessages.h"
#include "support/TestMain.h"

#include <QFile>
#include <QGridLayout>
#include <QSignalSpy>

#include <vector>

using namespace Qt::StringLiterals;

class tst_MenuNavigation : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_area = std::make_unique<QWidget>();
        m_stack = new QStackedLayout(m_area.get());
        m_views = new Views(m_stack, m_area.get());
        m_menus = new MenuMessages(m_stack, m_area.get());
        m_navigation = new MenuNavigation(*m_menus, *m_views, m_area.get());
        define(u"First"_s);
        m_views->showMenu(page(u"First"_s));
        m_display = new QWidget;
        m_stack->addWidget(m_display);
        m_views->set(&Views::scopes, m_display);
    }

    void cleanup() { m_area.reset(); }

    void memory_that_nobody_uses_goes_back_a_little_after_the_menus_are_cleared()
    {
#ifdef QN740_SANITIZED
        QSKIP("a sanitizer keeps what was freed");
#endif
        constexpr size_t Bytes = 8192;
        constexpr size_t Pieces = 4096;
        constexpr size_t Kept = 64; // each so many-th piece stays between the gaps
        constexpr int GapsKb = 24 * 1024;
        std::vector<std::vector<char>> pieces(Pieces, std::vector<char>(Bytes, 'x'));
        for (size_t i = 0; i < Pieces; ++i) {
            if (i % Kept != 0) {
                std::vector<char>().swap(pieces[i]);
            }
        }
        const int before = residentKb();
        m_navigation->clear();
        QVERIFY(residentKb() > before - GapsKb);
        QTRY_VERIFY(residentKb() < before - GapsKb);
    }

    void a_selected_menu_is_shown_and_announced()
    {
        const QSignalSpy shown(m_navigation, &MenuNavigation::menuShown);
        define(u"Second"_s);
        QCOMPARE(m_stack->currentWidget(), page(u"First"_s));
        m_menus->selectMenu({u"Second"_s});
        QCOMPARE(m_stack->currentWidget(), page(u"Second"_s));
        QCOMPARE(shown.size(), 1);
        QCOMPARE(shown.at(0).at(0).toString(), u"Second"_s);
        m_menus->selectMenu({u"Nowhere"_s});
        QCOMPARE(m_stack->currentWidget(), page(u"Second"_s));
        QCOMPARE(shown.size(), 1);
    }

    void a_menu_selected_behind_a_display_waits_until_the_menus_return()
    {
        const QSignalSpy shown(m_navigation, &MenuNavigation::menuShown);
        define(u"Second"_s);
        showDisplay();
        m_menus->selectMenu({u"Second"_s});
        QCOMPARE(m_stack->currentWidget(), m_display);
        QVERIFY(shown.isEmpty());
        m_views->showNext();
        QCOMPARE(m_stack->currentWidget(), page(u"Second"_s));
    }

    void the_main_menu_is_shown_and_reported_once_it_was_named()
    {
        const QSignalSpy sent(m_navigation, &MenuNavigation::response);
        m_navigation->showMainMenu();
        QCOMPARE(m_stack->currentWidget(), page(u"First"_s));
        QVERIFY(sent.isEmpty());
        m_navigation->mainMenus().copyToMainMenu({u"Main"_s, u"First"_s, u"k"_s});
        showDisplay();
        m_navigation->showMainMenu();
        QCOMPARE(m_stack->currentWidget(), page(u"Main"_s));
        QCOMPARE(m_views->current(), Views::Menus);
        QCOMPARE(sent.size(), 1);
        QCOMPARE(sent.at(0).at(0).toString(), u"\x02Main\x04"_s);
    }

    void a_main_menu_that_is_gone_is_reported_and_not_shown()
    {
        const QSignalSpy sent(m_navigation, &MenuNavigation::response);
        m_navigation->mainMenus().copyToMainMenu({u"Main"_s, u"First"_s, u"k"_s});
        m_navigation->clear();
        deleteCleared();
        define(u"Other"_s);
        m_menus->selectMenu({u"Other"_s});
        m_navigation->showMainMenu();
        QCOMPARE(m_stack->currentWidget(), page(u"Other"_s));
        QCOMPARE(sent.size(), 1);
    }

    void the_regrouped_main_menu_becomes_the_main_menu()
    {
        m_navigation->showRegroupedMain();
        QCOMPARE(m_views->mainMenu.index(), -1);
        define(u"Main"_s);
        showDisplay();
        m_navigation->showRegroupedMain();
        const QWidget* regrouped = m_views->mainMenu.widget();
        QVERIFY(regrouped != nullptr && regrouped != page(u"Main"_s));
        QCOMPARE(m_stack->currentWidget(), regrouped);
        QCOMPARE(m_views->current(), Views::Menus);
    }

    void the_pax_menu_takes_the_status_bar_and_the_displays_and_gives_them_back()
    {
        const QSignalSpy bar(m_navigation, &MenuNavigation::statusBarWanted);
        const QSignalSpy lent(m_navigation, &MenuNavigation::displaysWanted);
        const QSignalSpy returned(m_navigation, &MenuNavigation::displaysReturned);
        QCOMPARE(m_navigation->paxListIndex(), -1);
        makePaxMenu();
        QCOMPARE(m_navigation->paxListIndex(), 1);
        QVERIFY(m_navigation->shownPaxPlace() == nullptr);
        showDisplay();
        m_navigation->takePaxMessage({u"1"_s});
        QCOMPARE(m_stack->currentWidget(), page(u"Big"_s));
        QCOMPARE(m_views->current(), Views::Menus);
        QCOMPARE(bar.size(), 1);
        QCOMPARE(bar.at(0).at(0).toBool(), false);
        QGridLayout* const place = m_menus->book.find(u"Big"_s)->chan2Grid;
        QVERIFY(place != nullptr);
        QCOMPARE(lent.size(), 1);
        QCOMPARE(lent.at(0).at(0).value<QGridLayout*>(), place);
        QCOMPARE(m_navigation->shownPaxPlace(), place);
        QVERIFY(returned.isEmpty());
        m_navigation->takePaxMessage({u"0"_s});
        QCOMPARE(m_stack->currentWidget(), page(u"Big"_s));
        QCOMPARE(bar.size(), 2);
        QCOMPARE(bar.at(1).at(0).toBool(), true);
        QCOMPARE(returned.size(), 1);
        QCOMPARE(lent.size(), 1);
    }

    void a_pax_message_with_another_field_is_ignored_data()
    {
        QTest::addColumn<QStringList>("fields");
        QTest::newRow("none") << QStringList();
        QTest::newRow("empty") << QStringList{QString()};
        QTest::newRow("another number") << QStringList{u"2"_s};
        QTest::newRow("leading zero") << QStringList{u"01"_s};
        QTest::newRow("word") << QStringList{u"on"_s};
    }

    void a_pax_message_with_another_field_is_ignored()
    {
        QFETCH(QStringList, fields);
        const QSignalSpy bar(m_navigation, &MenuNavigation::statusBarWanted);
        const QSignalSpy returned(m_navigation, &MenuNavigation::displaysReturned);
        makePaxMenu();
        m_navigation->takePaxMessage(fields);
        QVERIFY(bar.isEmpty() && returned.isEmpty());
        QCOMPARE(m_stack->currentWidget(), page(u"First"_s));
    }

    void without_a_pax_menu_the_status_bar_stays()
    {
        const QSignalSpy bar(m_navigation, &MenuNavigation::statusBarWanted);
        const QSignalSpy lent(m_navigation, &MenuNavigation::displaysWanted);
        m_navigation->takePaxMessage({u"1"_s});
        QCOMPARE(bar.size(), 1);
        QCOMPARE(bar.at(0).at(0).toBool(), true);
        QVERIFY(lent.isEmpty());
        QCOMPARE(m_stack->currentWidget(), page(u"First"_s));
    }

    void nothing_is_lent_to_a_pax_menu_that_is_gone()
    {
        const QSignalSpy bar(m_navigation, &MenuNavigation::statusBarWanted);
        const QSignalSpy lent(m_navigation, &MenuNavigation::displaysWanted);
        makePaxMenu();
        m_navigation->clear();
        deleteCleared();
        // Another menu is now at the same position of the list.
        define(u"A"_s);
        define(u"B"_s);
        m_navigation->takePaxMessage({u"1"_s});
        QCOMPARE(bar.size(), 1);
        QCOMPARE(bar.at(0).at(0).toBool(), false);
        QVERIFY(lent.isEmpty());
        QVERIFY(m_navigation->shownPaxPlace() == nullptr);
    }

    void clearing_returns_the_displays_before_the_menus_are_deleted()
    {
        makePaxMenu();
        qsizetype menus = 0;
        connect(m_navigation, &MenuNavigation::displaysReturned, this,
            [&] { menus = m_menus->book.pages.size(); });
        m_navigation->clear();
        QCOMPARE(menus, 2);
        QVERIFY(m_menus->book.pages.isEmpty());
    }

private:
    // Defines a menu with one key, or another key for a menu that exists.
    void define(const QString& menu)
    {
        m_menus->defineKey({menu, u"k"_s, u"Label"_s, u"5"_s, u"C"_s, QString(), u"0"_s, QString(),
            u"0"_s, u"0"_s, u"1"_s});
    }

    void makePaxMenu()
    {
        m_navigation->mainMenus().copyToPaxMenu({u"Big"_s, u"First"_s, u"k"_s});
    }

    void showDisplay()
    {
        m_views->setCurrent(Views::Scopes);
        m_views->show(&Views::scopes);
    }

    static void deleteCleared()
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    static int residentKb()
    {
        QFile status(u"/proc/self/status"_s);
        if (!status.open(QIODevice::ReadOnly)) {
            return 0;
        }
        const QByteArray text = status.readAll();
        return text.mid(text.indexOf("VmRSS:") + 6).trimmed().split(' ').value(0).toInt();
    }

    QWidget* page(const QString& menu) const
    {
        return m_menus->book.find(menu)->frame;
    }

    std::unique_ptr<QWidget> m_area;
    QStackedLayout* m_stack = nullptr;
    Views* m_views = nullptr;
    MenuMessages* m_menus = nullptr;
    MenuNavigation* m_navigation = nullptr;
    QWidget* m_display = nullptr;
};

QN740_TEST_MAIN(tst_MenuNavigation)
#include "tst_MenuNavigation.moc"
