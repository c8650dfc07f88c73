#pragma once

#include <QList>
#include <QRect>
#include <QString>

class QAbstractButton;
class QWidget;

/// What stands on the panel's screen, and which part of it a finger reaches.
///
/// A window that stands over another covers it: what is covered is neither read nor pressed.
namespace glass {

/// A text on the screen.
struct Text
{
    QString text;             ///< in one line: line breaks and rows of blanks are one blank
    QRect place;              ///< in pixels of the screen
    QWidget* owner = nullptr; ///< what shows it
};

/// \return all texts on the screen, in reading order.
QList<Text> texts();

/// \return the same, in rows: those that stand side by side.
QList<QList<Text>> rows();

/// \return whether a text on the screen contains what a pattern says, see matches().
bool shows(const QString& pattern);

/// \return the text of a button as the operator reads it, in one line.
QString label(const QAbstractButton& button);

/// \return the buttons on the screen with a label like this, in reading order; while an editor is
/// open, those of the editor. \param pattern see matches()
QList<QAbstractButton*> buttons(const QString& pattern);

/// \return where a finger touches a button: the middle of what is seen of it, in its coordinates.
QPoint middle(const QAbstractButton& button);

/// \return why a finger does not reach the middle of a button: something is in front of it, or it
/// is disabled; empty when it does.
QString obstacle(const QAbstractButton& button);

/// \return the window on top at a point of the screen, nullptr when there is none.
QWidget* windowAt(QPoint point);

} // namespace glass
