#include "spectrum/ReadoutPace.h"

ReadoutPace::ReadoutPace(QObject* parent)
    : QObject(parent)
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(IntervalMs);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        if (m_changed) {
            change();
        }
    });
}

void ReadoutPace::change()
{
    m_changed = true;
    if (!m_timer.isActive()) {
        m_timer.start();
        m_changed = false;
        emit due();
    }
}
