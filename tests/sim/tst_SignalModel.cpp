#include "sim/scope/SignalModel.h"
#include "support/TestMain.h"
#include "wire/IqBlock.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

using Modulation = SignalSettings::Modulation;

// Returns the power of the error vector relative to the power of the symbols, in dB. The error is
// the distance to the nearest point of the constellation.
double errorVectorDb(const SignalSettings& settings, int symbols)
{
    SignalModel model(settings, 42);
    QVector<int> i;
    QVector<int> q;
    model.append(symbols, 1, i, q);
    const auto alphabet = SignalModel::alphabet(settings.modulation);
    double error = 0.0;
    double power = 0.0;
    for (int k = 0; k < symbols; ++k) {
        const std::complex<double> sample =
            std::complex<double>(i.at(k), q.at(k)) / (iqBlock::FullScale * settings.level);
        double nearest = 1e9;
        double its = 0.0;
        for (const auto& point : alphabet) {
            if (std::norm(sample - point) < nearest) {
                nearest = std::norm(sample - point);
                its = std::norm(point);
            }
        }
        error += nearest;
        power += its;
    }
    return 10.0 * std::log10(error / power);
}

SignalSettings settingsOf(const char* text)
{
    QString fault;
    const SignalSettings settings = SignalSettings::fromText(QLatin1String(text), fault);
    if (!fault.isEmpty()) {
        qFatal("%s", qPrintable(fault));
    }
    return settings;
}

} // namespace

class tst_SignalModel : public QObject
{
    Q_OBJECT

private slots:
    void the_noise_at_the_decision_is_what_was_asked_for_data()
    {
        QTest::addColumn<QByteArray>("signal");
        QTest::addColumn<double>("snr");
        for (const char* name : {"bpsk", "qpsk", "oqpsk", "8psk", "16qam"}) {
            QTest::addRow("%s 20 dB", name) << QByteArray(name) + ":snr=20:level=0.4" << 20.0;
            QTest::addRow("%s 30 dB", name) << QByteArray(name) + ":snr=30:level=0.4" << 30.0;
        }
    }

    void the_noise_at_the_decision_is_what_was_asked_for()
    {
        QFETCH(QByteArray, signal);
        QFETCH(double, snr);
        const double found = -errorVectorDb(settingsOf(signal.constData()), 8000);
        // A sample that is closer to a neighbouring point makes the measured error a little
        // smaller.
        QVERIFY2(std::abs(found - snr) < 0.7, qPrintable(QString::number(found)));
    }

    void without_noise_the_shaping_leaves_no_interference()
    {
        QVERIFY(errorVectorDb(settingsOf("qpsk:snr=100:level=0.4"), 2000) < -38.0);
        QVERIFY(errorVectorDb(settingsOf("16qam:snr=100:level=0.4:rolloff=0.25"), 2000) < -33.0);
    }

    void the_root_raised_cosine_filter_has_energy_one_and_is_symmetric()
    {
        for (const double rolloff : {0.2, 0.25, 0.35, 0.5, 1.0}) {
            const auto taps = SignalModel::rootRaisedCosine(rolloff);
            double energy = 0.0;
            for (size_t n = 0; n < taps.size(); ++n) {
                QVERIFY(std::isfinite(taps[n]));
                energy += taps[n] * taps[n];
                QVERIFY(std::abs(taps[n] - taps[taps.size() - 1 - n]) < 1e-12);
            }
            QVERIFY(std::abs(energy - 1.0) < 1e-12);
        }
    }

    void an_eye_block_has_its_decisions_at_every_fourth_sample()
    {
        SignalModel model(settingsOf("bpsk:snr=100:level=0.5"), 3);
        QVector<int> i;
        QVector<int> q;
        model.append(400, iqBlock::EyeSamplesPerSymbol, i, q);
        for (int k = 0; k < 400; k += iqBlock::EyeSamplesPerSymbol) {
            QVERIFY(std::abs(std::abs(i.at(k)) / 32768.0 - 0.5) < 0.02);
        }
        QVERIFY(*std::max_element(q.begin(), q.end()) < 100);
    }

