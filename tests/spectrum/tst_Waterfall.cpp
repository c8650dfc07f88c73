// The waterfall: its colours, its picture, and the widget that shows both.
#include "spectrum/Waterfall.h"

#include "spectrum/CardSide.h"
#include "spectrum/ChartLook.h"
#include "spectrum/ColorMap.h"
#include "support/TestMain.h"

#include <QPainter>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr double Lowest = -100.0;
constexpr double Highest = 0.0;

// CIELAB of a colour on the screen, D65; the other way round than in the sources.
colorMap::Lab labOf(QRgb color)
{
    const auto linear = [](int part) {
        const double share = part / 255.0;
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    const double r = linear(qRed(color));
    const double g = linear(qGreen(color));
    const double b = linear(qBlue(color));
    const auto compressed = [](double t) {
        return t > 216.0 / 24389.0 ? std::cbrt(t) : (24389.0 / 27.0 * t + 16.0) / 116.0;
    };
    const double x = compressed((0.4124564 * r + 0.3575761 * g + 0.1804375 * b) / 0.95047);
    const double y = compressed(0.2126729 * r + 0.7151522 * g + 0.0721750 * b);
    const double z = compressed((0.0193339 * r + 0.1191920 * g + 0.9503041 * b) / 1.08883);
    return {116.0 * y - 16.0, 500.0 * (x - y), 200.0 * (y - z)};
}

double distance(const colorMap::Lab& one, const colorMap::Lab& other)
{
    return std::hypot(one.lightness - other.lightness, one.a - other.a, one.b - other.b);
}

QRgb colorOf(double level)
{
    const double share = (level - Lowest) / (Highest - Lowest);
    return colorMap::table()[static_cast<size_t>(std::lround(share * 255.0))];
}

QImage painted(const WaterfallPicture& picture)
{
    QImage image(picture.size(), QImage::Format_RGB32);
    image.fill(Qt::red);
    QPainter painter(&image);
    picture.paint(painter, {0, 0});
    return image;
}

WaterfallPicture newPicture(const QSize& size)
{
    WaterfallPicture picture;
    picture.setRange(Lowest, Highest);
    picture.setSize(size);
    return picture;
}

QByteArray flat(double level, int points = 8)
{
    return QByteArray(points, cardSide::level(level));
}

} // namespace

class tst_Waterfall : public QObject
{
    Q_OBJECT

private slots:

    // colours

    void the_lightness_climbs_in_equal_steps()
    {
        const double step = (colorMap::Lightest - colorMap::Darkest) / (colorMap::Count - 1);
        for (int i = 1; i < colorMap::Count; ++i) {
            const double from = colorMap::lab((i - 1) / 255.0).lightness;
            QVERIFY(std::abs(colorMap::lab(i / 255.0).lightness - from - step) < 1e-9);
        }
        // On the screen the colours are rounded to whole numbers; over eight steps that is little.
        for (size_t i = 8; i < colorMap::table().size(); ++i) {
            const double climbed =
                labOf(colorMap::table()[i]).lightness - labOf(colorMap::table()[i - 8]).lightness;
            QVERIFY2(
                std::abs(climbed - 8 * step) < 0.15 * 8 * step, qPrintable(QString::number(i)));
        }
    }

    void neighbours_look_equally_far_apart()
    {
        const double step = distance(colorMap::lab(0.0), colorMap::lab(1 / 255.0));
        QVERIFY(step > 0.5);
        for (int i = 1; i < colorMap::Count; ++i) {
            const double here = distance(colorMap::lab((i - 1) / 255.0), colorMap::lab(i / 255.0));
            QVERIFY2(std::abs(here - step) < 0.01 * step, qPrintable(QString::number(here)));
        }
        // What the screen shows differs from that only by rounding to whole numbers.
        for (size_t i = 0; i < colorMap::table().size(); ++i) {
            const double off = distance(
                labOf(colorMap::table()[i]), colorMap::lab(static_cast<double>(i) / 255.0));
            QVERIFY2(off < 0.9, qPrintable(QString::number(off)));
        }
    }

    void a_screen_can_show_every_colour_unclipped()
    {
        for (int i = 0; i < colorMap::Count; ++i) {
            for (const double part : colorMap::sRgb(colorMap::lab(i / 255.0))) {
                QVERIFY(part >= -0.001 && part <= 1.001);
            }
        }
    }

    void beyond_its_ends_the_path_stands_still()
    {
        QCOMPARE(colorMap::lab(-1.0).lightness, colorMap::Darkest);
        QCOMPARE(colorMap::lab(2.0).lightness, colorMap::Lightest);
        QCOMPARE(colorMap::lab(2.0).b, colorMap::lab(1.0).b);
    }

    void white_and_black_are_those_of_sRGB()
    {
        for (const double part : colorMap::sRgb({100.0, 0.0, 0.0})) {
            QVERIFY(std::abs(part - 1.0) < 0.001);
        }
        for (const double part : colorMap::sRgb({0.0, 0.0, 0.0})) {
            QVERIFY(std::abs(part) < 0.001);
        }
    }

