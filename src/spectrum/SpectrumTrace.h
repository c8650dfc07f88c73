#pragma once

#include <QByteArray>
#include <QVector>

// The levels of one channel: bytes come in, decibels with averaging and max hold come out.
class SpectrumTrace
{
public:
    // In: one byte of a spectrum reply. Out: the level in dB, byte × 0.5 − 120.
    static double level(quint8 byte) { return byte * 0.5 - 120.0; }

    // depth: over how many spectra the levels are averaged, in dB (as with a narrow video filter);
    // 1 is no averaging. Running: the first `depth` spectra weigh the same, then older ones fade.
    void setAveraging(int depth);
    int averaging() const { return m_depth; }

    // Max hold keeps the highest level that each point has had since it was switched on, before
    // averaging, so that a burst is not lost in the average.
    void setMaxHold(bool on);
    bool maxHold() const { return m_holding; }

    // In: one spectrum, a byte a point, at least one. Another number of points than before starts
    // the averaging and max hold anew. No points at all change nothing.
    void add(const QByteArray& points);

    // Starts averaging and max hold anew with the next spectrum.
    void restart();

    // Forgets everything that was received.
    void clear();

    qsizetype size() const { return m_levels.size(); }
    const QVector<float>& levels() const { return m_levels; } // in dB, lowest frequency first
    const QVector<float>& held() const { return m_held; }     // in dB, empty without max hold
    qsizetype peak() const { return m_peak; }                 // the highest level's index, or -1

private:
    void average(const QByteArray& points);
    void hold(const QByteArray& points);

    QVector<float> m_levels;
    QVector<float> m_held;
    int m_depth = 1;
    int m_averaged = 0; // spectra in the average so far
    qsizetype m_peak = -1;
    bool m_holding = false;
};
