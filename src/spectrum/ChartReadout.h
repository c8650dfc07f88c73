#pragma once

#include "plot/TextFlow.h"
#include "spectrum/SpectrumReading.h"

#include <QColor>
#include <QHash>
#include <QPixmap>
#include <QString>
#include <QVector>

class QPainter;

/// What stands above a spectrum at the right: averaging, holds, scale, peak and markers.
///
/// What fits beside the title stands there, the rest in one or more lines of its own between title
/// and plot. update() lays it out; paint() copies pictures of the lines, which it draws anew only
/// when they have changed, because letters cost as much as a trace. Where all of it would take more
/// of the chart than MaxPart, only the active one of several markers is read out; where that is
/// still too much and saves a line, "Max" and "Min" stand for the holds.
class ChartReadout
{
public:
    /// The part of the chart's height that title and read-out may take before something is left
    /// out.
    static constexpr double MaxPart = 0.4;

    /// A marker to read out.
    struct Marker
    {
        int number = 0;          ///< From 1.
        bool active = false;     ///< Whether it is the active one.
        bool relative = false;   ///< Whether the reading is the difference to marker 1.
        SpectrumReading reading; ///< The point under it, or the difference of two.
    };

    /// What there is to say.
    struct Values
    {
        int averaging = 1;       ///< Over how many spectra; 1 is not mentioned.
        bool logMean = false;    ///< Whether decibels are averaged instead of powers.
        bool maxHold = false;    ///< Whether max hold is on.
        bool minHold = false;    ///< Whether min hold is on.
        QString scale;           ///< What is said of the level scale; empty for nothing.
        SpectrumReading peak;    ///< The highest point.
        QVector<Marker> markers; ///< Their room is kept before the first data.
        double centre = 0.0;     ///< In MHz: readings get about as wide as this number.
        int decimals = 3;        ///< Of a frequency in MHz.
        bool over = false;       ///< Whether a level has left the card's scale.
    };

    /// The space that there is, in pixels.
    struct Space
    {
        int titleWidth = 0;  ///< Of the title.
        int room = 0;        ///< For the title and the read-out together.
        int chartHeight = 0; ///< Of the whole chart.
    };

    /// Lays out what \a values say.
    void update(const Values& values, const Space& space);

    /// \return the text as the operator sees it, its lines separated by line feeds. "OVER", which
    /// stands over the plot, is the last one.
    const QString& text() const { return m_text; }
    /// \return whether "OVER" is to be shown.
    bool over() const { return m_over; }

    /// \return the height above the plot that title and read-out need, in pixels.
    int headHeight() const;

    /// Paints the lines in \a color so that they end at column \a right.
    void paint(QPainter& painter, int right, const QColor& color);

private:
    struct Line
    {
        QString text;
        QPixmap picture; // null before it is painted
    };

    void layOut(const QVector<TextFlow::Part>& parts, const Space& space);

    QString m_text;
    QVector<Line> m_lines;
    QColor m_color;               // of the pictures
    QHash<QString, int> m_widths; // of texts that were measured before
    bool m_besideTitle = false;   // the first line
    bool m_over = false;
};
