#include "spectrum/CardFixture.h"
#include "spectrum/SpectrumChart.h"
#include "support/Screen.h"
#include "support/TestMain.h"

#include <QAbstractItemView>
#include <QGridLayout>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

using Requests = QList<QByteArray>;

} // namespace

class tst_SpectralCard : public QObject, private CardFixture
{
    Q_OBJECT

private slots:
    void init() { start(); }
    void cleanup() { stop(); }

    // construction

    void the_span_table_is_that_of_the_unit()
    {
        QCOMPARE(SpectralCard::m_spanTable.size(), 10);
        QCOMPARE(QString::fromUtf8(SpectralCard::m_spanTable.at(3).label), u"7.5 Mhz"_s);
        const SpectralCard::SPANINFO info("a", "b", "c", 2.0, {1.0});
        QCOMPARE(info.spanMHz, 2.0);
    }

    void a_card_on_an_absent_port_is_quiet()
    {
        SpectralCard card(nullptr, 0, u"absent"_s);
        QVERIFY(!card.isOpen());
        card.show();
        card.SetSpan(0, 3);
        card.UpdateCmds();
        card.timerTimeOut();
        QCOMPARE(card.getSpan(0), 3);
    }

    void the_span_boxes_have_all_labels_in_24_points_data()
    {
        QTest::addColumn<int>("channel");
        QTest::newRow("0") << 0;
        QTest::newRow("1") << 1;
        QTest::newRow("2") << 2;
    }

    void the_span_boxes_have_all_labels_in_24_points()
    {
        QFETCH(int, channel);
        const QStringList labels{u"1 MHz  "_s, u"3 MHz  "_s, u"5 MHz  "_s, u"7.5 Mhz"_s,
            u"10 MHz "_s, u"15 MHz "_s, u"20 MHz "_s, u"25 MHz "_s, u"30 MHz "_s, u"40 MHz "_s};
        QCOMPARE(m_card->getSpanList(), labels);
        QCOMPARE(m_card->cboSpanItems(channel), labels);
        auto* box = spanBox(channel);
        QCOMPARE(box->font().pointSize(), 24);
        QVERIFY(box->height() >= 47 || !box->isVisible());
        QCOMPARE(m_card->getSpan(channel), 0);
    }

    void the_titles_name_the_receivers_and_the_channel()
    {
        QCOMPARE(m_card->chart(0)->title(), u"SpectralCard CH.1/CH.2/CMB.1 (CH.1)"_s);
        QCOMPARE(m_card->chart(1)->title(), u"SpectralCard CH.1/CH.2/CMB.1 (CH.2)"_s);
        QCOMPARE(m_card->chart(2)->title(), u"SpectralCard CH.1/CH.2/CMB.1 (CH.3)"_s);
        const SpectralCard second(nullptr, 1, u"absent"_s);
        QCOMPARE(second.chart(0)->title(), u"SpectralCard CH.3/CH.4/CMB.2 (CH.1)"_s);
        m_card->SetChartAreaName(1, u"Demod 2"_s);
        QCOMPARE(m_card->chart(1)->title(), u"Demod 2 (CH.2)"_s);
        m_card->WindowName(u"Window"_s);
        QCOMPARE(m_card->chart(2)->title(), u"Window (CH.3)"_s);
        QCOMPARE(m_card->windowTitle(), u"Window"_s);
    }

