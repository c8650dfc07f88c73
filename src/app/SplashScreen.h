#pragma once

#include <QSplashScreen>

/// The start-up picture; unlike its base class it stays when it is touched.
///
/// The picture is read when it is shown, and what it takes of memory is given back when its time is
/// over: the panel runs for months after it.
class SplashScreen : public QSplashScreen
{
    Q_OBJECT

public:
    /// Makes a hidden screen without its picture.
    SplashScreen();

    /// \return for how many milliseconds the picture is shown: 15,000, or what the environment
    /// variable QN740_SPLASH_MS says, if that is a number from 0 to 600,000
    static int durationMs();

    /// Shows the picture on top of all other windows and draws it at once.
    /// \param milliseconds how long; 0: it is not shown
    void showFor(int milliseconds);

protected:
    void mousePressEvent(QMouseEvent* event) override;

private:
    void end();
};
