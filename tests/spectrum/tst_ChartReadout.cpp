#include "spectrum/ChartLook.h"
#include "spectrum/ChartReadout.h"
#include "spectrum/Clock.h"
#include "spectrum/ReadoutPace.h"
#include "support/TestMain.h"

#include <QFontMetrics>
#include <QPainter>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

constexpr int MuchRoom = 2000;
constexpr int High = 480; // a chart
constexpr SpectrumReading Peak{true, 70.5, -42.5};
constexpr SpectrumReading Marker{true, 69.25, -100.0};

// A spectrum with this peak.
ChartReadout::Values withPeak(const SpectrumReading& peak)
{
    ChartReadout::Values values;
    values.peak = peak;
    values.centre = 70.0;
    return values;
}

// The same with marker 1 on this point.
ChartReadout::Values withMarker(const SpectrumReading& peak, const SpectrumReading& marker)
{
    ChartReadout::Values values = withPeak(peak);
    values.markers = {{1, true, false, marker}};
    return values;
}

// How many pixels of the picture are not black in columns `from` to `to`.
int written(const QImage& picture, int from, int to)
{
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = from; x <= to; ++x) {
            count += picture.pixelColor(x, y).lightness() > 40 ? 1 : 0;
        }
    }
    return count;
}

} // namespace

Q_DECLARE_METATYPE(ChartReadout::Values)

class tst_ChartReadout : public QObject
{
    Q_OBJECT

private slots:
    void says_what_there_is_to_say_data()
    {
        QTest::addColumn<int>("averaging");
        QTest::addColumn<bool>("maxHold");
        QTest::addColumn<bool>("peak");
        QTest::addColumn<bool>("marker");
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << 1 << false << false << false << "";
        QTest::newRow("averaging") << 16 << false << false << false << "Avg 16";
        QTest::newRow("max hold") << 1 << true << false << false << "Max Hold";
        QTest::newRow("peak") << 1 << false << true << false << "Peak 70.500 MHz -42.5 dB";
        QTest::newRow("all") << 4 << true << true << true
                             << "Avg 4   Max Hold   Peak 70.500 MHz -42.5 dB   "
                                "Marker 69.250 MHz -100.0 dB";
    }

    void says_what_there_is_to_say()
    {
        QFETCH(int, averaging);
        QFETCH(bool, maxHold);
        QFETCH(bool, peak);
        QFETCH(bool, marker);
        ChartReadout readout;
        ChartReadout::Values values = withPeak(peak ? Peak : SpectrumReading());
        values.averaging = averaging;
        values.maxHold = maxHold;
        if (marker) {
            values.markers = {{1, true, false, Marker}};
        }
        readout.update(values, {0, MuchRoom, High});
        QTEST(readout.text(), "text");
    }

    void a_marker_without_data_is_not_written()
    {
        ChartReadout readout;
        readout.update(withMarker(Peak, {}), {0, MuchRoom, High});
        QCOMPARE(readout.text(), u"Peak 70.500 MHz -42.5 dB"_s);
    }

    void stands_beside_the_title_when_there_is_room()
    {
        ChartReadout readout;
        readout.update(withPeak(Peak), {100, MuchRoom, High});
        const int beside = readout.headHeight();
        readout.update(withPeak(Peak), {MuchRoom, MuchRoom, High});
        const int below = readout.headHeight();
        QVERIFY(below > beside);
        QCOMPARE(readout.text(), u"Peak 70.500 MHz -42.5 dB"_s);
    }

    void takes_several_lines_where_one_is_too_short()
    {
        ChartReadout readout;
        readout.update(withMarker(Peak, Marker), {100, 200, High});
        QCOMPARE(readout.text(), u"Peak 70.500 MHz -42.5 dB\nMarker 69.250 MHz -100.0 dB"_s);
        const int two = readout.headHeight();
        ChartReadout::Values more = withMarker(Peak, Marker);
        more.averaging = 16;
        more.maxHold = true;
        readout.update(more, {100, 200, High});
        QVERIFY(readout.headHeight() > two);
    }

