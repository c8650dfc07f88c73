#pragma once

#include "app/ScreenSettings.h"

#include <QList>
#include <QString>

/// Looks at what the panel needs of the board, before it is delivered.
///
/// Each check is one line: what was looked at, and "ok" with a remark, or what is wrong and what to
/// do about it. Nothing is changed: a port is opened and closed again, and no byte is written to
/// it.
class SelfTest
{
public:
    /// Where the board keeps what is looked at.
    struct Places
    {
        QString lockDirectory = QStringLiteral("/var/lock");   ///< lock files of open ports
        QString frameBuffer = QStringLiteral("/dev/fb0");      ///< used by the platform linuxfb
        QString cardDirectory = QStringLiteral("/dev/dri");    ///< used by the platform eglfs
        QString inputDirectory = QStringLiteral("/dev/input"); ///< with the event devices
        QString cpuDirectory = QStringLiteral("/sys/devices/system/cpu"); ///< with cpu0 and so on
        QString userName = QStringLiteral("qn740");                       ///< of the service
    };

    /// The outcome of one check.
    struct Line
    {
        QString what;   ///< "ttyO1", "fonts"
        bool ok = true; ///< whether the panel has what it needs
        QString text;   ///< a remark, or what is wrong and what to do
    };

    /// \param places of the board \param platform the name of Qt's platform plugin that the panel
    /// will be started with, such as "linuxfb:fb=/dev/fb1"; empty: chosen by Qt \param screen how
    /// the panel will stand on the screen
    SelfTest(Places places, const QString& platform, const ScreenSettings& screen = {{}, {}});

    /// Looks at everything. Needs an application object, for the fonts. \return one line for each
    QList<Line> run() const;

    /// \return the line as it is printed: "ok    fonts: DejaVu Sans".
    static QString print(const Line& line);

    /// \return whether the panel, scaled and turned as it is set, is wholly on a screen.
    /// \param path of the screen's device \param size in pixels, as the screen is mounted
    static Line judgeScreen(const QString& path, const QSize& size, const ScreenSettings& settings);

    /// One check each; run() does all of them.
    ///@{
    Line checkPort(const QString& name, bool isNeeded) const;
    Line checkLocks() const;
    static Line checkFonts();
    Line checkScreen() const;
    Line checkTouch() const;
    static Line checkSettings();
    Line checkGovernor() const;
    Line checkUser() const;
    ///@}

private:
    Line checkFrameBuffer() const;
    Line checkCard() const;

    Places m_places;
    QString m_platform;
    ScreenSettings m_screen;
};
