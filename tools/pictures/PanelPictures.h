#pragma once

#include <QDir>
#include <QString>

#include <functional>
#include <memory>

class KeyBoard;
class MainWindow;
class QProcess;
class QWidget;

/// Takes pictures of the panel's screens.
///
/// The real window runs in this process. The simulated unit (the program qn740-sim) is at the other
/// end of its serial lines, and real mouse clicks take the place of the operator's finger.
///
/// A step that cannot be done is printed on standard error and counted; the run then goes on.
class PanelPictures
{
public:
    /// How long most screens need until nothing changes any more.
    static constexpr int SettleMs = 50;

    /// \param directory where the pictures go; created when it is missing
    /// \param menuFile the menus that the unit sends; empty for the built-in ones
    PanelPictures(const QString& directory, const QString& menuFile);
    ~PanelPictures();
    PanelPictures(const PanelPictures&) = delete;
    PanelPictures& operator=(const PanelPictures&) = delete;

    /// Starts the unit and the panel and waits for the menus.
    /// \return false when they did not come
    bool start();

    /// Ends the panel and the unit.
    void stop();

    /// Writes the screen as it is now to DIRECTORY/NAME.png.
    void take(const QString& name);

    /// Lets the unit send a message ("SK,Tuner CH1") and waits until the panel has handled it.
    void say(const QString& message);

    /// Ends the simulated unit, with all of its lines.
    void stopUnit();

    /// Waits until the panel shows a notice about its link.
    void waitForNotice();

    /// Shows a menu and presses one of its keys.
    void press(const QString& menu, const QString& keyId);

    /// Shows a menu, presses a key that opens a modal editor, calls \a then with the editor's
    /// window, and closes it. \a then must leave the window open.
    void withEditor(
        const QString& menu, const QString& keyId, const std::function<void(QWidget*)>& then);

    /// Calls \a then with the next modal dialog that comes up.
    void whenDialogOpens(const std::function<void(QWidget*)>& then);

    /// Presses the button with this text in a window.
    void pressButton(QWidget* window, const QString& text);

    /// Presses the button in the status bar until a view is shown. \param view of Views
    void showView(int view);

    /// Runs the event loop for a time, in a quick run for SettleMs at most.
    static void settle(int ms = SettleMs);

    /// Makes the run quick: it does not wait until scopes and spectra have filled. What does not
    /// move looks the same.
    static void setQuick() { s_quick = true; }

    /// \return the menu of this name, nullptr when there is none
    KeyBoard* menu(const QString& name) const;
    /// \return the panel's window
    MainWindow& window() { return *m_window; }

    /// Prints and counts a step that could not be done.
    void fail(const QString& reason);

    /// Whether all steps could be done.
    bool succeeded() const { return m_failures == 0; }
    /// How many pictures were written.
    int count() const { return m_count; }

private:
    static void hideSplash();
    bool waitForLine(const QString& start, QString* line);

    inline static bool s_quick = false;

    QDir m_directory;
    QString m_menuFile;
    std::unique_ptr<QProcess> m_unit;
    std::unique_ptr<MainWindow> m_window;
    int m_failures = 0;
    int m_count = 0;
};