    void the_q_of_oqpsk_is_half_a_symbol_late_in_the_eye()
    {
        SignalModel model(settingsOf("oqpsk:snr=100:level=0.5"), 3);
        QVector<int> i;
        QVector<int> q;
        model.append(400, iqBlock::EyeSamplesPerSymbol, i, q);
        const double level = 0.5 / std::sqrt(2.0);
        for (int k = 0; k + 2 < 400; k += iqBlock::EyeSamplesPerSymbol) {
            QVERIFY(std::abs(std::abs(i.at(k)) / 32768.0 - level) < 0.02);
            QVERIFY(std::abs(std::abs(q.at(k + 2)) / 32768.0 - level) < 0.02);
        }
    }

    void clipping_cuts_at_its_magnitude_and_never_leaves_the_line_s_range()
    {
        SignalModel model(settingsOf("16qam:level=0.5:clip=0.3"), 1);
        SignalModel loud(settingsOf("16qam:level=1:snr=0"), 1);
        QVector<int> i;
        QVector<int> q;
        model.append(2000, 4, i, q);
        QVERIFY(*std::max_element(i.begin(), i.end()) == std::lround(0.3 * 32768));
        QVERIFY(*std::min_element(q.begin(), q.end()) == -std::lround(0.3 * 32768));
        i.clear();
        q.clear();
        loud.append(2000, 4, i, q);
        QCOMPARE(*std::max_element(i.begin(), i.end()), 32767);
        QCOMPARE(*std::min_element(i.begin(), i.end()), -32768);
    }

    void imbalance_and_offset_and_phase_noise_show()
    {
        QVector<int> i;
        QVector<int> q;
        SignalModel(settingsOf("qpsk:snr=60:imbalance=6"), 1).append(200, 1, i, q);
        double ratio = 0.0;
        for (int k = 0; k < 200; ++k) {
            ratio += std::abs(i.at(k) / static_cast<double>(q.at(k))) / 200;
        }
        QVERIFY(std::abs(20 * std::log10(ratio) - 6.0) < 0.2);

        i.clear();
        q.clear();
        SignalModel(settingsOf("bpsk:snr=60:offset=0.01"), 1).append(100, 1, i, q);
        // After a quarter of a turn the signal has moved from I to Q.
        QVERIFY(std::abs(q.at(25)) > 0.9 * 0.5 * 32768);

        QVERIFY(errorVectorDb(settingsOf("qpsk:snr=60:phase=5:level=0.4"), 4000) > -22.5);
        QVERIFY(errorVectorDb(settingsOf("qpsk:snr=60:phase=5:level=0.4"), 4000) < -19.5);
    }

    void i_and_q_off_their_right_angle_are_correlated_data()
    {
        QTest::addColumn<QByteArray>("signal");
        QTest::addColumn<double>("degrees");
        QTest::newRow("a right angle") << QByteArray("qpsk:snr=60") << 0.0;
        QTest::newRow("8 degrees") << QByteArray("qpsk:snr=60:skew=8") << 8.0;
        QTest::newRow("-20 degrees") << QByteArray("qpsk:snr=60:skew=-20") << -20.0;
        QTest::newRow("30 degrees, 16QAM") << QByteArray("16qam:snr=60:level=0.4:skew=30") << 30.0;
        QTest::newRow("8 degrees, and more gain of I")
            << QByteArray("qpsk:snr=60:level=0.4:imbalance=3:skew=8") << 8.0;
    }

    void i_and_q_off_their_right_angle_are_correlated()
    {
        QFETCH(QByteArray, signal);
        QFETCH(double, degrees);
        QVector<int> i;
        QVector<int> q;
        SignalModel(settingsOf(signal.constData()), 5).append(20000, 1, i, q);
        double ii = 0.0;
        double qq = 0.0;
        double iq = 0.0;
        for (int k = 0; k < i.size(); ++k) {
            ii += static_cast<double>(i.at(k)) * i.at(k);
            qq += static_cast<double>(q.at(k)) * q.at(k);
            iq += static_cast<double>(i.at(k)) * q.at(k);
        }
        const double found = iq / std::sqrt(ii * qq);
        const double expected = std::sin(degrees * 3.14159265358979 / 180.0);
        QVERIFY2(std::abs(found - expected) < 0.03, qPrintable(QString::number(found)));
    }

