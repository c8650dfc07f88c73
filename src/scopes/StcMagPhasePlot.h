#pragma once

#include <QColor>
#include <QVector>
#include <QWidget>

class QLabel;
class QProgressBar;

/// The magnitude/phase display of the two channels: a bar for each channel's magnitude and, between
/// them, a scale of nine lamps for the phase difference, one for each 22.5° from 0° to 180°.
///
/// The setters only hold the values; updateDisplay() shows them, so that the three values of one
/// message change together.
class StcMagPhasePlot : public QWidget
{
    Q_OBJECT

public:
    static constexpr int ScaleLabels = 9;     ///< Lamps of the phase scale.
    static constexpr int FullMagnitude = 100; ///< A magnitude that fills its bar.

    /// Creates a display with both bars at 0 and no lamp lit.
    explicit StcMagPhasePlot(QWidget* parent = nullptr);

    /// Holds the phase difference for updateDisplay().
    /// \param difference 0 to 1 for 0° to 180°; any other value, NaN included, lights no lamp.
    void setPhaseDifHold(double difference) { m_phase = difference; }
    /// Holds a channel's magnitude for updateDisplay().
    /// \param magnitude 0 to FullMagnitude; a value outside is shown as the nearest of the two.
    ///@{
    void setCh0MagHold(int magnitude) { m_magnitude0 = magnitude; }
    void setCh1MagHold(int magnitude) { m_magnitude1 = magnitude; }
    ///@}

    /// Shows the values that the setters hold.
    void updateDisplay();

    /// Sets whether what is shown is dimmed, because nothing newer can come. It stays as it was
    /// told last, and so do the style sheets.
    void setDimmed(bool dimmed);
    /// \return whether what is shown is dimmed, false at first.
    bool isDimmed() const { return m_dimmed; }

    /// \return the lamp that stands for the phase difference \a difference, or -1.
    static int lampOf(double difference);
    /// \return the colour of lamp \a lamp, 0 to ScaleLabels - 1, as its style sheet names it when
    /// it is lit; empty for any other number.
    static QString colorOf(int lamp);
    /// \return the style sheet of a lit lamp.
    static QString sheet(const QString& color);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QLabel* caption(const QString& text);
    QProgressBar* newBar(const QString& name);

    double m_phase = -1.0; // no lamp before the first value
    int m_magnitude0 = 0;
    int m_magnitude1 = 0;
    QProgressBar* m_bar0 = nullptr;
    QProgressBar* m_bar1 = nullptr;
    QVector<QLabel*> m_lamps;
    QWidget* m_veil = nullptr; // over everything else while dimmed
    bool m_dimmed = false;
};
