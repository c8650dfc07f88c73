#pragma once

#include <QScrollArea>

/// A view that a finger scrolls up and down, by a drag over what it shows or by a wide bar.
///
/// A drag that scrolls presses nothing: as soon as the finger has moved far enough, the button
/// below it lets go. It is the view's own bar that moves; nothing goes on when the finger is
/// lifted.
class FingerScroll : public QScrollArea
{
    Q_OBJECT

public:
    /// How far a finger moves before it scrolls, in pixels.
    static constexpr int DragDistance = 12;

    /// Makes a view without contents.
    explicit FingerScroll(QWidget* parent = nullptr);

    /// Shows a widget, which the view owns from then on, and follows the finger on it.
    void setContents(QWidget* contents);
    /// Follows the finger on a part of the contents, too.
    void followOn(QWidget* part);

    /// \reimp Follows the finger.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool follow(QWidget* touched, double y);

    double m_startY = 0.0; // where the finger has touched, in global coordinates
    int m_startValue = 0;  // of the bar at that moment
    bool m_touched = false;
    bool m_dragging = false;
};
