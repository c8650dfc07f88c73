#include "app/SplashScreen.h"

SplashScreen::SplashScreen(const QPixmap& picture)
    : QSplashScreen(picture, Qt::WindowStaysOnTopHint | Qt::FramelessWindowHint)
{
    setObjectName(QStringLiteral("splash"));
    setStyleSheet(QStringLiteral("QPixmap {background-color: black}"));
}

void SplashScreen::mousePressEvent(QMouseEvent* /*event*/) {}
