#pragma once

#include <QColor>
#include <QFont>
#include <QStaticText>

class QCustomPlot;
class QPainter;

/// Sizes, colours and texts that all parts of a spectrum chart share.
namespace chartLook {

constexpr int TextPixels = 14;  ///< Height of all texts of a chart.
constexpr int TitleHeight = 22; ///< Height of the line with the title, in pixels.
constexpr int TitleGap = 6;     ///< Between the title and its surroundings, in pixels.

constexpr QColor Background(0, 0, 0);        ///< Behind everything.
constexpr QColor Grid(0x38, 0x38, 0x38);     ///< Lines of the grid.
constexpr QColor Axis(0x80, 0x80, 0x80);     ///< The four sides of the plot.
constexpr QColor Text(0xd8, 0xd8, 0xd8);     ///< Title, ticks and read-out.
constexpr QColor OldText(0x90, 0x90, 0x90);  ///< Read-out of a chart without new data.
constexpr QColor Level(0xff, 0x80, 0x40);    ///< Horizontal markers.
constexpr QColor Marked(0xff, 0xff, 0xff);   ///< The operator's markers.
constexpr QColor OverText(0xff, 0xff, 0xff); ///< "OVER".
constexpr QColor OverGround(0xb0, 0, 0);     ///< Behind "OVER".

/// \return "OVER", which a chart shows when a level has left the card's scale.
QString overText();

/// \return the font of all texts of a chart.
QFont font();

/// \return \a text laid out in font(), so that painting it many times costs little.
QStaticText preparedText(const QString& text);

/// Gives ground, axes and grid of \a plot their looks.
void apply(QCustomPlot& plot);

/// Paints the title above the plot, shortened to its width, and the unit of the levels.
/// \param plot the place of the plot, in pixels
void paintHead(QPainter& painter, const QRect& plot, const QString& title);

} // namespace chartLook