    void channels_and_spans_that_do_not_exist_are_ignored()
    {
        for (const int channel : {-1, 3, 1000000}) {
            QCOMPARE(m_card->chart(channel), nullptr);
            QCOMPARE(m_card->getSpan(channel), -1);
            QCOMPARE(m_card->centre(channel), 0.0);
            QVERIFY(m_card->cboSpanItems(channel).isEmpty());
            m_card->SetSpan(channel, 1);
            m_card->setSpanComboBox(channel, 1);
            m_card->setRf(100.0, channel);
            m_card->setHMarkers(channel, {1.0});
            m_card->setLineColor(1, channel == -1 ? 7 : channel);
            m_card->setTrim(channel, 1);
            QCOMPARE(m_card->trim(channel), -1);
            m_card->returnChartToVbox(channel);
            m_card->SetChartAreaName(channel, u"x"_s);
            m_card->SetChartAreaVisible(channel, false);
            QVERIFY(!m_card->chartAreaVisible(channel));
        }
        for (const int span : {-1, 10, 1000000}) {
            m_card->SetSpan(0, span);
            QCOMPARE(m_card->getSpan(0), 0);
            QVERIFY(m_card->spanTicks(span).isEmpty());
        }
        QCOMPARE(m_card->spanTicks(9), QVector<double>({50, 60, 70, 80, 90}));
        m_card->setTrim(0, 10);
        m_card->setTrim(0, -1);
        QCOMPARE(m_card->trim(0), 0);
        QTRY_COMPARE(cardSide::requests(*m_pty), Requests{"0190RNME000000"});
    }

    void the_charts_are_built_once()
    {
        m_card->initCharts();
        QCOMPARE(m_card->findChildren<SpectrumChart*>().size(), 3);
    }

    // colours and markers

    void frequency_markers_and_colours_reach_their_chart()
    {
        m_card->setRf(2250.5, 1);
        QCOMPARE(m_card->centre(1), 2250.5);
        QCOMPARE(m_card->centre(0), 70.0);
        m_card->setHMarkers(2, {-30.0, -60.0});
        QCOMPARE(m_card->chart(2)->hMarkers(), QList<double>({-30.0, -60.0}));
        m_card->setLineColor(1, 0);
        QCOMPARE(m_card->chart(0)->lineColor(), SpectralCard::lineColor(1));
        m_card->setLineColor(6, -1);
        for (int channel = 0; channel < 3; ++channel) {
            QCOMPARE(m_card->chart(channel)->lineColor(), QColor(Qt::white));
        }
        m_card->setLineColor(8, 0);
        m_card->setLineColor(-1, 0);
        QCOMPARE(m_card->chart(0)->lineColor(), QColor(Qt::white));
    }

    void every_colour_is_readable_on_black_data()
    {
        QTest::addColumn<QColor>("pure");
        QTest::newRow("0") << QColor(Qt::red);
        QTest::newRow("1") << QColor(Qt::green);
        QTest::newRow("2") << QColor(Qt::blue);
        QTest::newRow("3") << QColor(Qt::cyan);
        QTest::newRow("4") << QColor(Qt::magenta);
        QTest::newRow("5") << QColor(Qt::yellow);
        QTest::newRow("6") << QColor(Qt::white);
        QTest::newRow("7") << QColor(Qt::gray);
    }

    void every_colour_is_readable_on_black()
    {
        QFETCH(QColor, pure);
        const QColor color =
            SpectralCard::lineColor(QString::fromUtf8(QTest::currentDataTag()).toInt());
        const auto linear = [](double part) {
            return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        };
        const double luminance = 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
            0.0722 * linear(color.blueF());
        QVERIFY((luminance + 0.05) / 0.05 > 4.5);
        if (pure.saturation() > 0) {
            QVERIFY(std::abs(color.hue() - pure.hue()) < 30);
        }
    }

    // areas

    void a_hidden_area_gives_its_room_to_the_others()
    {
        m_window->show();
        const int third = m_card->chart(0)->height();
        m_card->SetChartAreaVisible(1, false);
        QVERIFY(!m_card->chartAreaVisible(1));
        QTRY_VERIFY(m_card->chart(0)->height() > third);
        m_card->SetChartAreaVisible(1, true);
        QTRY_COMPARE(m_card->chart(0)->height(), third);
    }

