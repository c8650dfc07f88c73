#include "sim/scope/SignalModel.h"
#include "sim/unit/UnitState.h"
#include "support/TestMain.h"

#include <QSignalSpy>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

using Modulation = SignalSettings::Modulation;

const char* const Frequency = "AK,Tuner CH1,freq,RF,1,R1:FREQ:,2200 2400,1,,2250.5,0,1";
const char* const Filter =
    "AK,Tuner CH1,ifbw,IF BW,2,R1:IFBW:,,0,0 0.25 MHz:1 2 MHz:2 10 MHz,2,0,1";
const char* const Modulations =
    "AK,Demod 1,mod,Modulation,2,D1:MODE:,,0,0 PCM/FM:1 BPSK:2 DQPSK:3 SOQPSK RS:4 D8PSK:5 16QAM,2,"
    "0,1";

// Returns the smallest distance of a sample from zero relative to the mean distance: 1 for an open
// eye, 0 for a closed one.
double opening(const SignalSettings& settings)
{
    SignalModel model(settings, 5);
    QVector<int> i;
    QVector<int> q;
    model.append(2000, 1, i, q);
    double worst = 1e9;
    double mean = 0.0;
    for (const int sample : i) {
        worst = std::min(worst, std::abs(static_cast<double>(sample)));
        mean += std::abs(static_cast<double>(sample)) / static_cast<double>(i.size());
    }
    return worst / mean;
}

} // namespace

class tst_UnitState : public QObject
{
    Q_OBJECT

private slots:
    void both_sides_can_set_the_mode_of_a_scope()
    {
        UnitState unit;
        QSignalSpy changed(&unit, &UnitState::scopeModeChanged);
        QVERIFY(!unit.isScopeOn());
        unit.takeCommand(u"D2:DSDM:1"_s);
        QCOMPARE(changed.takeFirst(), (QVariantList{2, 1}));
        QVERIFY(unit.isScopeOn());
        unit.takeMessage(u"SM,2,3"_s);
        QCOMPARE(unit.scopeMode(2), 3);
        unit.takeCommand(u"D2:DSDM:0"_s);
        QCOMPARE(unit.scopeMode(2), 0);
        QVERIFY(!unit.isScopeOn());
        unit.takeCommand(u"D1 D2 D3:DSDM:2"_s);
        for (int demodulator = 1; demodulator <= 3; ++demodulator) {
            QCOMPARE(unit.scopeMode(demodulator), 2);
        }
    }

    void an_invalid_mode_changes_nothing_data()
    {
        QTest::addColumn<QString>("body");
        for (const char* body : {"D2:DSDM:", "D2:DSDM:x", "D2:DSDM:4", "D2:DSDM:-1", "D2:DSDM:1.5",
                 "D2:NFFT:2", "D4:DSDM:2", "D0:DSDM:2", "SM,2,4", "SM,2,-1", "SM,0,2", "SM,4,2",
                 "SM,2", "SM", "SM,2,x", ""}) {
            QTest::addRow("%s", body) << QString::fromUtf8(body);
        }
    }
    void an_invalid_mode_changes_nothing()
    {
        QFETCH(QString, body);
        UnitState unit;
        unit.setScopeMode(2, 1);
        const QSignalSpy changed(&unit, &UnitState::scopeModeChanged);
        unit.takeCommand(body);
        unit.takeMessage(body);
        QCOMPARE(changed.size(), 0);
        QCOMPARE(unit.scopeMode(2), 1);
    }

    void a_bit_rate_makes_the_symbols_as_fast_as_the_modulation_lets_them_be()
    {
        UnitState unit;
        unit.takeCommand(u"D1:RATE:8000000.000000"_s);
        QCOMPARE(unit.symbolRate(1), 4e6);
        SignalSettings settings;
        settings.modulation = Modulation::Qam16;
        unit.setSignal(1, settings);
        QCOMPARE(unit.symbolRate(1), 2e6);
    }

    void in_the_linked_modes_all_three_demodulators_follow()
    {
        UnitState unit;
        QSignalSpy changed(&unit, &UnitState::signalChanged);
        unit.takeCommand(u"D1 D2 D3:RATE:4000000"_s);
        QCOMPARE(changed.size(), 3);
        for (int demodulator = 1; demodulator <= 3; ++demodulator) {
            QCOMPARE(unit.symbolRate(demodulator), 2e6);
        }
        unit.takeCommand(u"R1 R2:FREQ:2251"_s);
        QCOMPARE(unit.frequency(1), 2251.0);
        QCOMPARE(unit.frequency(2), 2251.0);
    }

    void ten_times_the_bit_rate_is_ten_decibels_more_noise()
    {
        UnitState unit;
        QCOMPARE(unit.signal(1).snr, SignalSettings().snr);
        unit.takeCommand(u"D1:RATE:500000"_s);
        QVERIFY(std::abs(unit.signal(1).snr - SignalSettings().snr - 10.0) < 0.01);
        unit.takeCommand(u"D1:RATE:50000000"_s);
        QVERIFY(std::abs(unit.signal(1).snr - SignalSettings().snr + 10.0) < 0.01);
        unit.takeCommand(u"D1:RATE:1e-30"_s);
        QCOMPARE(unit.signal(1).snr, 100.0);
    }

