#pragma once

#include <QByteArray>
#include <QVector>

/// The levels of one channel: bytes come in, decibels with averaging and max hold come out.
///
/// add() averages the spectra as setAveraging() says, keeps the highest levels in held() when max
/// hold is on, and finds the peak(). What is averaged is the power, so that noise and bursts have
/// the level that a power meter would show; a table turns bytes into powers, and powers are turned
/// into levels() only when somebody asks for them. It needs no widget.
class SpectrumTrace
{
public:
    /// \return the level in dB that a byte of a spectrum reply stands for: byte × 0.5 − 120, the
    /// card's scale.
    static double level(quint8 byte) { return byte * 0.5 - 120.0; }

    /// Averages the powers, not the decibels, and starts anew. The first \a depth spectra weigh the
    /// same; after that the average is exponential and older ones fade.
    /// \param depth over how many spectra, 1 to 1,000; 1 is no averaging. A number outside is taken
    /// as the nearest of the two.
    void setAveraging(int depth);
    /// \return over how many spectra the levels are averaged.
    int averaging() const { return m_depth; }

    /// Switches max hold on or off; on starts it anew. It keeps the highest level that each point
    /// has had since then, before averaging, so that a burst is not lost in the average.
    void setMaxHold(bool on);
    /// \return whether max hold is on.
    bool maxHold() const { return m_holding; }

    /// Adds a spectrum. Another number of points than before starts averaging and max hold anew.
    /// \param points one byte per point; an empty array changes nothing.
    void add(const QByteArray& points);

    /// Starts averaging and max hold anew with the next spectrum.
    void restart();

    /// Forgets everything that was received.
    void clear();

    /// \return the number of points.
    qsizetype size() const { return m_levels.size(); }
    /// \return the levels in dB, the lowest frequency first.
    const QVector<float>& levels() const;
    /// \return the level in dB of one point, 0 to size() - 1, without the others being computed.
    float levelAt(qsizetype index) const;
    /// \return the levels of max hold in dB; empty while it is off.
    const QVector<float>& held() const { return m_held; }
    /// \return the index of the highest level, or -1 without points.
    qsizetype peak() const { return m_peak; }

private:
    void average(const QByteArray& points);
    void hold(const QByteArray& points);

    QVector<float> m_powers;         // the mean of at least two spectra
    mutable QVector<float> m_levels; // in dB; those of m_powers once they are asked for
    QVector<float> m_held;
    int m_depth = 1;
    int m_averaged = 0; // spectra in the average so far
    qsizetype m_peak = -1;
    mutable bool m_levelsStale = false; // m_powers has changed since
    bool m_holding = false;
};
