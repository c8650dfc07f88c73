#pragma once

#include "app/StageMap.h"

#include <QBackingStore>
#include <QPointer>
#include <QRegion>
#include <QWindow>

#include <memory>

class QMouseEvent;
class QWidget;
class WindowStack;

/// The black ground on which the panel stands on a screen that is larger than it or mounted turned.
///
/// It fills a screen that has no window manager. Such platforms stretch the first window that is
/// shown over the whole screen, so the stage is shown first and the panel keeps its size.
///
/// A panel that is not turned stands in the middle of the stage as a window of its own. A turned
/// one cannot: no platform turns the windows of widgets everywhere. So the windows then lie beside
/// the screen, where they paint themselves as always, and the stage shows what they have painted,
/// turned, and hands them what a finger does on it, turned back. Dialogs, message boxes and lists
/// that open need not know of it.
class Stage : public QWindow
{
    Q_OBJECT

public:
    /// Shows the stage where it is wanted: on a platform without a window manager, when the panel
    /// is turned or the screen has another size than it. Call it before any window is shown.
    /// \param rotation by how many degrees the panel is turned clockwise: 0, 90, 180 or 270
    /// \return nullptr where it is not wanted
    static std::unique_ptr<Stage> create(int rotation);

    /// \return whether the panel needs a stage on a screen of this size.
    static bool isNeeded(const QSize& screen, int rotation);
    /// \return whether a screen of this size shows the whole panel.
    static bool isLargeEnough(const QSize& screen, int rotation);

    /// Makes the window and does not show it. \param rotation see create()
    explicit Stage(int rotation);
    ~Stage() override;

    /// Puts the panel's window in its place. Call it before the window is shown.
    void place(QWidget* panel) const;
    /// \return where the panel is, in global coordinates.
    QRect panelArea() const;

protected:
    /// \reimp
    bool event(QEvent* event) override;
    /// \reimp
    void exposeEvent(QExposeEvent* event) override;
    /// \reimp
    void resizeEvent(QResizeEvent* event) override;

private:
    bool isTurned() const { return m_windows != nullptr; }
    StageMap map() const;
    void bringIn(QWidget* window) const;
    void redraw(const QRect& globalArea);
    void redrawAll();
    void present();
    void draw(QPainter& painter, const QRect& pixels) const;
    void takePointer(QMouseEvent* event);
    QPointF toGlobal(const QPointF& position) const;
    static QWindow* openWindow(const QWidget* window);
    QWindow* windowAt(const QPointF& global) const;

    const int m_rotation;
    QBackingStore m_store;
    WindowStack* m_windows = nullptr; // only when the panel is turned
    QRegion m_dirty;
    QPointer<QWindow> m_pressed; // has the finger on it
};
