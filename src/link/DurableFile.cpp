#include "link/DurableFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t OwnerOnly = 0600;
constexpr mode_t PermissionBits = 0777;
constexpr long NanosecondsPerMillisecond = 1'000'000;
constexpr long NanosecondsPerSecond = 1'000'000'000;

bool flushFolder(const QByteArray& folder)
{
    const int fd = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) {
        return false;
    }
    const bool flushed = ::fsync(fd) == 0;
    ::close(fd);
    return flushed;
}

// Makes the folder and those above it that are missing, each flushed to the disk.
bool makeFolder(const QString& folder)
{
    const QFileInfo info(folder);
    const QString parent = info.absolutePath();
    return info.isDir() ||
        (parent != folder && makeFolder(parent) && QDir().mkdir(folder) &&
            flushFolder(QFile::encodeName(parent)));
}

bool writeAll(int fd, const QByteArray& contents)
{
    qsizetype written = 0;
    while (written < contents.size()) {
        const ssize_t count = ::write(
            fd, contents.constData() + written, static_cast<size_t>(contents.size() - written));
        if (count > 0) {
            written += count;
        } else if (count == 0 || errno != EINTR) {
            return false;
        }
    }
    return true;
}

qint64 milliseconds(const timespec& time)
{
    return qint64{time.tv_sec} * 1000 + time.tv_nsec / NanosecondsPerMillisecond;
}

// Two files that are written one after the other can bear the same time, because the time of files
// advances in steps.
bool makeTimeDiffer(int fd, const timespec& old)
{
    struct stat fresh
    {
    };
    if (::fstat(fd, &fresh) != 0) {
        return false;
    }
    const qint64 ahead = milliseconds(old) - milliseconds(fresh.st_mtim);
    if (ahead < 0 || ahead >= 1000) {
        return true; // the clock was set back
    }
    timespec next = old;
    next.tv_nsec += NanosecondsPerMillisecond;
    if (next.tv_nsec >= NanosecondsPerSecond) {
        next.tv_nsec -= NanosecondsPerSecond;
        ++next.tv_sec;
    }
    const timespec times[] = {next, next};
    return ::futimens(fd, times) == 0;
}

// Takes over permissions and order in time of the file that will be replaced.
bool follow(int fd, const QByteArray& target)
{
    struct stat old
    {
    };
    if (::stat(target.constData(), &old) != 0) {
        return errno == ENOENT;
    }
    return ::fchmod(fd, old.st_mode & PermissionBits) == 0 && makeTimeDiffer(fd, old.st_mtim);
}

} // namespace

namespace durableFile {

bool replace(const QString& path, const QByteArray& contents)
{
    const QFileInfo info(path);
    const QString real = info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
    const QString folder = QFileInfo(real).absolutePath();
    if (!makeFolder(folder)) {
        return false;
    }
    const QByteArray target = QFile::encodeName(real);
    const QByteArray fresh = target + ".new";
    const int fd =
        ::open(fresh.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, OwnerOnly);
    if (fd < 0) {
        return false;
    }
    const bool flushed = writeAll(fd, contents) && follow(fd, target) && ::fsync(fd) == 0;
    // Some file systems report only here that the disk is full.
    const bool closed = ::close(fd) == 0;
    if (!flushed || !closed || std::rename(fresh.constData(), target.constData()) != 0) {
        ::unlink(fresh.constData());
        return false;
    }
    return flushFolder(QFile::encodeName(folder));
}

} // namespace durableFile
