// A library that the soak loads into the panel with LD_PRELOAD. It counts what the panel has: Qt's
// objects, widgets, running timers, and bytes on the heap. So the panel itself needs no code for
// it.
//
// Qt announces each QObject through its hooks, which are made for such tools. The environment
// variable QN740_SPY holds two file descriptors, "5,6". For each byte that comes on the first one,
// a line of JSON goes to the second one: "n" asks for the numbers, "c" for the number of objects of
// each class too, "b" for the buttons that can be pressed, each with its place on the screen, "u"
// for the bytes of the main unit's line that wait in the panel.
//
// Each time that the panel reads from one of its ports, what it got is added to the file that
// QN740_SPY_RECORD names: "12.345678 ttyUSB1 17 00ff" with the time of the monotonic clock, and how
// many bytes the panel had written to the port by then, since it opened it. Each time that one of
// its windows is told of a touch, "12.345678 finger 799 479 1 20" is added, the 1 meaning that the
// finger is down, and the 20 that as many bytes of the main unit's line had been read by then and
// not been handled.
//
// QN740_SPY_FAIL, such as "PopUp:3", plants a fault: the panel aborts when the third window whose
// name begins with "PopUp" is shown.

#include <QAbstractButton>
#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QEvent>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMouseEvent>
#include <QMutex>
#include <QMutexLocker>
#include <QSerialPort>
#include <QSet>
#include <QSocketNotifier>
#include <QWidget>

#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <malloc.h>
#include <sys/syscall.h>
#include <unistd.h>

QT_BEGIN_NAMESPACE
// Declared in qhooks_p.h, which Debian has only in a package of private headers.
extern quintptr Q_CORE_EXPORT qtHookData[]; // NOLINT(readability-redundant-declaration)
QT_END_NAMESPACE

