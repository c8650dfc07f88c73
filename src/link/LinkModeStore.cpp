#include "link/DurableFile.h"
#include "link/Limits.h"
#include "link/LinkMode.h"

#include <QFile>
#include <QFileInfo>
#include <QSettings>

namespace {

constexpr QLatin1String Organisation("TORVA");
constexpr QLatin1String Application("QN740KB");
constexpr char SettingsKey[] = "Slave";
constexpr char GeneralGroup[] = "[General]";

bool isGroup(const QByteArray& line)
{
    return line.startsWith('[') && line.contains(']');
}

// Whether settings may have this line. One that is damaged makes all of them unreadable.
bool isSound(const QByteArray& line)
{
    return line.isEmpty() || line.startsWith(';') || isGroup(line) ||
        (!line.startsWith('[') && line.contains('='));
}

bool isMode(const QByteArray& line)
{
    return line.contains('=') && line.left(line.indexOf('=')).trimmed() == SettingsKey;
}

// QSettings reads a file as soon as it is made, whatever the size. With the other format it looks
// for another file of the same folder.
QString fileThatIsTooLarge()
{
    const QSettings other(QSettings::IniFormat, QSettings::UserScope, Organisation, Application);
    const QFileInfo file(QFileInfo(other.fileName()).path() + QLatin1Char('/') + Application +
        QLatin1String(".conf"));
    return file.size() > linkLimits::MaxSettingsBytes ? file.filePath() : QString();
}

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.size() <= linkLimits::MaxSettingsBytes && file.open(QIODevice::ReadOnly)
        ? file.readAll()
        : QByteArray();
}

} // namespace

namespace linkMode {

int stored()
{
    if (!fileThatIsTooLarge().isEmpty()) {
        return 0;
    }
    const QSettings settings(Organisation, Application);
    const int mode = settings.value(QLatin1String(SettingsKey), 0).toInt();
    return settings.status() == QSettings::NoError ? mode : 0;
}

// Not written by QSettings, which does not flush the folder, and which waits for a lock file that a
// power cut has left, without end when the board's clock was set back.
void store(int mode)
{
    static bool isFlushed = true;
    QString path = fileThatIsTooLarge();
    if (path.isEmpty()) {
        path = QSettings(Organisation, Application).fileName();
    }
    const QByteArray old = contents(path);
    const QByteArray fresh = withMode(old, mode);
    if (fresh != old || !isFlushed) { // spares the flash memory
        isFlushed = durableFile::replace(path, fresh);
    }
}

QByteArray withMode(const QByteArray& settings, int mode)
{
    QByteArrayList lines;
    bool isGeneral = true; // also what stands in front of the first group
    for (const QByteArray& line : settings.split('\n')) {
        const QByteArray text = line.trimmed();
        if (isGroup(text)) {
            isGeneral = text.compare(GeneralGroup, Qt::CaseInsensitive) == 0;
        }
        if (isSound(text) && !(isGeneral && isMode(text))) {
            lines += line;
        }
    }
    // In front of everything, where no damage of other lines reaches.
    if (lines.isEmpty() ||
        lines.first().trimmed().compare(GeneralGroup, Qt::CaseInsensitive) != 0) {
        lines.prepend(GeneralGroup);
    }
    lines.insert(1, QByteArray(SettingsKey) + '=' + QByteArray::number(mode));
    return lines.join('\n') + (lines.last().isEmpty() ? "" : "\n");
}

} // namespace linkMode
