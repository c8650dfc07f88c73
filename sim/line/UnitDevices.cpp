#include "sim/line/UnitDevices.h"

#include "sim/line/PseudoTerminal.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

UnitDevices::UnitDevices(const QString& directory, QObject* parent)
    : QObject(parent)
{
    if (directory.isEmpty()) {
        m_fresh =
            std::make_unique<QTemporaryDir>(QDir::tempPath() + QLatin1String("/qn740-XXXXXX"));
        m_path = m_fresh->path();
        m_error = m_fresh->isValid() ? QString() : m_fresh->errorString();
        return;
    }
    m_path = QFileInfo(directory).absoluteFilePath();
    if (!QFileInfo(m_path).isDir()) {
        m_made = QDir().mkpath(m_path);
        m_error = m_made ? QString() : QStringLiteral("%1: cannot be made").arg(m_path);
    }
}

UnitDevices::~UnitDevices()
{
    for (auto line = m_lines.cbegin(); line != m_lines.cend(); ++line) {
        QFile::remove(line.key());
    }
    if (m_made) {
        QDir().rmdir(m_path); // fails when somebody else has put something there, as it should
    }
}

PseudoTerminal* UnitDevices::add(const QString& name)
{
    auto line = std::make_unique<PseudoTerminal>();
    if (!line->isValid()) {
        m_error = QStringLiteral("the system gives no pseudo-terminal");
        return nullptr;
    }
    if (!makeLink(line->slavePath(), linkPath(name))) {
        return nullptr;
    }
    line->setParent(this);
    m_lines.insert(linkPath(name), line.get());
    return line.release();
}

bool UnitDevices::unplug(const QString& name)
{
    PseudoTerminal* line = m_lines.value(linkPath(name));
    if (line == nullptr) {
        return false;
    }
    QFile::remove(linkPath(name)); // first, so that nobody finds a device that is hung up
    line->unplug();
    return true;
}

bool UnitDevices::plug(const QString& name)
{
    PseudoTerminal* line = m_lines.value(linkPath(name));
    if (line == nullptr || !line->plug()) {
        return false;
    }
    return QFile::symLinkTarget(linkPath(name)) == line->slavePath() ||
        makeLink(line->slavePath(), linkPath(name));
}

bool UnitDevices::makeLink(const QString& target, const QString& link)
{
    const QFileInfo old(link);
    if (old.isSymLink() && old.symLinkTarget().startsWith(QLatin1String("/dev/pts/"))) {
        QFile::remove(link);
    } else if (old.isSymLink() || old.exists()) {
        m_error = QStringLiteral("%1: is there already and is no device of a simulator").arg(link);
        return false;
    }
    if (!QFile::link(target, link)) {
        m_error = QStringLiteral("%1: the link cannot be made").arg(link);
        return false;
    }
    return true;
}
