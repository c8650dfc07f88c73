#include "support/Program.h"

#include <QFile>
#include <QProcessEnvironment>

#include <unistd.h>

using namespace Qt::StringLiterals;

Program::Program(const QString& path, const QStringList& arguments, const QStringList& environment)
{
    QProcessEnvironment all = QProcessEnvironment::systemEnvironment();
    for (const QString& entry : environment) {
        all.insert(entry.section(u'=', 0, 0), entry.section(u'=', 1));
    }
    setProcessEnvironment(all);
    start(path, arguments);
    waitForStarted(LongMs);
}

Program::~Program()
{
    if (state() != NotRunning) {
        kill();
        waitForFinished(LongMs);
    }
}

double Program::cpuSeconds() const
{
    QFile file(u"/proc/%1/stat"_s.arg(processId()));
    if (!file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    // The second field, the name in brackets, may contain blanks. Fields 14 and 15 are the user and
    // the system time.
    const QList<QByteArray> fields = file.readAll().split(')').last().trimmed().split(' ');
    const double ticks = fields.value(11).toDouble() + fields.value(12).toDouble();
    return ticks / static_cast<double>(::sysconf(_SC_CLK_TCK));
}
