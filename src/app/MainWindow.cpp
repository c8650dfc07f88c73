#include "app/MainWindow.h"

#include "app/RoomConnections.h"
#include "app/SlotTable.h"
#include "app/SplashScreen.h"
#include "app/StatusBar.h"

#include <QApplication>
#include <QCloseEvent>

namespace {

constexpr QSize ScreenSize(800, 480);

} // namespace

// The macro declares a function where it stands, so it cannot stand in a namespace or a member.
static void loadPictures()
{
    Q_INIT_RESOURCE(MyResources);
}

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent, Qt::Window | Qt::FramelessWindowHint)
    , m_dispatcher(std::make_unique<Dispatcher>(slotTable(*this)))
    , m_splash(std::make_unique<SplashScreen>())
{
    loadPictures();
    m_splash->showFor(SplashScreen::durationMs());
    // Quirk: before there are children, not behind the link: a window that takes a style sheet
    // works out their looks anew. See "Quirks" in docs/architecture.md.
    setUpLook();
    m_rooms = std::make_unique<Rooms>(this);
    setCentralWidget(m_rooms->central);
    connectRooms(*m_rooms, *this);
    m_rooms->link->open(QStringLiteral("ttyO1"));
    Set_Status_Bar();
    setup_scopes();
    if (m_rooms->hasOlderCard) {
        setUpSpectrum();
    }
    get_settings();
    m_ready = true;
}

MainWindow::~MainWindow()
{
    QApplication::restoreOverrideCursor();
    // The children go after the members. What they say meanwhile would reach slots that need them.
    const auto children = findChildren<QObject*>();
    for (QObject* child : children) {
        child->disconnect(this);
    }
}

void MainWindow::setUpLook()
{
    setStyleSheet(QStringLiteral(
        "QMainWindow {background-color: black; border-width: 2px; border-style: solid; border-color: black; font-size: 16px;}                        .QWidget{background-color: black;} QPushButton:pressed {background-color: #4169e1;} "));
    // By its minimum sizes a full page of keys asks for more than the screen has.
    setFixedSize(ScreenSize);
    setCursor(Qt::BlankCursor);
    QApplication::setOverrideCursor(Qt::BlankCursor);
}

void MainWindow::Set_Status_Bar()
{
    m_statusBar = new StatusBar(this);
    setStatusBar(m_statusBar);
    connect(m_statusBar, &StatusBar::linkingPressed, this, &MainWindow::process_config_menu);
    connect(m_statusBar, &StatusBar::mainMenuPressed, this, &MainWindow::goto_main_menu);
    connect(m_statusBar, &StatusBar::viewPressed, this, &MainWindow::menus_scopes_toggle);
    connect(m_rooms->views, &Views::changed, m_statusBar, &StatusBar::setNextView);
    connect(m_rooms->navigation, &MenuNavigation::menuShown, m_statusBar, &StatusBar::showMenuName);
    connect(
        m_rooms->navigation, &MenuNavigation::statusBarWanted, m_statusBar, &QWidget::setVisible);
    connect(m_rooms->link, &LinkControl::modeChanged, m_statusBar, &StatusBar::setLinkMode);
    connect(m_rooms->link, &LinkControl::healthChanged, m_statusBar, &StatusBar::setLinkState);
    m_statusBar->setLinkState(m_rooms->link->health());
    connect(m_rooms->link, &LinkControl::dialogOpened, m_statusBar,
        [bar = m_statusBar] { bar->setLinkingEnabled(false); });
    connect(m_rooms->link, &LinkControl::dialogClosed, this, &MainWindow::enableStatBut1);
}

void MainWindow::setup_scopes()
{
    m_rooms->addScopes();
    connectScopes(*m_rooms, *this);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    event->ignore();
}

void MainWindow::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    // Or the status bar would be painted twice: a button that is polished asks for a new layout,
    // and the bar paints itself anew after one.
    for (const auto type : {QEvent::PolishRequest, QEvent::LayoutRequest}) {
        QCoreApplication::sendPostedEvents(nullptr, type);
    }
    // Where no window manager keeps the splash screen on top, a window that comes up is on top;
    // this one comes up after this event.
    QMetaObject::invokeMethod(m_splash.get(), &QWidget::raise, Qt::QueuedConnection);
}
