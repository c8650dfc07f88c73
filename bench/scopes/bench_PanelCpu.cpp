// CPU time of the panel's own window over half a minute, while a simulated unit sends to its scope
// ports (QN740_DEV names the devices): with the scopes page shown, or with the menus.
//
//   bench_PanelCpu shown|hidden MODE [SECONDS]     MODE: 1 constellations, 2 eye patterns
//
// Prints the percentage of one core, and how many blocks have come meanwhile.
#include "app/Identity.h"
#include "app/MainWindow.h"
#include "scopes/PlotView.h"
#include "scopes/ScopesPage.h"

#include <QApplication>
#include <QPushButton>
#include <QTimer>

#include <cstdio>
#include <cstring>
#include <sys/resource.h>

namespace {

constexpr int SettleMs = 3000;
constexpr int DefaultSeconds = 30;

double cpuSeconds()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

} // namespace

int main(int argc, char** argv)
{
    const bool shown = argc > 1 && std::strcmp(argv[1], "shown") == 0;
    const QString mode = QString::fromLatin1(argc > 2 ? argv[2] : "2");
    const int seconds = argc > 3 ? QByteArray(argv[3]).toInt() : DefaultSeconds;
    QApplication application(argc, argv);
    identity::apply();
    identity::applyLook(application);
    MainWindow window;
    window.show();
    if (shown) {
        window.scopesButton->click();
    }
    int blocks = 0;
    int paints = 0;
    double before = 0.0;
    for (int n = 1; n <= ScopesPage::Demodulators; ++n) {
        window.process_SM({QString::number(n), mode});
        QObject::connect(window.scopes->scope(n), &Scope::rcv_eye_msg, &window, [&] { ++blocks; });
    }
    const auto countPaints = [&window] {
        int count = 0;
        for (const PlotView* view : window.scopes->findChildren<PlotView*>()) {
            count += view->paintCount();
        }
        return count;
    };
    QTimer::singleShot(SettleMs, &window, [&] {
        before = cpuSeconds();
        blocks = 0;
        paints = countPaints();
    });
    QTimer::singleShot(SettleMs + seconds * 1000, &window, [&] {
        std::printf("%s: %.2f %% of a core over %d s, %d blocks (%.2f a second), %d paintings\n",
            shown ? "page shown" : "page hidden", (cpuSeconds() - before) * 100.0 / seconds,
            seconds, blocks, static_cast<double>(blocks) / seconds, countPaints() - paints);
        QCoreApplication::exit(0); // quit() would ask the window, which never closes
    });
    return QApplication::exec();
}