    void its_height_does_not_depend_on_the_numbers()
    {
        ChartReadout readout;
        const int room = 330; // for a short peak and a short marker, but not for long ones
        readout.update(withMarker(Peak, Marker), {50, room, High});
        const int height = readout.headHeight();
        for (const double level : {-1.0, -99.5, 0.0, -100.0}) {
            const SpectrumReading reading{true, 70.0, level};
            readout.update(withMarker(reading, reading), {50, room, High});
            QVERIFY(readout.text().contains(u'\n'));
            QCOMPARE(readout.headHeight(), height);
        }
    }

    void says_what_is_switched_on_data()
    {
        using Values = ChartReadout::Values;
        QTest::addColumn<Values>("values");
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, const QString& text, auto change) {
            Values values = withPeak({});
            change(values);
            QTest::newRow(name) << values << text;
        };
        row("log average", u"Log Avg 64"_s, [](Values& values) {
            values.averaging = 64;
            values.logMean = true;
        });
        row("a log average that is off", QString(), [](Values& values) { values.logMean = true; });
        row("min hold", u"Min Hold"_s, [](Values& values) { values.minHold = true; });
        row("both holds", u"Max Hold   Min Hold"_s,
            [](Values& values) { values.maxHold = values.minHold = true; });
        row("scale", u"Ref -20 dB 5 dB/div"_s,
            [](Values& values) { values.scale = u"Ref -20 dB 5 dB/div"_s; });
        row("over", u"OVER"_s, [](Values& values) { values.over = true; });
        row("over after the rest", u"Peak 70.500 MHz -42.5 dB\nOVER"_s, [](Values& values) {
            values.peak = Peak;
            values.over = true;
        });
        row("decimals", u"Peak 70.50 MHz -42.5 dB"_s, [](Values& values) {
            values.peak = Peak;
            values.decimals = 2;
        });
        row("another marker than the first", u"M2 69.250 MHz -100.0 dB"_s, [](Values& values) {
            values.markers = {{2, true, false, Marker}};
        });
        row("two markers", u"M1 70.500 MHz -42.5 dB   M2 69.250 MHz -100.0 dB"_s,
            [](Values& values) {
                values.markers = {{1, true, false, Peak}, {2, false, false, Marker}};
            });
        row("differences",
            u"M1 70.500 MHz -42.5 dB   M2-M1 -1.250 MHz -57.5 dB   M3-M1 +0.500 MHz +3.0 dB"_s,
            [](Values& values) {
                values.markers = {{1, false, false, Peak}, {2, true, true, {true, -1.25, -57.5}},
                    {3, false, true, {true, 0.5, 3.0}}};
            });
    }

    void says_what_is_switched_on()
    {
        QFETCH(ChartReadout::Values, values);
        ChartReadout readout;
        readout.update(values, {0, MuchRoom, High});
        QTEST(readout.text(), "text");
        QCOMPARE(readout.over(), values.over);
    }

    void what_fits_stands_beside_the_title_and_the_rest_below()
    {
        ChartReadout readout;
        readout.update(withMarker(Peak, Marker), {100, 380, High});
        QCOMPARE(readout.text(), u"Peak 70.500 MHz -42.5 dB\nMarker 69.250 MHz -100.0 dB"_s);
        const int oneBeside = readout.headHeight();
        readout.update(withMarker(Peak, Marker), {300, 380, High});
        QVERIFY(readout.headHeight() > oneBeside);
        readout.update(withPeak(Peak), {300, 380, High});
        QCOMPARE(readout.headHeight(), oneBeside);
    }

    // All that there can be said, on the sizes of the panel's charts. The figures are those of the
    // widest frequencies.
    void leaves_two_fifths_of_the_chart_or_says_less_data()
    {
        QTest::addColumn<QSize>("chart"); // the room of the texts and the chart's height
        QTest::addColumn<QString>("text");
        const QString active = u"M2-M1 +10.000 MHz -57.5 dB"_s;
        QTest::newRow("enlarged")
            << QSize(730, 420)
            << u"Avg 16   Max Hold   Min Hold   Ref -20 dB 5 dB/div\n"
               "Peak 2250.500 MHz -42.5 dB   M1 2250.500 MHz -42.5 dB   M2-M1 +10.000 MHz -57.5 dB\n"
               "M3 2250.500 MHz -42.5 dB   M4 2250.500 MHz -42.5 dB"_s;
        QTest::newRow("one of three") << QSize(550, 143)
                                      << u"Avg 16   Max Hold   Min Hold\n"
                                         "Ref -20 dB 5 dB/div   Peak 2250.500 MHz -42.5 dB\n"_s +
                active;
        QTest::newRow("on the PAX menu")
            << QSize(315, 147)
            << u"Avg 16   Max   Min   Ref -20 dB 5 dB/div\nPeak 2250.500 MHz -42.5 dB\n"_s + active;
    }

    void leaves_two_fifths_of_the_chart_or_says_less()
    {
        QFETCH(QSize, chart);
        const SpectrumReading point{true, 2250.5, -42.5};
        ChartReadout::Values values = withPeak(point);
        values.centre = 2250.5;
        values.averaging = 16;
        values.maxHold = values.minHold = true;
        values.scale = u"Ref -20 dB 5 dB/div"_s;
        values.markers = {{1, false, false, point}, {2, true, true, {true, 10.0, -57.5}},
            {3, false, false, point}, {4, false, false, point}};
        ChartReadout readout;
        readout.update(values, {260, chart.width(), chart.height()});
        QTEST(readout.text(), "text");
        QVERIFY2(readout.headHeight() <= chart.height() * 0.52,
            qPrintable(QString::number(readout.headHeight())));
        const QFontMetrics metrics(chartLook::font());
        for (const QString& line : readout.text().split(u'\n')) {
            QVERIFY2(metrics.horizontalAdvance(line) <= chart.width(), qPrintable(line));
        }
    }

    void numbers_change_at_once_and_then_at_a_readable_pace()
    {
        ReadoutPace pace;
        const QSignalSpy due(&pace, &ReadoutPace::due);
        auto* timer = pace.findChild<QTimer*>();
        QVERIFY(!timer->isActive());
        pace.change();
        QCOMPARE(due.count(), 1);
        QCOMPARE(testClock::intervals(timer), QList<int>{250});
        pace.change();
        pace.change();
        QCOMPARE(due.count(), 1);
        testClock::expire(timer);
        QCOMPARE(due.count(), 2);
        testClock::expire(timer); // Nothing has changed since.
        QCOMPARE(due.count(), 2);
        QVERIFY(!timer->isActive());
        pace.change();
        pace.change();
        pace.setShown(); // Somebody else has written the numbers meanwhile.
        testClock::expire(timer);
        QCOMPARE(due.count(), 3);
    }

    void is_painted_anew_when_text_or_colour_change()
    {
        ChartReadout readout;
        const auto paint = [&readout](const QColor& color) {
            QImage picture(400, 60, QImage::Format_RGB32);
            picture.fill(Qt::black);
            QPainter painter(&picture);
            readout.paint(painter, 390, color);
            painter.end();
            return picture;
        };
        const ChartReadout::Space space{300, 380, High}; // a line for the peak, one for the marker
        readout.update(withMarker(Peak, Marker), space);
        const QImage first = paint(Qt::white);
        QCOMPARE(paint(Qt::white), first);
        const QImage red = paint(Qt::red);
        QVERIFY(red != first && red.pixelColor(380, 0) == first.pixelColor(380, 0));
        readout.update(withMarker(Marker, Marker), space); // Only the first line differs.
        QVERIFY(paint(Qt::red) != red);
        readout.update(withMarker(Peak, Marker), space);
        QCOMPARE(paint(Qt::white), first);
        QCOMPARE(paint(Qt::red), red);
    }

    void is_painted_to_the_left_of_its_end()
    {
        ChartReadout readout;
        readout.update(withPeak(Peak), {50, 380, High});
        QImage picture(400, 40, QImage::Format_RGB32);
        picture.fill(Qt::black);
        QPainter painter(&picture);
        readout.paint(painter, 300, Qt::white);
        painter.end();
        QVERIFY(written(picture, 100, 300) > 100);
        QCOMPARE(written(picture, 302, 399), 0);
    }
};

QN740_TEST_MAIN(tst_ChartReadout)
#include "tst_ChartReadout.moc"
