#include "app/MainWindow.h"
#include "app/Rooms.h"
#include "link/LinkControl.h"
#include "link/LinkMode.h"
#include "link/keySerial.h"
#include "menus/KeyBoard.h"
#include "menus/MenuMessages.h"
#include "support/Pty.h"
#include "support/Screen.h"
#include "support/TestMain.h"
#include "tools/screen/Part.h"

#include <QCloseEvent>
#include <QLabel>
#include <QMessageBox>
#include <QSignalSpy>
#include <QSplashScreen>
#include <QStatusBar>

#include <algorithm>
#include <cmath>
#include <vector>

using namespace Qt::StringLiterals;

namespace {
QSplashScreen* splash()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* screen = qobject_cast<QSplashScreen*>(widget)) {
            return screen;
        }
    }
    return nullptr;
}

// Counts how often a widget is painted.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(const QWidget* watched)
        : m_watched(watched)
    {
        qApp->installEventFilter(this);
    }

    bool eventFilter(QObject* object, QEvent* event) override
    {
        paints += object == m_watched && event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

    int paints = 0;

private:
    const QWidget* m_watched;
};

// Counts how often it is asked for its size, which is larger than the screen.
class AskedPage : public QWidget
{
public:
    QSize sizeHint() const override { return ++asked, QSize(1000, 700); }
    QSize minimumSizeHint() const override { return sizeHint(); }

    mutable int asked = 0;
};

// Returns the relative luminance from 0 (black) to 1 (white), as WCAG 2.1 defines it for the
// contrast of texts.
double luminance(const QColor& colour)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
        0.0722 * linear(colour.blueF());
}
} // namespace

