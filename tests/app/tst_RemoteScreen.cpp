// These tests look at the panel from afar: they connect to its socket as qn740-remote does, compare
// the picture with what the windows show, and press through it.
#include "app/RemoteScreen.h"
#include "support/Heap.h"
#include "support/Panel.h"
#include "support/TestMain.h"
#include "tools/screen/Part.h"
#include "wire/LocalPeer.h"
#include "wire/LocalSocket.h"
#include "wire/RemoteProtocol.h"

#include <QAbstractEventDispatcher>
#include <QComboBox>
#include <QMessageBox>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using remoteProtocol::Type;

namespace {

constexpr int PictureBytes = 800 * 480 * 4;

// A program that looks at the panel. It asks for nothing by itself.
class Watcher
{
public:
    explicit Watcher(const QString& path)
        : m_socket(localSocket::connectTo(path))
    {
        Q_ASSERT(m_socket >= 0);
    }
    ~Watcher() { ::close(m_socket); }
    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;

    bool send(const QByteArray& bytes) const
    {
        return ::send(m_socket, bytes.constData(), static_cast<std::size_t>(bytes.size()),
                   MSG_NOSIGNAL) == bytes.size();
    }
    void want(bool whole = false) const { QVERIFY(send(remoteProtocol::wantMessage(whole))); }
    void point(QPoint at, bool down) const
    {
        QVERIFY(send(remoteProtocol::pointerMessage({at, down})));
    }
    void tap(QPoint at) const
    {
        point(at, true);
        point(at, false);
    }

    // Takes what has come, at most so many bytes. Answers whether there was anything.
    bool read(std::size_t most = 1 << 20)
    {
        QByteArray bytes(static_cast<qsizetype>(most), Qt::Uninitialized);
        const ssize_t count = ::recv(m_socket, bytes.data(), most, 0);
        isEnded = isEnded || count == 0;
        m_cutter.append(bytes.first(qMax<ssize_t>(count, 0)));
        while (const auto message = m_cutter.next()) {
            handle(*message);
        }
        return count > 0;
    }
    // Whether so many pictures, counted from the first, come.
    bool gets(int pictures)
    {
        const QDeadlineTimer deadline(5000);
        while (ends < pictures && !deadline.hasExpired()) {
            QCoreApplication::processEvents();
            if (!read()) {
                QThread::usleep(500);
            }
        }
        return ends >= pictures;
    }

    QImage picture;
    QRegion changed; // since the last picture
    std::optional<remoteProtocol::Hello> hello;
    int ends = 0;
    qsizetype pixelBytes = 0;
    bool isEnded = false;

private:
    void handle(const remoteProtocol::Message& message)
    {
        if (message.type == static_cast<quint8>(Type::Hello)) {
            hello = remoteProtocol::readHello(message.contents);
            QVERIFY(hello);
            picture = QImage(hello->size, QImage::Format_RGB32);
        } else if (message.type == static_cast<quint8>(Type::Rectangle)) {
            const auto part = remoteProtocol::readRectangle(message.contents);
            QVERIFY(part);
            changed = m_isWhole ? part->place : changed | part->place;
            m_isWhole = false;
            pixelBytes += part->pixels.size();
            const qsizetype lineBytes = qsizetype{4} * part->place.width();
            for (int y = 0; y < part->place.height(); ++y) {
                std::copy_n(part->pixels.constData() + y * lineBytes, lineBytes,
                    picture.scanLine(part->place.y() + y) + 4 * part->place.x());
            }
        } else {
            QCOMPARE(message.type, static_cast<quint8>(Type::End));
            m_isWhole = true;
            ++ends;
        }
    }

    int m_socket;
    remoteProtocol::Cutter m_cutter{remoteProtocol::MaxPictureBytes};
    bool m_isWhole = true;
};

// Counts what the window system tells a window.
class MouseEvents : public QObject
{
public:
    explicit MouseEvents(QWindow* window) { window->installEventFilter(this); }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override
    {
        moves += event->type() == QEvent::MouseMove ? 1 : 0;
        presses += event->type() == QEvent::MouseButtonPress ? 1 : 0;
        return false;
    }

