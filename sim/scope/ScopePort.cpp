#include "sim/scope/ScopePort.h"

#include "sim/line/PseudoTerminal.h"
#include "sim/scope/ScopeBytes.h"
#include "wire/IqBlock.h"

#include <algorithm>
#include <utility>

namespace {

constexpr int TickMs = 16;        // the interval at which a serial adapter hands bytes on
constexpr double MaxDue = 1536.0; // a line does not catch up after a delay

} // namespace

ScopePort::ScopePort(PseudoTerminal& line, const SignalSettings& signal, const ScopeFaults& faults,
    quint32 seed, QObject* parent)
    : QObject(parent)
    , m_line(line)
    , m_signal(signal, seed)
    , m_faults(faults)
{
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        const qint64 now = m_clock.elapsed();
        pass(now - std::exchange(m_lastMs, now));
    });
    m_clock.start();
}

void ScopePort::setMode(int mode)
{
    if (mode < Off || mode > Sdi || mode == m_mode) {
        return;
    }
    m_mode = mode;
    m_waiting.clear();
    m_due = 0.0;
    m_lastMs = m_clock.elapsed();
    if (mode == Off) {
        m_timer.stop();
    } else {
        m_timer.start(mode == Sdi ? SdiRecordMs : TickMs);
    }
}

QByteArray ScopePort::next()
{
    const auto number = static_cast<quint32>(m_count++);
    if (m_mode == Sdi) {
        return scopeBytes::sdiRecord(number);
    }
    QVector<int> i;
    QVector<int> q;
    const int perSymbol = m_mode == EyePattern ? iqBlock::EyeSamplesPerSymbol : 1;
    m_signal.append(iqBlock::Records, perSymbol, i, q);
    return scopeBytes::block(i, q);
}

void ScopePort::pass(qint64 ms)
{
    m_nowMs += ms;
    if (!m_line.isOpen() || m_line.pendingBytes() > 0) {
        return;
    }
    if (m_mode == Sdi) {
        m_line.write(m_faults.pass(next(), m_nowMs));
        return;
    }
    m_due = std::min(MaxDue, m_due + static_cast<double>(ms) / 1000.0 * BytesPerSecond);
    while (m_due >= 1.0 && m_waiting.size() < static_cast<qsizetype>(m_due)) {
        QByteArray bytes = next();
        const qsizetype length = bytes.size();
        bytes = m_faults.pass(bytes, m_nowMs);
        m_waiting += bytes;
        if (bytes.isEmpty()) {
            m_due -= static_cast<double>(length); // the line is idle meanwhile
        }
    }
    const auto count = std::max(qsizetype{0}, static_cast<qsizetype>(m_due));
    m_line.write(m_waiting.left(count));
    m_waiting.remove(0, count);
    m_due -= static_cast<double>(count);
}
