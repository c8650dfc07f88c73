#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QRect>
#include <QString>

class QMessageBox;

/// The message boxes that the main unit opens over the panel.
///
/// A box does not block the panel and has no parent; it is deleted when it is closed. How it looks
/// and where it stands is the business of MessageBox.
class MessageBoxes : public QObject
{
    Q_OBJECT

public:
    /// Makes an owner of boxes; there is none yet.
    explicit MessageBoxes(QObject* parent = nullptr);
    /// Closes the boxes that are open.
    ~MessageBoxes() override;

    /// Opens a box. Only the 16 boxes opened last stay open.
    /// \param text     rich text of the main unit, of which the first 20,000 characters count
    /// \param okButton whether there is a button with which the operator closes it
    /// \param area     the panel's place on the screen
    /// \return the box, shown; its accept() closes it.
    QMessageBox* open(const QString& text, bool okButton, const QRect& area);

private:
    void makeRoom();

    QList<QPointer<QMessageBox>> m_boxes;
};