class tst_MainWindow : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_devices = std::make_unique<DeviceDirectory>();
        m_pty = &m_devices->add(u"ttyO1"_s);
        m_window = std::make_unique<MainWindow>();
    }

    void cleanup()
    {
        m_window.reset();
        m_devices.reset();
    }

    void the_window_is_frameless_and_800_by_480()
    {
        m_window->show();
        QCOMPARE(m_window->size(), QSize(800, 480));
        QVERIFY(m_window->windowFlags() & Qt::FramelessWindowHint);
        QCOMPARE(m_window->windowType(), Qt::Window);
        QVERIFY(m_window->isReady());
        QCOMPARE(m_window->styleSheet(),
            u"QMainWindow {background-color: black; border-width: 2px; border-style: solid; "_s
            u"border-color: black; font-size: 16px;}                        "_s
            u".QWidget{background-color: black;} QPushButton:pressed {background-color: "_s
            u"#4169e1;} "_s);
    }

    void no_pointer_is_shown()
    {
        QCOMPARE(m_window->cursor().shape(), Qt::BlankCursor);
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::BlankCursor);
        m_window.reset();
        QVERIFY(QApplication::overrideCursor() == nullptr);
    }

    void the_start_pages_are_plain_menus_and_loading_is_shown()
    {
        const auto& pages = m_window->rooms().menus->book.pages;
        QCOMPARE(pages.size(), 2);
        QCOMPARE(pages.at(0)->name, u"Loading"_s);
        QCOMPARE(pages.at(1)->name, u"two"_s);
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(pages.at(i)->maxRow, 5);
            QCOMPARE(pages.at(i)->maxCol, 5);
            QCOMPARE(pages.at(i)->stackIndex, i);
        }
        QCOMPARE(m_window->rooms().stack->currentIndex(), 0);
        QCOMPARE(m_window->centralWidget(), m_window->rooms().central);
        QCOMPARE(m_window->rooms().central->layout(), m_window->rooms().stack);
        QCOMPARE(m_window->mainMenuIndex(), -1);
        QCOMPARE(m_window->paxMenuIndex(), -1);
    }

    void no_page_is_asked_for_its_size()
    {
        m_window->show();
        auto* page = new AskedPage;
        m_window->rooms().stack->addWidget(page);
        m_window->rooms().stack->setCurrentWidget(page);
        page->updateGeometry();
        QTRY_VERIFY(page->isVisible());
        QCoreApplication::sendPostedEvents();
        QCOMPARE(page->asked, 0);
        QCOMPARE(page->size(), m_window->centralWidget()->size());
        QCOMPARE(m_window->size(), QSize(800, 480));
        QCOMPARE(m_window->statusBar()->height(), 50);
    }

    void the_splash_stays_on_top_for_its_time_and_when_it_is_touched()
    {
        m_window->show();
        QSplashScreen* screen = splash();
        QVERIFY(screen != nullptr && screen->isVisible());
        QVERIFY(screen->windowFlags() & Qt::WindowStaysOnTopHint);
        QVERIFY(screen->windowFlags() & Qt::FramelessWindowHint);
        QCOMPARE(screen->styleSheet(), u"QPixmap {background-color: black}"_s);
        QVERIFY(!screen->pixmap().isNull());
        clickOn(screen);
        QTest::qWait(100);
        QVERIFY(screen->isVisible());
    }

    void the_splash_hides_after_15_seconds_and_not_earlier()
    {
        m_window.reset();
        QElapsedTimer elapsed;
        elapsed.start();
        m_window = std::make_unique<MainWindow>();
        QTRY_VERIFY_WITH_TIMEOUT(!splash()->isVisible(), 40000);
        QVERIFY2(elapsed.elapsed() >= 15000, QByteArray::number(elapsed.elapsed()));
        // The start-up message has no timeout.
        QCOMPARE(m_window->statusBar()->currentMessage(), u"TORVA QN740 - Start Up"_s);
    }

    void the_splash_s_time_can_be_changed_by_the_environment_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<int>("ms");
        QTest::newRow("none") << QByteArray("0") << 0;
        QTest::newRow("short") << QByteArray("300") << 300;
        QTest::newRow("longest") << QByteArray("600000") << 600000;
        QTest::newRow("too long") << QByteArray("600001") << 15000;
        QTest::newRow("negative") << QByteArray("-1") << 15000;
        QTest::newRow("empty") << QByteArray("") << 15000;
        QTest::newRow("not a number") << QByteArray("1 s") << 15000;
    }

    void the_splash_s_time_can_be_changed_by_the_environment()
    {
        QFETCH(QByteArray, value);
        QFETCH(int, ms);
        m_window.reset();
        QElapsedTimer elapsed;
        elapsed.start();
        qputenv("QN740_SPLASH_MS", value);
        m_window = std::make_unique<MainWindow>();
        qunsetenv("QN740_SPLASH_MS");
        QCOMPARE(splash() != nullptr && splash()->isVisible(), ms > 0);
        m_window->show();
        if (ms == 300) {
            QTRY_VERIFY(!splash()->isVisible());
            QVERIFY2(elapsed.elapsed() >= ms, QByteArray::number(elapsed.elapsed()));
            // What it took of memory is given back.
            QVERIFY(splash()->pixmap().isNull());
            QVERIFY(splash()->windowHandle() == nullptr);
        } else {
            QCOMPARE(splash()->pixmap().isNull(), ms == 0);
            QTest::qWait(0);
            QCOMPARE(splash() != nullptr && splash()->isVisible(), ms > 0);
        }
    }

    void the_status_bar_has_its_parts_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("sheet");
        QTest::newRow("linking") << "linkButton"
                                 << "Linking"
                                 << "background-color: #4682b4";
        QTest::newRow("main menu") << "mainMenuButton"
                                   << "Main Menu"
                                   << "background-color: #008080";
        QTest::newRow("scopes") << "scopesButton"
                                << "Scopes"
                                << "background-color: #2e8b57";
    }

    void the_status_bar_has_its_parts()
    {
        QFETCH(QString, name);
        const auto* button = m_window->findChild<QPushButton*>(name);
        QVERIFY(button != nullptr);
        QTEST(button->text(), "text");
        QTEST(button->styleSheet(), "sheet");
        QCOMPARE(button->minimumHeight(), 30);
        QCOMPARE(button->parentWidget()->styleSheet(), u"background-color: #919191 ;"_s);
    }

    void the_status_bar_starts_with_the_start_up_message()
    {
        QCOMPARE(m_window->statusBar(), m_window->statusBar());
        QCOMPARE(m_window->statusBar()->currentMessage(), u"TORVA QN740 - Start Up"_s);
        QCOMPARE(m_window->statusBar()->minimumHeight(), 50);
        QVERIFY(!m_window->statusBar()->isSizeGripEnabled());
        QCOMPARE(m_window->statusBar()->styleSheet(),
            u"QStatusBar {background-color: #919191 ;  font-size: 16px; border-width: 2px; "_s
            u"border-style: solid; border-color: yellow;}"_s);
        QCOMPARE(m_window->findChild<QLabel*>(u"statusLabel"_s)->text(), QString());
        QCOMPARE(m_window->findChild<QLabel*>(u"versionLabel"_s)->text(), u" v1.1.6.4 "_s);
    }

    void the_parts_stand_from_left_to_right()
    {
        m_window->show();
        int right = -1;
        for (const char* name :
            {"statusLabel", "linkButton", "mainMenuButton", "scopesButton", "versionLabel"}) {
            const auto* part = m_window->findChild<QWidget*>(QString::fromUtf8(name));
            const int left = part->mapTo(m_window.get(), QPoint(0, 0)).x();
            QVERIFY2(left > right, name);
            right = left;
        }
        QVERIFY(right < 800);
    }

    // The layout that the buttons of the status bar ask for must not come after the first painting.
    void the_status_bar_is_painted_once_when_the_window_comes_up()
    {
        m_window.reset();
        qputenv("QN740_SPLASH_MS", "0");
        m_window = std::make_unique<MainWindow>();
        qunsetenv("QN740_SPLASH_MS");
        const PaintCounter counter(m_window->findChild<QStatusBar*>());
        m_window->show();
        while (counter.paints == 0) {
            QCoreApplication::processEvents();
        }
        for (int turn = 0; turn < 3; ++turn) {
            QCoreApplication::processEvents();
        }
        QCOMPARE(counter.paints, 1);
    }

    void a_close_request_leaves_the_window_open()
    {
        m_window->show();
        QVERIFY(!m_window->close());
        QVERIFY(m_window->isVisible());
        QCloseEvent request;
        m_window->closeEvent(&request);
        QVERIFY(!request.isAccepted());
    }

    void the_linking_button_is_legible_while_its_dialog_is_open()
    {
        constexpr double Readable = 4.5;
        constexpr int Edge = 6;
        m_window->show();
        m_window->process_config_menu();
        QPushButton* button = part<QPushButton>(*m_window, "linkButton");
        QVERIFY(!button->isEnabled());
        QCOMPARE(button->styleSheet(), u"background-color: #4682b4"_s);
        const QImage image = button->grab(button->rect().adjusted(Edge, Edge, -Edge, -Edge))
                                 .toImage()
                                 .convertToFormat(QImage::Format_RGB32);
        std::vector<double> all;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                all.push_back(luminance(image.pixelColor(x, y)));
            }
        }
        std::sort(all.begin(), all.end());
        const double ground = all.at(all.size() / 2);
        const double text = all.front();
        const double contrast = (ground + 0.05) / (text + 0.05);
        QVERIFY2(contrast >= Readable, qPrintable(QString::number(contrast)));
    }

    void the_link_button_is_enabled_again_by_its_slot()
    {
        part<QPushButton>(*m_window, "linkButton")->setEnabled(false);
        m_window->enableStatBut1();
        QVERIFY(part<QPushButton>(*m_window, "linkButton")->isEnabled());
    }

    void the_diagnostic_slot_shows_its_box()
    {
        QString text;
        whenModal([&](QWidget* dialog) {
            text = qobject_cast<QMessageBox*>(dialog)->text();
            dialog->close();
        });
        m_window->button_pushed();
        QCOMPARE(text, u"A button was pushed"_s);
    }

    void the_panel_comes_up_without_its_line()
    {
        m_window.reset();
        m_devices->remove(u"ttyO1"_s);
        MainWindow window;
        QVERIFY(window.isReady());
        QCOMPARE(window.rooms().link->serial()->name(), u"ttyO1"_s);
        QVERIFY(!window.rooms().link->serial()->port()->isOpen());
        window.send_mess(u"\x02Main\x04"_s);
        QCOMPARE(window.rooms().stack->currentIndex(), 0);
    }

    void the_stored_link_mode_is_restored_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("label");
        QTest::newRow("none") << 0 << "";
        QTest::newRow("diversity") << 1 << "Diversity Mode";
        QTest::newRow("frequency diversity") << 2 << "Frequency Diversity Mode";
        QTest::newRow("unknown mode") << 7 << "";
    }

    void the_stored_link_mode_is_restored()
    {
        QFETCH(int, mode);
        linkMode::store(mode);
        m_window = std::make_unique<MainWindow>();
        linkMode::store(0);
        QCOMPARE(m_window->rooms().link->mode(), mode);
        QTEST(part<QLabel>(*m_window, "statusLabel")->text(), "label");
    }

    void SK_shows_a_menu_and_its_name()
    {
        m_window->show();
        unit(u"AK,Tuner CH1,k,L,5,C,,0,,0,0,1"_s);
        QCOMPARE(m_window->rooms().stack->currentIndex(), 0);
        unit(u"SK,Tuner CH1"_s);
        QCOMPARE(m_window->rooms().stack->currentWidget(), menu(u"Tuner CH1"_s)->frame.data());
        QCOMPARE(m_window->statusBar()->currentMessage(), u"QN740 Menu - Tuner CH1"_s);
        unit(u"SK,Unknown"_s);
        QCOMPARE(m_window->statusBar()->currentMessage(), u"QN740 Menu - Tuner CH1"_s);
    }

    void the_menu_name_of_SK_is_not_cleared_by_an_earlier_timeout()
    {
        m_window->show();
        unit(u"AK,A,k,L,5,C,,0,,0,0,1"_s);
        unit(u"SB,100,Soon over"_s);
        unit(u"SK,A"_s);
        QTest::qWait(400);
        QCOMPARE(m_window->statusBar()->currentMessage(), u"QN740 Menu - A"_s);
    }

    void SK_only_records_the_menu_while_a_display_is_shown()
    {
        unit(u"AK,A,k,L,5,C,,0,,0,0,1"_s);
        m_window->rooms().views->setCurrent(Views::Scopes);
        unit(u"SK,A"_s);
        QCOMPARE(m_window->rooms().stack->currentIndex(), 0);
        QCOMPARE(m_window->rooms().views->menu.index(), menu(u"A"_s)->stackIndex);
        QCOMPARE(m_window->statusBar()->currentMessage(), u"TORVA QN740 - Start Up"_s);
    }

    void every_key_of_a_full_page_is_completely_visible()
    {
        m_window->show();
        for (int i = 0; i < 36; ++i) {
            unit(u"AK,Full,k%1,Setting %1,%2,C,,0,,0,0,1"_s.arg(i).arg(i % 7));
        }
        unit(u"SK,Full"_s);
        QCOMPARE(m_window->size(), QSize(800, 480));
        QTest::qWait(0);
        const QRect area(m_window->rooms().central->mapTo(m_window.get(), QPoint()),
            m_window->rooms().central->size());
        QVERIFY(QRect(0, 0, 800, 480).contains(area));
        QList<QRect> keys;
        for (const QPushButton* button : menu(u"Full"_s)->buttons) {
            QVERIFY(button->isVisible());
            const QRect key(button->mapTo(m_window.get(), QPoint()), button->size());
            QVERIFY2(area.contains(key), qPrintable(button->text()));
            QVERIFY(key.width() >= 110 && key.height() >= 51);
            for (const QRect& other : keys) {
                QVERIFY(!key.intersects(other));
            }
            keys += key;
        }
        QCOMPARE(keys.size(), 36);
    }

    void the_window_never_grows_data()
    {
        QTest::addColumn<int>("keys");
        QTest::newRow("two sub-pages") << 37;
        QTest::newRow("five sub-pages") << 150;
    }

    void the_window_never_grows()
    {
        QFETCH(int, keys);
        m_window->show();
        for (int i = 0; i < keys; ++i) {
            unit(
                u"AK,Full,k%1,A label of sixty characters that is far too long for a key %1,5,C,,0,,0,0,1"_s
                    .arg(i));
        }
        unit(u"SK,Full"_s);
        unit(u"SB,0,%1"_s.arg(QString(500, u'w')));
        QTest::qWait(0);
        QCOMPARE(m_window->size(), QSize(800, 480));
        QVERIFY(m_window->rect().contains(
            part<QPushButton>(*m_window, "scopesButton")
                ->mapTo(m_window.get(),
                    part<QPushButton>(*m_window, "scopesButton")->rect().bottomRight())));
    }

    void a_touch_on_a_key_reaches_the_unit()
    {
        m_window->show();
        splash()->hide();
        unit(u"AK,A,k,Press,0,R1:AGC:,,0,,0,0,1"_s);
        unit(u"SK,A"_s);
        QTest::qWait(0);
        m_pty->takeReceived();
        clickOn(menu(u"A"_s)->buttons.first());
        QTRY_COMPARE(m_pty->received(), framed("R1:AGC:1"));
    }

private:
    void unit(const QString& body) { m_window->process_mess(u'\x02' + body + u'\x04'); }
    KeyBoard* menu(const QString& name) const { return m_window->rooms().menus->book.find(name); }

    std::unique_ptr<DeviceDirectory> m_devices;
    Pty* m_pty = nullptr;
    std::unique_ptr<MainWindow> m_window;
};

QN740_TEST_MAIN(tst_MainWindow)
#include "tst_MainWindow.moc"
