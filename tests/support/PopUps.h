#pragma once

#include "support/Screen.h"

#include <QDialog>
#include <QPointer>
#include <QPushButton>
#include <QtTest>

// What the tests of the pop-ups look at in a dialog.
namespace popUps {

inline QDialog* dialog(QWidget* modal)
{
    return qobject_cast<QDialog*>(modal);
}

// Presses the button with this text by a click through the window; a button that is not there
// fails the test and ends the dialog.
inline void press(QWidget* modal, const QString& text)
{
    QPushButton* button = buttonWithText(modal, text);
    if (button == nullptr) {
        QTest::qFail(qPrintable(QLatin1String("no button ") + text), __FILE__, __LINE__);
        dialog(modal)->reject();
        return;
    }
    clickOn(button);
}

// Whether the dialog lies in the middle of a screen of 800 × 480, give or take a pixel.
inline bool isCentred(const QWidget* modal)
{
    const QPoint off = modal->geometry().center() - QRect(0, 0, 800, 480).center();
    return qAbs(off.x()) <= 1 && qAbs(off.y()) <= 1;
}

// Whether the dialog and every button in it lie inside a screen of 800 × 480.
inline bool isInsideScreen(const QWidget* modal)
{
    if (!QRect(0, 0, 800, 480).contains(modal->geometry())) {
        return false;
    }
    for (const QPushButton* button : modal->findChildren<QPushButton*>()) {
        const QRect place(button->mapTo(modal, QPoint(0, 0)), button->size());
        if (!modal->rect().contains(place)) {
            return false;
        }
    }
    return true;
}

// The button that a finger in the middle of `button` touches.
inline QWidget* onTopOf(const QPushButton* button)
{
    const QWidget* window = button->window();
    return window->childAt(button->mapTo(window, button->rect().center()));
}

// A list of so many choices, "0 text0:1 text1…".
inline QString list(int count, const QString& text)
{
    QStringList items;
    for (int i = 0; i < count; ++i) {
        items += QString::number(i) + QLatin1Char(' ') + text + QString::number(i);
    }
    return items.join(QLatin1Char(':'));
}

} // namespace popUps
