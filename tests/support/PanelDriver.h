#pragma once

#include "support/Program.h"
#include "support/RfbClient.h"

#include <QByteArrayList>
#include <QColor>
#include <QImage>
#include <QTemporaryDir>

#include <memory>

/// Drives the panel as an operator does.
///
/// The real panel program is touched through a remote screen, and the simulated unit (the program)
/// is at the other end of its lines. Tests check what the unit has received and what the screen
/// shows.
///
/// A function that cannot do its work fails the test that calls it.
class PanelDriver
{
public:
    static constexpr int LongMs = 20000;

    static inline const QColor Green{0, 128, 0};
    static inline const QColor Grey{0x91, 0x91, 0x91};
    static inline const QColor Black{0, 0, 0};
    static inline const QColor TitleBlue{66, 89, 148}; // the title of every editor

    // The buttons of the status bar, and a point of the bar itself, left of the texts.
    static constexpr QPoint Linking{451, 455};
    static constexpr QPoint MainMenu{563, 455};
    static constexpr QPoint NextView{675, 455};
    static constexpr QPoint StatusBar{380, 474};

    // A point beside the text in the title of an editor (a pad or a list).
    static constexpr QPoint Title{30, 28};

    /// \param simulator, panel paths of the programs
    PanelDriver(const QString& simulator, const QString& panel);

    /// Starts the unit, then the panel, and waits for the menus and for the end of the start-up
    /// picture.
    void start();
    /// Ends the panel and the unit.
    void stop();
    /// Goes back to the menus after a test, whatever the test has left on the screen.
    void showMenus();

    /// Starts the unit and replaces one that is running.
    void startUnit(const QStringList& options = {});
    void stopUnit() { m_unit.reset(); }
    Program& unit() { return *m_unit; }
    Program& panel() { return *m_panel; }
    RfbClient& screen() { return *m_screen; }

    /// \return the middle of a key, in a menu of up to four rows of keys
    static QPoint key(int row, int column);
    /// \return a point of the key that no text covers
    static QPoint besideText(int row, int column);

    QColor at(QPoint point) { return m_screen->picture().pixelColor(point); }
    /// Waits until the screen has this colour at a point. \return false on a timeout
    bool shows(QPoint point, const QColor& colour);
    /// Waits until the screen has another colour at a point. \return false on a timeout
    bool showsOther(QPoint point, const QColor& colour);
    /// Waits until this part of the screen differs from \a before. \return false on a timeout
    bool changes(const QImage& before, const QRect& part);
    /// \return how many points of this part of the screen are nearly white
    int bright(const QRect& part);
    /// \return how many points of this part of the screen have this colour
    int count(const QRect& part, const QColor& colour);

    void touch(QPoint point);
    void touch(const QList<QPoint>& points);

    /// Lets the unit send a message and waits until the panel has handled it.
    void say(const QByteArray& message);
    /// \return what the panel has sent since the last call, without its answers to say()
    QByteArrayList sent();
    /// Waits until the panel has sent exactly these messages.
    void expect(const QByteArrayList& bodies);

    void openMenu(const QByteArray& name) { say("SK," + name); }
    /// Opens the editor of a key and waits for its title.
    void openEditor(const QByteArray& menu, QPoint keyPoint, QPoint title = Title);

private:
    QString devices() const { return m_parent->filePath(QStringLiteral("dev")); }

    const QString m_simulatorPath;
    const QString m_panelPath;
    std::unique_ptr<QTemporaryDir> m_parent;
    std::unique_ptr<Program> m_unit;
    std::unique_ptr<Program> m_panel;
    std::unique_ptr<RfbClient> m_screen;
    qsizetype m_seen = 0; // bytes of the unit's output that sent() has read
};
