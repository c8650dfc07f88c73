#include "app/Views.h"
#include "support/TestMain.h"

#include <QLabel>

using namespace Qt::StringLiterals;

class tst_Views : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_area = std::make_unique<QWidget>();
        m_stack = new QStackedLayout(m_area.get());
        m_views = std::make_unique<Views>(m_stack);
        for (const char* name : {"a", "b", "c", "d"}) {
            m_stack->addWidget(new QLabel(QString::fromUtf8(name)));
        }
    }

    void cleanup()
    {
        m_views.reset();
        m_area.reset();
    }

    void indexes_start_at_minus_1_and_the_view_is_menus()
    {
        for (const Views::Page* page : {&m_views->menu, &m_views->mainMenu, &m_views->paxMenu,
                 &m_views->scopes, &m_views->spectrum}) {
            QCOMPARE(page->index(), -1);
        }
        QCOMPARE(int(m_views->current()), 0);
        QVERIFY(!m_views->displayActive());
    }

    void a_display_is_active_in_every_view_but_the_menus()
    {
        for (const Views::View view : {Views::Scopes, Views::Spectrum}) {
            m_views->setCurrent(view);
            QVERIFY(m_views->displayActive());
        }
        QCOMPARE(int(Views::Scopes), 1);
        QCOMPARE(int(Views::Spectrum), 2);
    }

    void a_page_is_shown_after_its_index_has_changed()
    {
        m_views->set(&Views::mainMenu, m_stack->widget(3));
        m_views->set(&Views::scopes, m_stack->widget(1));
        delete m_stack->widget(0);
        delete m_stack->widget(1); // "c"
        QCOMPARE(m_views->scopes.index(), 0);
        QCOMPARE(m_views->mainMenu.index(), 1);
        m_views->show(&Views::scopes);
        QCOMPARE(shown(), u"b"_s);
        m_views->show(&Views::mainMenu);
        QCOMPARE(shown(), u"d"_s);
    }

    void the_index_of_a_deleted_page_is_kept_and_shows_nothing()
    {
        m_views->set(&Views::mainMenu, m_stack->widget(1));
        delete m_stack->widget(1);
        QCOMPARE(m_views->mainMenu.index(), 1);
        delete m_stack->widget(0);
        QCOMPARE(m_views->mainMenu.index(), 1);
        const QString before = shown();
        m_views->show(&Views::mainMenu);
        QCOMPARE(shown(), before);
    }

    void a_page_that_was_never_set_shows_nothing()
    {
        m_views->show(&Views::paxMenu);
        QCOMPARE(shown(), u"a"_s);
    }

    void showing_a_menu_remembers_it_and_leaves_the_displays()
    {
        m_views->setCurrent(Views::Scopes);
        m_views->showMenu(m_stack->widget(2));
        QCOMPARE(m_views->menu.index(), 2);
        QVERIFY(!m_views->displayActive());
        QCOMPARE(shown(), u"c"_s);
    }

    void the_waiting_page_replaces_a_deleted_menu_on_the_screen()
    {
        m_views->addWaitingPage();
        m_views->showMenu(m_stack->widget(0));
        delete m_stack->widget(0);
        QCOMPARE(shown(), u"Waiting for the main unit"_s);
    }

    void the_waiting_page_replaces_a_deleted_menu_when_the_menus_return()
    {
        m_views->addWaitingPage();
        m_views->showMenu(m_stack->widget(0));
        m_views->set(&Views::scopes, m_stack->widget(2));
        m_views->showNext();
        QCOMPARE(shown(), u"c"_s);
        delete m_stack->widget(0);
        m_views->showNext();
        QCOMPARE(shown(), u"Waiting for the main unit"_s);
        QCOMPARE(m_views->current(), Views::Menus);
        m_views->showNext();
        QCOMPARE(shown(), u"c"_s);
        m_views->returnToMenus(nullptr);
        QCOMPARE(shown(), u"Waiting for the main unit"_s);
        QCOMPARE(m_views->current(), Views::Menus);
    }

    void deleting_another_page_keeps_the_menu_on_the_screen()
    {
        m_views->addWaitingPage();
        m_views->showMenu(m_stack->widget(2));
        delete m_stack->widget(0);
        QCOMPARE(shown(), u"c"_s);
    }

    void deleting_a_menu_behind_a_display_keeps_the_display()
    {
        m_views->addWaitingPage();
        m_views->showMenu(m_stack->widget(0));
        m_views->set(&Views::scopes, m_stack->widget(2));
        m_views->setCurrent(Views::Scopes);
        m_views->show(&Views::scopes);
        delete m_stack->widget(0);
        QCOMPARE(shown(), u"c"_s);
    }

    void each_view_is_announced_with_the_next_one()
    {
        QList<QPair<int, int>> announced;
        connect(m_views.get(), &Views::changed, this, [&](Views::View current, Views::View next) {
            announced.append({current, next});
        });
        m_views->set(&Views::scopes, m_stack->widget(1));
        QVERIFY(announced.isEmpty());
        m_views->showNext();
        m_views->showNext();
        m_views->showNext();
        QCOMPARE(announced, (QList<QPair<int, int>>{{1, 0}, {0, 1}, {1, 0}}));
        // A spectrum page that is added while the scopes are shown becomes the next view.
        m_views->set(&Views::spectrum, m_stack->widget(2));
        QCOMPARE(announced.takeLast(), (QPair<int, int>{1, 2}));
        m_views->showNext();
        QCOMPARE(announced.takeLast(), (QPair<int, int>{2, 0}));
        m_views->showMenu(m_stack->widget(0));
        QCOMPARE(announced.takeLast(), (QPair<int, int>{0, 1}));
    }

    void the_next_view_shows_its_page()
    {
        m_views->showMenu(m_stack->widget(3));
        m_views->set(&Views::scopes, m_stack->widget(1));
        for (int round = 0; round < 2; ++round) {
            m_views->showNext();
            QCOMPARE(shown(), u"b"_s);
            m_views->showNext();
            QCOMPARE(shown(), u"d"_s);
        }
        m_views->set(&Views::spectrum, m_stack->widget(2));
        for (const char* page : {"b", "c", "d"}) {
            m_views->showNext();
            QCOMPARE(shown(), QString::fromUtf8(page));
            QVERIFY(m_views->isShown(m_stack->currentWidget()));
        }
    }

    void without_a_waiting_page_returning_to_a_deleted_menu_keeps_the_screen()
    {
        m_views->setCurrent(Views::Spectrum);
        m_views->returnToMenus(nullptr);
        QCOMPARE(m_views->current(), Views::Menus);
        QCOMPARE(shown(), u"a"_s);
        m_views->returnToMenus(m_stack->widget(2));
        QCOMPARE(shown(), u"c"_s);
        QCOMPARE(m_views->menu.index(), 2);
    }

private:
    QString shown() const { return qobject_cast<QLabel*>(m_stack->currentWidget())->text(); }

    std::unique_ptr<QWidget> m_area;
    QStackedLayout* m_stack = nullptr;
    std::unique_ptr<Views> m_views;
};

QN740_TEST_MAIN(tst_Views)
#include "tst_Views.moc"
