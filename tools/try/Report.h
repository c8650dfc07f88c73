#pragma once

#include "tools/try/ScenarioRun.h"

#include <QList>
#include <QString>

/// What a run of scenarios prints and writes.
namespace report {

/// \return how a scenario ended: one line, and after a failure the step, its reason, what was on
/// the screen, the last messages and the picture.
QString text(const Outcome& outcome);

/// \return the last line: how many scenarios passed and failed, and the time.
QString summary(const QList<Outcome>& outcomes);

/// \return the outcomes as a JUnit file, UTF-8, as CI servers read it.
QByteArray junit(const QList<Outcome>& outcomes);

} // namespace report
