#include "tools/pictures/PanelPictures.h"

#include "app/MainWindow.h"
#include "app/Rooms.h"
#include "app/Views.h"
#include "menus/Key.h"
#include "menus/KeyBoard.h"
#include "menus/MenuMessages.h"
#include "tools/screen/Part.h"
#include "tools/screen/Screen.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QProcess>
#include <QPushButton>
#include <QSplashScreen>
#include <QTimer>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {
constexpr int MaxWaitMs = 20000;
constexpr int EditorSettleMs = 150;
} // namespace

PanelPictures::PanelPictures(const QString& directory, const QString& menuFile)
    : m_directory(directory)
    , m_menuFile(menuFile)
{
}

PanelPictures::~PanelPictures()
{
    stop();
}

void PanelPictures::stop()
{
    m_window.reset();
    stopUnit();
}

void PanelPictures::stopUnit()
{
    if (m_unit) {
        m_unit->terminate();
        m_unit->waitForFinished();
        m_unit.reset();
    }
}

void PanelPictures::waitForNotice()
{
    const auto* notice = part<QLabel>(*m_window, "noticeLabel");
    QElapsedTimer elapsed;
    elapsed.start();
    while (notice->text().isEmpty() && elapsed.elapsed() < MaxWaitMs) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    if (notice->text().isEmpty()) {
        fail(u"no notice about the link"_s);
    }
}

bool PanelPictures::start()
{
    if (!m_directory.mkpath(u"."_s)) {
        fail(u"cannot make the directory "_s + m_directory.path());
        return false;
    }
    m_unit = std::make_unique<QProcess>();
    m_unit->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QStringList arguments;
    if (!m_menuFile.isEmpty()) {
        arguments = QStringList{u"--menu"_s, m_menuFile};
    }
    m_unit->start(QCoreApplication::applicationDirPath() + u"/qn740-sim"_s, arguments);
    QString ready;
    if (!waitForLine(u"sim: ready "_s, &ready)) {
        fail(u"the simulated unit did not start"_s);
        return false;
    }
    qputenv("QN740_DEV", ready.mid(u"sim: ready "_s.size()).trimmed().toLocal8Bit());
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers); // before the menus come
    take(u"start-up"_s);
    if (!waitForLine(u"sim: menus sent"_s, nullptr)) {
        fail(u"the simulated unit sent no menus"_s);
        return false;
    }
    say(u"PING"_s);
    hideSplash();
    settle();
    return true;
}

bool PanelPictures::waitForLine(const QString& start, QString* line)
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (elapsed.elapsed() < MaxWaitMs && m_unit->state() != QProcess::NotRunning) {
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

void PanelPictures::fail(const QString& reason)
{
    ++m_failures;
    std::fprintf(stderr, "%s\n", qPrintable(reason));
}

void PanelPictures::take(const QString& name)
{
    const QString path = m_directory.filePath(name + u".png"_s);
    if (grabScreen().save(path)) {
        ++m_count;
        std::printf("%s\n", qPrintable(path));
    } else {
        fail(u"cannot write "_s + path);
    }
}

void PanelPictures::say(const QString& message)
{
    // the answer to the second message says that the first has been handled
    m_unit->write(message.toLatin1() + "\nVER\n");
    if (!waitForLine(u"panel: 1.1.6.4"_s, nullptr)) {
        fail(u"no answer after "_s + message);
    }
}

KeyBoard* PanelPictures::menu(const QString& name) const
{
    return m_window->rooms().menus->book.find(name);
}

void PanelPictures::press(const QString& menuName, const QString& keyId)
{
    say(u"SK,"_s + menuName);
    const Key* key = MenuBook::findKey(menu(menuName), keyId);
    if (key == nullptr || key->GetKey() == nullptr || !key->GetKey()->isVisible()) {
        fail(u"no key "_s + keyId + u" to press in "_s + menuName);
        return;
    }
    clickOn(key->GetKey());
}

void PanelPictures::withEditor(
    const QString& menuName, const QString& keyId, const std::function<void(QWidget*)>& then)
{
    whenDialogOpens([&](QWidget* dialog) {
        settle(EditorSettleMs);
        then(dialog);
        dialog->close();
    });
    press(menuName, keyId);
    settle();
}

void PanelPictures::whenDialogOpens(const std::function<void(QWidget*)>& then)
{
    whenModal(then, [this] { fail(u"no modal dialog came up"_s); });
}

void PanelPictures::pressButton(QWidget* parent, const QString& text)
{
    QPushButton* button = buttonWithText(parent, text);
    if (button == nullptr) {
        fail(u"no button "_s + text);
        return;
    }
    clickOn(button);
}

void PanelPictures::showView(int view)
{
    for (int presses = 0; presses < 3 && m_window->rooms().views->current() != view; ++presses) {
        clickOn(part<QPushButton>(*m_window, "scopesButton"));
        settle();
    }
    if (m_window->rooms().views->current() != view) {
        fail(u"no view %1"_s.arg(view));
    }
}

void PanelPictures::settle(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(s_quick ? qMin(ms, SettleMs) : ms, &loop, &QEventLoop::quit);
    loop.exec();
}

void PanelPictures::hideSplash()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (qobject_cast<QSplashScreen*>(widget) != nullptr) {
            widget->hide();
        }
    }
}
