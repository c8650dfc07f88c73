#pragma once

#include <QByteArray>
#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <QTimer>

/// Watches a menu file and announces that it was saved.
///
/// Editors write a file in place, or write another one and rename it, or delete and create it: file
/// and directory are both watched. What happens to them within a short time counts as one change,
/// so that a file that is still being written is not read, and a change only counts when the bytes
/// of the file are others than before. The file may be missing, and its directory too; both are
/// found again when they come back.
class MenuWatch : public QObject
{
    Q_OBJECT

public:
    static constexpr int SettleMs = 200;     ///< how long the file has to be left alone
    static constexpr int LookAgainMs = 1000; ///< how often a directory that is gone is looked for

    /// \param path of the file, which counts as saved in the form that it has now
    explicit MenuWatch(const QString& path, QObject* parent = nullptr);

    /// \return the path of the file, as it was given
    QString path() const { return m_path; }

signals:
    /// Emitted when the file has other contents than before.
    void saved();
    /// Emitted when the file is no longer there; once, until it is back.
    void gone();

private:
    void watch();
    void look();

    const QString m_path;
    QFileSystemWatcher m_watcher;
    QTimer m_settle;
    QTimer m_lookAgain;
    QByteArray m_digest; // empty when there is no file
};
