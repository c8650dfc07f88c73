#pragma once

#include "sim/card/CardFaults.h"
#include "sim/card/CardSpectrum.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QObject>

class PseudoTerminal;

/// A spectral card at its line.
///
/// It answers requests: "[0190", a command of ten characters, "]", and one byte with the sum of all
/// these. Requests with a wrong sum are not answered.
///
///     RNME, RVER      name and version
///     RNFT, RTRM      one digit per channel: span index, trim in dB
///     CNFTcs, CTRMct  sets them: channel, digit; the reply repeats both
///     RFFTcp          a spectrum of channel c
///
/// A text reply is "[0190", the command's four characters, data, "]\\r". A spectrum is "[0190RFFT",
/// four decimal digits with the number of points, and the points; with Type::K7150 two bytes with
/// that number, the channel and the points. A reply takes the time that it would on a real line.
class CardPort : public QObject
{
    Q_OBJECT

public:
    /// The kind of card, which decides about the form of a spectrum.
    enum class Type { Older, K7150 };

    static constexpr int DefaultPoints = 1024; ///< of a spectrum of the older card
    /// As many points as the span has on a K7150, see CardSpectrum::bins().
    static constexpr int PointsOfSpan = 0;
    static constexpr int MaxPoints = 9999; ///< of a spectrum

    /// \param line the unit's end of its line; must live longer than this
    /// \param spectrum what the card sees, shared by all ports; must live longer than this
    /// \param points of a spectrum, 1 to MaxPoints, or PointsOfSpan
    CardPort(Type type, PseudoTerminal& line, CardSpectrum& spectrum, const CardFaults& faults,
        int points = DefaultPoints, QObject* parent = nullptr);

    /// \return how many requests were answered
    int answered() const { return m_answered; }
    /// \return how many requests had a wrong sum
    int refused() const { return m_refused; }
    /// \return the faults, which count how often they happened
    const CardFaults& faults() const { return m_faults; }

private:
    void take(const QByteArray& bytes);
    bool takeOne();
    void answer(const QByteArray& request);
    QByteArray reply(const QByteArray& command);
    QByteArray spectrumReply(int channel);
    QByteArray digitsReply(const QByteArray& command);
    bool setDigit(const QByteArray& command);

    Type m_type;
    PseudoTerminal& m_line;
    CardSpectrum& m_spectrum;
    CardFaults m_faults;
    int m_points;
    QByteArray m_heard;
    QElapsedTimer m_clock;
    int m_answered = 0;
    int m_refused = 0;
};