namespace {

const QString MessageBox = QStringLiteral("messageBox");
const QString MainPort = QStringLiteral("ttyO1");

enum Hook { Version = 0, AddObject = 3, RemoveObject = 4, Startup = 5 };
constexpr quintptr OldestVersion = 3;

struct Objects
{
    QMutex mutex;
    QSet<QObject*> all;
};

Objects& objects()
{
    static auto* const known = new Objects; // objects are still deleted after main()
    return *known;
}

void add(QObject* object)
{
    Objects& known = objects();
    const QMutexLocker<QMutex> locked(&known.mutex);
    known.all.insert(object);
}

void remove(QObject* object)
{
    Objects& known = objects();
    const QMutexLocker<QMutex> locked(&known.mutex);
    known.all.remove(object);
}

struct Heap
{
    qint64 inUse; // without the large pieces
    qint64 large; // each of them is a mapping of its own: mostly pictures
    qint64 gaps;  // free, but kept by the allocator
};

// The bytes of the heap, by the sanitizer's account where there is one.
Heap heap()
{
    using Count = size_t (*)();
    static const auto ofSanitizer =
        reinterpret_cast<Count>(::dlsym(RTLD_DEFAULT, "__sanitizer_get_current_allocated_bytes"));
    if (ofSanitizer != nullptr) {
        return {static_cast<qint64>(ofSanitizer()), 0, 0};
    }
    const auto info = ::mallinfo2();
    return {static_cast<qint64>(info.uordblks), static_cast<qint64>(info.hblkhd),
        static_cast<qint64>(info.fordblks)};
}

QString nameOf(const QWidget* window)
{
    const QString name = window->objectName();
    return name.isEmpty() ? QString::fromLatin1(window->metaObject()->className()) : name;
}

QJsonArray shownWindows()
{
    QJsonArray names;
    const auto windows = QApplication::topLevelWidgets();
    for (const QWidget* window : windows) {
        if (window->isVisible()) {
            names.append(nameOf(window));
        }
    }
    return names;
}

// Whether a touch on the middle of a button reaches it: no other window lies over it.
bool isReached(const QAbstractButton& button, QPoint at)
{
    const QWidget* touched = QApplication::widgetAt(at);
    return touched == &button || (touched != nullptr && button.isAncestorOf(touched));
}

// The buttons that a touch reaches. A modal window leaves those of the message boxes to be pressed.
QJsonObject buttons()
{
    QJsonArray found;
    const QWidget* modal = QApplication::activeModalWidget();
    const auto widgets = QApplication::allWidgets();
    for (const QWidget* widget : widgets) {
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        if (button == nullptr || !button->isVisible() || !button->isEnabled()) {
            continue;
        }
        const QPoint at = button->mapToGlobal(button->rect().center());
        const bool isBlocked =
            modal != nullptr && button->window() != modal && nameOf(button->window()) != MessageBox;
        if (isBlocked || !isReached(*button, at)) {
            continue;
        }
        found.append(QJsonObject{{QStringLiteral("text"), button->text()},
            {QStringLiteral("x"), at.x()}, {QStringLiteral("y"), at.y()}});
    }
    return {{QStringLiteral("modal"), modal != nullptr ? nameOf(modal) : QString()},
        {QStringLiteral("windows"), shownWindows()}, {QStringLiteral("buttons"), found}};
}

QJsonObject counted(bool withClasses)
{
    const Heap memory = heap();
    int widgets = 0;
    qsizetype timers = 0;
    QHash<QString, int> classes;
    Objects& known = objects();
    const QMutexLocker<QMutex> locked(&known.mutex);
    const QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
    for (QObject* object : qAsConst(known.all)) {
        if (object->thread() != qApp->thread()) {
            continue;
        }
        widgets += object->isWidgetType() ? 1 : 0;
        timers += dispatcher->registeredTimers(object).size();
        if (withClasses) {
            ++classes[QString::fromLatin1(object->metaObject()->className())];
        }
    }
    QJsonObject result{{QStringLiteral("objects"), static_cast<int>(known.all.size())},
        {QStringLiteral("widgets"), widgets}, {QStringLiteral("timers"), static_cast<int>(timers)},
        {QStringLiteral("heap"), memory.inUse}, {QStringLiteral("large"), memory.large},
        {QStringLiteral("gaps"), memory.gaps}, {QStringLiteral("windows"), shownWindows()}};
    if (withClasses) {
        QJsonObject byClass;
        for (auto entry = classes.cbegin(); entry != classes.cend(); ++entry) {
            byClass.insert(entry.key(), entry.value());
        }
        result.insert(QStringLiteral("classes"), byClass);
    }
    return result;
}

// The bytes that the panel has read from the main unit's line and not handled yet.
qint64 unhandled()
{
    Objects& known = objects();
    const QMutexLocker<QMutex> locked(&known.mutex);
    for (QObject* object : qAsConst(known.all)) {
        const auto* port = qobject_cast<const QSerialPort*>(object);
        if (port != nullptr && port->portName().section(QLatin1Char('/'), -1) == MainPort) {
            return port->bytesAvailable();
        }
    }
    return 0;
}

QJsonObject found(char question)
{
    switch (question) {
    case 'b':
        return buttons();
    case 'u':
        return {{QStringLiteral("unread"), unhandled()}};
    default:
        return counted(question == 'c');
    }
}

void answer(int readEnd, int writeEnd)
{
    char question = 0;
    if (::read(readEnd, &question, 1) != 1) {
        return;
    }
    const QByteArray line = QJsonDocument(found(question)).toJson(QJsonDocument::Compact) + '\n';
    if (::write(writeEnd, line.constData(), static_cast<size_t>(line.size())) < 0) {
        // the soak has ended
    }
}

// The ports that are open, by their descriptors; nothing for other files.
struct OpenPort
{
    std::array<char, 16> name;
    qint64 written; // bytes
};
std::array<OpenPort, 1024> openPorts{};

OpenPort* portOf(int file)
{
    const bool known = file >= 0 && static_cast<size_t>(file) < openPorts.size();
    return known ? &openPorts.at(static_cast<size_t>(file)) : nullptr;
}

void noteOpened(int file, const char* path)
{
    OpenPort* const port = portOf(file);
    if (port == nullptr) {
        return;
    }
    std::array<char, 16>& name = port->name;
    name[0] = 0;
    port->written = 0;
    const char* directory = ::getenv("QN740_DEV");
    const size_t length = directory != nullptr ? ::strlen(directory) : 0;
    if (length > 0 && ::strncmp(path, directory, length) == 0 && path[length] == '/') {
        ::snprintf(name.data(), name.size(), "%s", path + length + 1);
    }
}

// Adds a line to the record, if there is one.
void record(const QByteArray& what)
{
    static const char* const path = ::getenv("QN740_SPY_RECORD");
    if (path == nullptr) {
        return;
    }
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    const QByteArray line = QByteArray::number(static_cast<qlonglong>(now.tv_sec)) + '.' +
        QByteArray::number(1000000 + static_cast<qlonglong>(now.tv_nsec / 1000)).mid(1) + ' ' +
        what + '\n';
    // Opened each time, because the soak moves the file away after each storm.
    const long file =
        ::syscall(SYS_openat, AT_FDCWD, path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    if (file >= 0) {
        ::syscall(SYS_write, file, line.constData(), line.size());
        ::syscall(SYS_close, file);
    }
}

void noteRead(int file, const void* bytes, ssize_t count)
{
    const OpenPort* const port = portOf(file);
    if (count <= 0 || port == nullptr || port->name[0] == 0) {
        return;
    }
    const QByteArray data(static_cast<const char*>(bytes), static_cast<qsizetype>(count));
    record(port->name.data() + (' ' + QByteArray::number(port->written)) + ' ' + data.toHex());
}

// Records where the finger is, as the panel is told, and aborts the panel when the planted fault is
// met.
class Watcher : public QObject
{
public:
    Watcher(const QByteArray& fault, QObject* parent)
        : QObject(parent)
        , m_name(QString::fromLatin1(fault.left(fault.lastIndexOf(':'))))
        , m_left(fault.mid(fault.lastIndexOf(':') + 1).toInt())
    {
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched->isWindowType()) {
            noteTouch(event);
        }
        const auto* widget = qobject_cast<QWidget*>(watched);
        if (m_left > 0 && event->type() == QEvent::Show && widget != nullptr &&
            widget->isWindow() && nameOf(widget).startsWith(m_name) && --m_left == 0) {
            qFatal("planted: %s", qPrintable(nameOf(widget)));
        }
        return false;
    }

private:
    static void noteTouch(const QEvent* event)
    {
        if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseMove ||
            event->type() == QEvent::MouseButtonRelease) {
            const auto* touch = static_cast<const QMouseEvent*>(event);
            const QPoint at = touch->globalPosition().toPoint();
            record("finger " + QByteArray::number(at.x()) + ' ' + QByteArray::number(at.y()) + ' ' +
                (touch->buttons() == Qt::NoButton ? '0' : '1') + ' ' +
                QByteArray::number(unhandled()));
        }
    }

