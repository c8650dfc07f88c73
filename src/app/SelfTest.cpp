#include "app/SelfTest.h"

#include "app/Stage.h"
#include "wire/Log.h"
#include "wire/SerialLine.h"

#include <QDir>
#include <QFileInfo>
#include <QFontDatabase>
#include <QSettings>
#include <QTemporaryFile>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <grp.h>
#include <linux/fb.h>
#include <linux/input.h>
#include <pwd.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qint32 BaudRate = 115200;

SelfTest::Line good(const QString& what, const QString& text)
{
    return {what, true, text};
}

SelfTest::Line bad(const QString& what, const QString& text)
{
    return {what, false, text};
}

// Not QFileInfo's answer, which is no for a device that the service's DeviceAllow= leaves out.
bool exists(const QString& path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0;
}

bool mayUse(const QString& path)
{
    return ::access(QFile::encodeName(path).constData(), R_OK | W_OK) == 0;
}

// Why mayUse() has just said no. The service's DeviceAllow= refuses a device with an error of its
// own, and in the service's sandbox the groups of others have no names.
QString rights(const QString& path)
{
    if (errno == EPERM) {
        return QStringLiteral("the service may not use %1; add its DeviceAllow= to a drop-in")
            .arg(path);
    }
    const QString group = QFileInfo(path).group();
    const bool hasName = !group.isEmpty() && group != QLatin1String("nogroup");
    return QStringLiteral("no right to read and write %1; add the user to the group %2")
        .arg(path, hasName ? group : QStringLiteral("that owns it"));
}

QString printed(const QSize& size)
{
    return QStringLiteral("%1 x %2").arg(size.width()).arg(size.height());
}

// Opened for reading, closed when it goes out of scope.
class Device
{
public:
    explicit Device(const QString& path)
        : m_descriptor(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC))
    {
    }
    ~Device()
    {
        if (isOpen()) {
            ::close(m_descriptor);
        }
    }
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    bool isOpen() const { return m_descriptor >= 0; }
    int descriptor() const { return m_descriptor; }

private:
    int m_descriptor;
};

template <std::size_t N>
bool hasBit(const std::array<unsigned char, N>& bits, unsigned bit)
{
    return (bits.at(bit / 8) >> (bit % 8) & 1U) != 0;
}

// A touchscreen has absolute positions and is touched; a mouse and a keyboard have neither.
bool isTouchscreen(const Device& device)
{
    std::array<unsigned char, KEY_CNT / 8> keys{};
    std::array<unsigned char, ABS_CNT / 8> axes{};
    ::ioctl(device.descriptor(), EVIOCGBIT(EV_KEY, keys.size()), keys.data());
    ::ioctl(device.descriptor(), EVIOCGBIT(EV_ABS, axes.size()), axes.data());
    return hasBit(axes, ABS_MT_POSITION_X) || (hasBit(axes, ABS_X) && hasBit(keys, BTN_TOUCH));
}

QString nameOf(const Device& device)
{
    std::array<char, 128> name{};
    ::ioctl(device.descriptor(), EVIOCGNAME(name.size() - 1), name.data());
    return QString::fromLocal8Bit(name.data());
}

} // namespace

SelfTest::SelfTest(Places places, const QString& platform, const ScreenSettings& screen)
    : m_places(std::move(places))
    , m_platform(platform)
    , m_screen(screen)
{
}

QList<SelfTest::Line> SelfTest::run() const
{
    QList<Line> lines{checkPort(QStringLiteral("ttyO1"), true)};
    for (const int number : {1, 2, 3, 4, 11, 12, 13}) {
        lines += checkPort(QStringLiteral("ttyUSB%1").arg(number), false);
    }
    lines += {checkLocks(), checkFonts(), checkScreen(), checkTouch(), checkSettings(),
        checkGovernor(), checkUser()};
    return lines;
}

QString SelfTest::print(const Line& line)
{
    return QStringLiteral("%1 %2: %3")
        .arg(QLatin1String(line.ok ? "ok   " : "FAULT"), line.what, line.text);
}

SelfTest::Line SelfTest::checkPort(const QString& name, bool isNeeded) const
{
    const QString path = SerialLine::devicePath(name);
    if (!exists(path)) {
        return isNeeded
            ? bad(name, QStringLiteral("no %1; give the device this name by a udev rule").arg(path))
            : good(name, QStringLiteral("not there; the panel goes without it"));
    }
    if (!mayUse(path)) {
        return bad(name, rights(path));
    }
    SerialLine line(logLink);
    if (line.open(name, BaudRate)) {
        return good(name, QStringLiteral("can be opened"));
    }
    return bad(name,
        line.isTaken() ? QStringLiteral("another program has it open; end that one")
                       : line.port().errorString());
}

SelfTest::Line SelfTest::checkLocks() const
{
    const QString what = QStringLiteral("lock files");
    const QString& directory = m_places.lockDirectory;
    if (!QFileInfo(directory).isDir()) {
        return bad(what, QStringLiteral("no folder %1; mount a tmpfs there").arg(directory));
    }
    return ::access(QFile::encodeName(directory).constData(), W_OK | X_OK) == 0
        ? good(what, directory)
        : bad(what, QStringLiteral("no right to write to %1").arg(directory));
}

SelfTest::Line SelfTest::checkFonts()
{
    const QString what = QStringLiteral("fonts");
    const QString family = QStringLiteral("DejaVu Sans");
    return QFontDatabase::families().contains(family)
        ? good(what, family)
        : bad(what, QStringLiteral("no %1; install the package fonts-dejavu-core").arg(family));
}

