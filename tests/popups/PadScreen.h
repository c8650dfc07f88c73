#pragma once

#include "support/Screen.h"

#include <QApplication>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QRect>

#include <functional>

using namespace Qt::StringLiterals;

// These are the things that the tests of the number pad and of the address pad look at and touch in
// a pad's window.
namespace padScreen {

constexpr int MinKey = 47; // pixels that a finger needs
inline const QRect ScreenArea(0, 0, 800, 480);

// Runs the script with the next modal dialog and closes what the script has left open.
inline void play(const std::function<void(QWidget*)>& script)
{
    whenModal([script](QWidget* dialog) {
        const QPointer<QWidget> guard(dialog);
        script(dialog);
        if (guard != nullptr && guard->isVisible()) {
            guard->close();
        }
    });
}

// Clicks on keys one after the other and returns whether all of them exist.
inline bool press(const QWidget* dialog, const QStringList& keys)
{
    for (const QString& key : keys) {
        QPushButton* button = buttonWithText(dialog, key);
        if (button == nullptr) {
            qWarning("no key %s", qPrintable(key));
            return false;
        }
        clickOn(button);
    }
    return true;
}

inline QString labelText(const QWidget* dialog, const char* name)
{
    const auto* label = dialog->findChild<QLabel*>(QString::fromUtf8(name));
    return label != nullptr ? label->text() : u"(no label)"_s;
}

inline QString entry(const QWidget* dialog)
{
    return labelText(dialog, "entryLabel");
}

// Returns the place of a part in its dialog.
inline QRect place(const QWidget* dialog, const QWidget* child)
{
    return {child->mapTo(dialog, QPoint(0, 0)), child->size()};
}

// Returns the keys and labels that the operator sees.
inline QList<QWidget*> shown(const QWidget* dialog)
{
    QList<QWidget*> widgets;
    const auto all = dialog->findChildren<QWidget*>();
    for (QWidget* widget : all) {
        const bool seen = qobject_cast<QLabel*>(widget) || qobject_cast<QPushButton*>(widget);
        if (seen && widget->isVisible()) {
            widgets += widget;
        }
    }
    return widgets;
}

// Returns whether one key stands above another in the same column.
inline bool above(const QWidget* dialog, const QString& upper, const QString& lower)
{
    const QRect high = place(dialog, buttonWithText(dialog, upper));
    const QRect low = place(dialog, buttonWithText(dialog, lower));
    return high.bottom() < low.top() && high.center().x() == low.center().x();
}

// Returns whether one key stands to the left of another in the same row.
inline bool leftOf(const QWidget* dialog, const QString& left, const QString& right)
{
    const QRect first = place(dialog, buttonWithText(dialog, left));
    const QRect second = place(dialog, buttonWithText(dialog, right));
    return first.right() < second.left() && first.center().y() == second.center().y();
}

// Returns how many windows the program has, including hidden ones.
inline int topLevels()
{
    return static_cast<int>(QApplication::topLevelWidgets().size());
}

} // namespace padScreen
