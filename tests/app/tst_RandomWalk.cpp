// This test sends a long random sequence of messages that define and delete menus, with real
// touches in between. After each step a small model says which page must be on the screen.
//
// QN740_WALK_STEPS and QN740_WALK_SEED set the number of steps and the seed.
#include "app/Rooms.h"
#include "link/LinkControl.h"
#include "menus/Key.h"
#include "menus/KeyBoard.h"
#include "menus/MenuMessages.h"
#include "support/Heap.h"
#include "support/Panel.h"
#include "support/TestMain.h"
#include "tools/screen/Part.h"

#include <QMessageBox>
#include <QPixmapCache>
#include <QRadioButton>
#include <QStatusBar>

#include <random>

namespace {

constexpr int DefaultSteps = 20'000;
constexpr int StepsPerAnswer = 40;
constexpr int StepsPerRound = 1'000;
constexpr int RoundsToSettle = 5;
// The cached pictures of a scope are larger on the PAX main menu than on the scopes page.
constexpr qsizetype ScopeOnPax = 640 * 1024;
constexpr qsizetype MaxGrowth = 128 * 1024 + ScopeOnPax;

const QStringList PlainNames{QStringLiteral("Tuner CH1"), QStringLiteral("Demod 2"),
    QStringLiteral("Extra"), QStringLiteral("Main"), QStringLiteral("PAX")};

// This model says what the screen must show, by the rules alone. Every page has a number of its
// own, which is never used again, and indexes of the stack do not occur.
struct Model
{
    struct Menu
    {
        QString name;
        int page;
        bool plain;
        QStringList keyIds;
    };

    static constexpr int Waiting = -1;
    static constexpr int ScopesPage = -2;
    static constexpr int Gone = -3; // the page was deleted
    static constexpr int Never = -4;

    QList<Menu> menus; // that messages can find
    QList<int> doomed; // cleared, but still in the stack
    int shown = Waiting;
    int menuPage = Never;
    int mainPage = Never;
    int paxPage = Never;
    bool scopesView = false;
    bool statusBar = true;
    int pages = 0;

    Menu* find(const QString& name)
    {
        for (Menu& menu : menus) {
            if (menu.name == name) {
                return &menu;
            }
        }
        return nullptr;
    }
    Menu& add(const QString& name, bool plain)
    {
        menus += Menu{name, pages++, plain, {}};
        return menus.last();
    }
    void returnToMenus(int page)
    {
        scopesView = false;
        shown = Waiting; // in place of a page that is gone
        if (page >= 0) {
            menuPage = page;
            shown = page;
        }
    }
    void clear()
    {
        for (const Menu& menu : menus) {
            doomed += menu.page;
        }
        menus.clear();
        doomed += specials;
        specials.clear();
    }
    // Deletes the pages that were cleared.
    void deleteCleared()
    {
        for (const int page : std::as_const(doomed)) {
            for (int* number : {&menuPage, &mainPage, &paxPage}) {
                if (*number == page) {
                    *number = Gone;
                }
            }
            if (!scopesView && menuPage == Gone) {
                shown = Waiting;
            }
        }
        doomed.clear();
    }

    QList<int> specials;
};

} // namespace

class tst_RandomWalk : public QObject
{
    Q_OBJECT

    using Step = void (tst_RandomWalk::*)();
    struct Weighted
    {
        int weight;
        Step step;
    };

