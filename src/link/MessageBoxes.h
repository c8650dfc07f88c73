#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QRect>
#include <QString>

class QMessageBox;

// The message boxes that the main unit opens over the panel.
//
// A box does not block the panel and has no parent; it is deleted when it is closed. It lies in the
// middle of the panel, wholly inside it, whatever the length of its text: a text that is too long
// for the usual letters is set in smaller ones, and one that is too long for these has a scroll bar
// that is wide enough for a finger.
class MessageBoxes : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    ~MessageBoxes() override;

    // Opens a box. text: rich text of the main unit, of which the first 20,000 characters count;
    // okButton: whether there is a button by which the operator closes it; area: the panel's place
    // on the screen. Out: the box, shown; its accept() closes it. Only the 16 boxes opened last
    // stay open.
    QMessageBox* open(const QString& text, bool okButton, const QRect& area);

private:
    void makeRoom();

    QList<QPointer<QMessageBox>> m_boxes;
};