    void everything_lies_inside_the_page()
    {
        m_window->show();
        const auto widgets = m_card->findChildren<QWidget*>();
        QVERIFY(widgets.size() > 12);
        for (const QWidget* widget : widgets) {
            if (widget->isVisible() && widget->window() == m_window.get()) {
                const QRect at(widget->mapTo(m_card, QPoint(0, 0)), widget->size());
                QVERIFY2(m_card->rect().contains(at), qPrintable(widget->objectName()));
            }
        }
        for (const char* name : {"averageButton1", "maxHoldButton2", "cboSpan3"}) {
            const auto* control = m_card->findChild<QWidget*>(QString::fromUtf8(name));
            QVERIFY(control != nullptr);
            QVERIFY2(control->height() >= 47 && control->width() >= 47, name);
        }
    }

    void the_open_span_list_lies_inside_the_screen_data()
    {
        QTest::addColumn<int>("channel");
        QTest::newRow("top") << 0;
        QTest::newRow("middle") << 1;
        QTest::newRow("bottom") << 2;
    }

    void the_open_span_list_lies_inside_the_screen()
    {
        QFETCH(int, channel);
        m_window->move(0, 0);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        auto* box = spanBox(channel);
        clickOn(box);
        QTRY_VERIFY(box->view()->isVisible());
        const QWidget* list = box->view()->window();
        QVERIFY(list != m_window.get());
        const QRect screen(0, 0, 800, 480);
        QVERIFY2(screen.contains(list->geometry()),
            qPrintable(u"%1 to %2"_s.arg(list->y()).arg(list->geometry().bottom())));
        const QModelIndex last = box->model()->index(9, 0);
        for (const QModelIndex& row : {box->model()->index(0, 0), last}) {
            const QRect at = box->view()->visualRect(row);
            QVERIFY(at.top() >= 0 && at.bottom() < box->view()->viewport()->height());
            QVERIFY2(at.height() >= 45, qPrintable(QString::number(at.height())));
        }
        // A touch on the last one chooses it.
        const QPoint at(20, box->view()->visualRect(last).center().y());
        QTest::qWait(QApplication::doubleClickInterval() + 50); // or it counts as a double click
        QTest::mouseClick(list->windowHandle(), Qt::LeftButton, Qt::NoModifier,
            box->view()->viewport()->mapTo(list, at));
        QTRY_COMPARE(m_card->getSpan(channel), 9);
        QTRY_VERIFY(!box->view()->isVisible());
    }

    void the_switches_average_and_hold()
    {
        m_window->show();
        clickOn(m_card->findChild<QWidget*>(u"averageButton2"_s));
        QCOMPARE(m_card->chart(1)->trace().averaging(), 16);
        clickOn(m_card->findChild<QWidget*>(u"maxHoldButton3"_s));
        QVERIFY(m_card->chart(2)->trace().maxHold());
        clickOn(m_card->findChild<QWidget*>(u"averageButton2"_s));
        QCOMPARE(m_card->chart(1)->trace().averaging(), 1);
    }

    // lent charts

    void a_chart_is_lent_to_another_page_and_comes_back()
    {
        m_window->show();
        QWidget other;
        auto* grid = new QGridLayout(&other);
        SpectrumChart* chart = m_card->chart(0);
        grid->addWidget(chart, 0, 0);
        other.resize(330, 200);
        other.show();
        QCOMPARE(chart->window(), &other);
        m_card->UpdateCmds();
        m_card->CommSpectral_Command(cardSide::message(cardSide::carrier(512, 9, -10)));
        QCOMPARE(chart->peak().level, -10.0);
        m_card->returnChartToVbox(0);
        QCOMPARE(chart->window(), m_window.get());
        QVERIFY(chart->isVisible());
        QCOMPARE(m_card->chart(0), chart);
    }

    void a_lent_chart_is_deleted_with_its_card()
    {
        QWidget other;
        auto* grid = new QGridLayout(&other);
        const QPointer<SpectrumChart> chart(m_card->chart(0));
        grid->addWidget(chart, 0, 0);
        m_window.reset();
        QVERIFY(chart.isNull());
    }

