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
    for (const QString& link : qAsConst(m_links)) {
        QFile::remove(link);
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
    if (!makeLink(line->slavePath(), m_path + QLatin1Char('/') + name)) {
        return nullptr;
    }
    line->setParent(this);
    return line.release();
}

bool UnitDevices::makeLink(const QString& target, const QString& name)
{
    const QFileInfo old(name);
    if (old.isSymLink() && old.symLinkTarget().startsWith(QLatin1String("/dev/pts/"))) {
        QFile::remove(name);
    } else if (old.isSymLink() || old.exists()) {
        m_error = QStringLiteral("%1: is there already and is no device of a simulator").arg(name);
        return false;
    }
    if (!QFile::link(target, name)) {
        m_error = QStringLiteral("%1: the link cannot be made").arg(name);
        return false;
    }
    m_links.append(name);
    return true;
}
