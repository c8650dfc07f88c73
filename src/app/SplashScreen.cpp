#include "app/SplashScreen.h"

namespace {

constexpr int DefaultMs = 15000;
constexpr int MaxMs = 600000;

} // namespace

SplashScreen::SplashScreen(const QPixmap& picture)
    : QSplashScreen(picture, Qt::WindowStaysOnTopHint | Qt::FramelessWindowHint)
{
    setObjectName(QStringLiteral("splash"));
    setStyleSheet(QStringLiteral("QPixmap {background-color: black}"));
}

int SplashScreen::durationMs()
{
    bool ok = false;
    const int ms = qEnvironmentVariableIntValue("QN740_SPLASH_MS", &ok);
    return ok && ms >= 0 && ms <= MaxMs ? ms : DefaultMs;
}

void SplashScreen::mousePressEvent(QMouseEvent* /*event*/) {}