    void a_chart_that_was_deleted_with_another_page_is_made_anew()
    {
        m_window->show();
        m_card->SetSpan(0, 7);
        m_card->setRf(2250.5, 0);
        m_card->setLineColor(4, 0);
        m_card->setHMarkers(0, {-30.0, -60.0});
        clickOn(m_card->findChild<QWidget*>(u"averageButton1"_s));
        clickOn(m_card->findChild<QWidget*>(u"maxHoldButton1"_s));
        {
            QWidget other;
            auto* grid = new QGridLayout(&other);
            grid->addWidget(m_card->chart(0), 0, 0);
        }
        QVERIFY(m_card->chart(0) != nullptr);
        QCOMPARE(m_card->chart(0)->title(), u"SpectralCard CH.1/CH.2/CMB.1 (CH.1)"_s);
        QCOMPARE(m_card->chart(0)->spanMHz(), SpectralCard::m_spanTable.at(7).spanMHz);
        QCOMPARE(m_card->centre(0), 2250.5);
        QCOMPARE(m_card->chart(0)->lineColor(), SpectralCard::lineColor(4));
        QCOMPARE(m_card->chart(0)->hMarkers(), QList<double>({-30.0, -60.0}));
        QCOMPARE(m_card->chart(0)->trace().averaging(), 16);
        QVERIFY(m_card->chart(0)->trace().maxHold());
        m_card->returnChartToVbox(0);
    }

    // functions that the page passes on

    void requests_are_sent_and_polls_asked_for_through_the_page()
    {
        endNameRequest();
        m_card->sendSerialCmd(u"ABCDEFGHIJKLM"_s);
        QTRY_COMPARE(cardSide::requests(*m_pty).value(0), QByteArray("0190ABCDEFGHIJ"));
        QCOMPARE(testClock::intervals(bus()), QList<int>{450});
        testClock::expire(bus());
        m_card->sendSerialCmd(u"RVER"_s, 7000);
        QTRY_COMPARE(cardSide::requests(*m_pty).value(1), QByteArray("0190RVER000000"));
        QCOMPARE(testClock::intervals(bus()), QList<int>{7000});
        testClock::expire(bus());
        m_card->timerTimeOut(); // not on the screen
        m_card->UpdateCmds();
        QTRY_COMPARE(cardSide::requests(*m_pty).value(2), QByteArray("0190RFFT000000"));
        m_pty->write(cardSide::spectrum("x"));
        QTRY_COMPARE(m_card->chart(0)->trace().size(), 1);
        m_card->ComPortTimeOut(u"0190RVER000000"_s, Rs422Bus::NoReply);
        m_card->ComPortTimeOut(u"0190RFFT000000"_s, Rs422Bus::NoReply);
        QTRY_COMPARE(cardSide::requests(*m_pty).value(3), QByteArray("0190RFFT100000"));
    }

    void a_card_that_introduces_itself_is_announced_by_the_page()
    {
        QSignalSpy detected(m_card, &SpectralCard::cardDetected);
        QSignalSpy version(m_card, &SpectralCard::cardVersionUpdated);
        QSignalSpy told(m_card, &SpectralCard::updateDemodCh);
        m_card->CommSpectral_Command({u"0190"_s, u"RNME"_s, u"SpectralSweep"_s});
        m_card->CommSpectral_Command({u"0190"_s, u"RVER"_s, u"1.02"_s});
        QCOMPARE(detected.value(0).value(0).toString(), u"SpectralSweep"_s);
        QCOMPARE(version.value(0).value(0).toString(), u"SpectralSweep Ver:1.02"_s);
        QCOMPARE(told.count(), 2);
    }
};

QN740_TEST_MAIN(tst_SpectralCard)
#include "tst_SpectralCard.moc"