    void the_roll_off_is_what_was_asked_for_data()
    {
        QTest::addColumn<double>("rollOff");
        for (const double rollOff : {0.2, 0.35, 0.5, 0.75, 1.0}) {
            QTest::addRow("%g", rollOff) << rollOff;
        }
    }

    // The two filters together are a raised cosine. The integral of its square over the frequency
    // is 1 - rollOff / 4, which is the mean power of all samples relative to that at the decisions.
    void the_roll_off_is_what_was_asked_for()
    {
        QFETCH(double, rollOff);
        SignalSettings settings = settingsOf("qpsk:snr=100:level=0.3");
        settings.rolloff = rollOff;
        QVector<int> i;
        QVector<int> q;
        SignalModel(settings, 9).append(80000, iqBlock::EyeSamplesPerSymbol, i, q);
        double atDecisions = 0.0;
        double atAll = 0.0;
        for (int k = 0; k < i.size(); ++k) {
            const double power = std::norm(std::complex<double>(i.at(k), q.at(k)));
            atAll += power / iqBlock::EyeSamplesPerSymbol;
            atDecisions += k % iqBlock::EyeSamplesPerSymbol == 0 ? power : 0.0;
        }
        const double found = atAll / atDecisions;
        QVERIFY2(
            std::abs(found - (1.0 - rollOff / 4.0)) < 0.012, qPrintable(QString::number(found)));
    }

    void the_origin_offset_is_the_mean_in_per_cent_of_the_level()
    {
        QVector<int> i;
        QVector<int> q;
        SignalModel(settingsOf("qpsk:snr=30:level=0.4:dci=10:dcq=-5"), 5).append(20000, 1, i, q);
        double meanI = 0.0;
        double meanQ = 0.0;
        for (int k = 0; k < i.size(); ++k) {
            meanI += i.at(k) / (0.4 * iqBlock::FullScale) / static_cast<double>(i.size());
            meanQ += q.at(k) / (0.4 * iqBlock::FullScale) / static_cast<double>(i.size());
        }
        QVERIFY2(std::abs(meanI - 0.1) < 0.02, qPrintable(QString::number(meanI)));
        QVERIFY2(std::abs(meanQ + 0.05) < 0.02, qPrintable(QString::number(meanQ)));
    }

    void the_samples_per_symbol_are_what_was_asked_for_data()
    {
        QTest::addColumn<QString>("perSymbol");
        QTest::addColumn<int>("samples");
        QTest::newRow("2") << u"2"_s << 2;
        QTest::newRow("2.5, two symbols") << u"2.5"_s << 5;
        QTest::newRow("5.5, two symbols") << u"5.5"_s << 11;
        QTest::newRow("16") << u"16"_s << 16;
    }

    // Each block begins at a decision, and so many samples later there is another one.
    void the_samples_per_symbol_are_what_was_asked_for()
    {
        QFETCH(QString, perSymbol);
        QFETCH(int, samples);
        const QByteArray text = "bpsk:snr=100:level=0.5:sps=" + perSymbol.toLatin1();
        SignalModel model(settingsOf(text.constData()), 3);
        for (int block = 0; block < 4; ++block) {
            QVector<int> i;
            QVector<int> q;
            model.append(256, iqBlock::EyeSamplesPerSymbol, i, q);
            QCOMPARE(i.size(), 256);
            bool changes = false;
            for (int k = 0; k < 256; k += samples) {
                QVERIFY2(std::abs(std::abs(i.at(k)) / 32768.0 - 0.5) < 0.02,
                    qPrintable(QString::number(i.at(k) / 32768.0)));
                changes |= k > 0 && (i.at(k) > 0) != (i.at(k - samples) > 0);
            }
            QVERIFY(changes);
        }
    }

