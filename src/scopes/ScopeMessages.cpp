#include "scopes/ScopeMessages.h"

#include "scopes/ScopesPage.h"
#include "scopes/StcMagPhasePlot.h"
#include "wire/Commands.h"
#include "wire/Log.h"
#include "wire/Message.h"

namespace {

void logNoDemodulator(QLatin1String word, int demodulator)
{
    wire::logIgnored(logScopes(), word, QStringLiteral("no demodulator %1").arg(demodulator));
}

} // namespace

ScopeMessages::ScopeMessages(ScopesPage& page, QObject* parent)
    : QObject(parent)
    , m_page(page)
{
}

void ScopeMessages::setMode(const QStringList& fields)
{
    int demodulator = 0;
    int number = 0;
    if (!wire::readInt(fields, 0, demodulator) || !wire::readInt(fields, 1, number)) {
        return;
    }
    const auto mode = ScopeMode::ofMessage(number);
    if (!mode) {
        wire::logIgnored(logScopes(), wire::word::SM, QStringLiteral("no mode %1").arg(number));
    } else if (m_page.modeButton(demodulator) == nullptr) {
        logNoDemodulator(wire::word::SM, demodulator);
    } else {
        m_page.setMode(demodulator, *mode);
    }
}

void ScopeMessages::setPlotsShown(const QStringList& fields)
{
    int demodulator = 0;
    int shown = 0;
    if (!wire::readInt(fields, 0, demodulator) || !wire::readInt(fields, 1, shown)) {
        return;
    }
    if (Scope* scope = m_page.scope(demodulator)) {
        scope->setPlotsShown(shown != 0);
    } else {
        logNoDemodulator(wire::word::SQ, demodulator);
    }
}

void ScopeMessages::setMagnitudesAndPhase(const QStringList& fields)
{
    bool isPhase = false;
    const double phase = fields.value(0).toDouble(&isPhase);
    int magnitude0 = 0;
    int magnitude1 = 0;
    if (!isPhase || !wire::readInt(fields, 1, magnitude0) ||
        !wire::readInt(fields, 2, magnitude1)) {
        return;
    }
    StcMagPhasePlot* const display = m_page.magPhasePlot();
    display->setPhaseDifHold(phase);
    display->setCh0MagHold(magnitude0);
    display->setCh1MagHold(magnitude1);
    display->updateDisplay();
}

void ScopeMessages::setLineColor(int color, int trace)
{
    const bool isTrace = trace >= 0 && trace < ScopesPage::Demodulators;
    if (Scope* scope = isTrace ? m_page.scope(trace + 1) : nullptr) {
        scope->setLineColor(color);
    }
}

void ScopeMessages::chooseMode(int demodulator)
{
    emit choiceWanted(demodulator, ScopeMode::choices());
}

void ScopeMessages::applyChoice(int demodulator, const QString& choice)
{
    if (choice.isEmpty()) {
        return;
    }
    // Quirk: a choice that the list does not have is answered by a message with an empty body. See
    // "Quirks" in docs/architecture.md.
    QString command;
    if (const auto mode = ScopeMode::ofChoice(choice.toInt())) {
        m_page.setMode(demodulator, *mode);
        command = mode->commandText(demodulator);
    }
    emit response(wire::frame(command));
}

void ScopeMessages::noteBlock(
    int demodulator, const QVector<double>& i, const QVector<double>& q) const
{
    qCDebug(logScopes) << "Demod" << demodulator << "block of" << i.size() << "I and" << q.size()
                       << "Q samples";
}

void ScopeMessages::noteRecord(int demodulator, const QByteArray& record) const
{
    qCDebug(logScopes) << "Demod" << demodulator << "SDI record" << record.toHex(' ');
}
