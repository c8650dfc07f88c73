#include "tour/Tour.h"
#include "app/Rooms.h"

#include "app/MainWindow.h"
#include "menus/Key.h"
#include "menus/KeyBoard.h"
#include "menus/MenuMessages.h"
#include "support/Screen.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QSplashScreen>
#include <QTimer>

#include <cstdio>

namespace {
constexpr int LongestWaitMs = 20000;
constexpr int EditorSettleMs = 150;
} // namespace

Tour::Tour(const QString& directory, const QString& menuFile)
    : m_directory(directory)
    , m_menuFile(menuFile)
{
}

Tour::~Tour()
{
    m_window.reset();
    if (m_unit) {
        m_unit->terminate();
        m_unit->waitForFinished();
    }
}

bool Tour::start()
{
    if (!m_directory.mkpath(".")) {
        fail("cannot make the directory " + m_directory.path());
        return false;
    }
    m_unit = std::make_unique<QProcess>();
    m_unit->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QStringList arguments;
    if (!m_menuFile.isEmpty()) {
        arguments = QStringList{"--menu", m_menuFile};
    }
    m_unit->start(QCoreApplication::applicationDirPath() + "/qn740-sim", arguments);
    QString ready;
    if (!waitForLine("sim: ready ", &ready)) {
        fail("the simulated unit did not start");
        return false;
    }
    qputenv("QN740_DEV", ready.mid(QString("sim: ready ").size()).trimmed().toLocal8Bit());
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers); // before the menus come
    picture("start-up");
    if (!waitForLine("sim: menus sent", nullptr)) {
        fail("the simulated unit sent no menus");
        return false;
    }
    unit("PING");
    hideSplash();
    settle();
    return true;
}

bool Tour::waitForLine(const QString& start, QString* line)
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (elapsed.elapsed() < LongestWaitMs && m_unit->state() != QProcess::NotRunning) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        while (m_unit->canReadLine()) {
            const QString text = QString::fromLatin1(m_unit->readLine());
            if (text.startsWith(start)) {
                if (line != nullptr) {
                    *line = text;
                }
                return true;
            }
        }
    }
    return false;
}

void Tour::fail(const QString& reason)
{
    ++m_failures;
    std::fprintf(stderr, "%s\n", qPrintable(reason));
}

void Tour::picture(const QString& name)
{
    const QString path = m_directory.filePath(name + ".png");
    if (grabScreen().save(path)) {
        ++m_pictures;
        std::printf("%s\n", qPrintable(path));
    } else {
        fail("cannot write " + path);
    }
}

void Tour::unit(const QString& message)
{
    // the answer to the second message says that the first has been handled
    m_unit->write(message.toLatin1() + "\nVER\n");
    if (!waitForLine("panel: 1.1.6.4", nullptr)) {
        fail("no answer after " + message);
    }
}

KeyBoard* Tour::menu(const QString& name) const
{
    return m_window->rooms().menus->book.find(name);
}

void Tour::press(const QString& menuName, const QString& keyId)
{
    unit("SK," + menuName);
    const Key* key = MenuBook::findKey(menu(menuName), keyId);
    if (key == nullptr || key->GetKey() == nullptr || !key->GetKey()->isVisible()) {
        fail("no key " + keyId + " to press in " + menuName);
        return;
    }
    clickOn(key->GetKey());
}

void Tour::pressAndLook(
    const QString& menuName, const QString& keyId, const std::function<void(QWidget*)>& then)
{
    whenModal([&](QWidget* dialog) {
        settle(EditorSettleMs);
        then(dialog);
        dialog->close();
    });
    press(menuName, keyId);
    settle();
}

void Tour::pressButton(QWidget* parent, const QString& text)
{
    QPushButton* button = buttonWithText(parent, text);
    if (button == nullptr) {
        fail("no button " + text);
        return;
    }
    clickOn(button);
}

void Tour::settle(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(s_quick ? qMin(ms, SettleMs) : ms, &loop, &QEventLoop::quit);
    loop.exec();
}

void Tour::hideSplash()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (qobject_cast<QSplashScreen*>(widget) != nullptr) {
            widget->hide();
        }
    }
}
