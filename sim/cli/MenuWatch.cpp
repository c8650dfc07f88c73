#include "sim/cli/MenuWatch.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>

namespace {

// Returns what tells two contents of the file apart; empty when there is no file that can be read.
QByteArray digestOf(const QString& path)
{
    // A pipe or a device could be read for ever.
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        return {};
    }
    QCryptographicHash hash(QCryptographicHash::Sha1);
    return hash.addData(&file) ? hash.result() : QByteArray();
}

} // namespace

MenuWatch::MenuWatch(const QString& path, QObject* parent)
    : QObject(parent)
    , m_path(path)
    , m_digest(digestOf(path))
{
    m_settle.setSingleShot(true);
    m_settle.setInterval(SettleMs);
    m_lookAgain.setInterval(LookAgainMs);
    connect(&m_settle, &QTimer::timeout, this, &MenuWatch::look);
    connect(&m_lookAgain, &QTimer::timeout, this, &MenuWatch::look);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, [this] { m_settle.start(); });
    // Other files of the directory must not put the time off again and again.
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, [this] {
        if (!m_settle.isActive()) {
            m_settle.start();
        }
    });
    watch();
}

void MenuWatch::watch()
{
    const QFileInfo file(m_path);
    // The path may be another file by now, which the watcher does not notice by itself.
    m_watcher.removePath(m_path);
    if (file.exists()) {
        m_watcher.addPath(m_path);
    }
    const QString directory = file.absolutePath();
    if (!m_watcher.directories().contains(directory) && QFileInfo::exists(directory)) {
        m_watcher.addPath(directory);
    }
    if (m_watcher.directories().contains(directory)) {
        m_lookAgain.stop();
    } else {
        m_lookAgain.start();
    }
}

void MenuWatch::look()
{
    watch();
    const QByteArray digest = digestOf(m_path);
    if (digest == m_digest) {
        return;
    }
    m_digest = digest;
    if (digest.isEmpty()) {
        emit gone();
    } else {
        emit saved();
    }
}