    const QString m_name;
    int m_left;
};

void startUp()
{
    qApp->installEventFilter(new Watcher(qgetenv("QN740_SPY_FAIL"), qApp));
    const QList<QByteArray> ends = qgetenv("QN740_SPY").split(',');
    const int readEnd = ends.value(0).toInt();
    const int writeEnd = ends.value(1).toInt();
    if (readEnd <= STDERR_FILENO || writeEnd <= STDERR_FILENO) {
        return;
    }
    auto* const notifier = new QSocketNotifier(readEnd, QSocketNotifier::Read, qApp);
    QObject::connect(notifier, &QSocketNotifier::activated, qApp,
        [readEnd, writeEnd] { answer(readEnd, writeEnd); });
}

__attribute__((constructor)) void install()
{
    if (qtHookData[Version] < OldestVersion) {
        return;
    }
    qtHookData[AddObject] = reinterpret_cast<quintptr>(&add);
    qtHookData[RemoveObject] = reinterpret_cast<quintptr>(&remove);
    qtHookData[Startup] = reinterpret_cast<quintptr>(&startUp);
}

// Returns the function of this name that would be called without this library.
template <typename Function>
Function next(const char* name)
{
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

int open(const char* path, int flags, ...)
{
    va_list more;
    va_start(more, flags);
    const mode_t mode = va_arg(more, mode_t);
    va_end(more);
    static const auto real = next<int (*)(const char*, int, ...)>("open");
    const int file = real(path, flags, mode);
    noteOpened(file, path);
    return file;
}

int open64(const char* path, int flags, ...)
{
    va_list more;
    va_start(more, flags);
    const mode_t mode = va_arg(more, mode_t);
    va_end(more);
    static const auto real = next<int (*)(const char*, int, ...)>("open64");
    const int file = real(path, flags, mode);
    noteOpened(file, path);
    return file;
}

ssize_t read(int file, void* bytes, size_t size)
{
    static const auto real = next<ssize_t (*)(int, void*, size_t)>("read");
    const ssize_t count = real(file, bytes, size);
    noteRead(file, bytes, count);
    return count;
}

ssize_t write(int file, const void* bytes, size_t size)
{
    static const auto real = next<ssize_t (*)(int, const void*, size_t)>("write");
    const ssize_t count = real(file, bytes, size);
    OpenPort* const port = portOf(file);
    if (port != nullptr && count > 0) {
        port->written += count;
    }
    return count;
}

} // extern "C"
