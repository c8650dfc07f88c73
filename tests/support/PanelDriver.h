#pragma once

#include "support/Program.h"
#include "support/RfbClient.h"

#include <QByteArrayList>
#include <QColor>
#include <QImage>
#include <QTemporaryDir>

#include <memory>

// The operator's seat: the real panel, touched through a remote screen as by a finger, and the real
// simulated unit at the other end of its lines. What counts is what the unit has received and what
// the screen shows.
//
// A function that cannot do its work fails the test that calls it.
class PanelDriver
{
public:
    static constexpr int LongMs = 20000;

    static inline const QColor Green{0, 128, 0};
    static inline const QColor Grey{0x91, 0x91, 0x91};
    static inline const QColor Black{0, 0, 0};
    static inline const QColor TitleBlue{66, 89, 148}; // of every editor

    // The buttons of the status bar, and a place left of the texts: the bar itself.
    static constexpr QPoint Linking{451, 455};
    static constexpr QPoint MainMenu{563, 455};
    static constexpr QPoint NextView{675, 455};
    static constexpr QPoint StatusBar{380, 474};

    // Beside the text in the title of an editor: pads and lists.
    static constexpr QPoint Title{30, 28};

    // simulator, panel: paths of the programs. The unit is there first, then the panel with its
    // menus and without its start-up picture.
    PanelDriver(const QString& simulator, const QString& panel);

    void start();
    void stop();
    // Between two roads: back to the menus, whatever the last one has left.
    void showMenus();

    // Starts the unit in place of one that may run.
    void startUnit(const QStringList& options = {});
    void stopUnit() { m_unit.reset(); }
    Program& unit() { return *m_unit; }
    Program& panel() { return *m_panel; }
    RfbClient& screen() { return *m_screen; }

    // A key of a menu of up to four rows of keys, and a place on it that no text reaches.
    static QPoint key(int row, int column);
    static QPoint besideText(int row, int column);

    QColor at(QPoint point) { return m_screen->picture().pixelColor(point); }
    // Waits until the screen has this colour, or another one, at this point. Out: whether it came.
    bool shows(QPoint point, const QColor& colour);
    bool showsOther(QPoint point, const QColor& colour);
    // Waits until this part of the screen looks other than before.
    bool changes(const QImage& before, const QRect& part);
    // How many points of this part of the screen are nearly white.
    int bright(const QRect& part);
    // How many points of this part of the screen have this colour.
    int count(const QRect& part, const QColor& colour);

    void touch(QPoint point);
    void touch(const QList<QPoint>& points);

    // Lets the unit send a message and waits until the panel has carried it out.
    void say(const QByteArray& message);
    // What the panel has sent since the last call, without what was asked for by say().
    QByteArrayList sent();
    // Waits until the panel has sent these, and nothing else.
    void expect(const QByteArrayList& bodies);

    void openMenu(const QByteArray& name) { say("SK," + name); }
    // Opens the editor of a key and waits for its title.
    void openEditor(const QByteArray& menu, QPoint keyPoint, QPoint title = Title);

private:
    QString devices() const { return m_parent->filePath(QStringLiteral("dev")); }

    const QString m_simulatorPath;
    const QString m_panelPath;
    std::unique_ptr<QTemporaryDir> m_parent;
    std::unique_ptr<Program> m_unit;
    std::unique_ptr<Program> m_panel;
    std::unique_ptr<RfbClient> m_screen;
    qsizetype m_seen = 0; // of the unit's output
};
