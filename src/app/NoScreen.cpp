#include "app/NoScreen.h"

#include "app/CommandLine.h"
#include "app/ErrorLine.h"

#include <QGuiApplication>
#include <QString>

#include <cstdio>
#include <cstdlib>

namespace {

QString g_firstWarning; // It names the cause; what follows is advice.

void handle(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text)
{
    if (type == QtFatalMsg) {
        noScreen::end();
    }
    // Paths of the settings have nothing to do with the screen.
    const bool aside = text.startsWith(QLatin1String("QStandardPaths"));
    if (g_firstWarning.isEmpty() && !aside && (type == QtWarningMsg || type == QtCriticalMsg)) {
        g_firstWarning = text.simplified();
    }
}

} // namespace

namespace noScreen {

Guard::Guard()
{
    g_firstWarning.clear();
    qInstallMessageHandler(handle);
}

Guard::~Guard()
{
    qInstallMessageHandler(nullptr);
    if (!g_firstWarning.isEmpty() && QGuiApplication::primaryScreen() != nullptr) {
        qWarning("%s", qPrintable(g_firstWarning));
    }
}

void end()
{
    const QString cause = g_firstWarning.isEmpty()
        ? QStringLiteral("the platform plugin has found none")
        : g_firstWarning;
    std::fprintf(stderr, "%sqn740-panel: no screen: %s (QT_QPA_PLATFORM or -platform chooses it)\n",
        errorLine::prefix(), qPrintable(cause));
    std::fflush(stderr);
    std::_Exit(static_cast<int>(ExitStatus::NoScreen));
}

} // namespace noScreen
