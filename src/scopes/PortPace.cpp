#include "scopes/PortPace.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QList>
#include <QSerialPort>

#include <algorithm>
#include <poll.h>

namespace {

constexpr qint64 SilenceMs = 250;
constexpr int TogetherMs = 5; // pauses that end within this time end together

// All paces whose ports may be left alone.
QList<PortPace*>& allPaces()
{
    static QList<PortPace*> all;
    return all;
}

// Whether there is something to read, and nothing else to report.
bool hasBytes(const QSerialPort& port)
{
    pollfd state{port.handle(), POLLIN, 0};
    return ::poll(&state, 1, 0) > 0 && state.revents == POLLIN;
}

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
    connect(&m_resume, &QTimer::timeout, this, &PortPace::readDue);
    allPaces() += this;
}

PortPace::~PortPace()
{
    allPaces().removeOne(this);
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
        m_paused = true;
        const qint64 left = m_period - now % m_period;
        // Who was read a little early waits for the multiple after the one that is near.
        m_resume.start(static_cast<int>(left <= TogetherMs ? left + m_period : left));
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
    m_paused = false;
    setReading(true);
}

// Ends the pause, and makes the port read what has come. What the port does not read now, such as
// that the other end is gone, it finds when it listens to the line again.
void PortPace::readNow()
{
    m_resume.stop();
    m_paused = false;
    const QPointer<PortPace> self(this);
    if (m_notifier != nullptr && m_port.isOpen() && hasBytes(m_port)) {
        QEvent readable(QEvent::SockAct);
        QCoreApplication::sendEvent(m_notifier, &readable);
    }
    if (self != nullptr && !isPaused()) {
        setReading(true);
    }
}

void PortPace::readDue()
{
    const QList<PortPace*> all = allPaces();
    for (PortPace* pace : all) {
        // The reader of the one before may have deleted this one, or ended its pause. The timer
        // that has run out has no time left.
        const bool due = allPaces().contains(pace) && pace->m_paused &&
            pace->m_resume.remainingTime() <= TogetherMs;
        if (due) {
            pace->readNow();
        }
    }
}
