#pragma once

#include <QSplashScreen>

// The start-up picture; unlike its base it stays when it is touched.
class SplashScreen : public QSplashScreen
{
    Q_OBJECT

public:
    explicit SplashScreen(const QPixmap& picture);

protected:
    void mousePressEvent(QMouseEvent* event) override;
};
