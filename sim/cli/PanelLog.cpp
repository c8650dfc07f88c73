#include "sim/cli/PanelLog.h"

#include "sim/cli/InputLines.h"
#include "wire/Trace.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString IgnoredPrefix = QStringLiteral("qn740-ignored: ");
const QString LinkPrefix = QStringLiteral("qn740.link: ");

} // namespace

PanelLog::PanelLog(const QString& path, QObject* parent)
    : QObject(parent)
    , m_fd(::open(QFile::encodeName(path).constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC))
{
    struct stat state
    {
    };
    if (m_fd < 0) {
        m_fault = QStringLiteral("%1: %2").arg(path, QString::fromLocal8Bit(std::strerror(errno)));
    } else if (::fstat(m_fd, &state) != 0 || !S_ISFIFO(state.st_mode)) {
        m_fault = QStringLiteral("%1: is no named pipe").arg(path);
    } else {
        m_lines = std::make_unique<InputLines>(m_fd);
        connect(m_lines.get(), &InputLines::line, this, &PanelLog::take);
    }
}

PanelLog::~PanelLog()
{
    m_lines.reset();
    if (m_fd >= 0) {
        ::close(m_fd);
    }
}

void PanelLog::take(const QByteArray& bytes)
{
    const QString line = QString::fromUtf8(bytes);
    if (line.startsWith(IgnoredPrefix)) {
        emit ignored(line.mid(IgnoredPrefix.size()));
        return;
    }
    const auto trace = line.startsWith(LinkPrefix) ? wire::TraceLine::fromText(line) : std::nullopt;
    if (!trace) {
        emit other(line);
    } else if (trace->in) {
        emit took(trace->frame);
    }
}
