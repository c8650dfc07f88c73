#include "spectrum/ChartReadout.h"
#include "support/TestMain.h"

#include <QPainter>

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
