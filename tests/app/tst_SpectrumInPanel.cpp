// These tests check the spectrum page in the whole panel: its start, its place in the sequence of
// views, and its chart on the PAX main menu.
#include "app/MainWindow.h"
#include "app/Rooms.h"
#include "link/LinkControl.h"
#include "link/keySerial.h"
#include "menus/KeyBoard.h"
#include "menus/MenuMessages.h"
#include "spectrum/CardSide.h"
#include "spectrum/SpectralCard.h"
#include "spectrum/SpectrumChart.h"
#include "spectrum/SpectrumMessages.h"
#include "support/Pty.h"
#include "support/Screen.h"
#include "support/TestMain.h"
#include "tools/screen/Part.h"
#include "touch/PresentMark.h"

#include <QComboBox>
#include <QPushButton>

using namespace Qt::StringLiterals;

constexpr int ReplyMs = 50; // between two replies

class tst_SpectrumInPanel : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_devices = std::make_unique<DeviceDirectory>();
        m_unit = &m_devices->add(u"ttyO1"_s);
        for (const char* name : {"ttyUSB11", "ttyUSB12", "ttyUSB13"}) {
            m_cards += &m_devices->add(QString::fromUtf8(name));
        }
        m_window = std::make_unique<MainWindow>();
        m_window->show();
    }

    void cleanup()
    {
        m_window.reset();
        m_devices.reset();
        m_cards.clear();
    }

    void there_is_no_spectrum_page_before_ST()
    {
        QVERIFY(m_window->rooms().spectrum->card() == nullptr);
        QVERIFY(m_window->rooms().spectrum->card() == nullptr);
        QCOMPARE(m_window->rooms().views->spectrum.index(), -1);
        for (const char* message :
            {"SF,0,2250.5", "SP,0,3", "SH,0,0", "LC,1,1", "HM,0,-10", "ST,0", "ST", "ST,2"}) {
            send(message);
        }
        m_window->spanClicked();
        QVERIFY(m_window->rooms().spectrum->card() == nullptr);
        QCOMPARE(m_unit->received(), QByteArray());
    }

    void ST_starts_the_K7150_on_three_ports()
    {
        send("ST,1");
        SpectralCard* card = m_window->rooms().spectrum->card();
        QVERIFY(card != nullptr && card->k7150Type());
        QCOMPARE(m_window->rooms().stack->widget(m_window->rooms().views->spectrum.index()), card);
        QStringList ports;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        for (const Rs422Bus* bus : card->findChildren<Rs422Bus*>()) {
            QVERIFY(bus->isOpen());
            ports += bus->portName();
        }
        ports.sort();
        QCOMPARE(ports, QStringList({u"ttyUSB11"_s, u"ttyUSB12"_s, u"ttyUSB13"_s}));
    }

    void ST_enables_the_demodulators_by_texts_without_frames()
    {
        send("ST,1");
        QTRY_COMPARE(m_unit->received(), QByteArray("D1:SPEN:1D2:SPEN:1D2:SPEN:1"));
    }

    void ST_twice_keeps_the_page_and_connects_it_once()
    {
        send("ST,1");
        SpectralCard* card = m_window->rooms().spectrum->card();
        send("ST,1");
        QCOMPARE(m_window->rooms().spectrum->card(), card);
        const QByteArray spectrumOn = "D1:SPEN:1D2:SPEN:1D2:SPEN:1";
        const QByteArray spans = framed("D1:NFFT:12") + framed("D2:NFFT:12") + framed("D3:NFFT:12");
        QTRY_COMPARE(m_unit->received(), spectrumOn + spectrumOn + spans);
        m_unit->takeReceived();
        card->SetSpan(1, 9);
        QTRY_COMPARE(m_unit->received(), framed("D2:NFFT:10"));
        QTRY_COMPARE(cardSide::requests(*m_cards.at(0)), QList<QByteArray>{"0190CNFT190000"});
    }

    void ST_of_a_restarted_main_unit_is_answered_with_the_spans_chosen_before()
    {
        send("ST,1");
        m_window->rooms().spectrum->card()->SetSpan(1, 4);
        m_window->rooms().spectrum->card()->SetSpan(2, 9);
        QTRY_VERIFY(m_unit->received().endsWith(framed("D3:NFFT:10")));
        m_unit->takeReceived();
        send("ST,1");
        QTRY_COMPARE(m_unit->received(),
            "D1:SPEN:1D2:SPEN:1D2:SPEN:1" + framed("D1:NFFT:12") + framed("D2:NFFT:11") +
                framed("D3:NFFT:10"));
    }

    void a_span_is_not_widened_in_a_linked_mode()
    {
        send("ST,1");
        m_window->rooms().link->setMode(1);
        QTRY_COMPARE(m_unit->received().size(), 3 * 9);
        m_unit->takeReceived();
        m_window->rooms().spectrum->card()->SetSpan(0, 3);
        QTRY_COMPARE(m_unit->received(), framed("D1:NFFT:11"));
    }

    void the_texts_of_ST_are_not_widened_in_the_linked_modes_data()
    {
        QTest::addColumn<int>("mode");
        QTest::newRow("diversity") << 1;
        QTest::newRow("frequency diversity") << 2;
    }

    void the_texts_of_ST_are_not_widened_in_the_linked_modes()
    {
        QFETCH(int, mode);
        m_window->rooms().link->setMode(mode);
        send("ST,1");
        QTRY_COMPARE(m_unit->received().size(), 3 * 9);
        QTest::qWait(20);
        QCOMPARE(m_unit->received(), QByteArray("D1:SPEN:1D2:SPEN:1D2:SPEN:1"));
    }

    void the_demodulators_are_told_their_spans_when_the_page_is_first_shown()
    {
        send("ST,1");
        QTRY_COMPARE(m_unit->received().size(), 3 * 9);
        m_unit->takeReceived();
        m_window->rooms().views->setCurrent(Views::Spectrum);
        m_window->rooms().views->show(&Views::spectrum);
        const QByteArray told = framed("D1:NFFT:12") + framed("D2:NFFT:12") + framed("D3:NFFT:12");
        QTRY_COMPARE(m_unit->received(), told);
        Pty& card = *m_cards.at(0);
        QTRY_COMPARE(cardSide::only(card, "RFFT").size(), 1);
        QCOMPARE(cardSide::requests(card).first(), QByteArray("0190CNFT000000"));
        m_window->rooms().views->show(&Views::menu);
        m_window->rooms().views->show(&Views::spectrum);
        card.write(cardSide::k7150Spectrum(0, "x"));
        QTRY_COMPARE(cardSide::only(card, "RFFT").size(), 2);
        QCOMPARE(m_unit->received(), told);
    }

    void SH_without_any_display_returns_to_the_menus_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::addColumn<bool>("returns");
        QTest::newRow("hide") << QByteArray("SH,0,0") << true;
        QTest::newRow("show") << QByteArray("SH,0,1") << true;
        QTest::newRow("neither show nor hide") << QByteArray("SH,0,2") << false;
        QTest::newRow("negative") << QByteArray("SH,0,-1") << false;
        QTest::newRow("a chart that does not exist") << QByteArray("SH,99,0") << true;
        QTest::newRow("a negative chart") << QByteArray("SH,-1,1") << true;
        QTest::newRow("one field") << QByteArray("SH,0") << false;
        QTest::newRow("no number") << QByteArray("SH,x,0") << false;
    }

    void SH_without_any_display_returns_to_the_menus()
    {
        QFETCH(QByteArray, message);
        QFETCH(bool, returns);
        clickOn(part<QPushButton>(*m_window, "scopesButton"));
        QCOMPARE(m_window->rooms().views->current(), Views::Scopes);
        QCOMPARE(part<QPushButton>(*m_window, "scopesButton")->text(), u"Menu"_s);
        send(message);
        const QWidget* menu = m_window->rooms().views->menu.widget();
        QCOMPARE(m_window->rooms().views->current(), returns ? Views::Menus : Views::Scopes);
        QCOMPARE(m_window->rooms().stack->currentWidget() == menu, returns);
        QCOMPARE(part<QPushButton>(*m_window, "scopesButton")->text(),
            QString::fromUtf8(returns ? "Scopes" : "Menu"));
    }

    void SH_with_a_scope_or_a_spectrum_keeps_the_view_data()
    {
        QTest::addColumn<bool>("scope");
        QTest::newRow("open scope port") << true;
        QTest::newRow("spectrum") << false;
    }

    void SH_with_a_scope_or_a_spectrum_keeps_the_view()
    {
        QFETCH(bool, scope);
        if (scope) {
            m_devices->add(u"ttyUSB2"_s);
            m_window = std::make_unique<MainWindow>();
            m_window->show();
            QVERIFY(m_window->scope_available() && m_window->rooms().spectrum->card() == nullptr);
        } else {
            send("ST,1");
        }
        m_window->rooms().views->setCurrent(Views::Scopes);
        m_window->rooms().views->show(&Views::scopes);
        part<QPushButton>(*m_window, "scopesButton")->setText(u"Menu"_s);
        for (const char* message : {"SH,0,0", "SH,0,1"}) {
            send(message);
            QCOMPARE(m_window->rooms().views->current(), Views::Scopes);
            QVERIFY(
                m_window->rooms().stack->currentWidget() != m_window->rooms().views->menu.widget());
            QCOMPARE(part<QPushButton>(*m_window, "scopesButton")->text(), u"Menu"_s);
        }
    }

    void SH_during_the_PAX_menu_applies_to_the_page()
    {
        definePaxMenu();
        send("ST,1");
        SpectralCard* card = m_window->rooms().spectrum->card();
        send("SH,1,0");
        send("PAX,1");
        send("SH,0,0"); // a lent chart stays visible
        send("SH,1,1");
        send("SH,2,0");
        QVERIFY(card->chart(0)->isVisible() && card->chartAreaVisible(0));
        QVERIFY(!card->chartAreaVisible(1) && !card->chartAreaVisible(2));
        QTRY_COMPARE(cardSide::only(*m_cards.at(0), "RFFT"), QList<QByteArray>{"0190RFFT000000"});
        send("PAX,0");
        QVERIFY(!card->chartAreaVisible(0) && card->chartAreaVisible(1));
        QVERIFY(!card->chartAreaVisible(2));
    }

    void the_page_is_polled_while_it_is_shown()
    {
        send("ST,1");
        QTest::qWait(150);
        QCOMPARE(cardSide::requests(*m_cards.at(0)).size(), 0);
        m_window->rooms().views->setCurrent(Views::Spectrum);
        m_window->rooms().views->show(&Views::spectrum);
        QTRY_COMPARE(cardSide::only(*m_cards.at(0), "RFFT"), QList<QByteArray>{"0190RFFT000000"});
        m_cards.at(0)->write(cardSide::k7150Spectrum(0, cardSide::carrier(512, 100, -20)));
        QTRY_COMPARE(m_window->rooms().spectrum->card()->chart(0)->peak().level, -20.0);
    }

    void the_view_button_cycles_through_the_spectrum_page_too()
    {
        send("ST,1");
        SpectralCard* card = m_window->rooms().spectrum->card();
        QPushButton* button = part<QPushButton>(*m_window, "scopesButton");
        const QWidget* menu = m_window->rooms().stack->currentWidget();
        for (int round = 0; round < 2; ++round) {
            QCOMPARE(button->text(), u"Scopes"_s);
            clickOn(button);
            QCOMPARE(m_window->rooms().views->current(), Views::Scopes);
            QCOMPARE(
                m_window->rooms().stack->currentWidget(), m_window->rooms().views->scopes.widget());
            QVERIFY(!card->isVisible());
            QCOMPARE(button->text(), u"Spectrum"_s);
            clickOn(button);
            QCOMPARE(m_window->rooms().views->current(), Views::Spectrum);
            QVERIFY(card->isVisible() && card->chart(0)->isVisible());
            QCOMPARE(button->text(), u"Menu"_s);
            clickOn(button);
            QCOMPARE(m_window->rooms().views->current(), Views::Menus);
            QCOMPARE(m_window->rooms().stack->currentWidget(), menu);
            QVERIFY(!card->isVisible());
        }
    }

    void ST_while_the_scopes_are_shown_offers_the_spectrum_next()
    {
        clickOn(part<QPushButton>(*m_window, "scopesButton"));
        QCOMPARE(part<QPushButton>(*m_window, "scopesButton")->text(), u"Menu"_s);
        send("ST,1");
        QCOMPARE(m_window->rooms().views->current(), Views::Scopes);
        QCOMPARE(part<QPushButton>(*m_window, "scopesButton")->text(), u"Spectrum"_s);
        clickOn(part<QPushButton>(*m_window, "scopesButton"));
        QVERIFY(m_window->rooms().spectrum->card()->isVisible());
    }

    void the_page_lies_inside_the_window()
    {
        send("ST,1");
        m_window->rooms().views->setCurrent(Views::Spectrum);
        m_window->rooms().views->show(&Views::spectrum);
        QCOMPARE(m_window->size(), QSize(800, 480));
        QVERIFY(m_window->rooms().spectrum->card()->height() <= 430);
        QTest::qWait(50);
        for (const QWidget* widget : m_window->rooms().spectrum->card()->findChildren<QWidget*>()) {
            if (widget->isVisible() && widget->window() == m_window.get()) {
                const QRect at(widget->mapTo(m_window.get(), QPoint(0, 0)), widget->size());
                QVERIFY2(QRect(0, 0, 800, 432).contains(at), qPrintable(widget->objectName()));
            }
        }
    }

    // The PAX menu.

    void the_span_key_sets_the_span_of_the_first_chart()
    {
        send("ST,1");
        whenModal([](QWidget* dialog) {
            QCOMPARE(dialog->windowTitle(), u"Select Span value"_s);
            QPushButton* button = buttonWithText(dialog, u"7.5 Mhz"_s);
            QVERIFY(button != nullptr);
            clickOn(button);
        });
        m_window->spanClicked();
        QCOMPARE(m_window->rooms().spectrum->card()->getSpan(0), 3);
        whenModal([](QWidget* dialog) {
            const auto* mark = dialog->findChild<PresentMark*>();
            QVERIFY(mark != nullptr);
            QCOMPARE(mark->parentWidget(), buttonWithText(dialog, u"7.5 Mhz"_s));
            clickOn(buttonWithText(dialog, u"Cancel"_s));
        });
        m_window->spanClicked();
        QCOMPARE(m_window->rooms().spectrum->card()->getSpan(0), 3);
    }

    void the_first_chart_is_lent_and_returned()
    {
        send("ST,1");
        send("SH,1,0");
        SpectralCard* card = m_window->rooms().spectrum->card();
        auto* page = new KeyBoard;
        page->new_PAX_mm_keyboard(u"Pax"_s, 5, 2);
        m_window->rooms().menus->book.add(page);
        m_window->rooms().stack->setCurrentWidget(page->frame);
        m_window->lendChart(page->chan2Grid);
        m_window->lendChart(page->chan2Grid);
        QVERIFY(page->frame->isAncestorOf(card->chart(0)));
        QVERIFY(card->chart(0)->isVisible());
        QVERIFY(!card->chartAreaVisible(1) && !card->chartAreaVisible(2));
        QVERIFY(card->getOverRideVisCheck());
        // Only this chart is polled.
        QTRY_COMPARE(cardSide::only(*m_cards.at(0), "RFFT"), QList<QByteArray>{"0190RFFT000000"});
        m_window->returnChart();
        QVERIFY(card->isAncestorOf(card->chart(0)));
        QVERIFY(card->chartAreaVisible(0) && card->chartAreaVisible(2));
        QVERIFY(!card->chartAreaVisible(1)); // as before
        QVERIFY(!card->getOverRideVisCheck());
        m_window->returnChart();
    }

    void ST_on_the_PAX_menu_puts_the_chart_into_it()
    {
        definePaxMenu();
        send("PAX,1");
        send("ST,1");
        QVERIFY(m_window->rooms().views->paxMenu.widget()->isAncestorOf(
            m_window->rooms().spectrum->card()->chart(0)));
        QVERIFY(!m_window->rooms().spectrum->card()->chartAreaVisible(1));
    }

    void the_PAX_menu_borrows_the_first_chart_and_returns_it()
    {
        definePaxMenu();
        send("ST,1");
        SpectralCard* card = m_window->rooms().spectrum->card();
        send("PAX,1");
        QVERIFY(m_window->rooms().views->paxMenu.widget()->isAncestorOf(card->chart(0)));
        QVERIFY(card->chart(0)->isVisible());
        QVERIFY(card->chart(0)->height() >= 100 && card->chart(0)->width() >= 300);
        QTRY_COMPARE(cardSide::only(*m_cards.at(0), "RFFT"), QList<QByteArray>{"0190RFFT000000"});
        m_cards.at(0)->write(cardSide::k7150Spectrum(0, cardSide::carrier(512, 100, -20)));
        QTRY_COMPARE(card->chart(0)->peak().level, -20.0);
        send("PAX,0");
        QVERIFY(card->isAncestorOf(card->chart(0)));
        QVERIFY(card->chartAreaVisible(1) && card->chartAreaVisible(2));
    }

    void the_span_key_of_the_PAX_menu_opens_the_list_of_spans()
    {
        definePaxMenu();
        send("ST,1");
        send("PAX,1");
        QPushButton* key = buttonWithText(m_window->rooms().views->paxMenu.widget(), u"Span"_s);
        QVERIFY(key != nullptr);
        whenModal([](QWidget* dialog) { clickOn(buttonWithText(dialog, u"40 MHz"_s)); });
        clickOn(key);
        QCOMPARE(m_window->rooms().spectrum->card()->getSpan(0), 9);
    }

    void the_span_key_of_the_PAX_menu_is_disabled_until_there_is_a_spectrum()
    {
        definePaxMenu();
        send("PAX,1");
        QPushButton* key = buttonWithText(m_window->rooms().views->paxMenu.widget(), u"Span"_s);
        QVERIFY(key != nullptr && !key->isEnabled());
        clickOn(key);
        QVERIFY(QApplication::activeModalWidget() == nullptr);
        send("ST,1");
        QVERIFY(key->isEnabled());
    }

    void CLEAR_returns_the_chart_before_the_PAX_menu_is_deleted()
    {
        definePaxMenu();
        send("ST,1");
        send("PAX,1");
        const QPointer<SpectrumChart> chart(m_window->rooms().spectrum->card()->chart(0));
        send("CLEAR");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(chart != nullptr && m_window->rooms().spectrum->card()->isAncestorOf(chart));
    }

    void a_chart_deleted_with_its_PAX_page_is_made_again()
    {
        send("ST,1");
        auto* page = new KeyBoard;
        page->new_PAX_mm_keyboard(u"Pax"_s, 5, 2);
        m_window->rooms().menus->book.add(page);
        m_window->lendChart(page->chan2Grid);
        m_window->rooms().menus->book.clear();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_window->returnChart();
        QVERIFY(m_window->rooms().spectrum->card()->isAncestorOf(
            m_window->rooms().spectrum->card()->chart(0)));
    }

    void a_touch_on_the_title_of_the_lent_chart_opens_its_keys()
    {
        startPax();
        SpectrumChart* chart = m_window->rooms().spectrum->card()->chart(0);
        touchTitle(chart);
        QWidget* dialog = QApplication::activeModalWidget();
        QVERIFY(dialog != nullptr && dialog->objectName() == u"ChartKeyDialog"_s);
        const QRect at(dialog->mapTo(dialog, QPoint(0, 0)) + dialog->pos(), dialog->size());
        QVERIFY(m_window->geometry().contains(at));
        const QPoint corner = chart->mapToGlobal(QPoint(0, 0));
        QVERIFY(!at.intersects(QRect(corner, chart->size()))); // the chart stays in sight
        for (const char* text : {"Average", "Max Hold", "Trace"}) {
            clickOn(buttonWithText(dialog, QString::fromUtf8(text)));
        }
        clickOn(buttonWithText(dialog, u"Min Hold"_s));
        QCOMPARE(chart->trace().averaging(), 16);
        QVERIFY(chart->trace().maxHold() && chart->trace().minHold());
        clickOn(buttonWithText(dialog, u"Back"_s));
        clickOn(buttonWithText(dialog, u"Close"_s));
        QTRY_VERIFY(QApplication::activeModalWidget() == nullptr);
        touchTitle(chart);
        QVERIFY(QApplication::activeModalWidget() != nullptr);
        send("PAX,0");
        QVERIFY(QApplication::activeModalWidget() == nullptr);
        QVERIFY(chart->trace().minHold());
    }

    void the_keys_of_the_lent_chart_do_not_stop_the_link_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("the PAX menu ends") << QByteArray("PAX,0");
        QTest::newRow("the menus are deleted") << QByteArray("CLEAR");
    }

    void the_keys_of_the_lent_chart_do_not_stop_the_link()
    {
        QFETCH(QByteArray, message);
        startPax();
        SpectralCard* card = m_window->rooms().spectrum->card();
        touchTitle(card->chart(0));
        QVERIFY(QApplication::activeModalWidget() != nullptr);
        m_unit->write(framed("SF,0,2250.5"));
        QTRY_COMPARE(card->centre(0), 2250.5);
        // Again and again, because one that comes when the reply to a request is late is dropped.
        QVERIFY(QTest::qWaitFor([&] {
            m_cards.at(0)->write(cardSide::k7150Spectrum(0, cardSide::carrier(512, 100, -20)));
            QTest::qWait(ReplyMs);
            return qFuzzyCompare(card->chart(0)->peak().level, -20.0);
        }));
        m_unit->write(framed(message));
        QTRY_VERIFY(QApplication::activeModalWidget() == nullptr);
        QVERIFY(card->isAncestorOf(card->chart(0)));
    }

    void the_keys_go_when_the_main_unit_shows_another_page()
    {
        startPax();
        touchTitle(m_window->rooms().spectrum->card()->chart(0));
        QVERIFY(QApplication::activeModalWidget() != nullptr);
        send("SK,two");
        QVERIFY(!m_window->rooms().spectrum->card()->chart(0)->isVisible());
        QTRY_VERIFY(QApplication::activeModalWidget() == nullptr);
    }

    void the_keys_go_with_a_chart_that_is_deleted_with_its_page()
    {
        startPax();
        SpectralCard* card = m_window->rooms().spectrum->card();
        touchTitle(card->chart(0));
        clickOn(buttonWithText(QApplication::activeModalWidget(), u"Max Hold"_s));
        delete card->chart(0);
        QTRY_VERIFY(QApplication::activeModalWidget() == nullptr);
        QVERIFY(card->chart(0)->trace().maxHold());
    }

    void the_enlarged_chart_is_lent_and_gets_the_page_back_data()
    {
        QTest::addColumn<int>("channel");
        QTest::addColumn<QByteArray>("meanwhile");
        QTest::addColumn<int>("enlarged"); // afterwards
        QTest::newRow("the lent one") << 0 << QByteArray() << 0;
        QTest::newRow("another one") << 2 << QByteArray() << 2;
        QTest::newRow("one that is hidden meanwhile") << 0 << QByteArray("SH,0,0") << -1;
        QTest::newRow("the menus are deleted") << 0 << QByteArray("CLEAR") << 0;
    }

    void the_enlarged_chart_is_lent_and_gets_the_page_back()
    {
        QFETCH(int, channel);
        QFETCH(QByteArray, meanwhile);
        QFETCH(int, enlarged);
        definePaxMenu();
        send("ST,1");
        SpectralCard* card = m_window->rooms().spectrum->card();
        card->setEnlarged(channel);
        send("PAX,1");
        QCOMPARE(card->enlarged(), -1);
        QVERIFY(card->chart(0)->isVisible() && !card->isAncestorOf(card->chart(0)));
        if (!meanwhile.isEmpty()) {
            send(meanwhile);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        send("PAX,0");
        QVERIFY(card->isAncestorOf(card->chart(0)));
        QCOMPARE(card->enlarged(), enlarged);
    }

private:
    void send(const QByteArray& body) { m_window->process_mess(QString::fromLatin1(framed(body))); }

    void startPax()
    {
        definePaxMenu();
        send("ST,1");
        send("PAX,1");
        QTRY_VERIFY(m_window->rooms().spectrum->card()->chart(0)->height() > 100);
    }

    void touchTitle(SpectrumChart* chart)
    {
        QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, Qt::NoModifier,
            chart->mapTo(m_window.get(), QPoint(60, 8)));
    }

    void definePaxMenu()
    {
        send("AK,Tuner,freq,Frequency,5,X:,,0,,0,0,1");
        send("MS,Pax,Tuner,freq");
    }

    std::unique_ptr<DeviceDirectory> m_devices;
    Pty* m_unit = nullptr;
    QList<Pty*> m_cards;
    std::unique_ptr<MainWindow> m_window;
};

QN740_TEST_MAIN(tst_SpectrumInPanel)
#include "tst_SpectrumInPanel.moc"
