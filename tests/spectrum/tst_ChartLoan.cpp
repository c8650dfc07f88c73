#include "spectrum/ChartLoan.h"
#include "spectrum/SpectralCard.h"
#include "spectrum/SpectrumChart.h"
#include "support/Pty.h"
#include "support/TestMain.h"

#include <QGridLayout>

using namespace Qt::StringLiterals;

class tst_ChartLoan : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_devices = std::make_unique<DeviceDirectory>();
        m_card = std::make_unique<SpectralCard>(nullptr, 0, u"ttyUSB11"_s);
        m_page = std::make_unique<QWidget>();
        m_place = new QGridLayout(m_page.get());
    }

    void cleanup()
    {
        m_card.reset();
        m_page.reset();
        m_devices.reset();
    }

    void without_a_card_or_a_place_nothing_is_lent()
    {
        ChartLoan loan;
        loan.lendTo(m_place);
        loan.setShown(0, false);
        loan.takeBack();
        QCOMPARE(m_place->count(), 0);
        loan.setCard(m_card.get());
        loan.lendTo(nullptr);
        QVERIFY(!m_card->getOverRideVisCheck());
        QVERIFY(m_card->isAncestorOf(m_card->chart(0)));
    }

    void the_lent_chart_is_alone_and_what_was_shown_comes_back_with_it()
    {
        ChartLoan loan;
        loan.setCard(m_card.get());
        loan.setShown(1, false);
        loan.lendTo(m_place);
        loan.lendTo(m_place);
        QCOMPARE(shown(), (QList<bool>{true, false, false}));
        QVERIFY(m_card->getOverRideVisCheck());
        QCOMPARE(m_place->itemAtPosition(1, 0)->widget(), m_card->chart(0));
        loan.takeBack();
        loan.takeBack();
        QCOMPARE(shown(), (QList<bool>{true, false, true}));
        QVERIFY(!m_card->getOverRideVisCheck());
        QVERIFY(m_card->isAncestorOf(m_card->chart(0)));
    }

    void what_is_said_while_the_chart_is_lent_holds_when_it_comes_back()
    {
        ChartLoan loan;
        loan.setCard(m_card.get());
        loan.setShown(1, false);
        loan.lendTo(m_place);
        loan.setShown(0, false);
        loan.setShown(1, true);
        loan.setShown(1, true);
        loan.setShown(2, false);
        QCOMPARE(shown(), (QList<bool>{true, false, false}));
        loan.takeBack();
        QCOMPARE(shown(), (QList<bool>{false, true, false}));
    }

    void a_card_that_is_gone_is_forgotten()
    {
        ChartLoan loan;
        loan.setCard(m_card.get());
        loan.lendTo(m_place);
        m_card.reset();
        loan.setShown(0, true);
        loan.takeBack();
        loan.lendTo(m_place);
    }

private:
    QList<bool> shown() const
    {
        return {
            m_card->chartAreaVisible(0), m_card->chartAreaVisible(1), m_card->chartAreaVisible(2)};
    }

    std::unique_ptr<DeviceDirectory> m_devices;
    std::unique_ptr<SpectralCard> m_card;
    std::unique_ptr<QWidget> m_page;
    QGridLayout* m_place = nullptr;
};

QN740_TEST_MAIN(tst_ChartLoan)
#include "tst_ChartLoan.moc"
