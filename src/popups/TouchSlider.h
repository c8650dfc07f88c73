#pragma once

#include <QSlider>

/// A horizontal slider for a finger. A touch on the handle, at any height, takes hold of it without
/// moving it. A touch beside the handle brings the handle under the finger, as far as the ends
/// allow, and takes hold of it too.
class TouchSlider : public QSlider
{
    Q_OBJECT

public:
    /// Makes a horizontal slider.
    explicit TouchSlider(QWidget* parent = nullptr);

    /// \return where the handle is, in the slider's coordinates.
    QRect handle() const;

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    QRect handleAt(int position) const;
    int positionFor(int x) const;

    int m_touchedX = 0;
    int m_grip = 0; // from the middle of the handle to the finger
    bool m_moved = false;
};
