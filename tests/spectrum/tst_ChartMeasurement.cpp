// How the measurements of a chart read, and the widths that an operator may choose.
#include "spectrum/ChartMeasurement.h"

#include "support/TestMain.h"

#include <cmath>

using namespace Qt::StringLiterals;

using chartMeasurement::Choice;
using chartMeasurement::Kind;

namespace {

constexpr int Points = 1000;
constexpr double Width = 20.0;   // MHz
constexpr double Nominal = 18.0; // MHz
constexpr int Decimals = 3;

// A carrier of 200 bins, 0 dB in each, over noise.
MeasuredSpectrum carrier(double noise, int shift = 0)
{
    MeasuredSpectrum spectrum;
    spectrum.powers.fill(static_cast<float>(std::pow(10.0, noise / 10.0)), Points);
    for (int i = 400 + shift; i < 600 + shift; ++i) {
        spectrum.powers[i] = 1.0F;
    }
    spectrum.centre = 70.0;
    spectrum.width = Width;
    spectrum.spectra = 64.0;
    return spectrum;
}

chartMeasurement::Reading measured(Kind kind, const MeasuredSpectrum& spectrum, double width = 0.0)
{
    return chartMeasurement::measure({kind, width}, spectrum, Nominal, Decimals);
}

} // namespace

class tst_ChartMeasurement : public QObject
{
    Q_OBJECT

private slots:
    void every_measurement_has_a_name_a_unit_and_details_data()
    {
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("details");
        QTest::newRow("channel power")
            << Kind::ChannelPower << u"Channel power"_s << u"-?\\d+\\.\\d dB"_s
            << u"in \\d\\.\\d{3} MHz \\(auto\\) at 69\\.99\\d MHz"_s;
        QTest::newRow("occupied bandwidth")
            << Kind::OccupiedBandwidth << u"Occupied BW (99 %)"_s << u"\\d\\.\\d{3} MHz"_s
            << u"\\d+\\.\\d{3} to \\d+\\.\\d{3} MHz"_s;
        QTest::newRow("half power") << Kind::HalfPowerWidth << u"-3 dB BW"_s << u"3\\.98\\d MHz"_s
                                    << u"67\\.\\d{3} to 71\\.\\d{3} MHz"_s;
        QTest::newRow("carrier to noise") << Kind::CarrierToNoise << u"C/N"_s << u"\\d+\\.\\d dB"_s
                                          << u"C/N0 \\d+\\.\\d dBHz, in \\d\\.\\d{3} MHz"_s;
        QTest::newRow("frequency error") << Kind::FrequencyError << u"Frequency error"_s
                                         << u"-10 kHz"_s << u"carrier at 69\\.990 MHz"_s;
    }

    void every_measurement_has_a_name_a_unit_and_details()
    {
        QFETCH(Kind, kind);
        QFETCH(QString, name);
        QFETCH(QString, value);
        QFETCH(QString, details);
        const auto reading = measured(kind, carrier(-60.0));
        QCOMPARE(reading.name, name);
        const auto matches = [](const QString& pattern, const QString& text) {
            return QRegularExpression(QRegularExpression::anchoredPattern(pattern))
                .match(text)
                .hasMatch();
        };
        QVERIFY2(matches(value, reading.value), qPrintable(reading.value));
        QVERIFY2(matches(details, reading.details), qPrintable(reading.details));
    }

    void a_frequency_error_has_its_sign_and_a_fitting_unit_data()
    {
        QTest::addColumn<int>("shift"); // in bins of 20 kHz; the carrier lies half a bin low
        QTest::addColumn<QString>("value");
        QTest::newRow("above") << 10 << u"+190 kHz"_s;
        QTest::newRow("below") << -10 << u"-210 kHz"_s;
        QTest::newRow("far above") << 100 << u"+1.990 MHz"_s;
        QTest::newRow("far below") << -100 << u"-2.010 MHz"_s;
    }

