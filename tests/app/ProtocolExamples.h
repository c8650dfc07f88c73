#pragma once

#include "app/MainWindow.h"
#include "support/Pty.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTimer>

// This is one example of docs/protocol.md: a "menu" block, followed by the list of its results.
//
// A statement is one item of the list; names and texts are in backticks:
//     operator presses `A` `B` ...        one after the other
//     panel sends `BODY`                  the next message is this one
//     panel sends `TEXT` without a frame
//     panel sends nothing                 after that
//     menu `M` shows the key `K`          and the menu is on the screen
//     menu `M` does not show the key `K`
//     screen shows the key `K`            on any page
//     key `K` is green                    or grey, or dark
//     status bar shows `TEXT`
//     status bar is hidden
//     link mode shows `TEXT`
//     box shows `TEXT`
//     no box is shown
//     scope `N` is shown            or hidden; demodulator 1 to 3
//     scope `N` is `COLOUR`
//     phase `45°` is lit            and no other
//     magnitudes are `A` and `B`
//     chart `C` is shown            or hidden; channel 0 to 2, on the page that is shown
//     chart `C` has `F` MHz in its middle
//     chart `C` is `W` MHz wide     according to the text beside it
//     chart `C` has markers at `L` `L` ...     dB
//     chart `C` has no markers
//     chart `C` is `COLOUR`
struct Example
{
    enum class Kind {
        Press,
        Sends,
        SendsUnframed,
        SendsNothing,
        MenuShows,
        MenuDoesNotShow,
        ScreenShows,
        KeyIs,
        StatusBarShows,
        StatusBarHidden,
        LinkModeShows,
        BoxShows,
        NoBox,
        ScopeIs,
        ScopeColour,
        PhaseIs,
        MagnitudesAre,
        ChartIs,
        ChartMiddle,
        ChartWidth,
        ChartMarkers,
        ChartNoMarkers,
        ChartColour
    };
    struct Statement
    {
        Kind kind;
        QStringList names;
        QString text; // as it stands in the file
    };

    int line = 0; // of the file, counted from 1, where the block begins
    QByteArray messages;
    QList<Statement> statements;

    // Returns the examples of a document. Each item that is not understood and each example without
    // a statement adds a fault in the form "LINE: reason".
    static QList<Example> read(const QByteArray& document, QStringList& faults);
};

// Carries out one example: a new panel gets the messages over a line, then the statements are
// checked one after the other.
//
// A timer checks them, because a press may open an editor that runs inside the click, where only a
// timer continues. The run waits for each statement.
class ExampleRun : public QObject
{
    Q_OBJECT

public:
    static constexpr int MaxWaitMs = 10000;

    // `patienceMs` is the time to wait for each statement.
    explicit ExampleRun(const Example& example, int patienceMs = MaxWaitMs);

    // Returns the statement that does not hold and what was found instead, or an empty text when
    // all hold.
    QString failure();

private:
    enum class Outcome { Holds, NotYet };

    void tick();
    void tryNext();
    void giveUp();
    Outcome attempt(const Example::Statement& statement);
    Outcome press(const QString& text);
    Outcome sends(const QByteArray& expected);
    Outcome sendsNothing();
    Outcome menuShows(const QString& menu, const QString& key, bool shown) const;
    Outcome keyIs(const QString& text, const QString& look) const;
    bool scopeHolds(const Example::Statement& statement) const;
    bool chartHolds(const Example::Statement& statement) const;
    bool isCarriedOut();
    void ask();
    void fail(const QString& reason);
    QList<QByteArray> notYetSeen();

    DeviceDirectory m_devices;
    Pty& m_unit;
    MainWindow m_window;
    QList<Example::Statement> m_statements;
    int m_patienceMs;
    QTimer m_tick;
    QTimer m_deadline;
    QString m_failure;
    qsizetype m_next = 0;
    qsizetype m_seen = 0; // messages of the panel that were checked
    int m_asked = 0;      // our own queries that are not answered yet
    bool m_started = false;
    bool m_lastAsked = false;
    bool m_pressing = false; // a click is about to be made
};
