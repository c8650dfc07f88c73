#include "tools/remote/Password.h"

#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr mode_t ForOthers = S_IRWXG | S_IRWXO;
constexpr qint64 MaxLineBytes = 1024;

Password refused(const QString& path, const QString& why)
{
    return {{}, u"%1: %2"_s.arg(path, why)};
}

} // namespace

Password Password::fromFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return refused(path, file.errorString());
    }
    struct stat status = {};
    if (::fstat(file.handle(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return refused(path, u"is not a file"_s);
    }
    if (status.st_uid != ::geteuid()) {
        return refused(path, u"belongs to another user"_s);
    }
    if ((status.st_mode & ForOthers) != 0) {
        return refused(path, u"others may read or write it; chmod 600 helps"_s);
    }
    const QByteArray text = file.readLine(MaxLineBytes).trimmed();
    if (text.size() < MinChars || text.size() > MaxChars) {
        return refused(path,
            u"the password in its first line has %1 characters, not %2 to %3"_s.arg(text.size())
                .arg(MinChars)
                .arg(MaxChars));
    }
    return {text, {}};
}
