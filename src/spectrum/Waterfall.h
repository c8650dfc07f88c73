#pragma once

#include "spectrum/WaterfallPicture.h"

#include <QElapsedTimer>
#include <QHash>
#include <QStaticText>
#include <QTimer>
#include <QWidget>

/// The waterfall under an enlarged chart: the spectra of the last seconds, one line each, the
/// newest on top, and beside them how many seconds ago they came.
///
/// The lines stand under the chart's plot, each frequency under its own column, and have the
/// colours of colorMap over the chart's range of levels. They show the spectra as they came, not
/// their average, so that a short burst is not lost.
///
/// What is hidden costs nothing: a spectrum that comes meanwhile has no line. The seconds are those
/// of the clock, so that such a gap is seen. Like a plot, the next paint waits at least as long as
/// the last one took.
class Waterfall : public QWidget
{
    Q_OBJECT

public:
    /// Makes a waterfall without lines.
    explicit Waterfall(QWidget* parent = nullptr);

    /// Sets where the chart's plot is. \param left, right its outer columns, in pixels of this
    /// widget
    void setPlot(int left, int right);

    /// Sets the chart's range of levels; the lines that are there change with it. \param lowest,
    /// highest in dB
    void setRange(double lowest, double highest);

    /// Adds a line; does nothing while the waterfall is hidden. \param points one byte per point,
    /// as in SpectrumTrace::level()
    void addSpectrum(const QByteArray& points) { addSpectrum(points, m_clock.elapsed()); }
    /// The same for a spectrum that came at another time than now. \param ms in milliseconds of
    /// any clock that does not go back
    void addSpectrum(const QByteArray& points, qint64 ms);

    /// Forgets all lines, as when they no longer fit the frequencies of the chart.
    void clear();

    /// \return the lines.
    const WaterfallPicture& picture() const { return m_picture; }

    /// \return the texts of the seconds as the operator sees them, from the top.
    QStringList secondTexts() const;

    /// \return how often it has been painted so far.
    int paintCount() const { return m_paintCount; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Tick
    {
        int seconds = 0;
        int row = 0;
    };

    void fitPicture();
    void schedulePaint();
    void chooseStep();
    QVector<Tick> ticks() const;
    static QString tickText(int seconds);
    const QStaticText& preparedText(int seconds);
    void paintTicks(QPainter& painter);

    WaterfallPicture m_picture;
    QElapsedTimer m_clock;
    QTimer m_paintTimer{this};
    QHash<int, QStaticText> m_texts; // of the ticks, by their seconds
    int m_left = 0;
    int m_right = 0;
    int m_step = 1; // seconds between two ticks
    int m_lastPaintMs = 0;
    int m_paintCount = 0;
};