    int moves = 0;
    int presses = 0;
};

QImage glass()
{
    return grabScreen().toImage().convertToFormat(QImage::Format_RGB32);
}

QPoint middleOf(const QWidget* widget)
{
    return widget->mapToGlobal(widget->rect().center());
}

// Everything that the event loop has to do now.
void settle()
{
    while (QCoreApplication::eventDispatcher()->processEvents(QEventLoop::AllEvents)) {
    }
}

} // namespace

class tst_RemoteScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_panel = std::make_unique<Panel>(); }
    void cleanupTestCase() { m_panel.reset(); }
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        m_path = m_directory->filePath(u"remote"_s);
        qputenv("QN740_REMOTE_SOCKET", m_path.toLocal8Bit());
        m_screen = std::make_unique<RemoteScreen>(&m_panel->window);
    }
    void cleanup()
    {
        m_screen.reset();
        qunsetenv("QN740_REMOTE_SOCKET");
        qunsetenv("QN740_REMOTE_VIEW_ONLY");
        QApplication::closeAllWindows(); // what a test that failed has left
    }

    void a_message_has_the_bytes_that_are_described_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::addColumn<QByteArray>("hex");
        using namespace remoteProtocol;
        QTest::newRow("hello") << helloMessage({{800, 480}, false})
                               << QByteArray("0000000e 01 514e373430 0001 0320 01e0 01 00");
        QTest::newRow("hello, only to look at")
            << helloMessage({{800, 480}, true})
            << QByteArray("0000000e 01 514e373430 0001 0320 01e0 01 01");
        QTest::newRow("end") << endMessage() << QByteArray("00000001 03");
        QTest::newRow("want") << wantMessage(false) << QByteArray("00000002 10 00");
        QTest::newRow("want, whole") << wantMessage(true) << QByteArray("00000002 10 01");
        QTest::newRow("finger down")
            << pointerMessage({{799, 258}, true}) << QByteArray("00000006 11 01 031f 0102");
        QTest::newRow("finger lifted beside the picture")
            << pointerMessage({{-1, 70000}, false}) << QByteArray("00000006 11 00 0000 ffff");
        const quint32 pixels[] = {0xff112233, 0xff445566, 0xffaaaaaa, 0xff778899, 0xffaabbcc};
        QByteArray rectangle;
        appendRectangle(
            rectangle, {32, 16, 2, 2}, reinterpret_cast<const uchar*>(pixels), 3 * sizeof *pixels);
        QTest::newRow("rectangle")
            << rectangle
            << QByteArray("00000019 02 0020 0010 0002 0002 332211ff 665544ff 998877ff ccbbaaff");
    }
    void a_message_has_the_bytes_that_are_described()
    {
        QFETCH(QByteArray, message);
        QFETCH(QByteArray, hex);
        QCOMPARE(message.toHex(), hex.replace(' ', ""));
    }

    void contents_that_are_not_as_described_are_refused_data()
    {
        QTest::addColumn<QByteArray>("hex");
        QTest::addColumn<int>("type");
        QTest::newRow("hello, short") << QByteArray("514e373430 0001 0320 01e0 01") << 1;
        QTest::newRow("hello, another word") << QByteArray("514e373431 0001 0320 01e0 01 00") << 1;
        QTest::newRow("hello, version 2") << QByteArray("514e373430 0002 0320 01e0 01 00") << 1;
        QTest::newRow("hello, no width") << QByteArray("514e373430 0001 0000 01e0 01 00") << 1;
        QTest::newRow("hello, too high") << QByteArray("514e373430 0001 0320 1001 01 00") << 1;
        QTest::newRow("hello, another format")
            << QByteArray("514e373430 0001 0320 01e0 02 00") << 1;
        QTest::newRow("rectangle, short") << QByteArray("0000 0000 0001") << 2;
        QTest::newRow("rectangle, empty") << QByteArray("0000 0000 0000 0001") << 2;
        QTest::newRow("rectangle, a pixel too few")
            << QByteArray("0000 0000 0001 0002 11223344") << 2;
        QTest::newRow("rectangle, a byte too many")
            << QByteArray("0000 0000 0001 0001 1122334455") << 2;
        QTest::newRow("want, empty") << QByteArray("") << 16;
        QTest::newRow("want, long") << QByteArray("0100") << 16;
        QTest::newRow("finger, short") << QByteArray("01 0000 00") << 17;
        QTest::newRow("finger, long") << QByteArray("01 0000 0000 00") << 17;
    }
    void contents_that_are_not_as_described_are_refused()
    {
        QFETCH(QByteArray, hex);
        QFETCH(int, type);
        const QByteArray contents = QByteArray::fromHex(hex);
        switch (static_cast<Type>(type)) {
        case Type::Hello:
            QVERIFY(!remoteProtocol::readHello(contents));
            break;
        case Type::Rectangle:
            QVERIFY(!remoteProtocol::readRectangle(contents));
            break;
        case Type::Want:
            QVERIFY(!remoteProtocol::readWant(contents));
            break;
        default:
            QVERIFY(!remoteProtocol::readPointer(contents));
        }
    }

    void messages_are_cut_out_of_a_stream_in_any_pieces()
    {
        const QByteArray stream = remoteProtocol::wantMessage(true) +
            remoteProtocol::pointerMessage({{1, 2}, true}) + remoteProtocol::endMessage();
        for (qsizetype piece = 1; piece <= stream.size(); ++piece) {
            remoteProtocol::Cutter cutter(16);
            QList<int> types;
            for (qsizetype at = 0; at < stream.size(); at += piece) {
                cutter.append(stream.mid(at, piece));
                while (const auto message = cutter.next()) {
                    types += message->type;
                }
            }
            QCOMPARE(types, QList<int>({16, 17, 3}));
            QVERIFY(!cutter.isBroken());
        }
    }

    void a_length_out_of_range_breaks_the_stream_data()
    {
        QTest::addColumn<QByteArray>("hex");
        QTest::addColumn<bool>("isBroken");
        QTest::newRow("none") << QByteArray("00000000") << true;
        QTest::newRow("the longest") << QByteArray("00000010") << false;
        QTest::newRow("one more") << QByteArray("00000011") << true;
        QTest::newRow("enormous") << QByteArray("ffffffff") << true;
    }
    void a_length_out_of_range_breaks_the_stream()
    {
        QFETCH(QByteArray, hex);
        remoteProtocol::Cutter cutter(remoteProtocol::MaxRequestBytes);
        cutter.append(QByteArray::fromHex(hex));
        QVERIFY(!cutter.next());
        QTEST(cutter.isBroken(), "isBroken");
    }

    void a_socket_is_there_only_when_it_is_asked_for_and_only_for_the_panels_user()
    {
        QVERIFY(m_screen->isListening());
        struct stat status = {};
        QCOMPARE(::stat(QFile::encodeName(m_path).constData(), &status), 0);
        QVERIFY(S_ISSOCK(status.st_mode));
        QCOMPARE(status.st_mode & 07777, 0600U);
        m_screen.reset();
        QVERIFY(!QFile::exists(m_path));
        qunsetenv("QN740_REMOTE_SOCKET");
        QVERIFY(!RemoteScreen(&m_panel->window).isListening());
        QVERIFY(!QFile::exists(m_path));
    }

    void the_picture_is_what_the_glass_shows_with_all_windows_over_it()
    {
        m_panel->say({"AK,Test,k,Setting,1,CMD ,0 100,0,,7,0,1", "SK,Test"});
        Watcher watcher(m_path);
        watcher.want();
        QVERIFY(watcher.gets(1));
        QVERIFY(watcher.hello && watcher.hello->size == QSize(800, 480));
        QVERIFY(!watcher.hello->viewOnly);
        QCOMPARE(watcher.picture, glass());

        m_panel->say({"DB,A box of the main unit,1"});
        QDialog dialog(&m_panel->window);
        dialog.setGeometry(40, 60, 300, 200);
        QComboBox list(&dialog);
        list.addItems({u"one"_s, u"two"_s, u"three"_s});
        list.setGeometry(250, 20, 40, 30);
        dialog.setModal(true);
        dialog.show();
        list.showPopup();
        QWidget splash(nullptr, Qt::SplashScreen | Qt::WindowStaysOnTopHint);
        splash.setPalette(QPalette(Qt::red));
        splash.setGeometry(700, 400, 300, 300); // partly beside the panel
        splash.show();
        QTRY_VERIFY((watcher.want(), watcher.read(), watcher.picture == glass()));
        QCOMPARE(watcher.picture.pixelColor(750, 450), QColor(Qt::red));

        list.hidePopup();
        splash.close();
        dialog.close();
        auto* box = qobject_cast<QMessageBox*>(Panel::shownWindow("messageBox"));
        QVERIFY(box != nullptr);
        watcher.tap(middleOf(box->buttons().constFirst()));
        QTRY_VERIFY(Panel::shownWindow("messageBox") == nullptr);
        QTRY_VERIFY((watcher.want(), watcher.read(), watcher.picture == glass()));
    }

    void only_what_has_changed_is_sent()
    {
        Watcher watcher(m_path);
        watcher.want();
        QVERIFY(watcher.gets(1));
        QCOMPARE(watcher.changed, QRegion(0, 0, 800, 480));
        QFrame mark(&m_panel->window); // a QWidget would be black by the window's style sheet
        mark.setAutoFillBackground(true);
        mark.setPalette(QPalette(Qt::red));
        mark.setGeometry(100, 100, 10, 10);
        watcher.want();
        mark.show();
        QVERIFY(watcher.gets(2));
        QCOMPARE(watcher.changed, QRegion(96, 96, 32, 16)); // the tile
        QCOMPARE(watcher.picture, glass());
        watcher.want(true);
        QVERIFY(watcher.gets(3));
        QCOMPARE(watcher.changed, QRegion(0, 0, 800, 480)); // asked for as a whole
    }

    void one_change_is_sent_for_one_wish()
    {
        Watcher watcher(m_path);
        watcher.want();
        QVERIFY(watcher.gets(1));
        watcher.want();
        m_panel->window.findChild<QWidget*>(u"linkButton"_s)->hide();
        QVERIFY(watcher.gets(2));
        m_panel->window.findChild<QWidget*>(u"linkButton"_s)->show();
        settle();
        QTest::qWait(0);
        watcher.read();
        QCOMPARE(watcher.ends, 2); // nothing was asked for
        watcher.want();
        QVERIFY(watcher.gets(3));
        QCOMPARE(watcher.picture, glass());
    }

    void while_nobody_waits_for_a_change_there_is_no_look_and_no_filter()
    {
        QVERIFY(!m_screen->isLooking());
        Watcher idle(m_path);
        QTRY_COMPARE(m_screen->watchers(), 1);
        const auto paint = [this] {
            for (int k = 0; k < 5; ++k) {
                m_panel->window.repaint();
                settle();
            }
        };
        paint();
        QCOMPARE(m_screen->looks(), 0); // connected, and has asked for nothing
        QVERIFY(!m_screen->isLooking());
        idle.want();
        QVERIFY(idle.gets(1));
        paint();
        QCOMPARE(m_screen->looks(), 1); // has got what it asked for
        QVERIFY(!m_screen->isLooking());
        idle.want();
        QTRY_COMPARE(m_screen->looks(), 2); // this look finds nothing new
        QVERIFY(m_screen->isLooking());
        settle();
        QCOMPARE(m_screen->looks(), 2); // nothing was painted: no timer runs
    }

    void a_watcher_that_goes_while_it_waits_leaves_no_filter()
    {
        {
            Watcher watcher(m_path);
            watcher.want();
            QVERIFY(watcher.gets(1));
            watcher.want();
            QTRY_VERIFY(m_screen->isLooking());
        }
        QTRY_VERIFY(!m_screen->isLooking());
        QCOMPARE(m_screen->watchers(), 0);
    }

    void looks_keep_a_distance()
    {
        Watcher watcher(m_path);
        watcher.want();
        QVERIFY(watcher.gets(1));
        QElapsedTimer clock;
        clock.start();
        const int before = m_screen->looks();
        QFrame mark(&m_panel->window);
        mark.setAutoFillBackground(true);
        mark.show();
        for (int k = 0; clock.elapsed() < 300; ++k) {
            mark.setPalette(QPalette(k % 2 == 0 ? Qt::red : Qt::green));
            watcher.want();
            QCoreApplication::processEvents();
            watcher.read();
        }
        const auto most = clock.elapsed() / RemoteScreen::MinPause.count() + 2;
        QVERIFY(m_screen->looks() - before >= 2);
        QVERIFY(m_screen->looks() - before <= most);
    }

    void a_press_opens_an_editor_and_presses_in_it()
    {
        m_panel->say({"AK,Test,k,Setting,1,CMD:,0 100,0,,7,0,1", "SK,Test"});
        Watcher watcher(m_path);
        const QPoint key = middleOf(buttonWithText(&m_panel->window, u"Setting"_s));
        bool done = false;
        whenModal([&](QWidget* editor) {
            watcher.tap(middleOf(buttonWithText(editor, u"4"_s)));
            QTRY_COMPARE(part<QLabel>(*editor, "entryLabel")->text().trimmed(), u"4"_s);
            watcher.tap(middleOf(buttonWithText(editor, u"2"_s)));
            QTRY_COMPARE(part<QLabel>(*editor, "entryLabel")->text().trimmed(), u"42"_s);
            done = true;
            watcher.tap(middleOf(buttonWithText(editor, u"Enter"_s)));
        });
        watcher.tap(key);
        QTRY_VERIFY(done);
        QTRY_VERIFY(QApplication::activeModalWidget() == nullptr);
        QCOMPARE(m_panel->heard(), framed("CMD:42.000000"));
    }

    void a_key_stops_repeating_under_the_finger_of_a_silent_watcher()
    {
        m_screen->setMaxSilence(100ms);
        m_panel->say({"AK,Slow,k,Level,3,CMD:,100 0,10,1:5,50,0,1", "SK,Slow"});
        Watcher watcher(m_path);
        QByteArray last; // what the slider sends, maybe after it was closed
        whenModal([&](QWidget* editor) {
            QPushButton* up = buttonWithText(editor, u"+1 >"_s);
            QVERIFY(up != nullptr && up->autoRepeat());
            up->setAutoRepeatDelay(10);
            up->setAutoRepeatInterval(10);
            const QSignalSpy steps(up, &QPushButton::clicked);
            watcher.point(middleOf(up), true);
            QTRY_VERIFY(up->isDown());
            watcher.want(); // what it says of the picture does not count
            QTRY_VERIFY(!up->isDown());
            const auto count = steps.count();
            QVERIFY(count > 0);
            // What it goes on to say is no new press: nor that it is lifted over the key.
            watcher.point(middleOf(up), true);
            watcher.point(middleOf(up) + QPoint(1, 1), true);
            watcher.tap(middleOf(up));
            watcher.want(true);
            QVERIFY(watcher.gets(watcher.ends + 1));
            QCOMPARE(steps.count(), count);
            watcher.tap(middleOf(up));
            QTRY_VERIFY(steps.count() > count);
            last = framed("CMD:" + QByteArray::number(50 + steps.count()));
            watcher.tap(middleOf(buttonWithText(editor, u"OK"_s)));
        });
        watcher.tap(middleOf(buttonWithText(&m_panel->window, u"Level"_s)));
        QTRY_VERIFY(!last.isEmpty() && QApplication::activeModalWidget() == nullptr);
        QTRY_VERIFY(m_panel->unit.received().contains(last));
        m_panel->unit.takeReceived();
    }

    void a_modal_window_keeps_the_finger_from_those_below()
    {
        auto* view = part<QPushButton>(m_panel->window, "scopesButton");
        QSignalSpy clicked(view, &QPushButton::clicked);
        Watcher watcher(m_path);
        QDialog dialog(&m_panel->window);
        dialog.setGeometry(40, 60, 300, 200);
        dialog.setModal(true);
        QPushButton inside(&dialog);
        QSignalSpy pressed(&inside, &QPushButton::clicked);
        dialog.show();
        watcher.tap(middleOf(view));
        watcher.tap(middleOf(&inside));
        QTRY_COMPARE(pressed.count(), 1);
        QCOMPARE(clicked.count(), 0);
        dialog.close();
        watcher.tap(middleOf(view));
        QTRY_COMPARE(clicked.count(), 1);
    }

    void a_finger_is_followed_and_lifts_where_it_is()
    {
        auto* button = part<QPushButton>(m_panel->window, "linkButton");
        QSignalSpy clicked(button, &QPushButton::clicked);
        Watcher watcher(m_path);
        watcher.point(middleOf(button), true);
        QTRY_VERIFY(button->isDown());
        watcher.point({10, 10}, true);
        QTRY_VERIFY(!button->isDown());
        watcher.point({10, 10}, false);
        watcher.point(middleOf(button), false); // moves only, touches nothing
        watcher.want();
        QVERIFY(watcher.gets(1));
        QCOMPARE(clicked.count(), 0);
    }

    void a_watcher_that_goes_with_its_finger_down_presses_nothing()
    {
        auto* button = part<QPushButton>(m_panel->window, "linkButton");
        QSignalSpy clicked(button, &QPushButton::clicked);
        {
            Watcher watcher(m_path);
            watcher.point(middleOf(button), true);
            QTRY_VERIFY(button->isDown());
        }
        QTRY_VERIFY(!button->isDown());
        QCOMPARE(clicked.count(), 0);
    }

    void a_finger_that_is_said_again_stays_down_without_an_event()
    {
        constexpr auto Limit = 400ms;
        m_screen->setMaxSilence(Limit);
        auto* button = part<QPushButton>(m_panel->window, "linkButton");
        QSignalSpy pressed(button, &QPushButton::pressed);
        Watcher watcher(m_path);
        watcher.point(middleOf(button), true);
        QTRY_VERIFY(button->isDown());
        MouseEvents events(m_panel->window.windowHandle());
        for (const QDeadlineTimer end(Limit + 100ms); !end.hasExpired(); QTest::qWait(10)) {
            watcher.point(middleOf(button), true);
        }
        QVERIFY(button->isDown());
        QCOMPARE(events.moves, 0);
        QCOMPARE(events.presses, 0);
        QCOMPARE(pressed.count(), 1);
        watcher.point({remoteProtocol::Beside, remoteProtocol::Beside}, false);
        QTRY_VERIFY(!button->isDown());
    }

    void a_finger_on_the_glass_lifts_one_from_afar_and_presses_data()
    {
        QTest::addColumn<bool>("isTouch");
        QTest::newRow("mouse") << false;
        QTest::newRow("touch") << true;
    }
    void a_finger_on_the_glass_lifts_one_from_afar_and_presses()
    {
        QFETCH(bool, isTouch);
        auto* link = part<QPushButton>(m_panel->window, "linkButton");
        auto* view = part<QPushButton>(m_panel->window, "scopesButton");
        const QSignalSpy linkClicked(link, &QPushButton::clicked);
        const QSignalSpy viewClicked(view, &QPushButton::clicked);
        Watcher watcher(m_path);
        watcher.point(middleOf(link), true);
        QTRY_VERIFY(link->isDown());
        QWindow* window = m_panel->window.windowHandle();
        const QPoint at = view->mapTo(&m_panel->window, view->rect().center());
        if (isTouch) {
            QTest::touchEvent(window, m_finger.get()).press(0, at, window);
            QTest::touchEvent(window, m_finger.get()).release(0, at, window);
        } else {
            QTest::mouseClick(window, Qt::LeftButton, {}, at);
        }
        QTRY_COMPARE(viewClicked.count(), 1);
        QVERIFY(!link->isDown());
        watcher.point(middleOf(link), true); // said again, by one that does not know
        watcher.point(middleOf(link), false);
        watcher.tap(middleOf(view));
        QTRY_COMPARE(viewClicked.count(), 2);
        QCOMPARE(linkClicked.count(), 0);
    }

    void there_is_one_finger_for_all_watchers()
    {
        auto* link = part<QPushButton>(m_panel->window, "linkButton");
        auto* view = part<QPushButton>(m_panel->window, "scopesButton");
        QSignalSpy clicked(view, &QPushButton::clicked);
        Watcher first(m_path);
        Watcher second(m_path);
        first.point(middleOf(link), true);
        QTRY_VERIFY(link->isDown());
        second.tap(middleOf(view));
        second.want();
        QVERIFY(second.gets(1));
        QCOMPARE(clicked.count(), 0);
        QVERIFY(link->isDown());
        second.point(middleOf(view), true);
        settle();
        first.point({remoteProtocol::Beside, remoteProtocol::Beside}, false);
        QTRY_VERIFY(!link->isDown());
        second.tap(middleOf(view)); // its first message says again that a finger is down
        second.want();
        second.want(true);
        QVERIFY(second.gets(2));
        QCOMPARE(clicked.count(), 0);
        second.tap(middleOf(view));
        QTRY_COMPARE(clicked.count(), 1);
    }

    void a_view_only_panel_shows_and_takes_no_finger_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<bool>("viewOnly");
        QTest::newRow("0") << QByteArray("0") << false;
        QTest::newRow("empty") << QByteArray("") << false;
        QTest::newRow("1") << QByteArray("1") << true;
        QTest::newRow("yes") << QByteArray("yes") << true;
    }
    void a_view_only_panel_shows_and_takes_no_finger()
    {
        QFETCH(bool, viewOnly);
        QFETCH(QByteArray, value);
        qputenv("QN740_REMOTE_VIEW_ONLY", value);
        m_screen.reset();
        m_screen = std::make_unique<RemoteScreen>(&m_panel->window);
        auto* view = part<QPushButton>(m_panel->window, "scopesButton");
        QSignalSpy clicked(view, &QPushButton::clicked);
        Watcher watcher(m_path);
        watcher.tap(middleOf(view));
        watcher.want();
        QVERIFY(watcher.gets(1));
        QCOMPARE(watcher.hello->viewOnly, viewOnly);
        QCOMPARE(clicked.count(), viewOnly ? 0 : 1);
        QVERIFY(watcher.send(remoteProtocol::wantMessage(true)));
        QVERIFY(watcher.gets(2));
        QCOMPARE(watcher.picture, glass());
    }

    void a_watcher_that_does_not_read_holds_one_picture_and_nobody_up()
    {
        Watcher slow(m_path);
        Watcher quick(m_path);
        slow.want();
        quick.want();
        QVERIFY(quick.gets(1));
        const qint64 waiting = m_screen->unsent();
        QVERIFY(waiting > 0 && waiting < PictureBytes + 32 * 1024);
        QFrame mark(&m_panel->window);
        mark.setAutoFillBackground(true);
        mark.setGeometry(0, 0, 800, 480);
        mark.show();
        const qsizetype heap = heapInUse();
        for (int k = 1; k <= 4; ++k) {
            slow.want(true); // again and again
            quick.want();
            mark.setPalette(QPalette(k % 2 == 0 ? Qt::red : Qt::green));
            QVERIFY(quick.gets(1 + k));
            QCOMPARE(m_screen->unsent(), waiting); // not a byte more
        }
        QVERIFY(heapInUse() - heap < 256 * 1024);
        QVERIFY(slow.gets(2)); // the old one, then the newest
        QCOMPARE(slow.picture, glass());
        QCOMPARE(slow.ends, 2);
    }

    void garbage_is_ignored_or_its_sender_turned_away_data()
    {
        QTest::addColumn<QByteArray>("hex");
        QTest::addColumn<bool>("turnedAway");
        QTest::newRow("an unknown type") << QByteArray("00000003 63 0102") << false;
        QTest::newRow("a message of the panel") << QByteArray("00000001 03") << false;
        QTest::newRow("a wish without contents") << QByteArray("00000001 10") << false;
        QTest::newRow("a finger with too much")
            << QByteArray("00000007 11 01 0001 0002 00") << false;
        QTest::newRow("a finger beside the picture")
            << QByteArray("00000006 11 01 0320 0000") << false;
        QTest::newRow("a length of nothing") << QByteArray("00000000 10") << true;
        QTest::newRow("a length of much") << QByteArray("7fffffff 10") << true;
        QTest::newRow("a browser") << QByteArray("GET / HTTP/1.1").toHex() << true;
    }
    void garbage_is_ignored_or_its_sender_turned_away()
    {
        QFETCH(QByteArray, hex);
        QFETCH(bool, turnedAway);
        QLoggingCategory::setFilterRules(u"qn740.remote.debug=true"_s);
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression(u"ignored|turned away"_s));
        Watcher other(m_path);
        Watcher watcher(m_path);
        QVERIFY(watcher.send(QByteArray::fromHex(hex) + remoteProtocol::wantMessage(true)));
        QTRY_VERIFY((watcher.read(), watcher.ends == 1 || watcher.isEnded));
        QLoggingCategory::setFilterRules({});
        QCOMPARE(watcher.isEnded, turnedAway);
        other.want();
        QVERIFY(other.gets(1));
        QCOMPARE(other.picture, glass());
    }

    void a_watcher_that_goes_in_the_middle_of_a_picture_leaves_nothing()
    {
        qsizetype early = 0;
        constexpr int Rounds = 6;
        for (int round = 0; round < Rounds; ++round) {
            {
                Watcher watcher(m_path);
                watcher.want();
                QTRY_VERIFY(m_screen->unsent() > 0);
                watcher.read(5000);
            }
            QTRY_COMPARE(m_screen->watchers(), 0);
            settle();
            early = round == 1 ? heapInUse() : early;
        }
        QVERIFY(heapInUse() - early < 64 * 1024);
        QCOMPARE(m_panel->heard(), QByteArray());
    }

    void a_watchers_messages_take_one_turn_of_the_event_loop_each()
    {
        Watcher watcher(m_path);
        watcher.point({700, 300}, true);
        MouseEvents counter(m_panel->window.windowHandle());
        QByteArray moves;
        for (int k = 0; k < 200; ++k) {
            moves += remoteProtocol::pointerMessage({{k, k}, true});
        }
        QVERIFY(watcher.send(moves));
        int most = 0;
        for (int before = 0; counter.moves < 200;) {
            QVERIFY(QCoreApplication::eventDispatcher()->processEvents(QEventLoop::AllEvents));
            most = qMax(most, counter.moves - before);
            before = counter.moves;
        }
        QVERIFY2(most <= 4, qPrintable(QString::number(most)));
    }

    void a_watcher_that_sends_without_end_does_not_keep_the_main_unit_waiting()
    {
        Watcher watcher(m_path);
        const QByteArray much = remoteProtocol::pointerMessage({{5, 5}, true}).repeated(2000);
        int sent = 0;
        while (watcher.send(much) && sent < 20) {
            ++sent;
        }
        QCOMPARE(m_panel->heard(), QByteArray()); // it has answered a "PING"
    }

    void the_fifth_watcher_is_turned_away()
    {
        std::vector<std::unique_ptr<Watcher>> watchers;
        for (int k = 0; k < RemoteScreen::MaxWatchers; ++k) {
            watchers.push_back(std::make_unique<Watcher>(m_path));
        }
        QTRY_COMPARE(m_screen->watchers(), 4);
        Watcher fifth(m_path);
        QTRY_VERIFY((fifth.read(), fifth.isEnded));
        QVERIFY(!fifth.hello);
        watchers.pop_back();
        QTRY_COMPARE(m_screen->watchers(), 3);
        Watcher next(m_path);
        next.want();
        QVERIFY(next.gets(1));
    }

private:
    std::unique_ptr<QTemporaryDir> m_directory;
    QString m_path;
    std::unique_ptr<Panel> m_panel;
    std::unique_ptr<RemoteScreen> m_screen;
    std::unique_ptr<QPointingDevice> m_finger{QTest::createTouchDevice()};
};

QN740_TEST_MAIN(tst_RemoteScreen)
#include "tst_RemoteScreen.moc"
