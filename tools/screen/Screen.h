#pragma once

#include "touch/WindowOrder.h"

#include <QPixmap>
#include <QString>

#include <functional>

class QPushButton;
class QWidget;

using touch::isBlocked;
using touch::visibleWindows;

/// What the operator sees, as 800 × 480 pixels: all visible windows, with the panel's at the
/// bottom, the others over it in the order in which they were opened, the modal one over them, and
/// pop-up lists on top.
QPixmap grabScreen();

/// Clicks in the middle of the widget. The click goes through the window, so that the widget on top
/// gets it, as with a finger.
void clickOn(QWidget* widget);

/// \return the first visible button with this text below \a parent, nullptr when there is none
QPushButton* buttonWithText(const QWidget* parent, const QString& text);

/// Calls \a then with the modal dialog as soon as one is up that was not up before, or \a otherwise
/// when none comes within five seconds. Call it before the code that opens the dialog.
void whenModal(const std::function<void(QWidget*)>& then, const std::function<void()>& otherwise);
