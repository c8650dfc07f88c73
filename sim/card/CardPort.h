#pragma once

#include "sim/card/CardFaults.h"
#include "sim/card/CardSpectrum.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QObject>

class PseudoTerminal;

// A spectral card at its line: answers requests with their checksum right, "[0190", a command of
// ten characters, "]", the 8-bit sum of all of it. Others are not answered.
//
//   RNME, RVER      name and version
//   RNFT, RTRM      a digit a channel: span index, trim in dB
//   CNFTcs, CTRMct  sets them: channel, digit; the answer repeats both
//   RFFTcp          a spectrum of channel c
//
// A text goes out as "[0190", the command's four characters, data, "]\r". A spectrum as
// "[0190RFFT", four decimal digits with the number of points and the points, or, with Type::K7150,
// two bytes with that number, the channel and the points. Each takes the time that the line would.
class CardPort : public QObject
{
    Q_OBJECT

public:
    enum class Type { Older, K7150 };

    static constexpr int DefaultPoints = 1024;
    static constexpr int MaxPoints = 9999;

    // line: the unit's end of its line. spectrum: what the card sees, shared by all ports; both
    // must live longer than this. points: of a spectrum, 1 to MaxPoints.
    CardPort(Type type, PseudoTerminal& line, CardSpectrum& spectrum, const CardFaults& faults,
        int points = DefaultPoints, QObject* parent = nullptr);

    // Requests answered, and such with a wrong checksum.
    int answered() const { return m_answered; }
    int refused() const { return m_refused; }
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
