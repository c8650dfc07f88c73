#pragma once

#include <QTemporaryDir>

/// The surroundings of a program that shows the panel to nobody: a screen of 800 × 480 in memory,
/// and settings of its own, so that the pictures are the same wherever they are taken.
///
/// Make it before the application. QT_QPA_PLATFORM, when it is set, chooses another screen.
class OwnScreen
{
public:
    /// Sets the environment variables of this program, and keeps what the screen cannot do out of
    /// its log.
    OwnScreen();

private:
    QTemporaryDir m_directory;
};
