#pragma once

#include <QList>
#include <QObject>
#include <QPointer>

class QImage;
class QPaintEvent;
class QRect;
class QRegion;
class QWidget;

/// The windows of the program in the order in which they lie over each other, and what changes in
/// them.
///
/// It watches the events of all windows: one that is shown or raised comes to the top. What a
/// window has painted is announced, and can be read from its backing store without painting it
/// again.
class WindowStack : public QObject
{
    Q_OBJECT

public:
    /// Watches from now on.
    explicit WindowStack(QObject* parent = nullptr);

    /// \return the visible windows that have painted themselves, the lowest one first.
    QList<QWidget*> windows() const;
    /// \return what the window shows, in the screen's pixels; null when it cannot be read. It is
    /// valid until the next event.
    static QImage picture(const QWidget* window);

    /// \reimp
    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    /// Emitted when a window is about to be shown, before it has placed itself.
    void appearing(QWidget* window);
    /// Emitted when a part of a window is being painted. \param area global coordinates
    void painted(const QRect& area);
    /// Emitted when windows have appeared, disappeared, moved or changed their order.
    void changed();

private:
    struct Entry
    {
        QPointer<QWidget> window;
        bool painted = false;
    };

    void bringUp(QWidget* window);
    void remove(QWidget* window);
    void notePaint(QWidget* widget, const QPaintEvent& event);
    void windowEvent(QWidget* window, const QEvent& event);

    QList<Entry> m_stack;
};
