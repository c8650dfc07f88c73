#include "app/MainWindow.h"

#include "app/Dispatcher.h"
#include "app/Identity.h"
#include "app/SplashScreen.h"
#include "link/LinkMode.h"
#include "link/LinkModeDialog.h"
#include "link/MessageBoxes.h"
#include "link/keySerial.h"
#include "menus/KeyBoard.h"
#include "menus/MenuMessages.h"
#include "wire/SerialLine.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>

namespace {

constexpr QSize ScreenSize(800, 480);
constexpr int SplashMs = 15000;
constexpr int StatusBarHeight = 50;
constexpr int StatusButtonHeight = 30;
constexpr int StatusButtonWidth = 106;
constexpr int StatusFontPixels = 16;
constexpr QColor DisabledText(0x16, 0x32, 0x4e);
constexpr QMargins StatusBarMargins(8, 0, 4, 0);
constexpr int StartPageLastCell = 5;

} // namespace

// outside of any namespace, because the macro declares a function where it stands
static void loadPictures()
{
    Q_INIT_RESOURCE(MyResources);
}

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent)
    , settings(std::make_unique<QSettings>())
    , noK7150(QCoreApplication::arguments().contains(QStringLiteral("-noK7150")))
    , m_dispatcher(std::make_unique<Dispatcher>(*this))
    , m_messageBoxes(std::make_unique<MessageBoxes>())
{
    loadPictures();
    showSplash();
    setUpStack();
    setUpLink();
    setUpLook();
    Set_Status_Bar();
    setup_scopes();
    if (noK7150) {
        spectrumAvailable = false;
        setUpSpectrum();
    }
    get_settings();
    ready = true;
}

MainWindow::~MainWindow()
{
    timer.stop();
    delete m_scopeResend; // its closing may report an error to this window
    m_scopeResend = nullptr;
    QApplication::restoreOverrideCursor();
}

void MainWindow::showSplash()
{
    m_splash =
        std::make_unique<SplashScreen>(QPixmap(QStringLiteral(":/MyFiles/TORVA-qn740-white.png")));
    m_splash->show();
    QCoreApplication::processEvents();
    // precise: a coarse timer of this length may be most of a second early
    QTimer::singleShot(SplashMs, Qt::PreciseTimer, m_splash.get(), &QWidget::close);
}

void MainWindow::setUpStack()
{
    central = new QWidget(this);
    central->setObjectName(QStringLiteral("central"));
    setCentralWidget(central);
    stack = new QStackedLayout;
    menus = new MenuMessages(stack, this);
    views = new Views(stack, this);
    connect(&menus->book, &MenuBook::keyboard_response_message, this, &MainWindow::send_mess);
    connect(menus, &MenuMessages::showMenu, this, &MainWindow::showMenu);
    setUpMainMenus();
    for (const QString& name : {QStringLiteral("Loading"), QStringLiteral("two")}) {
        auto* page = new KeyBoard;
        page->new_keyboard(name, StartPageLastCell, StartPageLastCell);
        menus->book.add(page);
    }
    views->addWaitingPage();
    views->showMenu(menus->book.pages.constFirst()->frame);
    central->setLayout(stack);
    central->show();
}

void MainWindow::setUpLink()
{
    serial = new keySerial;
    serial->setParent(this);
    connect(
        serial, &keySerial::valid_mess_in, this, &MainWindow::process_mess, Qt::DirectConnection);
    serial->check_serial();
    serial->open_serial(QStringLiteral("ttyO1"));
}

void MainWindow::setUpLook()
{
    setStyleSheet(QStringLiteral(
        "QMainWindow {background-color: black; border-width: 2px; border-style: solid; border-color: black; font-size: 16px;}                        .QWidget{background-color: black;} QPushButton:pressed {background-color: #4169e1;} "));
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    // a full page of keys asks for more than the screen by its minimum sizes
    setFixedSize(ScreenSize);
    setCursor(Qt::BlankCursor);
    QApplication::setOverrideCursor(Qt::BlankCursor);
}

void MainWindow::Set_Status_Bar()
{
    statusBar_ = new QStatusBar;
    statusBar_->setObjectName(QStringLiteral("statusBar"));
    statusBar_->setStyleSheet(QStringLiteral(
        "QStatusBar {background-color: #919191 ;  font-size: 16px; border-width: 2px; border-style: solid; border-color: yellow;}"));
    setStatusBar(statusBar_);
    statusBar_->showMessage(QStringLiteral("TORVA QN740 - Start Up"));
    statusBar_->setSizeGripEnabled(false);
    statusBar_->setMinimumHeight(StatusBarHeight);

    auto* container = new QWidget;
    auto* row = new QHBoxLayout(container);
    row->setContentsMargins(StatusBarMargins);
    statusLabel = new QLabel;
    statusLabel->setObjectName(QStringLiteral("statusLabel"));
    row->addWidget(statusLabel);
    linkButton = addStatusButton(
        "linkButton", QStringLiteral("Linking"), QStringLiteral("background-color: #4682b4"));
    mainMenuButton = addStatusButton(
        "mainMenuButton", QStringLiteral("Main Menu"), QStringLiteral("background-color: #008080"));
    scopesButton = addStatusButton(
        "scopesButton", QStringLiteral("Scopes"), QStringLiteral("background-color: #2e8b57"));
    for (QPushButton* button : {linkButton, mainMenuButton, scopesButton}) {
        row->addWidget(button);
    }
    auto* version = new QLabel(QStringLiteral(" v%1 ").arg(identity::version()));
    version->setObjectName(QStringLiteral("versionLabel"));
    version->setMinimumHeight(StatusButtonHeight);
    row->addWidget(version);
    container->setStyleSheet(QStringLiteral("background-color: #919191 ;"));
    statusBar_->addPermanentWidget(container, 0);

    connect(linkButton, &QPushButton::clicked, this, &MainWindow::process_config_menu);
    connect(mainMenuButton, &QPushButton::clicked, this, &MainWindow::goto_main_menu);
    connect(scopesButton, &QPushButton::clicked, this, &MainWindow::menus_scopes_toggle);
}

QPushButton* MainWindow::addStatusButton(
    const char* name, const QString& text, const QString& sheet)
{
    auto* button = new QPushButton(text);
    button->setObjectName(QLatin1String(name));
    button->setMinimumHeight(StatusButtonHeight);
    button->setStyleSheet(sheet);
    // as large as the bar allows: they are for fingers
    button->setMinimumWidth(StatusButtonWidth);
    button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
    QFont font = button->font();
    font.setPixelSize(StatusFontPixels);
    button->setFont(font);
    // by itself it would be as pale as the button
    QPalette palette = button->palette();
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, DisabledText);
    button->setPalette(palette);
    return button;
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    event->ignore();
}

void MainWindow::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    // Where no window manager keeps it on top, a window is on top when it comes up; this one does
    // so after this event.
    QMetaObject::invokeMethod(m_splash.get(), &QWidget::raise, Qt::QueuedConnection);
}

void MainWindow::button_pushed()
{
    QMessageBox box;
    box.setText(QStringLiteral("A button was pushed"));
    box.exec();
}
