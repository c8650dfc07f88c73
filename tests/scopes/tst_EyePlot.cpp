#include "scopes/EyePlot.h"
#include "support/TestMain.h"

#include <cmath>
#include <limits>

namespace {
constexpr double Pi = 3.14159265358979323846;

QImage black(QSize size)
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::black);
    return picture;
}

// A cosine with its crests at the decisions: +1, -1, +1, ...
QVector<double> alternating(double amplitude)
{
    QVector<double> samples;
    for (int k = 0; k < 256; ++k) {
        samples.append(amplitude * std::cos(Pi * k / EyePlot::SamplesPerSymbol));
    }
    return samples;
}
} // namespace

class tst_EyePlot : public QObject
{
    Q_OBJECT

private slots:
    void a_block_is_folded_at_two_symbols()
    {
        const EyePlot eye(QStringLiteral("I"));
        const auto traces = eye.traces(alternating(0.5));
        QCOMPARE(traces.size() % EyePlot::PointsPerTrace, size_t{0});
        QCOMPARE(traces.size() / EyePlot::PointsPerTrace, size_t{30});
        for (size_t at = 0; at < traces.size(); at += EyePlot::PointsPerTrace) {
            // Each trace runs from one decision over the next one to the next but one.
            QVERIFY(std::abs(traces[at] + 0.5) < 1e-9);
            QVERIFY(std::abs(traces[at + 32] - 0.5) < 1e-9);
            QVERIFY(std::abs(traces[at + 64] + 0.5) < 1e-9);
            QVERIFY(std::abs(traces[at + 16]) < 0.01);
        }
    }

    void the_points_between_the_samples_are_interpolated()
    {
        const EyePlot eye(QStringLiteral("I"));
        const auto traces = eye.traces(alternating(0.5));
        for (int n = 0; n < EyePlot::PointsPerTrace; ++n) {
            const double expected = -0.5 * std::cos(Pi * n / 32.0);
            QVERIFY(std::abs(traces[static_cast<size_t>(n)] - expected) < 0.003);
        }
    }

