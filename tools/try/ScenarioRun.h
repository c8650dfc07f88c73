#pragma once

#include "tools/try/Scenario.h"
#include "tools/try/UnitSide.h"

#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>

class MainWindow;

/// How scenarios are run.
struct RunSettings
{
    int stepMs = 5000;      ///< how long a step may wait for what it needs
    int scenarioMs = 60000; ///< how long a scenario may take
    QDir output;            ///< where pictures go; made when the first one is written
    bool update = false;    ///< whether pictures to compare with are made anew
    bool verbose = false;   ///< whether steps and messages are printed as they happen
};

/// How a scenario ended.
struct Outcome
{
    QString name;        ///< of the scenario
    QString path;        ///< of its file
    double seconds = 0;  ///< how long it took
    bool passed = false; ///< whether all steps could be done
    Step step;           ///< the step that failed
    QString reason;      ///< why it failed
    QStringList screen;  ///< the texts on the screen then, line by line
    QStringList traffic; ///< the last messages in both directions
    QString picture;     ///< the path of the picture of the screen
};

/// One run of a scenario with a panel of its own.
///
/// The panel's window is real and in this process; the main unit is at the other end of its line,
/// a pseudo-terminal; the operator's finger touches through the window. A short timer looks what
/// can be done next: nothing before the panel has come to rest, then the next step as soon as what
/// it needs is there. When a press opens a modal editor, its event loop runs inside the press, and
/// the timer goes on there.
class ScenarioRun : public QObject
{
    Q_OBJECT

public:
    /// \param scenario without errors; has to outlive this
    ScenarioRun(const Scenario& scenario, const RunSettings& settings);
    ~ScenarioRun() override;

    /// Runs the scenario to its end or its first fault.
    Outcome run();

private:
    // What has come of a step: it is done, it waits for something, or it cannot be done.
    struct Progress
    {
        enum State { Done, Waiting, Failed };
        State state = Done;
        QString reason = {};              // of waiting or failing
        std::function<void()> touch = {}; // the last thing to do, maybe with a modal editor inside
    };

    bool startPanel();
    void advance();
    void next();
    bool isAtRest();
    void waitMore(const QString& reason);
    void fail(const QString& reason);
    void unwind();
    void print(const UnitSide::Traffic& message) const;
    QStringList lastTraffic() const;
    QString write(const QImage& picture, const QString& name);

    Progress execute(const Step& step);
    Progress unitStep(const Step& step);
    Progress operatorStep(const Step& step);
    Progress expectation(const Step& step);
    Progress sendMenus(const Step& step);
    Progress open(const Step& step);
    Progress hold(const Step& step);
    Progress typeOrChoose(const Step& step);
    Progress expect(const Step& step);
    Progress expectNot(const Step& step);
    Progress takePicture(const Step& step);
    Progress compare(const Step& step);
    Progress tap(QPoint point);

    const Scenario& m_scenario;
    RunSettings m_settings;
    Outcome m_outcome;
    std::unique_ptr<UnitSide> m_unit;
    std::unique_ptr<MainWindow> m_window;
    QEventLoop m_loop;
    QTimer m_timer;
    QElapsedTimer m_clock;     // since the start
    QElapsedTimer m_stepClock; // since the step has begun, or the panel has come to rest
    qsizetype m_at = 0;        // the step
    qsizetype m_expected = 0;  // messages of the panel that steps have expected
    int m_longer = 0;          // how much longer than others the step may take, in ms
    bool m_begun = false;      // whether the step has done its part and waits for the panel
    bool m_rested = false;     // whether the panel has come to rest since the last step
    bool m_touching = false;   // whether the finger is down
    bool m_over = false;
};
