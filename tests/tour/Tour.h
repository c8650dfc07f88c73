#pragma once

#include <QDir>
#include <QString>

#include <functional>
#include <memory>

class KeyBoard;
class MainWindow;
class QProcess;
class QPushButton;
class QWidget;

// A walk through the panel's screens: the real window, driven by the simulated unit (the program
// qn740-sim) over its pseudo-terminals and by real mouse clicks, with a picture of each screen.
class Tour
{
public:
    // directory: where the pictures go, made if need be; menuFile: the menus that the unit sends,
    // the built-in ones when empty.
    Tour(const QString& directory, const QString& menuFile);
    ~Tour();
    Tour(const Tour&) = delete;
    Tour& operator=(const Tour&) = delete;

    // Starts unit and panel and waits for the menus. Out: whether they came; else the reason has
    // been printed.
    bool start();

    // Writes the screen as it is now to DIRECTORY/NAME.png.
    void picture(const QString& name);

    // Sends a message as the main unit would, "SK,Tuner CH1", and waits until the panel has handled
    // it.
    void unit(const QString& message);

    // Presses the key of a menu, which is shown for that, by its identifier.
    void press(const QString& menu, const QString& keyId);

    // The same for a key that opens a modal editor: `then` gets the editor's window, has to leave
    // it open, and it is closed afterwards.
    void pressAndLook(
        const QString& menu, const QString& keyId, const std::function<void(QWidget*)>& then);

    // Presses the button with this text in a window.
    void pressButton(QWidget* window, const QString& text);

    // Lets everything that is under way come to its end. A quick tour waits SettleMs at most.
    static constexpr int SettleMs = 50;
    static void settle(int ms = SettleMs);

    // From now on no tour waits until what moves has filled its plots; what stands still looks the
    // same.
    static void hurry() { s_quick = true; }

    KeyBoard* menu(const QString& name) const;
    MainWindow& window() { return *m_window; }

    // The splash picture stands over everything for 15 seconds; the tour goes on before that.
    static void hideSplash();

    // Whether everything that was asked for could be done.
    bool succeeded() const { return m_failures == 0; }
    int pictures() const { return m_pictures; }

    // Something could not be done.
    void fail(const QString& reason);

private:
    bool waitForLine(const QString& start, QString* line);

    inline static bool s_quick = false;

    QDir m_directory;
    QString m_menuFile;
    std::unique_ptr<QProcess> m_unit;
    std::unique_ptr<MainWindow> m_window;
    int m_failures = 0;
    int m_pictures = 0;
};

// Presses the button in the status bar until this one of Views' views is shown.
void showView(Tour& tour, int view);

// The stations of the walk, one for each part of the panel.
void visitSpectrum(Tour& tour);
void visitStart(Tour& tour);
void visitMenus(Tour& tour);
void visitMainMenus(Tour& tour);
void visitEditors(Tour& tour);
void visitScopes(Tour& tour);
void visitSignals(Tour& tour);

// Instead of the stations, for menus that are somebody's own: every page of every menu.
void visitAllMenus(Tour& tour);