    void too_few_samples_give_no_trace_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("traces");
        QTest::newRow("none") << 0 << 0;
        QTest::newRow("one") << 1 << 0;
        QTest::newRow("one sample too few") << 16 << 0;
        QTest::newRow("exactly one trace") << 17 << 1;
        QTest::newRow("a block") << 256 << 30;
    }

    void too_few_samples_give_no_trace()
    {
        QFETCH(int, count);
        QFETCH(int, traces);
        const EyePlot eye(QStringLiteral("I"));
        QCOMPARE(static_cast<int>(eye.traces(QVector<double>(count, 0.1)).size()) /
                EyePlot::PointsPerTrace,
            traces);
    }

    void a_block_is_folded_at_any_number_of_samples_per_symbol_data()
    {
        QTest::addColumn<double>("perSymbol");
        QTest::addColumn<int>("traces");
        QTest::newRow("2") << 2.0 << 61;
        QTest::newRow("2.5") << 2.5 << 49;
        QTest::newRow("4") << 4.0 << 30;
        QTest::newRow("5.5") << 5.5 << 22;
        QTest::newRow("7.3") << 7.3 << 16;
        QTest::newRow("16") << 16.0 << 7;
    }

    void a_block_is_folded_at_any_number_of_samples_per_symbol()
    {
        QFETCH(double, perSymbol);
        EyePlot eye(QStringLiteral("I"));
        eye.setSamplesPerSymbol(perSymbol);
        QCOMPARE(eye.samplesPerSymbol(), perSymbol);
        QVector<double> samples;
        for (int k = 0; k < 256; ++k) { // a period of two symbols, its crests at the decisions
            samples.append(0.5 * std::cos(Pi * k / perSymbol));
        }
        const auto traces = eye.traces(samples);
        const auto count = static_cast<size_t>(eye.pointsPerTrace());
        QCOMPARE(traces.size() % count, size_t{0});
        QTEST(static_cast<int>(traces.size() / count), "traces");
        const double first = traces[0];
        QVERIFY2(std::abs(std::abs(first) - 0.5) < 0.01, qPrintable(QString::number(first)));
        for (size_t at = 0; at < traces.size(); at += count) {
            // At 2 samples per symbol the filter has nothing left above the signal.
            const double allowed = perSymbol < 2.5 ? 0.2 : 0.02;
            QVERIFY(std::abs(traces[at] - first) < 0.02);
            QVERIFY(std::abs(traces[at + (count - 1) / 2] + first) < allowed);
            QVERIFY(std::abs(traces[at + count - 1] - first) < 0.02);
        }
    }

    void other_samples_per_symbol_are_ignored()
    {
        EyePlot eye(QStringLiteral("I"));
        for (const double none :
            {1.99, 16.01, 0.0, -4.0, std::numeric_limits<double>::quiet_NaN()}) {
            eye.setSamplesPerSymbol(none);
            QCOMPARE(eye.samplesPerSymbol(), 4.0);
        }
    }

    void another_fold_leaves_the_newest_block_alone_a_small_correction_does_not()
    {
        EyePlot eye(QStringLiteral("I"));
        eye.resize({129, 101});
        QImage picture = black({129, 101});
        eye.addBlock(QVector<double>(256, 0.5));
        eye.paint(picture);
        eye.addBlock(QVector<double>(256, -0.5));
        eye.setSamplesPerSymbol(4.03);
        eye.paint(picture);
        QVERIFY(eye.image().density(64, 25) > 0 && eye.image().density(64, 75) > 0);
        eye.setSamplesPerSymbol(5.0);
        eye.paint(picture);
        QVERIFY(eye.image().density(64, 25) == 0 && eye.image().density(64, 75) > 0);
    }

    void the_best_instant_is_a_dashed_line_data()
    {
        QTest::addColumn<double>("instant");
        QTest::addColumn<int>("column");
        QTest::newRow("in the middle") << 0.0 << 64;
        QTest::newRow("early") << -0.5 << 32;
        QTest::newRow("late") << 0.25 << 80;
        QTest::newRow("at the edge") << 1.0 << 128;
    }

    void the_best_instant_is_a_dashed_line()
    {
        QFETCH(double, instant);
        QFETCH(int, column);
        EyePlot eye(QStringLiteral("I"));
        eye.resize({129, 101});
        eye.setInstant(instant);
        QImage picture = black({129, 101});
        eye.paint(picture);
        int white = 0;
        for (int y = 0; y < 101; ++y) {
            for (int x = 0; x < 129; ++x) {
                const bool isWhite = picture.pixelColor(x, y) == QColor(Qt::white);
                QVERIFY(!isWhite || x == column);
                white += isWhite ? 1 : 0;
            }
        }
        QVERIFY(white > 50 && white < 80);
        eye.setInstant({});
        picture.fill(Qt::black);
        eye.paint(picture);
        QCOMPARE(picture, black({129, 101}));
    }

    void the_eye_is_drawn_where_its_values_are()
    {
        EyePlot eye(QStringLiteral("I"));
        eye.resize({129, 101});
        eye.addBlock(alternating(0.5));
        QImage picture = black({129, 101});
        eye.paint(picture);
        const DensityImage& image = eye.image();
        QVERIFY(image.density(0, 75) > 0);   // -0.5 at the left edge
        QVERIFY(image.density(64, 25) > 0);  // +0.5 in the middle
        QVERIFY(image.density(128, 75) > 0); // -0.5 at the right edge
        QCOMPARE(image.density(64, 50), 0);  // the opening
        QCOMPARE(image.density(64, 75), 0);
        // Every column is hit.
        for (int x = 0; x < 129; ++x) {
            int hits = 0;
            for (int y = 0; y < 101; ++y) {
                hits += image.density(x, y) > 0 ? 1 : 0;
            }
            QVERIFY(hits > 0);
        }
        QVERIFY(picture.pixelColor(64, 25).red() > 200);
    }

    void a_steep_edge_has_no_gap()
    {
        EyePlot eye(QStringLiteral("I"));
        eye.resize({20, 200});
        eye.addBlock(alternating(0.9));
        QImage picture = black({20, 200});
        eye.paint(picture);
        for (int y = 15; y < 185; ++y) {
            int hits = 0;
            for (int x = 0; x < 20; ++x) {
                hits += eye.image().density(x, y) > 0 ? 1 : 0;
            }
            QVERIFY2(hits > 0, qPrintable(QString::number(y)));
        }
    }

    void blocks_are_not_drawn_before_they_are_painted()
    {
        EyePlot eye(QStringLiteral("I"));
        eye.resize({100, 100});
        eye.addBlock(alternating(0.5));
        for (int x = 0; x < 100; ++x) {
            for (int y = 0; y < 100; ++y) {
                QCOMPARE(eye.image().density(x, y), 0);
            }
        }
    }

    void an_old_block_fades_under_new_ones()
    {
        EyePlot eye(QStringLiteral("I"));
        eye.resize({129, 101});
        QImage picture = black({129, 101});
        eye.addBlock(alternating(0.5));
        eye.paint(picture);
        const int fresh = eye.image().density(64, 25);
        for (int block = 0; block < 6; ++block) {
            eye.addBlock(QVector<double>(256, 0.0));
            eye.paint(picture);
        }
        QVERIFY(eye.image().density(64, 25) < fresh);
        QVERIFY(eye.image().density(64, 25) > 0);
        QVERIFY(eye.image().density(64, 50) > 0);
    }

    void a_new_limit_clears_old_blocks_and_rescales()
    {
        EyePlot eye(QStringLiteral("I"));
        eye.resize({129, 101});
        QImage picture = black({129, 101});
        eye.addBlock(QVector<double>(256, 0.25));
        eye.paint(picture);
        eye.setLimit(0.5);
        QCOMPARE(eye.axes().yMax, 50.0);
        QCOMPARE(eye.axes().yMin, -50.0);
        eye.addBlock(QVector<double>(256, 0.25));
        eye.paint(picture);
        QVERIFY(eye.image().density(64, 25) > 0);
        QCOMPARE(eye.image().density(64, 37), 0);
    }

    void a_new_size_keeps_the_newest_block()
    {
        EyePlot eye(QStringLiteral("I"));
        eye.resize({129, 101});
        QImage picture = black({129, 101});
        eye.addBlock(QVector<double>(256, 0.0));
        eye.paint(picture);
        eye.resize({65, 51});
        picture = black({65, 51});
        eye.paint(picture);
        QVERIFY(eye.image().density(30, 25) > 0);
    }

    void extreme_values_and_sizes_are_tolerated()
    {
        EyePlot eye(QStringLiteral("I"));
        QVector<double> samples(256, std::numeric_limits<double>::infinity());
        samples[40] = std::numeric_limits<double>::quiet_NaN();
        samples[80] = -1e300;
        samples[120] = 1e30;
        for (const QSize size : {QSize(100, 50), QSize(1, 1), QSize(0, 0), QSize(2, 2)}) {
            eye.resize(size);
            eye.addBlock(samples);
            QImage picture = black(size);
            eye.paint(picture);
        }
        eye.setLimit(0.0);
        QCOMPARE(eye.axes().yMax, 100.0);
    }

    void axes_have_units()
    {
        EyePlot eye(QStringLiteral("I (% FS)"));
        QCOMPARE(eye.axes().xLabel, QStringLiteral("Time (symbols)"));
        QCOMPARE(eye.axes().yLabel, QStringLiteral("I (% FS)"));
        QCOMPARE(eye.axes().xMin, -1.0);
        QCOMPARE(eye.axes().xMax, 1.0);
        eye.setTimeLabel(false);
        QVERIFY(eye.axes().xLabel.isEmpty());
    }
};

QN740_TEST_MAIN(tst_EyePlot)
#include "tst_EyePlot.moc"
