#include "app/SplashScreen.h"

#include "touch/Picture.h"

#include <QCoreApplication>
#include <QTimer>

namespace {

constexpr int DefaultMs = 15000;
constexpr int MaxMs = 600000;

} // namespace

SplashScreen::SplashScreen()
    : QSplashScreen(QPixmap(), Qt::WindowStaysOnTopHint | Qt::FramelessWindowHint)
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

void SplashScreen::showFor(int milliseconds)
{
    if (milliseconds == 0) {
        return;
    }
    setPixmap(touch::picture(QStringLiteral(":/MyFiles/TORVA-qn740-white.png")));
    show();
    QCoreApplication::processEvents();
    // A coarse timer of this length may end most of a second early.
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, this, &SplashScreen::end);
}

void SplashScreen::end()
{
    close();
    setPixmap(QPixmap());
    destroy();
}

void SplashScreen::mousePressEvent(QMouseEvent* /*event*/) {}
