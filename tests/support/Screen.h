#pragma once

#include <QPixmap>
#include <QString>

#include <functional>

class QPushButton;
class QWidget;

// What the operator sees as 800 × 480 pixels: all visible windows, the panel's at the bottom, the
// others over it in the order in which they were opened, the modal one over them, pop-up lists on
// top.
QPixmap grabScreen();

// A real mouse click (through the window, so that what lies on top gets it) in the middle of the
// widget.
void clickOn(QWidget* widget);

// Out: the first visible button with this text below `parent`, nullptr when there is none.
QPushButton* buttonWithText(const QWidget* parent, const QString& text);

// Calls `then` with the modal dialog as soon as one is up that was not up before, or fails the test
// after five seconds. To be called before what opens the dialog. A check that fails in `then` ends
// the dialog, or the test would wait for it for ever.
void whenModal(const std::function<void(QWidget*)>& then);
