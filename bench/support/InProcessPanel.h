#pragma once

#include "app/MainWindow.h"
#include "support/Pty.h"

#include <QByteArrayList>
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QStackedWidget>

#include <functional>
#include <vector>

namespace bench {

/// The panel's window in the process of the bench, on the screen, with the bench as the main unit
/// at the other end of its line.
class InProcessPanel
{
public:
    InProcessPanel();

    /// Sends messages, without their frame characters, through the line and returns when the panel
    /// has handled all of them and its event loop has nothing left to do.
    void say(const QByteArrayList& messages);
    /// As say(), of frames that are ready to be written.
    void send(const QByteArray& frames);

    /// \return the frames of an "AK" for a plain key of type \a type, enabled.
    static QByteArray key(const QByteArray& menu, int number, int type = 0,
        const QByteArray& units = {}, const QByteArray& options = {}, int param = 0);
    /// Defines \a count keys in a menu of six by six cells a page.
    void define(const QByteArray& menu, int count, int type = 0);
    /// \return the shown button with this text, nullptr when there is none.
    QPushButton* button(const QString& text) const;

    DeviceDirectory devices;
    Pty& unit = devices.add(QStringLiteral("ttyO1"));
    MainWindow window;
};

/// A window of the panel's size with a stack of pages of bare buttons, each with the style sheet of
/// a menu key: what a plain program with as many buttons costs.
class BareWindow
{
public:
    BareWindow();

    /// When a button gets its style sheet.
    enum class SheetComes {
        WhenPlaced, ///< When it lies in its page: the style looks the sheet up once.
        First       ///< When it is made: the style looks it up again when it is placed.
    };

    /// Adds \a count buttons, 36 to a page. \a sheet of each button; none when empty
    void addButtons(
        int count, const QString& sheet, SheetComes sheetComes = SheetComes::WhenPlaced);
    /// Removes all pages but the first, which is empty.
    void clear();

    QMainWindow window;
    QStackedWidget* stack; ///< A page for 36 buttons each, after an empty one.
};

/// \return the style sheet of a menu key that can be pressed.
QString keySheet();
/// \return the style sheet of a toggle that is on.
QString toggledSheet();

/// Ends the bench with an exit status that says that it could not measure. \a what is printed
[[noreturn]] void fail(const char* what);

/// Runs the event loop until it has nothing left to do, deferred deletions included.
void settle();
/// Clicks the middle of a widget through its window, as a finger does. \a onRelease is called just
/// before the release.
void click(QWidget* widget, const std::function<void()>& onRelease = {});

/// Counts what is painted in the application.
class PaintWatch : public QObject
{
public:
    PaintWatch();
    ~PaintWatch() override;

    bool eventFilter(QObject* object, QEvent* event) override;

    int windows = 0; ///< Repaints of a window: one for each turn of the event loop that paints.
    int widgets = 0; ///< Widgets that were painted.
    QWidget* only = nullptr; ///< Where set, only this window and what is in it counts.
};

/// Runs the event loop until \a watch has seen a window painted after the call.
void settlePainted(PaintWatch& watch, int windowsBefore);

} // namespace bench