    int below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }
    bool chance(int percent) { return below(100) < percent; }

    void receive(const QString& body)
    {
        m_panel->window.process_mess(QString::fromLatin1(framed(body.toLatin1())));
    }

    QStackedLayout* stack() const { return m_panel->window.rooms().stack; }

    // The newest page is the last one of the stack.
    void remember(int page) { m_pages[page] = stack()->widget(stack()->count() - 1); }

    QString randomSource(QString* keyId)
    {
        if (m_model.menus.isEmpty() || chance(5)) {
            *keyId = QStringLiteral("nokey");
            return QStringLiteral("Nowhere");
        }
        const Model::Menu& menu = m_model.menus.at(below(static_cast<int>(m_model.menus.size())));
        const auto keys = static_cast<int>(menu.keyIds.size());
        *keyId = keys == 0 || chance(5) ? QStringLiteral("nokey") : menu.keyIds.at(below(keys));
        return menu.name;
    }

    // --- What the main unit does.

    void defineKey() { define(PlainNames.at(below(static_cast<int>(PlainNames.size())))); }
    void define(const QString& name)
    {
        Model::Menu* menu = m_model.find(name);
        const bool isNew = menu == nullptr;
        if (isNew) {
            menu = &m_model.add(name, true);
        }
        const bool again = !menu->keyIds.isEmpty() && chance(20);
        const QString id = again ? menu->keyIds.first() : QString::number(m_keys++);
        receive(QStringLiteral("AK,%1,%2,Key %2,%3,K%2:,,0,,0,%4,1")
                    .arg(name, id)
                    .arg(chance(50) ? 0 : 5)
                    .arg(below(2)));
        if (!again) {
            menu->keyIds += id;
        }
        if (isNew) {
            remember(menu->page);
        }
    }
    void copyToMain() { copy(QStringLiteral("CM"), QStringLiteral("Main"), m_model.mainPage); }
    void copyToPax() { copy(QStringLiteral("MS"), QStringLiteral("PAX"), m_model.paxPage); }
    void copy(const QString& word, const QString& name, int& page)
    {
        QString id;
        const QString source = randomSource(&id);
        receive(QStringList{word, name, source, id}.join(QLatin1Char(',')));
        Model::Menu* menu = m_model.find(name);
        if (menu == nullptr) {
            menu = &m_model.add(name, false);
            remember(menu->page);
            page = menu->page;
        } else if (word == QLatin1String("CM")) {
            page = menu->page;
        }
        Model::Menu* from = m_model.find(source);
        if (from != nullptr && from->keyIds.contains(id)) {
            m_model.find(name)->keyIds += id;
        }
    }
    void select()
    {
        const QString name = PlainNames.at(below(static_cast<int>(PlainNames.size())));
        receive(QStringLiteral("SK,") + name);
        if (const Model::Menu* menu = m_model.find(name)) {
            m_model.menuPage = menu->page;
            if (!m_model.scopesView) {
                m_model.shown = menu->page;
                QCOMPARE(m_panel->window.statusBar()->currentMessage(),
                    QStringLiteral("QN740 Menu - ") + name);
            }
        }
    }
    void change()
    {
        QString id;
        const QString menu = randomSource(&id);
        receive(QStringLiteral("CV,%1,%2,%3,%4").arg(menu, id).arg(below(100)).arg(below(2)));
        receive(QStringLiteral("CK,%1,%2,%3").arg(menu, id).arg(chance(70) ? 1 : below(4)));
        receive(QStringLiteral("EI,%1,%2,0:1").arg(menu, id));
    }
    void pax()
    {
        const bool on = chance(60);
        receive(on ? QStringLiteral("PAX,1") : QStringLiteral("PAX,0"));
        m_model.statusBar = !on || m_model.paxPage == Model::Never;
        if (on && m_model.paxPage != Model::Never) {
            m_model.returnToMenus(m_model.paxPage);
        }
    }
    void clear()
    {
        receive(QStringLiteral("CLEAR"));
        m_model.clear();
    }
    void clearAndDefine()
    {
        clear();
        const int keys = 1 + below(45);
        for (int i = 0; i < keys; ++i) {
            defineKey();
        }
        for (int i = 0; i < 10; ++i) {
            chance(50) ? copyToMain() : copyToPax();
        }
        if (chance(70)) {
            select();
        }
    }
    void special()
    {
        m_panel->window.process_special_menu();
        const Model::Menu* main = m_model.find(QStringLiteral("Main"));
        if (main != nullptr && main->plain) {
            const int page = m_model.pages++;
            remember(page);
            m_model.specials += page;
            m_model.mainPage = page;
            m_model.returnToMenus(page);
        }
    }
    void messages()
    {
        receive(
            chance(50) ? QStringLiteral("DB,Note,%1").arg(below(2)) : QStringLiteral("DB,KILLBOX"));
        receive(QStringLiteral("SB,%1,Note").arg(below(2) * 1000));
        receive(QStringLiteral("IK,Now,0,IK:,,0,"));
        m_expected += framed("IK:1");
    }
    void deleteCleared()
    {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
        m_model.deleteCleared();
    }

    // --- What the operator does.

    void touchMainMenu()
    {
        if (!part<QPushButton>(m_panel->window, "mainMenuButton")->isVisible()) {
            return;
        }
        clickOn(part<QPushButton>(m_panel->window, "mainMenuButton"));
        if (m_model.mainPage != Model::Never) {
            m_model.returnToMenus(m_model.mainPage);
            m_expected += framed("Main");
        }
    }
    void touchScopes()
    {
        if (!part<QPushButton>(m_panel->window, "scopesButton")->isVisible()) {
            return;
        }
        clickOn(part<QPushButton>(m_panel->window, "scopesButton"));
        m_model.scopesView = !m_model.scopesView;
        if (m_model.scopesView) {
            m_model.shown = Model::ScopesPage;
        } else {
            m_model.returnToMenus(m_model.menuPage);
        }
    }
    void touchKey()
    {
        QList<QPushButton*> buttons;
        const auto all = stack()->currentWidget()->findChildren<QPushButton*>();
        for (QPushButton* button : all) {
            const bool key = button->text().startsWith(QLatin1String("Key ")) ||
                button->text() == QLatin1String("More...");
            if (key && button->isVisible() && button->isEnabled()) {
                buttons += button;
            }
        }
        if (m_model.shown < 0 || buttons.isEmpty()) {
            return;
        }
        QPushButton* button = buttons.at(below(static_cast<int>(buttons.size())));
        const QPoint middle = button->mapTo(&m_panel->window, button->rect().center());
        if (m_panel->window.childAt(middle) != button) {
            return; // another key lies in the same cell
        }
        const Key* key = keyOf(button);
        if (key == nullptr) {
            clickOn(button); // "More..."
            return;
        }
        const bool on = key->tog();
        const QByteArray command = key->command.toLatin1();
        clickOn(button);
        QCOMPARE(key->tog(), !on);
        m_expected += framed(command + (on ? '0' : '1'));
    }
    // Also finds a key that is cleared and not yet deleted.
    const Key* keyOf(const QPushButton* button) const
    {
        for (const Key* key : m_panel->window.rooms().menus->book.findChildren<Key*>()) {
            if (key->GetKey() == button) {
                return key;
            }
        }
        return nullptr;
    }
    void touchLinking()
    {
        if (!part<QPushButton>(m_panel->window, "linkButton")->isVisible() ||
            !part<QPushButton>(m_panel->window, "linkButton")->isEnabled()) {
            return;
        }
        clickOn(part<QPushButton>(m_panel->window, "linkButton"));
        QWidget* dialog = Panel::shownWindow("linkDialog");
        QVERIFY(dialog != nullptr);
        m_expected += framed("Slave," + QByteArray::number(m_panel->window.rooms().link->mode()));
        clickOn(buttonWithText(dialog, QStringLiteral("Close")));
        QVERIFY(part<QPushButton>(m_panel->window, "linkButton")->isEnabled());
    }

    // --- What is checked.

    void checkSent()
    {
        QCOMPARE(m_panel->heard(), m_expected);
        m_expected.clear();
        m_model.deleteCleared(); // heard() runs the event loop, which deletes them
    }

    int shownPage() const
    {
        const QWidget* page = stack()->currentWidget();
        if (page == m_scopes) {
            return Model::ScopesPage;
        }
        if (page == nullptr || page->objectName() == QLatin1String("waitingPage")) {
            return Model::Waiting;
        }
        for (auto it = m_pages.cend(); it != m_pages.cbegin();) {
            --it;
            if (it.value() == page) {
                return it.key();
            }
        }
        return Model::Never;
    }

    void checkScreen()
    {
        const MainWindow& window = m_panel->window;
        QCOMPARE(shownPage(), m_model.shown);
        QCOMPARE(window.displayActive(), m_model.scopesView);
        QCOMPARE(window.statusBar()->isHidden(), !m_model.statusBar);
        QCOMPARE(part<QPushButton>(window, "scopesButton")->text(),
            m_model.scopesView ? QStringLiteral("Menu") : QStringLiteral("Scopes"));
        QCOMPARE(window.mainMenuIndex() == -1, m_model.mainPage == Model::Never);
        QCOMPARE(window.paxMenuIndex() == -1, m_model.paxPage == Model::Never);
        // The stored indexes belong to the remembered pages.
        if (m_model.mainPage >= 0) {
            QCOMPARE(stack()->widget(window.mainMenuIndex()), m_pages.value(m_model.mainPage));
        }
        if (m_model.paxPage >= 0) {
            QCOMPARE(stack()->widget(window.paxMenuIndex()), m_pages.value(m_model.paxPage));
        }
        if (m_model.menuPage >= 0) {
            QCOMPARE(stack()->widget(window.rooms().views->menu.index()),
                m_pages.value(m_model.menuPage));
        }
        QCOMPARE(stack()->widget(window.rooms().views->scopes.index()), m_scopes);
        QCOMPARE(window.rooms().menus->book.pages.size(), m_model.menus.size());
        for (qsizetype i = 0; i < m_model.menus.size(); ++i) {
            const KeyBoard* menu = window.rooms().menus->book.pages.at(i);
            QCOMPARE(menu->name, m_model.menus.at(i).name);
            QCOMPARE(stack()->widget(menu->stackIndex), menu->frame);
            QCOMPARE(m_pages.value(m_model.menus.at(i).page), menu->frame);
        }
    }

    // Clears everything, so that what is left can be compared from round to round.
    void clearAll()
    {
        receive(QStringLiteral("DB,KILLBOX"));
        receive(QStringLiteral("PAX,0"));
        m_model.statusBar = true;
        clear();
        deleteCleared();
        if (m_model.scopesView) {
            touchScopes();
        }
        m_pages.clear();
        QPixmapCache::clear();
        checkSent();
    }

    void step()
    {
        static const QList<Weighted> Steps{{18, &tst_RandomWalk::defineKey},
            {8, &tst_RandomWalk::copyToMain}, {8, &tst_RandomWalk::copyToPax},
            {10, &tst_RandomWalk::select}, {6, &tst_RandomWalk::change}, {5, &tst_RandomWalk::pax},
            {2, &tst_RandomWalk::clear}, {2, &tst_RandomWalk::clearAndDefine},
            {2, &tst_RandomWalk::special}, {2, &tst_RandomWalk::messages},
            {12, &tst_RandomWalk::deleteCleared}, {9, &tst_RandomWalk::touchMainMenu},
            {9, &tst_RandomWalk::touchScopes}, {16, &tst_RandomWalk::touchKey},
            {1, &tst_RandomWalk::touchLinking}};
        int total = 0;
        for (const Weighted& each : Steps) {
            total += each.weight;
        }
        int at = below(total);
        for (const Weighted& each : Steps) {
            at -= each.weight;
            if (at < 0) {
                (this->*each.step)();
                return;
            }
        }
    }

