// What a chart shows when spectra stop coming.
#include "plot/NoData.h"
#include "spectrum/CardSide.h"
#include "spectrum/Clock.h"
#include "spectrum/SpectrumChart.h"
#include "support/TestMain.h"

#include <QScreen>

#include <functional>

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(std::function<void(SpectrumChart&)>)

namespace {

// Counts the pixels of this colour.
int pixels(const QImage& picture, const QColor& color)
{
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            count += picture.pixelColor(x, y) == color ? 1 : 0;
        }
    }
    return count;
}

} // namespace

class tst_ChartNoData : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_chart = std::make_unique<SpectrumChart>();
        m_chart->setLineColor(Qt::cyan);
        m_chart->resize(620, 200);
        m_chart->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_chart.get()));
    }

    void a_polled_chart_without_a_spectrum_for_three_seconds_says_so()
    {
        m_chart->setPolled(true);
        m_chart->addSpectrum(cardSide::carrier(100, 50, -42.5));
        auto* timer = m_chart->findChild<QTimer*>(u"noDataTimer"_s);
        QCOMPARE(testClock::intervals(timer), QList<int>{3000});
        QTest::qWait(400);
        QVERIFY(!m_chart->stale());
        const QImage healthy = onTheScreen();
        const int paints = m_chart->paintCount();
        testClock::expire(timer);
        QVERIFY(m_chart->stale() && !timer->isActive());
        QCOMPARE(m_chart->readout(), u"Peak 70.000 MHz -42.5 dB\nNO DATA"_s);
        QTRY_VERIFY(m_chart->paintCount() > paints);
        QTest::qWait(50);
        const QImage dead = onTheScreen();
        QCOMPARE(pixels(healthy, noData::Text), 0);
        QVERIFY(pixels(dead, noData::Text) > 200);
        // The last picture is still there, dimmed.
        const QPoint floor = pixelOf(0.1, -100.0);
        QCOMPARE(healthy.pixelColor(floor), m_chart->lineColor());
        QCOMPARE(dead.pixelColor(floor), noData::dimmed(m_chart->lineColor()));

        m_chart->addSpectrum(cardSide::carrier(100, 50, -42.5));
        QVERIFY(!m_chart->stale() && timer->isActive());
        QCOMPARE(m_chart->readout(), u"Peak 70.000 MHz -42.5 dB"_s);
        QTRY_COMPARE(pixels(onTheScreen(), noData::Text), 0);
    }

    void a_polled_chart_that_never_got_a_spectrum_says_so()
    {
        m_chart->setPolled(true);
        testClock::expire(m_chart->findChild<QTimer*>(u"noDataTimer"_s));
        QVERIFY(m_chart->stale());
        QCOMPARE(m_chart->readout(), u"NO DATA"_s);
    }

    void only_a_spectrum_ends_the_note_data()
    {
        using Change = std::function<void(SpectrumChart&)>;
        QTest::addColumn<Change>("change");
        QTest::newRow("span") << Change(
            [](SpectrumChart& chart) { chart.setSpan(spanTable().at(9)); });
        QTest::newRow("RF frequency")
            << Change([](SpectrumChart& chart) { chart.setCentre(2250.5); });
        QTest::newRow("horizontal marker")
            << Change([](SpectrumChart& chart) { chart.setHMarkers({-30.0}); });
        QTest::newRow("marker") << Change([](SpectrumChart& chart) { chart.setMarker(70.1); });
        QTest::newRow("averaging") << Change([](SpectrumChart& chart) { chart.setAveraging(8); });
        QTest::newRow("max hold") << Change([](SpectrumChart& chart) { chart.setMaxHold(true); });
        QTest::newRow("new average")
            << Change([](SpectrumChart& chart) { chart.restartAverage(); });
        QTest::newRow("colour") << Change(
            [](SpectrumChart& chart) { chart.setLineColor(Qt::green); });
        QTest::newRow("title") << Change(
            [](SpectrumChart& chart) { chart.setTitle(u"Demod 2"_s); });
        QTest::newRow("polled as before")
            << Change([](SpectrumChart& chart) { chart.setPolled(true); });
        QTest::newRow("no points") << Change([](SpectrumChart& chart) { chart.addSpectrum({}); });
        QTest::newRow("hidden and shown") << Change([](SpectrumChart& chart) {
            chart.setLeftOut(true);
            chart.setLeftOut(false);
        });
        QTest::newRow("size") << Change([](SpectrumChart& chart) { chart.resize(500, 180); });
    }

    void only_a_spectrum_ends_the_note()
    {
        QFETCH(std::function<void(SpectrumChart&)>, change);
        m_chart->setPolled(true);
        m_chart->addSpectrum(cardSide::carrier(100, 50, -42.5));
        auto* timer = m_chart->findChild<QTimer*>(u"noDataTimer"_s);
        QTest::qWait(50);
        change(*m_chart);
        QVERIFY2(
            timer->remainingTime() <= 2960, qPrintable(QString::number(timer->remainingTime())));
        testClock::expire(timer);
        QVERIFY(m_chart->stale());
        change(*m_chart);
        QVERIFY(m_chart->stale());
        QVERIFY(m_chart->readout().endsWith(u"NO DATA"_s));
        m_chart->addSpectrum(cardSide::carrier(100, 50, -42.5));
        QVERIFY(!m_chart->stale());
    }

    void a_chart_that_is_not_polled_or_left_out_is_not_stale()
    {
        m_chart->setPolled(false);
        m_chart->addSpectrum(cardSide::carrier(100, 50, -42.5));
        auto* timer = m_chart->findChild<QTimer*>(u"noDataTimer"_s);
        QVERIFY(!timer->isActive());
        m_chart->setPolled(true);
        testClock::expire(timer);
        m_chart->setLeftOut(true);
        QVERIFY(!m_chart->stale() && !timer->isActive());
        m_chart->setLeftOut(false);
        QVERIFY(m_chart->stale());
        m_chart->setPolled(false);
        QVERIFY(!m_chart->stale());
        m_chart->setPolled(true);
        QVERIFY(m_chart->stale() && !timer->isActive()); // only data end it
        m_chart->setPolled(false);
        m_chart->addSpectrum(cardSide::carrier(100, 50, -42.5)); // late, but data
        m_chart->setPolled(true);
        QVERIFY(!m_chart->stale());
        QCOMPARE(testClock::intervals(timer), QList<int>{3000});
    }

    void a_chart_that_nobody_told_is_taken_as_polled_from_its_first_spectrum_on()
    {
        auto* timer = m_chart->findChild<QTimer*>(u"noDataTimer"_s);
        QVERIFY(!timer->isActive());
        m_chart->addSpectrum(cardSide::carrier(100, 50, -42.5));
        QVERIFY(timer->isActive());
        QTRY_VERIFY_WITH_TIMEOUT(m_chart->stale(), 5000); // the real time
    }

private:
    // The backing store of the window; grab() would paint once more.
    QImage onTheScreen() const { return m_chart->screen()->grabWindow(m_chart->winId()).toImage(); }

    // part: of the plot's width, from the left
    QPoint pixelOf(double part, double level) const
    {
        const QRect plot = m_chart->axisRect()->rect();
        return {plot.left() + qRound(part * (plot.width() - 1)),
            qRound(m_chart->yAxis->coordToPixel(level))};
    }

    std::unique_ptr<SpectrumChart> m_chart;
};

QN740_TEST_MAIN(tst_ChartNoData)
#include "tst_ChartNoData.moc"
