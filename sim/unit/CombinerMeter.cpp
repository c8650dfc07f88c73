#include "sim/unit/CombinerMeter.h"

#include "sim/unit/UnitState.h"

namespace {

constexpr int Received = 72;
constexpr int NotReceived = 4;
constexpr int Unrest = 4;
constexpr int PhaseStep = 3; // percent
constexpr int MaxPhase = 100;

} // namespace

CombinerMeter::CombinerMeter(const UnitState& state, quint32 seed, QObject* parent)
    : QObject(parent)
    , m_state(state)
    , m_chance(seed)
{
    connect(&m_timer, &QTimer::timeout, this, [this] {
        if (m_state.isScopeOn()) {
            emit tells(next());
        }
    });
    m_timer.start(PeriodMs);
}

QString CombinerMeter::next()
{
    m_phase = qBound(0, m_phase + m_chance.below(2 * PhaseStep + 1) - PhaseStep, MaxPhase);
    const int first = magnitude(1);
    return QStringLiteral("PM,%1,%2,%3").arg(m_phase / 100.0).arg(first).arg(magnitude(2));
}

int CombinerMeter::magnitude(int receiver)
{
    const int middle = m_state.isReceiving(receiver) ? Received : NotReceived;
    return middle + m_chance.below(2 * Unrest + 1) - Unrest;
}