    void a_higher_bit_rate_closes_the_eye_and_a_lower_one_opens_it()
    {
        UnitState unit;
        QString fault;
        unit.setSignal(1, SignalSettings::fromText(u"qpsk:snr=25"_s, fault));
        const double first = opening(unit.signal(1));
        unit.takeCommand(u"D1:RATE:500000"_s);
        const double slow = opening(unit.signal(1));
        unit.takeCommand(u"D1:RATE:40000000"_s);
        const double fast = opening(unit.signal(1));
        const QByteArray all = QByteArray::number(slow) + ' ' + QByteArray::number(first) + ' ' +
            QByteArray::number(fast);
        QVERIFY2(slow > first + 0.05 && fast < 0.3 * first, all);
    }

    void a_narrow_filter_closes_the_eye_without_any_noise()
    {
        UnitState unit;
        QString fault;
        unit.setSignal(1, SignalSettings::fromText(u"qpsk:snr=100"_s, fault));
        unit.takeMessage(QString::fromUtf8(Filter));
        QCOMPARE(unit.signal(1).band, 4.0); // 10 MHz at 2.5 million symbols per second
        const double wide = opening(unit.signal(1));
        unit.takeCommand(u"R1:IFBW:1"_s);
        QCOMPARE(unit.signal(1).band, 0.8);
        const double narrow = opening(unit.signal(1));
        QVERIFY2(wide > 0.9 && narrow < 0.5 * wide, QByteArray::number(narrow));
        QCOMPARE(unit.signal(2).band, 16.0); // the other tuner's filter is unchanged
    }

    void a_modulation_that_the_model_has_is_taken_data()
    {
        QTest::addColumn<QString>("choice");
        QTest::addColumn<int>("modulation");
        QTest::newRow("bpsk") << "1" << int(Modulation::Bpsk);
        QTest::newRow("differential qpsk") << "2" << int(Modulation::Qpsk);
        QTest::newRow("offset qpsk with a code") << "3" << int(Modulation::Oqpsk);
        QTest::newRow("differential 8psk") << "4" << int(Modulation::Psk8);
        QTest::newRow("16qam") << "5" << int(Modulation::Qam16);
        QTest::newRow("one that it has not") << "0" << int(Modulation::Qam16);
        QTest::newRow("no choice") << "99" << int(Modulation::Qam16);
    }
    void a_modulation_that_the_model_has_is_taken()
    {
        QFETCH(QString, choice);
        QFETCH(int, modulation);
        UnitState unit;
        SignalSettings settings;
        settings.modulation = Modulation::Qam16;
        unit.setSignal(1, settings);
        unit.takeMessage(QString::fromUtf8(Modulations));
        QVERIFY(unit.signal(1).modulation == Modulation::Qam16); // until the operator chooses
        unit.takeCommand(u"D1:MODE:"_s + choice);
        QCOMPARE(int(unit.signal(1).modulation), modulation);
    }

    void the_modulation_of_all_is_chosen_by_each_one_s_own_list()
    {
        UnitState unit;
        unit.takeMessage(QString::fromUtf8(Modulations));
        unit.takeMessage(u"AK,Demod 2,mod,Modulation,2,D2:MODE:,,0,1 8PSK,2,0,1"_s);
        unit.takeCommand(u"D1 D2 D3:MODE:1"_s);
        QVERIFY(unit.signal(1).modulation == Modulation::Bpsk);
        QVERIFY(unit.signal(2).modulation == Modulation::Psk8);
        QVERIFY(unit.signal(3).modulation == Modulation::Qpsk);
    }

    void the_roll_off_is_taken_and_kept_in_its_range()
    {
        UnitState unit;
        unit.takeCommand(u"D1:ROLL:0.500000"_s);
        QCOMPARE(unit.signal(1).rolloff, 0.5);
        unit.takeCommand(u"D1:ROLL:0.001"_s);
        QCOMPARE(unit.signal(1).rolloff, 0.05);
        unit.takeCommand(u"D1:ROLL:7"_s);
        QCOMPARE(unit.signal(1).rolloff, 1.0);
    }