    void a_narrow_filter_brings_interference()
    {
        const double wide = errorVectorDb(settingsOf("qpsk:snr=100:level=0.4:band=4"), 2000);
        const double fitting = errorVectorDb(settingsOf("qpsk:snr=100:level=0.4:band=1.5"), 2000);
        const double narrow = errorVectorDb(settingsOf("qpsk:snr=100:level=0.4:band=0.8"), 2000);
        QVERIFY2(wide < -38.0 && fitting < -30.0 && narrow > -20.0,
            qPrintable(u"%1 %2 %3"_s.arg(wide).arg(fitting).arg(narrow)));
    }

    void a_filter_passes_its_band_and_stops_the_rest()
    {
        const auto taps = SignalModel::bandPass(2.0); // passes ±1/4 turn per sample
        const auto gain = [&taps](double turns) {
            std::complex<double> sum;
            for (size_t n = 0; n < taps.size(); ++n) {
                sum +=
                    taps[n] * std::polar(1.0, 6.283185307179586 * turns * static_cast<double>(n));
            }
            return 20.0 * std::log10(std::abs(sum));
        };
        QVERIFY(std::abs(gain(0.0)) < 1e-9);
        QVERIFY(std::abs(gain(0.2)) < 0.1);
        QVERIFY(std::abs(gain(0.25) + 6.0) < 0.2);
        QVERIFY(gain(0.3) < -40.0);
        QCOMPARE(SignalModel::bandPass(4.0), std::vector<double>{1.0});
    }

    void new_settings_count_from_a_decision_on()
    {
        SignalModel model(settingsOf("16qam"), 3);
        QVector<int> i;
        QVector<int> q;
        model.append(256, 4, i, q);
        model.setSettings(settingsOf("bpsk:snr=100:level=0.5"));
        i.clear();
        q.clear();
        model.append(64, 4, i, q);
        for (int k = 0; k < 64; k += 4) {
            QVERIFY(std::abs(std::abs(i.at(k)) / 32768.0 - 0.5) < 0.02);
        }
    }

    void the_same_seed_gives_the_same_samples()
    {
        QVector<int> first;
        QVector<int> second;
        QVector<int> other;
        QVector<int> q;
        SignalModel(settingsOf("qpsk"), 5).append(256, 4, first, q);
        SignalModel(settingsOf("qpsk"), 5).append(256, 4, second, q);
        SignalModel(settingsOf("qpsk"), 6).append(256, 4, other, q);
        QCOMPARE(first, second);
        QVERIFY(first != other);
    }

    void an_invalid_signal_is_reported_data()
    {
        QTest::addColumn<QString>("text");
        for (const char* text : {"", "fsk", "qpsk:", "qpsk:snr", "qpsk:snr=x", "qpsk:snr=nan",
                 "qpsk:snr=200", "qpsk:colour=3", "qpsk:=3", "qpsk:clip=0", "qpsk:sps=1.9",
                 "qpsk:sps=17", "qpsk:dci=101", "qpsk:dcq=x"}) {
            QTest::addRow("%s", text) << QString::fromLatin1(text);
        }
    }

    void an_invalid_signal_is_reported()
    {
        QFETCH(QString, text);
        QString fault;
        SignalSettings::fromText(text, fault);
        QVERIFY(!fault.isEmpty());
    }

    void settings_are_read()
    {
        const SignalSettings settings = settingsOf(
            "8PSK:snr=12.5:phase=3:offset=-0.001:imbalance=1:skew=-2:clip=0.7:level=0.6:rolloff=0.2:"
            "band=1.5:sps=5.5:dci=5:dcq=-3");
        QVERIFY(settings.modulation == Modulation::Psk8);
        QCOMPARE(settings.snr, 12.5);
        QCOMPARE(settings.phase, 3.0);
        QCOMPARE(settings.offset, -0.001);
        QCOMPARE(settings.imbalance, 1.0);
        QCOMPARE(settings.skew, -2.0);
        QCOMPARE(settings.clip, 0.7);
        QCOMPARE(settings.level, 0.6);
        QCOMPARE(settings.rolloff, 0.2);
        QCOMPARE(settings.band, 1.5);
        QCOMPARE(settings.sps, 5.5);
        QCOMPARE(settings.dci, 5.0);
        QCOMPARE(settings.dcq, -3.0);
    }
};

QN740_TEST_MAIN(tst_SignalModel)
#include "tst_SignalModel.moc"
