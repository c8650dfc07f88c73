#pragma once

#include "support/Screen.h"

#include <QDialog>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QtTest>

/// Checks of a dialog that the tests of the pop-ups share.
namespace popUps {

inline QDialog* dialog(QWidget* modal)
{
    return qobject_cast<QDialog*>(modal);
}

/// Presses the button with this text by a click through the window. A missing button fails the test
/// and closes the dialog.
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

/// Whether the dialog is in the middle of a screen of 800 × 480, with a tolerance of one pixel.
inline bool isCentred(const QWidget* modal)
{
    const QPoint off = modal->geometry().center() - QRect(0, 0, 800, 480).center();
    return qAbs(off.x()) <= 1 && qAbs(off.y()) <= 1;
}

/// \return the view in which a finger scrolls the choices, nullptr when the list does not scroll
inline QScrollArea* scrolled(const QWidget* modal)
{
    return modal->findChild<QScrollArea*>();
}

/// Whether the dialog and every button in it are inside a screen of 800 × 480. For buttons in a
/// scrolled view, the view is checked instead.
inline bool isInsideScreen(const QWidget* modal)
{
    if (!QRect(0, 0, 800, 480).contains(modal->geometry())) {
        return false;
    }
    for (const QPushButton* button : modal->findChildren<QPushButton*>()) {
        const QScrollArea* view = scrolled(modal);
        const QWidget* part = view != nullptr && view->isAncestorOf(button)
            ? view
            : static_cast<const QWidget*>(button);
        const QRect place(part->mapTo(modal, QPoint(0, 0)), part->size());
        if (!modal->rect().contains(place)) {
            return false;
        }
    }
    return true;
}

/// \return the widget that a finger in the middle of \a button touches
inline QWidget* onTopOf(const QPushButton* button)
{
    const QWidget* window = button->window();
    return window->childAt(button->mapTo(window, button->rect().center()));
}

/// \return a list of \a count choices, "0 text0:1 text1…"
inline QString list(int count, const QString& text)
{
    QStringList items;
    for (int i = 0; i < count; ++i) {
        items += QString::number(i) + QLatin1Char(' ') + text + QString::number(i);
    }
    return items.join(QLatin1Char(':'));
}

} // namespace popUps
