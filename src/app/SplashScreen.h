#pragma once

#include <QSplashScreen>

/// The start-up picture; unlike its base class it stays when it is touched.
class SplashScreen : public QSplashScreen
{
    Q_OBJECT

public:
    /// \param picture shown on top of all other windows
    explicit SplashScreen(const QPixmap& picture);

protected:
    void mousePressEvent(QMouseEvent* event) override;
};
