#pragma once

#include <QPixmap>
#include <QString>

#include <functional>

class QPushButton;
class QWidget;

// What the operator sees: all visible windows, one over the other, as 800 × 480 pixels.
QPixmap grabScreen();

// A real mouse click (through the window, so that what lies on top gets it) in the middle of the
// widget.
void clickOn(QWidget* widget);

// Out: the first visible button with this text below `parent`, nullptr when there is none.
QPushButton* buttonWithText(const QWidget* parent, const QString& text);

// Calls `then` with the modal dialog as soon as one is up, or fails the test after five seconds. To
// be called before what opens the dialog.
void whenModal(const std::function<void(QWidget*)>& then);
