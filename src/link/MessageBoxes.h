#pragma once

#include "link/Limits.h"
#include "wire/DropLog.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QQueue>
#include <QRect>
#include <QString>

class QMessageBox;

/// The message boxes that the main unit opens over the panel.
///
/// A box does not block the panel and has no parent; it is deleted when it is closed. Sixteen boxes
/// stand at a time; further ones wait and come up, first come, first shown, as others are closed.
/// How a box looks and where it stands is the business of MessageBox.
///
/// The boxes stand over everything else. A modal editor that opens would cover them and take their
/// touches: as long as boxes stand, this class watches for windows that open or close, puts the
/// boxes over them again and makes them belong to the editor on top, so that it does not block
/// them. A box without "OK" that is touched goes behind the editor until that is closed.
class MessageBoxes : public QObject
{
    Q_OBJECT

public:
    static constexpr qsizetype MaxOpen =
        linkLimits::MaxOpenBoxes; ///< how many boxes stand at a time
    static constexpr qsizetype MaxWaiting =
        linkLimits::MaxWaitingBoxes; ///< how many wait; what comes then is lost

    /// Makes an owner of boxes; there is none yet.
    explicit MessageBoxes(QObject* parent = nullptr);
    /// Closes the boxes that are open.
    ~MessageBoxes() override;

    /// Opens a box, or lets it wait until fewer than MaxOpen stand.
    /// \param text     rich text of the main unit, of which the first 20,000 characters count
    /// \param okButton whether there is a button with which the operator closes it
    /// \param area     the panel's place on the screen
    /// \return the box, shown; nullptr when it has to wait, or is lost.
    QMessageBox* open(const QString& text, bool okButton, const QRect& area);

    /// \return how many boxes wait.
    qsizetype waiting() const { return m_waiting.size(); }

    /// Closes the boxes that stand, and forgets those that wait.
    void closeAll();

    /// Watches for windows that open or close.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Order
    {
        QByteArray text; // UTF-8, half as large where thousands of characters wait
        bool okButton;
        QRect area;
    };

    QMessageBox* show(const Order& order);
    QString cut(const QString& text);
    void addToWaiting(const Order& order);
    void showWaiting();
    void watchWindows();
    void stepAside(QWidget* window);
    void lift();

    // The boxes that stand, the newest last. A box sends events while it is destroyed, when it is
    // no box any more but still an object.
    QList<QPointer<QObject>> m_boxes;
    QList<QPointer<QObject>> m_aside; // of these, those behind the editor
    QQueue<Order> m_waiting;
    DropLog m_lost;
    DropLog m_tooLong;
    bool m_watching = false;
    bool m_liftQueued = false;
};