SelfTest::Line SelfTest::checkScreen() const
{
    if (!m_screen.warnings().isEmpty()) {
        return bad(QStringLiteral("screen"), m_screen.warnings().constFirst());
    }
    if (m_platform.isEmpty() || m_platform.startsWith(QLatin1String("linuxfb"))) {
        return checkFrameBuffer();
    }
    if (m_platform.startsWith(QLatin1String("eglfs"))) {
        return checkCard();
    }
    return good(QStringLiteral("screen"), QStringLiteral("%1 needs no device").arg(m_platform));
}

SelfTest::Line SelfTest::checkFrameBuffer() const
{
    const QString what = QStringLiteral("screen");
    const QString option =
        m_platform.section(QLatin1String("fb="), 1).section(QLatin1Char(':'), 0, 0);
    const QString path = option.isEmpty() ? m_places.frameBuffer : option;
    if (!exists(path)) {
        return bad(what, QStringLiteral("no frame buffer %1; see QT_QPA_PLATFORM").arg(path));
    }
    if (!mayUse(path)) {
        return bad(what, rights(path));
    }
    const Device device(path);
    fb_var_screeninfo info{};
    if (!device.isOpen() || ::ioctl(device.descriptor(), FBIOGET_VSCREENINFO, &info) != 0) {
        return bad(what, QStringLiteral("%1 is no frame buffer").arg(path));
    }
    return judgeScreen(
        path, QSize(static_cast<int>(info.xres), static_cast<int>(info.yres)), m_screen);
}

SelfTest::Line SelfTest::judgeScreen(
    const QString& path, const QSize& size, const ScreenSettings& settings)
{
    const QString what = QStringLiteral("screen");
    const double scale = settings.scaleOn(size);
    QString text = QStringLiteral("%1 of %2").arg(path, printed(size));
    if (settings.hasScale()) {
        text += QStringLiteral(", scale %1").arg(scale);
    }
    if (settings.rotation() != 0) {
        text += QStringLiteral(", turned by %1").arg(settings.rotation());
    }
    if (Stage::isLargeEnough(size / scale, settings.rotation())) {
        return good(what, text);
    }
    const QSize panel = ScreenSettings::PanelSize * scale;
    return bad(what,
        QStringLiteral("%1; the panel needs %2, see QN740_SCALE and QN740_ROTATION")
            .arg(text, printed(settings.rotation() % 180 == 0 ? panel : panel.transposed())));
}

SelfTest::Line SelfTest::checkCard() const
{
    const QString what = QStringLiteral("screen");
    const QDir directory(m_places.cardDirectory);
    const QStringList cards = directory.entryList({QStringLiteral("card*")}, QDir::System);
    if (cards.isEmpty()) {
        return bad(what, QStringLiteral("no card in %1").arg(directory.path()));
    }
    const QString path = directory.filePath(cards.constFirst());
    return mayUse(path) ? good(what, path) : bad(what, rights(path));
}

SelfTest::Line SelfTest::checkTouch() const
{
    const QString what = QStringLiteral("touchscreen");
    const QDir directory(m_places.inputDirectory);
    bool unreadable = false;
    for (const QString& name : directory.entryList({QStringLiteral("event*")}, QDir::System)) {
        const Device device(directory.filePath(name));
        unreadable = unreadable || !device.isOpen();
        if (device.isOpen() && isTouchscreen(device)) {
            return good(
                what, QStringLiteral("%1, %2").arg(directory.filePath(name), nameOf(device)));
        }
    }
    return bad(what,
        unreadable ? QStringLiteral("no right to read %1; add the user to the group input")
                         .arg(directory.filePath(QStringLiteral("event*")))
                   : QStringLiteral("none in %1; load its driver").arg(directory.path()));
}

SelfTest::Line SelfTest::checkSettings()
{
    const QString what = QStringLiteral("settings");
    const QString directory = QFileInfo(QSettings().fileName()).path();
    if (!QDir().mkpath(directory) ||
        !QTemporaryFile(QDir(directory).filePath(QStringLiteral("self-test.XXXXXX"))).open()) {
        return bad(what,
            QStringLiteral("no right to write to %1; the link mode will be lost").arg(directory));
    }
    return good(what, directory);
}

SelfTest::Line SelfTest::checkGovernor() const
{
    const QString what = QStringLiteral("governor");
    QFile file(m_places.cpuDirectory + QStringLiteral("/cpu0/cpufreq/scaling_governor"));
    if (!file.open(QIODevice::ReadOnly)) {
        return good(what, QStringLiteral("the frequency of this processor is fixed"));
    }
    const QString governor = QString::fromLatin1(file.readAll()).trimmed();
    return governor == QLatin1String("performance")
        ? good(what, governor)
        : bad(what,
              QStringLiteral("%1, not performance; enable qn740-governor.service").arg(governor));
}

SelfTest::Line SelfTest::checkUser() const
{
    const QString what = QStringLiteral("user");
    const QByteArray name = m_places.userName.toLocal8Bit();
    const passwd* user = ::getpwnam(name.constData());
    if (user == nullptr) {
        return bad(what, QStringLiteral("no user %1; run systemd-sysusers").arg(m_places.userName));
    }
    QStringList missing;
    for (const char* groupName : {"dialout", "input", "video", "tty"}) {
        const group* entry = ::getgrnam(groupName);
        bool found = false;
        for (char** member = entry != nullptr ? entry->gr_mem : nullptr;
             member != nullptr && *member != nullptr; ++member) {
            found = found || name == *member;
        }
        if (!found) {
            missing += QString::fromLatin1(groupName);
        }
    }
    return missing.isEmpty() ? good(what, m_places.userName)
                             : bad(what,
                                   QStringLiteral("%1 is not in %2; run systemd-sysusers")
                                       .arg(m_places.userName, missing.join(QStringLiteral(", "))));
}
