// A library that the soak loads into the panel with LD_PRELOAD. It counts what the panel has: Qt's
// objects, widgets, running timers, and bytes on the heap. So the panel itself needs no code for
// it.
//
// Qt announces each QObject through its hooks, which are made for such tools. The environment
// variable QN740_SPY holds two file descriptors, "5,6". For each byte that comes on the first one,
// a line of JSON goes to the second one: "n" asks for the numbers, "c" for the number of objects of
// each class too, "b" for the buttons that can be pressed, each with its place on the screen.

#include <QAbstractButton>
#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMutex>
#include <QMutexLocker>
#include <QSet>
#include <QSocketNotifier>
#include <QWidget>

#include <dlfcn.h>
#include <malloc.h>
#include <unistd.h>

QT_BEGIN_NAMESPACE
// Declared in qhooks_p.h, which Debian has only in a package of private headers.
extern quintptr Q_CORE_EXPORT qtHookData[]; // NOLINT(readability-redundant-declaration)
QT_END_NAMESPACE

namespace {

const QString MessageBox = QStringLiteral("messageBox");

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

void answer(int readEnd, int writeEnd)
{
    char question = 0;
    if (::read(readEnd, &question, 1) != 1) {
        return;
    }
    const QJsonObject found = question == 'b' ? buttons() : counted(question == 'c');
    const QByteArray line = QJsonDocument(found).toJson(QJsonDocument::Compact) + '\n';
    if (::write(writeEnd, line.constData(), static_cast<size_t>(line.size())) < 0) {
        // the soak has ended
    }
}

void startUp()
{
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

} // namespace
