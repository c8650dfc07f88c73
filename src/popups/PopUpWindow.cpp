#include "popups/PopUpWindow.h"

#include "popups/Choices.h"

#include <QApplication>
#include <QDialog>
#include <QGridLayout>
#include <QScreen>

namespace {

constexpr QSize Panel(800, 480);
// room for the frame that some platforms draw
constexpr int Frame = 3;
constexpr int CellWidth = 150;
constexpr int CellHeight = 80;
constexpr int Spacing = 4;
constexpr int SpacingOfMany = 2;
// above this many rows each pixel between them counts
constexpr int ManyRows = 6;

// On the board the screen; on a desk, where it is larger, the panel's window on it.
QRect panelArea()
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    const QRect area = screen != nullptr ? screen->geometry() : QRect(QPoint(0, 0), Panel);
    if (area.size() == Panel) {
        return area;
    }
    const auto windows = QApplication::topLevelWidgets();
    for (const QWidget* window : windows) {
        if (window->isVisible() && window->size() == Panel) {
            return window->geometry();
        }
    }
    return area;
}

} // namespace

namespace popUpWindow {

void place(QDialog& dialog)
{
    dialog.ensurePolished();
    const QSize wanted = dialog.sizeHint().expandedTo(dialog.minimumSize());
    const int frame = dialog.windowFlags().testFlag(Qt::FramelessWindowHint) ? 0 : Frame;
    dialog.setFixedSize(wanted.boundedTo(QSize(Width - 2 * frame, Height - 2 * frame)));
    QRect place(QPoint(0, 0), dialog.size());
    place.moveCenter(panelArea().center());
    // not move(), which would place the frame that some platforms draw around it
    dialog.setGeometry(place);
}

void shareCells(QGridLayout& layout, const choices::Grid& grid, int rows)
{
    for (int column = 0; column < grid.columns(); ++column) {
        layout.setColumnMinimumWidth(column, CellWidth);
        layout.setColumnStretch(column, 1);
    }
    for (int row = 0; row < rows; ++row) {
        layout.setRowMinimumHeight(row, CellHeight);
        layout.setRowStretch(row, 1);
    }
    layout.setContentsMargins(0, 0, 0, 0);
    layout.setSpacing(rows > ManyRows ? SpacingOfMany : Spacing);
}

} // namespace popUpWindow
