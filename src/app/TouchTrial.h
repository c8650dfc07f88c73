#pragma once

#include <QList>
#include <QPoint>
#include <QWidget>

class QPushButton;

/// A page that draws where it is touched, to see whether the touchscreen is calibrated.
///
/// Five crosses stand in the corners and in the middle. What is drawn under a finger that touches a
/// cross must lie on it, and a cross that was hit turns green. The key "End" closes the page.
class TouchTrial : public QWidget
{
    Q_OBJECT

public:
    /// How far beside a cross a touch may lie, in pixels along each axis.
    static constexpr int ToleranceInPx = 12;

    /// The page fills the panel's screen, 800 × 480.
    explicit TouchTrial(QWidget* parent = nullptr);

    /// \return where the crosses are.
    const QList<QPoint>& crosses() const { return m_crosses; }
    /// \return how many crosses were hit.
    int hits() const;
    /// \return the text on the page: the last touch and how far it was from the nearest cross.
    QString readout() const;

signals:
    /// Emitted when "End" was pressed.
    void ended();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    void take(QPoint point);
    qsizetype nearestCross(QPoint point) const;

    QList<QPoint> m_crosses;
    QList<bool> m_hit;
    QList<QPoint> m_trail;
    QPushButton* m_end;
};
