#include "plot/CachedPlot.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>

CachedPlot::CachedPlot(int minPauseMs, QWidget* parent)
    : QCustomPlot(parent)
    , m_minPauseMs(minPauseMs)
{
    // The plot library promises to paint every pixel. On some platforms a modal dialog over such a
    // widget then shows wrong pixels, so let what lies under the plot be painted first.
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    m_paintTimer.setObjectName(QStringLiteral("paintTimer"));
    m_paintTimer.setSingleShot(true);
    connect(&m_paintTimer, &QTimer::timeout, this, [this] { update(changedRect()); });
    // Before, not after: a replot paints the widget before it announces that it is done.
    connect(this, &QCustomPlot::beforeReplot, this, [this] { setFrameStale(); });
}

void CachedPlot::schedulePaint()
{
    if (!isVisible() || m_paintTimer.isActive()) {
        return;
    }
    const int pause = std::max(m_minPauseMs, m_lastPaintMs);
    if (pause > 0 && !pauseIsOver(pause)) {
        m_paintTimer.start(pause);
    } else {
        update(changedRect()); // All updates of a turn of the event loop are painted together.
    }
}

// Twice the pause, so that no more than a third of the time is spent on painting.
bool CachedPlot::pauseIsOver(int pause) const
{
    return m_sincePaint.isValid() && m_sincePaint.elapsed() >= 2 * qint64{pause};
}

void CachedPlot::paintFrame(QPainter& painter, const QRect& dirty) const
{
    if (opaqueRect().contains(dirty)) {
        return;
    }
    if (m_frame.devicePixelRatio() == 1.0) {
        painter.drawPixmap(dirty, m_frame, dirty);
    } else {
        painter.drawPixmap(0, 0, m_frame);
    }
}

void CachedPlot::paintEvent(QPaintEvent* event)
{
    QElapsedTimer elapsed;
    elapsed.start();
    const QRect dirty = event->rect();
    if (frameIsStale()) {
        m_frame = drawFrame();
        m_frameStale = false;
        if (dirty != rect()) {
            update(); // The new frame differs outside the dirty part, too.
        }
    }
    QPainter painter(this);
    paintFrame(painter, dirty);
    paintData(painter, dirty);
    ++m_paintCount;
    m_lastPaintMs = static_cast<int>(elapsed.elapsed());
    m_sincePaint.start();
}
