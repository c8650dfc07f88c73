#pragma once

#include "plot/TextFlow.h"
#include "spectrum/SpectrumReading.h"

#include <QColor>
#include <QStaticText>
#include <QString>
#include <QVector>

class QPainter;

/// What stands above a spectrum at the right: averaging, max hold, peak and marker.
///
/// The read-out stands beside the title when there is room for it, otherwise in one or more lines
/// of its own between title and plot. update() lays it out; paint() only copies the prepared texts.
class ChartReadout
{
public:
    /// What there is to say.
    struct Values
    {
        int averaging = 1;    ///< Over how many spectra; 1 is not mentioned.
        bool maxHold = false; ///< Whether max hold is on.
        SpectrumReading peak; ///< The highest point.
        bool hasMarker =
            false; ///< Whether a marker is set; its room is kept before the first data.
        SpectrumReading marker; ///< The point under the marker.
        double centre = 0.0;    ///< In MHz: readings get about as wide as this number.
    };

    /// Lays out what \a values say.
    /// \param titleWidth in pixels.
    /// \param room for the title and the read-out together, in pixels.
    void update(const Values& values, int titleWidth, int room);

    /// \return the text as the operator sees it, its lines separated by line feeds.
    const QString& text() const { return m_text; }

    /// \return the height above the plot that title and read-out need, in pixels.
    int headHeight() const;

    /// Paints the lines in \a color so that they end at column \a right.
    void paint(QPainter& painter, int right, const QColor& color) const;

private:
    static QVector<TextFlow::Part> parts(const Values& values);

    QString m_text;
    QVector<QStaticText> m_lines;
    bool m_besideTitle = false;
};
