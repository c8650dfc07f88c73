#pragma once

#include "sim/scope/SignalModel.h"

#include <QHash>
#include <QObject>
#include <QString>

#include <array>
#include <optional>

/// The settings of the unit, as far as its scope ports and spectral cards depend on them.
///
/// Two transmitters are on the air, on the initial frequencies of the two tuners. What they send
/// follows the bit rate and the modulation of the demodulators. Demodulator 1 is on the first
/// tuner, 2 on the second, and 3 (the combiner's) on the first again.
///
/// In come the panel's commands, addressed to one ("D1:RATE:5000000") or to several ("D1 D2
/// D3:RATE:5000000", "R1 R2:FREQ:2250.5"), and the messages to the panel, which carry the initial
/// values of the keys, values that the unit itself changes, and the modes of the scopes. Every
/// change goes out by a signal.
///
///     Dn:RATE:bps   symbol rate: the carrier's width; noise per symbol (the transmitter's power
///                   stays the same), interference between symbols when the tuner's filter is too
///                   narrow
///     Dn:MODE:x     modulation, if the text of the choice names one that SignalModel has
///     Dn:ROLL:0.35  roll-off of the shaping
///     Dn:DSDM:m     what the scope port sends
///     Rn:FREQ:MHz   where the transmitter is on the chart; far off, the eye closes
///     Rn:IFBW:x     the tuner's filter, if the text of the choice begins with a number of MHz
class UnitState : public QObject
{
    Q_OBJECT

public:
    static constexpr int Demodulators = 3; ///< numbered from 1
    static constexpr int Receivers = 2;    ///< numbered from 1

    /// A unit as it is switched on.
    explicit UnitState(QObject* parent = nullptr);

    /// Sets the signal at the initial bit rate. \param demodulator 1 to 3, here and below
    void setSignal(int demodulator, const SignalSettings& settings);
    /// Sets the mode of a scope port. \param mode 0 to 3; other numbers change nothing
    void setScopeMode(int demodulator, int mode);

    /// Takes the body of a message from the panel.
    void takeCommand(const QString& body);
    /// Takes the body of a message to the panel.
    void takeMessage(const QString& body);
    /// Forgets the initial values: a panel has opened the line, or its menus were cleared, and the
    /// values of the next keys count.
    void restart();

    /// \return the mode of a scope port, 0 to 3
    int scopeMode(int demodulator) const { return at(demodulator).scopeMode; }
    /// Whether any scope port sends.
    bool isScopeOn() const;
    /// \return the signal with all effects of the settings
    SignalSettings signal(int demodulator) const;
    /// \return the symbols per second
    double symbolRate(int demodulator) const;
    /// \return by how many MHz the transmitter is above the middle of the tuner's band
    double shift(int demodulator) const;
    /// \return the frequency of a tuner in MHz. \param receiver 1 or 2
    double frequency(int receiver) const { return tuner(receiver).frequency; }
    /// Whether a transmitter is in the band of the tuner's filter. \param receiver 1 or 2
    bool isReceiving(int receiver) const;

signals:
    /// Emitted when the mode of a scope port has changed.
    void scopeModeChanged(int demodulator, int mode);
    /// Emitted when signal(), symbolRate() or shift() of the demodulator has changed.
    void signalChanged(int demodulator);
    /// Emitted when the unit has to send a message to the panel: "SF,0,2251.5".
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
