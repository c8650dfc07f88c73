#pragma once

#include <QByteArray>
#include <QVector>

#include <array>

/// The levels of one channel: bytes come in, decibels with averaging, max hold and min hold come
/// out.
///
/// add() averages the spectra as setAveraging() and setAverageKind() say, keeps the highest levels
/// in held() and the lowest in heldLow() when these are on, and finds the peak(). A table turns
/// bytes into powers, and powers are turned into levels() only when somebody asks for them.
/// powers() is for measurements: always the mean of the powers, whatever is shown. It needs no
/// widget.
class SpectrumTrace
{
public:
    /// What is averaged.
    enum class Average {
        Off,   ///< Nothing: the newest spectrum is shown.
        Power, ///< The powers: noise and bursts have the level that a power meter would show.
        Log    ///< The decibels, as a video filter does: noise lies 2.5 dB below its power.
    };

    /// The depths that an operator is offered.
    static constexpr std::array<int, 3> AverageDepths{4, 16, 64};
    /// The depth of an average that is switched on before any depth was set.
    static constexpr int DefaultDepth = 16;

    /// \return the level in dB that a byte of a spectrum reply stands for: byte × 0.5 − 120, the
    /// card's scale.
    static double level(quint8 byte) { return byte * 0.5 - 120.0; }

    /// Sets over how many spectra is averaged and starts anew. The first \a depth spectra weigh the
    /// same; after that the average is exponential and older ones fade. The kind is Average::Power
    /// unless setAverageKind() has set another.
    /// \param depth over how many spectra, 1 to 1,000; 1 is no averaging. A number outside is taken
    /// as the nearest of the two.
    void setAveraging(int depth);
    /// \return over how many spectra the levels are averaged; 1 while averaging is off.
    int averaging() const { return m_averagingOn ? m_depth : 1; }

    /// Sets what is averaged and starts anew. Average::Off keeps the depth for later, the others
    /// switch averaging on with the depth it had last, at first DefaultDepth.
    void setAverageKind(Average kind);
    /// \return what is averaged; Average::Off while averaging() is 1.
    Average averageKind() const { return m_averagingOn ? m_kind : Average::Off; }

    /// Switches max hold on or off; on starts it anew. It keeps the highest level that each point
    /// has had since then, before averaging, so that a burst is not lost in the average.
    void setMaxHold(bool on);
    /// \return whether max hold is on.
    bool maxHold() const { return m_high.on; }

    /// Switches min hold on or off; on starts it anew. It keeps the lowest level that each point
    /// has had since then, before averaging.
    void setMinHold(bool on);
    /// \return whether min hold is on.
    bool minHold() const { return m_low.on; }

    /// Starts max hold and min hold anew with the next spectrum; the average goes on.
    void clearHolds();

    /// Adds a spectrum. Another number of points than before starts averaging and the holds anew.
    /// \param points one byte per point; an empty array changes nothing.
    void add(const QByteArray& points);

    /// Starts averaging and the holds anew with the next spectrum.
    void restart();

    /// Forgets everything that was received.
    void clear();

    /// \return the number of points.
    qsizetype size() const { return m_levels.size(); }
    /// \return the levels in dB, the lowest frequency first.
    const QVector<float>& levels() const;
    /// \return the level in dB of one point, 0 to size() - 1, without the others being computed.
    float levelAt(qsizetype index) const;
    /// \return the mean powers of the points, 1 at 0 dB: of the newest spectrum, or of those in the
    /// average, the average of the decibels included.
    const QVector<float>& powers() const;
    /// \return how many independent spectra the mean powers are worth: 1 without averaging, the
    /// number of spectra until the depth is reached, later up to 2 × depth − 1, because an
    /// exponential average reaches further back than its depth. 0 before the first spectrum.
    double independentSpectra() const { return m_variance > 0.0 ? 1.0 / m_variance : 0.0; }
    /// \return the levels of max hold in dB; empty while it is off.
    const QVector<float>& held() const { return m_high.levels; }
    /// \return the levels of min hold in dB; empty while it is off.
    const QVector<float>& heldLow() const { return m_low.levels; }
    /// \return the index of the highest level, or -1 without points.
    qsizetype peak() const { return m_peak; }
    /// \return whether the newest spectrum has a byte of 255, the end of the card's scale: its
    /// level may be any higher one.
    bool over() const { return m_over; }

private:
    // What max hold or min hold keeps.
    struct Hold
    {
        bool on = false;
        QVector<float> levels; // in dB
    };

    void average(const QByteArray& points);
    void hold(const QByteArray& points);

    QByteArray m_newest;
    mutable QVector<float> m_powers; // the mean; without averaging once it is asked for
    mutable QVector<float> m_levels; // in dB; those of m_powers once they are asked for
    Hold m_high;
    Hold m_low;
    Average m_kind = Average::Power; // while averaging is on
    int m_depth = DefaultDepth;
    int m_averaged = 0;      // spectra in the average so far
    double m_variance = 0.0; // of the mean powers, that of one spectrum being 1
    qsizetype m_peak = -1;
    mutable bool m_levelsStale = false; // m_powers has changed since
    mutable bool m_powersStale = false; // m_newest has changed since
    bool m_averagingOn = false;
    bool m_over = false;
};