    // picture

    void the_newest_line_is_on_top_and_the_oldest_leaves()
    {
        WaterfallPicture picture = newPicture({4, 3});
        QCOMPARE(painted(picture).pixel(0, 0), qRgb(0, 0, 0));
        for (const double level : {-80.0, -60.0, -40.0, -20.0}) {
            picture.add(flat(level), 0);
        }
        QCOMPARE(picture.lines(), 3);
        const QImage image = painted(picture);
        QCOMPARE(image.pixel(0, 0), colorOf(-20.0));
        QCOMPARE(image.pixel(3, 1), colorOf(-40.0));
        QCOMPARE(image.pixel(2, 2), colorOf(-60.0));
    }

    void lines_below_the_oldest_are_black()
    {
        WaterfallPicture picture = newPicture({2, 4});
        picture.add(flat(-20.0), 0);
        const QImage image = painted(picture);
        QCOMPARE(image.pixel(1, 0), colorOf(-20.0));
        for (int row = 1; row < 4; ++row) {
            QCOMPARE(image.pixel(0, row), qRgb(0, 0, 0));
        }
    }

    void a_point_lies_under_its_place_on_the_chart_data()
    {
        QTest::addColumn<int>("points");
        QTest::addColumn<int>("at");
        QTest::addColumn<int>("column"); // of 101: point i lies i/N of the way
        QTest::newRow("first of as many") << 100 << 0 << 0;
        QTest::newRow("middle of as many") << 100 << 50 << 50;
        QTest::newRow("last of as many") << 100 << 99 << 99;
        QTest::newRow("middle of ten times as many") << 1000 << 500 << 50;
        QTest::newRow("one of ten times as many") << 1000 << 333 << 33;
        QTest::newRow("last of ten times as many") << 1000 << 999 << 100;
        QTest::newRow("second of few") << 4 << 1 << 25;
        QTest::newRow("last of few") << 4 << 3 << 75;
        QTest::newRow("a single one") << 1 << 0 << 0;
    }

    void a_point_lies_under_its_place_on_the_chart()
    {
        QFETCH(int, points);
        QFETCH(int, at);
        QFETCH(int, column);
        WaterfallPicture picture = newPicture({101, 1});
        picture.add(cardSide::carrier(points, at, -10.0, -90.0), 0);
        const QImage image = painted(picture);
        QCOMPARE(image.pixel(column, 0), colorOf(-10.0));
        if (column > 0) {
            QCOMPARE(image.pixel(column - 1, 0), colorOf(-90.0));
        }
        if (points >= 100 && column < 100) {
            QCOMPARE(image.pixel(column + (column == 99 ? 0 : 1), 0),
                column == 99 ? colorOf(-10.0) : colorOf(-90.0));
        }
    }

    void levels_beyond_the_range_have_its_colours()
    {
        WaterfallPicture picture = newPicture({1, 2});
        picture.add(flat(-120.0), 0);
        picture.add(flat(7.5), 0);
        QCOMPARE(painted(picture).pixel(0, 0), colorMap::table().back());
        QCOMPARE(painted(picture).pixel(0, 1), colorMap::table().front());
    }

    void another_range_colours_the_old_lines_anew()
    {
        WaterfallPicture picture = newPicture({1, 3});
        picture.add(flat(-80.0), 0);
        picture.add(flat(-60.0), 0);
        picture.setRange(-80.0, -60.0);
        QCOMPARE(painted(picture).pixel(0, 0), colorMap::table().back());
        QCOMPARE(painted(picture).pixel(0, 1), colorMap::table().front());
        QCOMPARE(painted(picture).pixel(0, 2), qRgb(0, 0, 0));
    }

    void another_size_keeps_the_newest_lines()
    {
        WaterfallPicture picture = newPicture({4, 4});
        for (const double level : {-80.0, -60.0, -40.0}) {
            picture.add(flat(level), static_cast<qint64>(level));
        }
        picture.setSize({9, 2});
        QCOMPARE(picture.lines(), 2);
        QCOMPARE(painted(picture).pixel(8, 0), colorOf(-40.0));
        QCOMPARE(painted(picture).pixel(8, 1), colorOf(-60.0));
        QCOMPARE(picture.ageMs(1), 20);
        picture.setSize({0, 5});
        picture.add(flat(0.0), 0);
        picture.setSize({3, 0});
        picture.add(flat(0.0), 0);
        QCOMPARE(picture.lines(), 0);
    }

    void without_points_there_is_no_line()
    {
        WaterfallPicture picture = newPicture({4, 4});
        picture.add({}, 0);
        QCOMPARE(picture.lines(), 0);
        picture.add(flat(-10.0), 0);
        picture.clear();
        QCOMPARE(picture.lines(), 0);
        QCOMPARE(painted(picture).pixel(0, 0), qRgb(0, 0, 0));
    }

