#pragma once

#include <QWidget>

/// Marks a button as the present choice: a ring along its edge and a check mark in its corner,
/// painted over whatever the button shows.
///
/// It is a child of the button, as large as the button, and lets every touch through. The button's
/// style sheet and text stay as they are. Ring and check mark have a light and a dark line, so that
/// they are seen on every colour.
class PresentMark : public QWidget
{
    Q_OBJECT

public:
    /// Makes the mark. \param button what it covers and belongs to
    explicit PresentMark(QWidget* button);

    /// \reimp Keeps the size of the button.
    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void paintEvent(QPaintEvent* event) override;
};
