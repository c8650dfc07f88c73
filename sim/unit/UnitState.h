#pragma once

#include "sim/scope/SignalModel.h"

#include <QHash>
#include <QObject>
#include <QString>

#include <array>
#include <optional>

// What the unit is set to, as far as its scope ports and spectral cards show it.
//
// Two transmitters are on the air, on the frequencies that the two tuners begin with, and what they
// send follows the bit rate and the modulation that the demodulators are set to. Demodulator 1 has
// the first tuner, 2 the second, 3 (the combiner's) again the first.
//
// In come the panel's commands, addressed to one ("D1:RATE:5000000") or to several ("D1 D2
// D3:RATE:5000000", "R1 R2:FREQ:2250.5"), and what is sent to the panel: the values that the keys
// begin with, values that the unit itself changes, modes of the scopes. Out go signals.
//
//     Dn:RATE:bps   symbol rate: the carrier's width; noise per symbol (the transmitter's power
//                   stays the same), interference between symbols when the tuner's filter gets too
//                   narrow
//     Dn:MODE:x     modulation, if the text of the choice names one that SignalModel has
//     Dn:ROLL:0.35  roll-off of the shaping
//     Dn:DSDM:m     what the scope port sends
//     Rn:FREQ:MHz   where the transmitter stands on the chart; far off, the eye closes
//     Rn:IFBW:x     the tuner's filter, if the text of the choice begins with a number of MHz
class UnitState : public QObject
{
    Q_OBJECT

public:
    static constexpr int Demodulators = 3;
    static constexpr int Receivers = 2;

    explicit UnitState(QObject* parent = nullptr);

    // demodulator: 1 to 3 here and below. The signal at the bit rate that it begins with.
    void setSignal(int demodulator, const SignalSettings& settings);
    // mode: 0 to 3, others change nothing.
    void setScopeMode(int demodulator, int mode);

    // In: the body of a message from the panel.
    void takeCommand(const QString& body);
    // In: the body of a message to the panel.
    void takeMessage(const QString& body);
    // A panel has come anew, or its menus are gone: what the keys then begin with counts again.
    void restart();

    int scopeMode(int demodulator) const { return at(demodulator).scopeMode; }
    // Whether any scope port sends.
    bool isScopeOn() const;
    // Out: the signal with all that the settings make of it.
    SignalSettings signal(int demodulator) const;
    double symbolRate(int demodulator) const; // a second
    // By how many MHz the transmitter stands above the middle of the tuner's band.
    double shift(int demodulator) const;
    // receiver: 1 or 2. In MHz.
    double frequency(int receiver) const { return tuner(receiver).frequency; }
    // Whether a transmitter stands in the band of the tuner's filter.
    bool isReceiving(int receiver) const;

signals:
    void scopeModeChanged(int demodulator, int mode);
    // signal(), symbolRate() or shift() of the demodulator has changed.
    void signalChanged(int demodulator);
    // The unit has to tell the panel this: "SF,0,2251.5".
    void tells(QString body);

private:
    struct Demodulator
    {
        SignalSettings settings;
        std::optional<SignalSettings::Modulation> chosen;
        std::optional<double> rollOff;
        double bitRate = 0.0;
        double firstBitRate = 0.0;
        int scopeMode = 0;
        int receiver = 1;
    };
    struct Tuner
    {
        double frequency = 0.0;   // MHz
        double transmitter = 0.0; // MHz
        double bandwidth = 0.0;   // MHz
    };
    struct KeyOf
    {
        QString command;
        QString options; // "value text:value text"
    };

    const Demodulator& at(int demodulator) const;
    const Tuner& tuner(int receiver) const;
    SignalSettings::Modulation modulation(const Demodulator& one) const;
    double symbolRate(const Demodulator& one, double bitRate) const;
    double shiftOf(const Tuner& one) const;
    void takeKey(const QStringList& fields);
    void set(const QString& command, const QString& value, bool isFirst);
    void setDemodulator(int demodulator, const QString& command, const QString& value, bool first);
    void setTuner(int receiver, const QString& command, const QString& value, bool first);
    void tunerChanged(int receiver, bool tellFrequency);
    QString choice(const QString& command, const QString& value) const;

    std::array<Demodulator, Demodulators> m_demodulators;
    std::array<Tuner, Receivers> m_tuners;
    QHash<QString, KeyOf> m_keys; // by "menu,key"
};