    void ages_are_counted_from_the_newest_line()
    {
        WaterfallPicture picture = newPicture({1, 3});
        for (const qint64 ms : {0, 1000, 1050, 2100}) {
            picture.add(flat(-10.0), ms);
        }
        QCOMPARE(picture.ageMs(0), 0);
        QCOMPARE(picture.ageMs(1), 1050);
        QCOMPARE(picture.ageMs(2), 1100);
        QCOMPARE(picture.lineOfAge(0), 0);
        QCOMPARE(picture.lineOfAge(1), 1);
        QCOMPARE(picture.lineOfAge(1050), 1);
        QCOMPARE(picture.lineOfAge(1051), 2);
        QCOMPARE(picture.lineOfAge(1101), 3);
    }

    void the_picture_stays_as_large_as_it_was_set()
    {
        WaterfallPicture picture = newPicture({600, 150});
        for (int i = 0; i < 1000; ++i) {
            picture.add(flat(-10.0, 958), i);
        }
        QCOMPARE(picture.size(), QSize(600, 150));
        QCOMPARE(picture.lines(), 150);
    }

    // widget

    void a_line_a_spectrum_is_painted_under_the_plot()
    {
        Waterfall waterfall;
        start(waterfall);
        waterfall.addSpectrum(flat(-20.0));
        waterfall.addSpectrum(flat(-40.0));
        const QImage image = waterfall.grab().toImage();
        QCOMPARE(image.pixel(40, 0), colorOf(-40.0));
        QCOMPARE(image.pixel(139, 1), colorOf(-20.0));
        QCOMPARE(image.pixel(140, 0), chartLook::Background.rgb());
        QCOMPARE(image.pixel(1, 99), chartLook::Background.rgb());
        QCOMPARE(waterfall.secondTexts(), QStringList{u"0 s"_s});
    }

    void a_hidden_waterfall_takes_no_lines_and_no_paint()
    {
        Waterfall waterfall;
        start(waterfall);
        waterfall.hide();
        const int painted = waterfall.paintCount();
        waterfall.addSpectrum(flat(-20.0));
        QCOMPARE(waterfall.picture().lines(), 0);
        QVERIFY(!waterfall.findChild<QTimer*>() || !waterfall.findChild<QTimer*>()->isActive());
        QCOMPARE(waterfall.paintCount(), painted);
    }

    void many_spectra_in_one_turn_are_painted_once()
    {
        Waterfall waterfall;
        start(waterfall);
        const int before = waterfall.paintCount();
        for (int i = 0; i < 50; ++i) {
            waterfall.addSpectrum(flat(-20.0));
        }
        QTRY_VERIFY(waterfall.paintCount() > before);
        QCOMPARE(waterfall.paintCount(), before + 1);
    }

    void the_seconds_stand_beside_their_lines_data()
    {
        QTest::addColumn<int>("msPerLine");
        QTest::addColumn<QStringList>("texts");
        QTest::newRow("20 a second") << 50 << QStringList{u"0 s"_s, u"2"_s, u"4"_s};
        QTest::newRow("7 a second") << 143 << QStringList{u"0 s"_s, u"5"_s, u"10"_s};
        QTest::newRow("1 a second") << 1000 << QStringList{u"0 s"_s, u"30"_s, u"60"_s, u"90"_s};
        QTest::newRow("1 a minute")
            << 60000 << QStringList{u"0 s"_s, u"1800"_s, u"3600"_s, u"5400"_s};
    }

    void the_seconds_stand_beside_their_lines()
    {
        QFETCH(int, msPerLine);
        QFETCH(QStringList, texts);
        Waterfall waterfall;
        start(waterfall);
        for (int i = 0; i < 100; ++i) {
            waterfall.addSpectrum(flat(-20.0), qint64{i} * msPerLine);
        }
        waterfall.grab();
        QCOMPARE(waterfall.secondTexts(), texts);
    }

    void a_gap_is_seen_in_the_seconds()
    {
        Waterfall waterfall;
        start(waterfall);
        for (int i = 0; i < 100; ++i) {
            waterfall.addSpectrum(flat(-20.0), qint64{i} * 100 + (i < 50 ? 0 : 100000));
        }
        waterfall.grab();
        const QStringList texts = waterfall.secondTexts();
        QCOMPARE(texts.first(), u"0 s"_s);
        QVERIFY2(texts.last().toInt() >= 60, qPrintable(texts.join(u' ')));
        QVERIFY(texts.size() <= 4);
    }

private:
    // On the screen, 160 wide and 100 high, the plot in columns 40 to 139.
    static void start(Waterfall& waterfall)
    {
        waterfall.resize(160, 100);
        waterfall.setPlot(40, 139);
        waterfall.setRange(Lowest, Highest);
        waterfall.show();
        QVERIFY(QTest::qWaitForWindowExposed(&waterfall));
        QTRY_VERIFY(waterfall.paintCount() > 0);
    }
};

QN740_TEST_MAIN(tst_Waterfall)
#include "tst_Waterfall.moc"