    void a_frequency_error_has_its_sign_and_a_fitting_unit()
    {
        QFETCH(int, shift);
        QFETCH(QString, value);
        QCOMPARE(measured(Kind::FrequencyError, carrier(-60.0, shift)).value, value);
    }

    void nothing_is_said_when_nothing_is_measured()
    {
        const auto reading = measured(Kind::None, carrier(-60.0));
        QVERIFY(reading.name.isEmpty() && reading.value.isEmpty() && !reading.hasBand);
    }

    void a_number_that_cannot_be_measured_is_three_dashes_with_a_reason_data()
    {
        QTest::addColumn<Kind>("kind");
        QTest::newRow("occupied bandwidth") << Kind::OccupiedBandwidth;
        QTest::newRow("half power") << Kind::HalfPowerWidth;
        QTest::newRow("carrier to noise") << Kind::CarrierToNoise;
        QTest::newRow("frequency error") << Kind::FrequencyError;
    }

    void a_number_that_cannot_be_measured_is_three_dashes_with_a_reason()
    {
        QFETCH(Kind, kind);
        const auto reading = measured(kind, carrier(0.0)); // no carrier
        QCOMPARE(reading.value, u"---"_s);
        QVERIFY(!reading.details.isEmpty() && !reading.hasBand);
        QCOMPARE(measured(kind, {}).value, u"---"_s);
    }

    void an_automatic_channel_is_the_carrier_or_else_the_span()
    {
        const auto clear = measured(Kind::ChannelPower, carrier(-60.0));
        QVERIFY(std::abs(clear.high - clear.low - 4.0) < 0.1);
        const auto noisy = measured(Kind::ChannelPower, carrier(-20.0)); // -26 dB lies in the noise
        QCOMPARE(noisy.low, 61.0);
        QCOMPARE(noisy.high, 79.0);
    }

    void a_chosen_channel_lies_around_the_centre()
    {
        const auto reading = measured(Kind::ChannelPower, carrier(-60.0, 50), 2.0);
        QCOMPARE(reading.low, 69.0);
        QCOMPARE(reading.high, 71.0);
        QCOMPARE(reading.details, u"in 2.000 MHz at 70.000 MHz"_s);
    }

    void a_channel_wider_than_the_spectrum_is_not_measured()
    {
        QCOMPARE(measured(Kind::ChannelPower, carrier(-60.0), 21.0).value, u"---"_s);
    }

    void widths_are_stepped_data()
    {
        QTest::addColumn<double>("from");
        QTest::addColumn<bool>("wider");
        QTest::addColumn<double>("to");
        const double widest = 21.447264;
        QTest::newRow("wider") << 1.0 << true << 1.5;
        QTest::newRow("narrower") << 1.0 << false << 0.75;
        QTest::newRow("from between, wider") << 1.2 << true << 1.5;
        QTest::newRow("from between, narrower") << 1.2 << false << 1.0;
        QTest::newRow("over a decade") << 7.5 << true << 10.0;
        QTest::newRow("to the widest") << 20.0 << true << widest;
        QTest::newRow("at the widest") << widest << true << widest;
        QTest::newRow("from the widest") << widest << false << 20.0;
        QTest::newRow("to the narrowest") << 0.015 << false << 0.01;
        QTest::newRow("at the narrowest") << 0.01 << false << 0.01;
        QTest::newRow("of a wider span before") << 40.0 << false << widest;
    }

    void widths_are_stepped()
    {
        QFETCH(double, from);
        QFETCH(bool, wider);
        QFETCH(double, to);
        const double next = chartMeasurement::nextBandwidth(from, wider, 21.447264);
        QVERIFY2(std::abs(next - to) < 1e-9, qPrintable(QString::number(next)));
    }
};

QN740_TEST_MAIN(tst_ChartMeasurement)
#include "tst_ChartMeasurement.moc"