private slots:
    void initTestCase() { linkMode::store(linkMode::None); }

    void the_right_page_is_always_shown()
    {
        bool ok = false;
        const int chosen = qEnvironmentVariableIntValue("QN740_WALK_STEPS", &ok);
        const int steps = ok ? chosen : DefaultSteps;
        const int seed = qEnvironmentVariableIntValue("QN740_WALK_SEED", &ok);
        m_random.seed(ok ? static_cast<unsigned>(seed) : 740U);

        Panel panel;
        m_panel = &panel;
        m_scopes = m_panel->window.rooms().views->scopes.widget();
        m_model.add(QStringLiteral("Loading"), true);
        m_model.add(QStringLiteral("two"), true);
        for (int i = 0; i < 2; ++i) {
            m_pages[i] = panel.window.rooms().menus->book.pages.at(i)->frame;
        }
        m_model.menuPage = 0;
        m_model.shown = 0;
        checkScreen();

        qsizetype widgets = 0;
        qsizetype heap = 0;
        for (int i = 1; i <= steps; ++i) {
            step();
            checkScreen();
            if (i % StepsPerAnswer == 0) {
                checkSent();
                checkScreen();
            }
            if (i % StepsPerRound == 0) {
                clearAll();
                checkScreen();
                const int round = i / StepsPerRound;
                if (round == RoundsToSettle) {
                    widgets = QApplication::allWidgets().size();
                    heap = heapInUse();
                } else if (round > RoundsToSettle) {
                    QCOMPARE(QApplication::allWidgets().size(), widgets);
                    QVERIFY2(heapInUse() - heap < MaxGrowth,
                        qPrintable(QString::number(heapInUse() - heap)));
                }
            }
            if (QTest::currentTestFailed()) {
                qWarning("in step %d", i);
                return;
            }
        }
        qInfo("%d steps, %lld pages, heap grown by %lld bytes after the first %d", steps,
            static_cast<long long>(m_model.pages), static_cast<long long>(heapInUse() - heap),
            RoundsToSettle * StepsPerRound);
    }

private:
    std::mt19937 m_random;
    Panel* m_panel = nullptr;
    Model m_model;
    QMap<int, QWidget*> m_pages; // by the page number of the model; deleted ones stay
    QWidget* m_scopes = nullptr;
    QByteArray m_expected;
    int m_keys = 0;
};

QN740_TEST_MAIN(tst_RandomWalk)
#include "tst_RandomWalk.moc"
