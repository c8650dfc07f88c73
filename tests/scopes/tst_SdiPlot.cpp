#include "scopes/SdiPlot.h"
#include "support/TestMain.h"

namespace {

QByteArray record(int first, int second = 0, int third = 0, int fourth = 0, int fifth = 0)
{
    QByteArray bytes;
    for (const int byte : {first, second, third, fourth, fifth}) {
        bytes.append(static_cast<char>(byte));
    }
    return bytes;
}

QImage painted(SdiPlot& plot, QSize size)
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::black);
    plot.resize(size);
    plot.paint(picture);
    return picture;
}

} // namespace

class tst_SdiPlot : public QObject
{
    Q_OBJECT

private slots:
    void each_byte_has_its_strip_with_255_on_top()
    {
        SdiPlot plot;
        for (int k = 0; k < SdiPlot::Records; ++k) {
            plot.addRecord(record(255, 0, 128));
        }
        const QImage picture = painted(plot, {200, 250});
        QCOMPARE(picture.pixelColor(100, 3), QColor(Qt::red));
        QCOMPARE(picture.pixelColor(100, 97), QColor(Qt::red));
        QCOMPARE(picture.pixelColor(100, 124), QColor(Qt::red));
        QCOMPARE(picture.pixelColor(100, 20), QColor(Qt::black));
    }

    void the_newest_record_is_at_the_right()
    {
        SdiPlot plot;
        for (int k = 0; k < 10; ++k) {
            plot.addRecord(record(255));
        }
        const QImage picture = painted(plot, {200, 250});
        QCOMPARE(picture.pixelColor(195, 3), QColor(Qt::red));
        QCOMPARE(picture.pixelColor(100, 3), QColor(Qt::black));
    }

    void only_the_last_records_are_kept()
    {
        SdiPlot plot;
        for (int k = 0; k < 1000; ++k) {
            plot.addRecord(record(k % 256));
        }
        QCOMPARE(static_cast<int>(plot.records().size()), SdiPlot::Records);
        QCOMPARE(plot.records().back(), record(999 % 256));
    }

    void a_short_record_is_ignored_and_a_long_one_cut()
    {
        SdiPlot plot;
        plot.addRecord("abcd");
        QVERIFY(plot.records().empty());
        plot.addRecord("abcdefgh");
        QCOMPARE(plot.records().back(), QByteArray("abcde"));
    }

    void fewer_strips_can_be_shown()
    {
        SdiPlot plot;
        QCOMPARE(plot.stripCount(), 5);
        plot.setStripCount(2);
        QCOMPARE(plot.stripCount(), 2);
        QCOMPARE(plot.axes().yMin, 2.5);
        plot.setStripCount(0);
        QCOMPARE(plot.stripCount(), 1);
        plot.setStripCount(99);
        QCOMPARE(plot.stripCount(), 5);
    }

    void the_line_has_its_colour()
    {
        SdiPlot plot;
        plot.setLineColor(Qt::cyan);
        plot.setStripCount(1);
        for (int k = 0; k < SdiPlot::Records; ++k) {
            plot.addRecord(record(255));
        }
        QCOMPARE(painted(plot, {200, 100}).pixelColor(100, 3), QColor(Qt::cyan));
    }

    void no_records_and_no_size_are_tolerated()
    {
        SdiPlot plot;
        painted(plot, {200, 100});
        plot.addRecord(record(1, 2, 3, 4, 5));
        painted(plot, {200, 100});
        painted(plot, {1, 1});
        painted(plot, {0, 0});
        for (int k = 0; k < SdiPlot::Records; ++k) {
            plot.addRecord(record(255, 0, 128));
        }
        const QImage picture = painted(plot, {200, 250});
        QCOMPARE(picture.pixelColor(100, 3), QColor(Qt::red));
        QCOMPARE(picture.pixelColor(100, 97), QColor(Qt::red));
        QCOMPARE(picture.pixelColor(100, 20), QColor(Qt::black));
    }
};

QN740_TEST_MAIN(tst_SdiPlot)
#include "tst_SdiPlot.moc"
