#include "app/SetGov.h"

#include <QProcess>

namespace {
constexpr int MaxRunMs = 1000;
} // namespace

void SetGov::changeGov()
{
    QProcess process;
    process.start(QStringLiteral("cpufreq-set"),
        {QStringLiteral("--governor"), QStringLiteral("performance")}, QIODevice::ReadWrite);
    process.waitForFinished(MaxRunMs);
    process.close();
}
