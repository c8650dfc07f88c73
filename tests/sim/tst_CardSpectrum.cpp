#include "sim/CardSpectrum.h"
#include "spectrum/SpanTable.h"
#include "support/TestMain.h"

namespace {
constexpr int Points = 1024;

double level(char byte)
{
    return static_cast<quint8>(byte) * 0.5 - 120.0;
}

// how many points lie above this level
int above(const QByteArray& points, double dB)
{
    return static_cast<int>(std::count_if(
        points.begin(), points.end(), [dB](char point) { return level(point) > dB; }));
}
} // namespace

class tst_CardSpectrum : public QObject
{
    Q_OBJECT

private slots:
    void the_same_seed_gives_the_same_spectra()
    {
        CardSpectrum one(7);
        CardSpectrum same(7);
        CardSpectrum other(8);
        const QByteArray points = one.points(0, Points, 1.0);
        QCOMPARE(points, same.points(0, Points, 1.0));
        QVERIFY(points != other.points(0, Points, 1.0));
        QVERIFY(points != one.points(0, Points, 1.0)); // and no two are alike
    }

    void there_is_a_noise_floor_with_carriers_on_it()
    {
        CardSpectrum spectrum;
        spectrum.setSpan(1, 9);
        const QByteArray points = spectrum.points(1, Points, 0.0);
        QCOMPARE(points.size(), Points);
        const auto peak = std::max_element(points.begin(), points.end(),
            [](char a, char b) { return static_cast<quint8>(a) < static_cast<quint8>(b); });
        QVERIFY(level(*peak) > -40.0);
        QVERIFY(std::abs(peak - points.begin() - Points / 2) < Points / 20);
        QVERIFY(above(points, -70.0) < Points / 3);
    }

    void a_wider_span_shows_the_carrier_narrower()
    {
        CardSpectrum spectrum;
        int widest = Points + 1;
        for (const int span : {1, 4, 9}) {
            QVERIFY(spectrum.setSpan(0, span));
            const int carrier = above(spectrum.points(0, Points, 0.0), -45.0);
            QVERIFY(carrier < widest && carrier > 0);
            widest = carrier;
        }
    }

    void a_higher_bit_rate_makes_the_carrier_wider()
    {
        CardSpectrum spectrum;
        spectrum.setSpan(1, 9);
        spectrum.takeCommand("D2:RATE:1000000");
        const int narrow = above(spectrum.points(1, Points, 0.0), -45.0);
        spectrum.takeCommand("D2:RATE:10000000.000000");
        const int wide = above(spectrum.points(1, Points, 0.0), -45.0);
        QVERIFY2(wide > 4 * narrow, qPrintable(QString("%1 %2").arg(narrow).arg(wide)));
    }

    void carriers_drift()
    {
        CardSpectrum spectrum;
        spectrum.takeCommand("D1:RATE:1000");
        const double width = spanTable().first().spanMHz;
        const double offset = -0.31 * width;
        const double bin = width / Points;
        QVERIFY(std::abs(spectrum.level(0, offset, bin, 0.0) -
                    spectrum.level(0, offset, bin, 5.0)) > 3.0);
    }

    void demodulators_are_told_their_span_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QVector<int>>("spans");
        QTest::newRow("one") << "D2:NFFT:11" << QVector<int>{0, 3, 0};
        QTest::newRow("all") << "D1 D2 D3:NFFT:10" << QVector<int>{6, 6, 6};
        QTest::newRow("unknown parameter") << "D1:NFFT:99" << QVector<int>{0, 0, 0};
        QTest::newRow("no demodulator") << "D4:NFFT:10" << QVector<int>{0, 0, 0};
        QTest::newRow("another command") << "D1:MODE:10" << QVector<int>{0, 0, 0};
        QTest::newRow("a rate that is none") << "D1:RATE:fast" << QVector<int>{0, 0, 0};
        QTest::newRow("empty") << "" << QVector<int>{0, 0, 0};
    }

    void demodulators_are_told_their_span()
    {
        QFETCH(QString, command);
        QFETCH(QVector<int>, spans);
        CardSpectrum spectrum;
        spectrum.takeCommand(command);
        for (int channel = 0; channel < 3; ++channel) {
            QCOMPARE(spectrum.span(channel), spans.at(channel));
        }
    }

    void a_parameter_that_the_span_has_already_changes_nothing()
    {
        CardSpectrum spectrum;
        for (int span = 0; span < spanTable().size(); ++span) {
            spectrum.setSpan(1, span);
            spectrum.takeCommand(
                QLatin1String("D2:NFFT:") + QLatin1String(spanTable().at(span).fftParam));
            QCOMPARE(spectrum.span(1), span);
        }
        spectrum.takeCommand("D2:NFFT:11");
        QCOMPARE(spectrum.span(1), 3);
    }

    void the_unit_s_own_choice_of_a_span_is_followed_data()
    {
        QTest::addColumn<QString>("message");
        QTest::addColumn<QVector<int>>("spans");
        QTest::newRow("one") << "SP,1,8" << QVector<int>{0, 8, 0};
        QTest::newRow("widest") << "SP,2,9" << QVector<int>{0, 0, 9};
        QTest::newRow("no such span") << "SP,1,10" << QVector<int>{0, 0, 0};
        QTest::newRow("no such channel") << "SP,3,5" << QVector<int>{0, 0, 0};
        QTest::newRow("negative") << "SP,-1,-1" << QVector<int>{0, 0, 0};
        QTest::newRow("no number") << "SP,1,x" << QVector<int>{0, 0, 0};
        QTest::newRow("too short") << "SP,1" << QVector<int>{0, 0, 0};
        QTest::newRow("another message") << "SF,1,8" << QVector<int>{0, 0, 0};
        QTest::newRow("empty") << "" << QVector<int>{0, 0, 0};
    }

    void the_unit_s_own_choice_of_a_span_is_followed()
    {
        QFETCH(QString, message);
        QFETCH(QVector<int>, spans);
        CardSpectrum spectrum;
        spectrum.takeUnitMessage(message);
        for (int channel = 0; channel < 3; ++channel) {
            QCOMPARE(spectrum.span(channel), spans.at(channel));
        }
    }

    void spans_and_trims_that_do_not_exist_are_refused()
    {
        CardSpectrum spectrum;
        QVERIFY(!spectrum.setSpan(3, 0) && !spectrum.setSpan(-1, 0));
        QVERIFY(!spectrum.setSpan(0, 10) && !spectrum.setSpan(0, -1));
        QVERIFY(!spectrum.setTrim(3, 0) && !spectrum.setTrim(0, 10) && !spectrum.setTrim(0, -1));
        QVERIFY(spectrum.setTrim(2, 9));
        QCOMPARE(spectrum.trim(2), 9);
    }
};

QN740_TEST_MAIN(tst_CardSpectrum)
#include "tst_CardSpectrum.moc"
