#include "tools/try/ScenarioRun.h"

#include "app/MainWindow.h"
#include "link/LinkMode.h"
#include "popups/PopUpSlider.h"
#include "tools/screen/Screen.h"
#include "tools/try/ScreenText.h"
#include "wire/Message.h"

#include <QApplication>
#include <QDialog>
#include <QImage>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int PollMs = 2;
constexpr int MaxUnrestMs = 20000;
constexpr double MsPerSecond = 1000.0;
constexpr qsizetype ReportedMessages = 12;

void hideSplash()
{
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->objectName() == u"splash"_s) {
            window->hide();
        }
    }
}

QString trafficLine(const UnitSide::Traffic& message)
{
    return u"%1 s  %2  %3"_s.arg(static_cast<double>(message.ms) / MsPerSecond, 0, 'f', 3)
        .arg(message.fromPanel ? u"from the panel"_s : u"to the panel  "_s,
            wire::toPrintable(message.body));
}

} // namespace

ScenarioRun::ScenarioRun(const Scenario& scenario, const RunSettings& settings)
    : m_scenario(scenario)
    , m_settings(settings)
{
    m_outcome.name = scenario.name();
    m_outcome.path = scenario.path();
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(PollMs);
    connect(&m_timer, &QTimer::timeout, this, &ScenarioRun::advance);
}

ScenarioRun::~ScenarioRun()
{
    m_window.reset();
    // A slider lives on after its editor, to send its last position.
    qDeleteAll(qApp->findChildren<PopUpSlider*>());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

Outcome ScenarioRun::run()
{
    m_clock.start();
    m_stepClock.start();
    if (startPanel()) {
        m_timer.start();
        m_loop.exec();
    }
    m_outcome.seconds = static_cast<double>(m_clock.elapsed()) / MsPerSecond;
    return m_outcome;
}

bool ScenarioRun::startPanel()
{
    linkMode::store(linkMode::None);
    m_unit = std::make_unique<UnitSide>();
    if (!m_unit->error().isEmpty()) {
        m_outcome.reason = m_unit->error();
        return false;
    }
    connect(m_unit.get(), &UnitSide::passed, this, &ScenarioRun::print);
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    hideSplash();
    return true;
}

// The timer is started anew first: a step may open a modal editor, and this has to be called in its
// event loop, before the step has returned.
void ScenarioRun::advance()
{
    m_timer.start();
    if (m_over) {
        unwind();
        return;
    }
    if (m_clock.elapsed() > m_settings.scenarioMs) {
        fail(u"the scenario takes longer than %1 s"_s.arg(m_settings.scenarioMs / MsPerSecond));
        return;
    }
    if (m_touching || !isAtRest()) {
        return;
    }
    if (m_at == m_scenario.steps().size()) {
        m_outcome.passed = true;
        m_over = true;
        return;
    }
    const Progress progress = execute(m_scenario.steps().at(m_at));
    if (progress.state == Progress::Failed) {
        fail(progress.reason);
    } else if (progress.state == Progress::Waiting) {
        waitMore(progress.reason);
    } else {
        next();
        if (progress.touch) {
            m_unit->noteTouch();
            progress.touch();
        }
    }
}

// The time of a step begins when the panel has come to rest for the first time.
bool ScenarioRun::isAtRest()
{
    if (!m_unit->isQuiet()) {
        if (m_stepClock.elapsed() > MaxUnrestMs + m_longer) {
            fail(u"the panel does not come to rest"_s);
        }
        return false;
    }
    if (!m_rested) {
        m_rested = true;
        m_stepClock.restart();
    }
    return true;
}

void ScenarioRun::next()
{
    if (m_settings.verbose) {
        const Step& step = m_scenario.steps().at(m_at);
        std::printf("  %d: %s\n", step.line, qPrintable(step.source));
    }
    ++m_at;
    m_begun = false;
    m_rested = false;
    m_longer = 0;
    m_stepClock.restart();
}

// Fails when the step has waited for too long.
void ScenarioRun::waitMore(const QString& reason)
{
    if (m_stepClock.elapsed() > m_settings.stepMs + m_longer) {
        fail(reason);
    }
}

void ScenarioRun::fail(const QString& reason)
{
    m_over = true;
    m_outcome.step = m_scenario.steps().value(m_at, m_scenario.steps().constLast());
    m_outcome.reason = reason;
    m_outcome.screen = screenText::lines();
    m_outcome.traffic = lastTraffic();
    m_outcome.picture = write(grabScreen().toImage(), m_scenario.name() + u"-failed.png"_s);
}

// Closes what is open, so that every press returns, and then ends.
void ScenarioRun::unwind()
{
    if (QWidget* popUp = QApplication::activePopupWidget()) {
        popUp->close();
        return;
    }
    QWidget* modal = QApplication::activeModalWidget();
    if (auto* dialog = qobject_cast<QDialog*>(modal)) {
        dialog->reject(); // a box without an escape button ignores close()
    } else if (modal != nullptr) {
        modal->close();
    } else {
        m_timer.stop();
        m_loop.quit();
    }
}

void ScenarioRun::print(const UnitSide::Traffic& message) const
{
    if (m_settings.verbose) {
        std::printf("    %s\n", qPrintable(trafficLine(message)));
    }
}

QStringList ScenarioRun::lastTraffic() const
{
    QStringList lines;
    const auto& all = m_unit->traffic();
    for (qsizetype i = qMax(qsizetype{0}, all.size() - ReportedMessages); i < all.size(); ++i) {
        lines += trafficLine(all.at(i));
    }
    return lines;
}

QString ScenarioRun::write(const QImage& picture, const QString& name)
{
    const QString path = m_settings.output.filePath(name);
    const bool written = m_settings.output.mkpath(u"."_s) && picture.save(path);
    return written ? path : u"cannot be written: "_s + path;
}
