#pragma once

#include "link/LinkHealth.h"

#include <QLabel>

/// The notice about the link to the main unit: empty and hidden when all is well.
///
/// It stands in the status bar, in two lines, or over the bottom edge of the window, in one. It
/// takes no touches: what lies under it can still be pressed.
class NoticeLabel : public QLabel
{
    Q_OBJECT

public:
    /// Width of the notice in the status bar, in pixels: its longest line and some room.
    static constexpr int WidthInBar = 152;

    /// Makes an empty, hidden label.
    explicit NoticeLabel(QWidget* parent = nullptr);

    /// Shows what is wrong with the link, if anything is.
    void setState(LinkState state);

    /// Puts the label into the status bar. \param room where it may stand, in the bar's pixels
    void standIn(QWidget* bar, const QRect& room);

    /// Puts the label over the bottom edge of a window.
    void standOver(QWidget* window);

private:
    void moveInto(QWidget* parent);
};
