#include "app/DisplayLoan.h"
#include "scopes/ScopesPage.h"
#include "spectrum/SpectralCard.h"
#include "spectrum/SpectrumChart.h"
#include "spectrum/SpectrumMessages.h"
#include "support/Pty.h"
#include "support/TestMain.h"

#include <QGridLayout>

class tst_DisplayLoan : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_devices = std::make_unique<DeviceDirectory>();
        m_scopes = std::make_unique<ScopesPage>();
        m_spectrumParent = std::make_unique<QWidget>();
        m_spectrum = new SpectrumMessages(false, m_spectrumParent.get(), m_spectrumParent.get());
        m_page = std::make_unique<QWidget>();
        m_place = new QGridLayout(m_page.get());
        m_loan = std::make_unique<DisplayLoan>(*m_scopes, *m_spectrum);
    }

    void cleanup()
    {
        m_loan.reset();
        m_scopes.reset();
        m_spectrumParent.reset();
        m_page.reset();
        m_devices.reset();
    }

    void without_a_spectrum_page_the_scope_alone_is_lent_and_comes_back()
    {
        Scope* const scope = m_scopes->scope(3);
        QWidget* const home = scope->parentWidget();
        m_loan->lendTo(m_place);
        m_loan->lendTo(m_place);
        QCOMPARE(m_place->itemAtPosition(0, 0)->widget(), scope);
        QVERIFY(m_place->itemAtPosition(1, 0) == nullptr);
        QVERIFY(scope->disableFixIsize() && m_page->isAncestorOf(scope));
        m_loan->takeBack();
        m_loan->takeBack();
        QCOMPARE(scope->parentWidget(), home);
        QCOMPARE(m_scopes->scopeGrid(3)->itemAtPosition(0, 0)->widget(), scope);
        QVERIFY(!scope->disableFixIsize());
    }

    void scope_and_chart_are_lent_and_come_back()
    {
        m_spectrum->setUp();
        SpectralCard* const card = m_spectrum->card();
        m_loan->lendTo(m_place);
        QVERIFY(m_page->isAncestorOf(m_scopes->scope(3)));
        QCOMPARE(m_place->itemAtPosition(1, 0)->widget(), card->chart(0));
        m_loan->takeBack();
        QVERIFY(m_scopes->isAncestorOf(m_scopes->scope(3)));
        QVERIFY(card->isAncestorOf(card->chart(0)));
    }

    void the_chart_alone_is_lent_and_comes_back()
    {
        m_spectrum->setUp();
        SpectralCard* const card = m_spectrum->card();
        m_loan->lendChartTo(nullptr);
        QVERIFY(card->isAncestorOf(card->chart(0)));
        m_loan->lendChartTo(m_place);
        QVERIFY(m_page->isAncestorOf(card->chart(0)));
        QVERIFY(m_scopes->isAncestorOf(m_scopes->scope(3)));
        m_loan->takeChartBack();
        QVERIFY(card->isAncestorOf(card->chart(0)));
    }

    void a_scope_deleted_with_another_page_is_not_lent_again()
    {
        m_loan->lendTo(m_place);
        m_page.reset();
        QVERIFY(m_scopes->scope(3) == nullptr);
        m_loan->takeBack();
        QWidget page;
        auto* place = new QGridLayout(&page);
        m_loan->lendTo(place);
        QCOMPARE(place->count(), 0);
    }

private:
    std::unique_ptr<DeviceDirectory> m_devices;
    std::unique_ptr<ScopesPage> m_scopes;
    std::unique_ptr<QWidget> m_spectrumParent;
    SpectrumMessages* m_spectrum = nullptr;
    std::unique_ptr<QWidget> m_page;
    QGridLayout* m_place = nullptr;
    std::unique_ptr<DisplayLoan> m_loan;
};

QN740_TEST_MAIN(tst_DisplayLoan)
#include "tst_DisplayLoan.moc"
