// The view button cycles through the three views.
#include "app/ScopesFixture.h"
#include "menus/KeyBoard.h"
#include "menus/MenuMessages.h"
#include "support/TestMain.h"

class tst_ViewCycle : public ScopesFixture
{
    Q_OBJECT

private slots:
    void init() { start(); }
    void cleanup() { stop(); }

    void without_a_spectrum_the_button_alternates_scopes_and_menus()
    {
        QPushButton* button = part<QPushButton>(*m_window, "scopesButton");
        QWidget* menu = m_window->rooms().stack->currentWidget();
        QCOMPARE(button->text(), QStringLiteral("Scopes"));
        for (int round = 0; round < 2; ++round) {
            clickOn(button);
            QCOMPARE(m_window->rooms().stack->currentWidget(), m_window->rooms().scopes);
            QCOMPARE(button->text(), QStringLiteral("Menu"));
            QVERIFY(m_window->displayActive());
            clickOn(button);
            QCOMPARE(m_window->rooms().stack->currentWidget(), menu);
            QCOMPARE(button->text(), QStringLiteral("Scopes"));
            QVERIFY(!m_window->displayActive());
        }
    }

    void with_a_spectrum_page_the_button_cycles_through_three_views()
    {
        auto* spectrum = new QWidget;
        m_window->rooms().stack->addWidget(spectrum);
        m_window->rooms().views->set(&Views::spectrum, spectrum);
        QPushButton* button = part<QPushButton>(*m_window, "scopesButton");
        QWidget* menu = m_window->rooms().stack->currentWidget();
        for (int round = 0; round < 2; ++round) {
            clickOn(button);
            QCOMPARE(m_window->rooms().stack->currentWidget(), m_window->rooms().scopes);
            QCOMPARE(button->text(), QStringLiteral("Spectrum"));
            clickOn(button);
            QCOMPARE(m_window->rooms().stack->currentWidget(), spectrum);
            QCOMPARE(button->text(), QStringLiteral("Menu"));
            clickOn(button);
            QCOMPARE(m_window->rooms().stack->currentWidget(), menu);
            QCOMPARE(button->text(), QStringLiteral("Scopes"));
        }
    }

    void after_the_scopes_the_last_menu_is_shown_again()
    {
        send("AK,First,1,One,0,,0,,0,0,0,1");
        send("AK,Second,1,Two,0,,0,,0,0,0,1");
        send("SK,Second");
        QWidget* second = m_window->rooms().stack->currentWidget();
        QVERIFY(second != m_window->rooms().menus->book.pages.constFirst()->frame);
        clickOn(part<QPushButton>(*m_window, "scopesButton"));
        clickOn(part<QPushButton>(*m_window, "scopesButton"));
        QCOMPARE(m_window->rooms().stack->currentWidget(), second);
    }

    void the_scopes_are_still_shown_after_the_menus_were_cleared()
    {
        send("CLEAR");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        clickOn(part<QPushButton>(*m_window, "scopesButton"));
        QCOMPARE(m_window->rooms().stack->currentWidget(), m_window->rooms().scopes);
        // Without a menu the waiting page is shown until the next menu is selected.
        clickOn(part<QPushButton>(*m_window, "scopesButton"));
        QCOMPARE(
            m_window->rooms().stack->currentWidget()->objectName(), QStringLiteral("waitingPage"));
        QCOMPARE(part<QPushButton>(*m_window, "scopesButton")->text(), QStringLiteral("Scopes"));
        send("AK,New,1,One,0,,0,,0,0,0,1");
        send("SK,New");
        QCOMPARE(m_window->rooms().stack->currentWidget(),
            m_window->rooms().menus->book.find(QStringLiteral("New"))->frame);
    }
};

QN740_TEST_MAIN(tst_ViewCycle)
#include "tst_ViewCycle.moc"
