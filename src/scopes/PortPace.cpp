#include "scopes/PortPace.h"

#include <QDeadlineTimer>
#include <QSerialPort>

#include <algorithm>

namespace {

constexpr qint64 SilenceMs = 250;

qint64 monotonicMs()
{
    return QDeadlineTimer::current(Qt::PreciseTimer).deadline();
}

} // namespace

PortPace::PortPace(QSerialPort& port, QObject* parent)
    : QObject(parent)
    , m_port(port)
{
    m_resume.setObjectName(QStringLiteral("readTimer"));
    m_resume.setSingleShot(true);
    m_resume.setTimerType(Qt::PreciseTimer); // so that several ports are read together
    connect(&m_resume, &QTimer::timeout, this, &PortPace::resume);
}

void PortPace::setPeriod(int ms)
{
    m_period = std::clamp(ms, 0, MaxPeriodMs);
    if (isPaused()) {
        resume();
    }
}

void PortPace::noteRead(qint64 bytes)
{
    const qint64 now = monotonicMs();
    m_streamed = now - m_lastReadMs > SilenceMs ? bytes : m_streamed + bytes;
    m_lastReadMs = now;
    if (m_period > 0 && bytes < LargeRead && m_streamed >= StreamBytes && m_port.isOpen()) {
        setReading(false);
        m_resume.start(static_cast<int>(m_period - now % m_period));
    }
}

// A port has no function for this, only one for the size of its own buffer: it would be read just
// as often until that is full. What wakes it up is a child of it; a port without one is read as
// ever.
void PortPace::setReading(bool reading)
{
    if (m_notifier == nullptr) {
        const auto notifiers =
            m_port.findChildren<QSocketNotifier*>(QString(), Qt::FindDirectChildrenOnly);
        for (QSocketNotifier* notifier : notifiers) {
            m_notifier = notifier->type() == QSocketNotifier::Read ? notifier : m_notifier.data();
        }
    }
    if (m_notifier != nullptr) {
        m_notifier->setEnabled(reading);
    }
}

void PortPace::resume()
{
    m_resume.stop();
    setReading(true);
}
