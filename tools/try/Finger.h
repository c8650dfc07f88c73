#pragma once

#include <QPoint>
#include <QString>

class QAbstractButton;

/// The operator's finger. It touches points of the screen; the touch goes through the window that
/// is on top there, which may be blocked by a modal one.
namespace finger {

/// A place to touch, or why there is none.
struct Target
{
    QString fault; ///< empty when there is a place
    QPoint point;  ///< in pixels of the screen
};

/// Touches the screen.
void down(QPoint point);
/// Moves the finger that is down.
void move(QPoint point);
/// Lifts the finger. What follows a press of a key happens in this call: when it opens a modal
/// editor, the call returns when the editor is closed.
void up(QPoint point);
/// Touches and lifts.
void tap(QPoint point);

/// \return where a button is touched, or why a finger does not reach it.
Target on(const QAbstractButton& button);

/// \return where the key with a label is touched. \param pattern see matches() \param number which
/// of several keys in reading order, from 1; 0 when there has to be one only
Target key(const QString& pattern, int number);

} // namespace finger