    void a_changed_frequency_moves_the_spectrum_and_is_sent_to_the_panel()
    {
        UnitState unit;
        QSignalSpy tells(&unit, &UnitState::tells);
        unit.takeMessage(QString::fromUtf8(Frequency));
        QCOMPARE(unit.shift(1), 0.0);
        QCOMPARE(tells.size(), 0);
        unit.takeCommand(u"R1:FREQ:2252.000000"_s);
        QCOMPARE(unit.shift(1), -1.5); // the transmitter stays at 2250.5 MHz
        QCOMPARE(unit.shift(3), -1.5);
        QCOMPARE(unit.shift(2), 0.0);
        QCOMPARE(tells.takeFirst(), QVariantList{u"SF,0,2252"_s});
        QCOMPARE(tells.takeFirst(), QVariantList{u"SF,2,2252"_s});
        unit.takeMessage(u"CV,Tuner CH1,freq,2252.000000,0"_s); // the unit's own confirmation
        QCOMPARE(tells.size(), 0);
        unit.takeMessage(u"CV,Tuner CH1,freq,2250.6,0"_s); // the unit changes it
        QCOMPARE(tells.takeFirst(), QVariantList{u"SF,0,2250.6"_s});
        unit.takeCommand(u"R2:FREQ:1485.4"_s);
        QCOMPARE(tells.takeLast(), QVariantList{u"SF,1,1485.4"_s});
        QVERIFY(std::abs(unit.shift(2) - 0.1) < 1e-9);
    }

    void both_tuners_receive_the_same_transmitter_on_the_same_frequency()
    {
        UnitState unit;
        QVERIFY(unit.isReceiving(2));
        unit.takeCommand(u"R1 R2:FREQ:2250.5"_s);
        QCOMPARE(unit.shift(1), 0.0);
        QCOMPARE(unit.shift(2), 0.0);
        unit.takeCommand(u"R2:FREQ:1700"_s);
        QVERIFY(!unit.isReceiving(2));
        QVERIFY(unit.isReceiving(1));
    }

    void a_detuned_signal_rotates_and_far_off_there_is_only_noise()
    {
        UnitState unit;
        unit.takeCommand(u"R1:FREQ:2250.51"_s); // 10 kHz off: the carrier loop follows
        QCOMPARE(unit.signal(1).offset, 0.0);
        unit.takeCommand(u"R1:FREQ:2250.75"_s);
        QVERIFY(std::abs(unit.signal(1).offset + 0.1) < 1e-9);
        QCOMPARE(unit.signal(1).snr, SignalSettings().snr);
        unit.takeCommand(u"R1:FREQ:2260"_s);
        QCOMPARE(unit.signal(1).snr, -20.0);
        QVERIFY(opening(unit.signal(1)) < 0.05);
        QVector<int> i;
        QVector<int> q;
        SignalModel(unit.signal(1), 3).append(500, 1, i, q);
        QVERIFY2(*std::max_element(i.begin(), i.end()) > 3000, "nothing is there at all");
    }

    void the_initial_values_of_keys_count_once()
    {
        UnitState unit;
        const QSignalSpy tells(&unit, &UnitState::tells);
        unit.takeMessage(u"AK,T,f,RF,1,R1:FREQ:,2200 2400,1,,2300,0,1"_s);
        QCOMPARE(unit.frequency(1), 2300.0);
        unit.takeCommand(u"R1:FREQ:2301"_s);
        unit.takeMessage(u"AK,T,f,RF new,1,R1:FREQ:,2200 2400,1,,2300,0,1"_s); // another label
        QCOMPARE(unit.frequency(1), 2301.0);
        unit.restart();
        unit.takeMessage(u"AK,T,f,RF,1,R1:FREQ:,2200 2400,1,,2300,0,1"_s);
        QCOMPARE(unit.frequency(1), 2300.0);
        QCOMPARE(tells.size(), 2); // only the operator's change, for both charts
    }

    void after_a_restart_the_first_modulation_is_back()
    {
        UnitState unit;
        unit.takeMessage(QString::fromUtf8(Modulations));
        unit.takeCommand(u"D1:MODE:5"_s);
        QVERIFY(unit.signal(1).modulation == Modulation::Qam16);
        unit.takeMessage(u"CLEAR"_s);
        QVERIFY(unit.signal(1).modulation == Modulation::Qpsk);
    }

    void nonsense_changes_nothing_data()
    {
        QTest::addColumn<QString>("body");
        for (const char* body : {"", ":", "::", "D1", "D1:RATE", "D1:RATE:", "D1:RATE:x",
                 "D1:RATE:nan", "D1:RATE:inf", "D1:RATE:0", "D1:RATE:-5", "D9:RATE:5",
                 "R1:FREQ:", "R1:FREQ:-1", "R1:FREQ:nan", "R3:FREQ:5", "R1:IFBW:77", "D1:ROLL:x",
                 "AK,Menu", "AK,,,,,,,,,,,", "CV", "CV,a,b"}) {
            QTest::addRow("%s", body) << QString::fromUtf8(body);
        }
    }
    void nonsense_changes_nothing()
    {
        QFETCH(QString, body);
        UnitState unit;
        const UnitState before;
        unit.takeMessage(body);
        unit.takeCommand(body);
        for (int demodulator = 1; demodulator <= 3; ++demodulator) {
            QCOMPARE(unit.symbolRate(demodulator), before.symbolRate(demodulator));
            QCOMPARE(unit.shift(demodulator), before.shift(demodulator));
            QCOMPARE(unit.signal(demodulator).band, before.signal(demodulator).band);
        }
    }
};

QN740_TEST_MAIN(tst_UnitState)
#include "tst_UnitState.moc"
