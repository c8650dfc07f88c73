#pragma once

#include <QSplashScreen>

/// The start-up picture; unlike its base class it stays when it is touched.
class SplashScreen : public QSplashScreen
{
    Q_OBJECT

public:
    /// \param picture shown on top of all other windows
    explicit SplashScreen(const QPixmap& picture);

    /// \return for how many milliseconds the picture is shown: 15,000, or what the environment
    /// variable QN740_SPLASH_MS says, if that is a number from 0 to 600,000
    static int durationMs();

protected:
    void mousePressEvent(QMouseEvent* event) override;
};
