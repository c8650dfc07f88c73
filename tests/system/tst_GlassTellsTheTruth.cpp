// This test follows a day of the operator with the real programs. After each event it compares what
// the screen says with what is true.
//
// In the first two tests the panel is a process of its own, which is started as the service does it
// and is seen through a remote screen. In the last test its window is in the test's process, so
// that its labels can be read. Main unit, cards and scopes are three processes, so that each can
// fail alone.
#include "app/MainWindow.h"
#include "app/Rooms.h"
#include "scopes/ScopesPage.h"
#include "scopes/StcMagPhasePlot.h"
#include "spectrum/SpectralCard.h"
#include "spectrum/SpectrumChart.h"
#include "spectrum/SpectrumMessages.h"
#include "support/Program.h"
#include "support/RfbClient.h"
#include "support/Screen.h"
#include "support/TestMain.h"
#include "tools/screen/Part.h"

#include <QDir>
#include <QLabel>
#include <QSplashScreen>
#include <QStatusBar>

#include <csignal>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int LongMs = 40000;
const QString Lost = u"No connection to the main unit"_s;
const QString Silent = u"The main unit is silent"_s;
const QString Well;

// This point is at the left end of the status bar, beside all letters. It has the bar's own grey or
// the colour of the notice.
constexpr QPoint AtNotice(6, 437);
const QColor Grey(0x91, 0x91, 0x91);
const QColor NoticeRed(0x8b, 0, 0);

// These points are in a message box with "OK" and a short text, and beside the title of a pad.
constexpr QPoint BesideMessage(100, 250);
constexpr QPoint OnMessageOk(660, 261);
constexpr QPoint BesidePadTitle(30, 28);
const QColor BoxGrey(0xa9, 0xa9, 0xa9);
const QColor TitleBlue(66, 89, 148);

} // namespace

class tst_GlassTellsTheTruth : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_parent = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir(m_parent->path()).mkdir(u"dev"_s));
    }

    void cleanup()
    {
        m_window.reset();
        m_panel.reset();
        m_screen.reset();
        m_main.reset();
        m_cards.reset();
        m_scopes.reset();
        m_parent.reset();
    }

    void the_service_brings_the_connection_back()
    {
        startPanel(); // no main unit yet
        QVERIFY(shows(NoticeRed));
        QTRY_COMPARE_WITH_TIMEOUT(m_panel->errors().count("ttyO1 was not opened"), 1, LongMs);

        startMainUnit(); // the process does not open the line again
        QTest::qWait(3000);
        QCOMPARE(colour(), NoticeRed);
        startPanel(); // as the service does when the device appears
        QTRY_VERIFY_WITH_TIMEOUT(m_main->has("sim: menus sent"), LongMs);
        QVERIFY(shows(Grey));
        QCOMPARE(m_panel->errors().count("ttyO1"), 0);

        m_main.reset(); // killed
        QVERIFY(shows(NoticeRed));
        QTRY_COMPARE_WITH_TIMEOUT(m_panel->errors().count("ttyO1 was lost"), 1, LongMs);

        startMainUnit();
        startPanel();
        QTRY_VERIFY_WITH_TIMEOUT(m_main->has("sim: menus sent"), LongMs);
        QVERIFY(shows(Grey));
        QCOMPARE(m_panel->errors().count("ttyO1"), 0);
        QCOMPARE(m_panel->state(), QProcess::Running);
    }

    // This needs a platform that stacks its windows, as the unit's platform does.
    void a_message_stands_above_the_pad_that_is_opened_after_it()
    {
        startMainUnit();
        startPanel();
        QTRY_VERIFY_WITH_TIMEOUT(m_main->has("sim: menus sent"), LongMs);
        tell("DB,Look at the antenna,1");
        QVERIFY(shows(BoxGrey, BesideMessage)); // when the start-up picture has gone
        tell("IK,Unlock,1,SYS:PIN:,0 9999,7,");
        QVERIFY(shows(TitleBlue, BesidePadTitle));
        QTest::qWait(500);
        QCOMPARE(colour(BesideMessage), BoxGrey);
        QVERIFY(m_screen->click(OnMessageOk));
        QTRY_VERIFY_WITH_TIMEOUT(colour(BesideMessage) != BoxGrey, LongMs);
        QCOMPARE(colour(BesidePadTitle), TitleBlue);
    }

    void each_part_that_fails_is_told_alone()
    {
        startMainUnit();
        startCards();
        startScopes();
        startWindow();
        tell("ST,1");
        tell("PM,0.25,60,75");
        for (const char* mode : {"SM,1,2", "SM,2,2", "SM,3,2"}) {
            tell(mode);
        }
        showView(Views::Scopes);
        QTRY_VERIFY_WITH_TIMEOUT(isTrue(Well, false, false), LongMs);

        m_scopes.reset(); // the scopes' adapter fails
        QTRY_VERIFY_WITH_TIMEOUT(isTrue(Well, true, false), LongMs);
        startScopes();
        QTRY_VERIFY_WITH_TIMEOUT(isTrue(Well, false, false), LongMs);

        showView(Views::Spectrum);
        QTRY_VERIFY_WITH_TIMEOUT(chart()->peak().valid && isTrue(Well, false, false), LongMs);
        m_cards.reset(); // the card is unplugged
        QTRY_VERIFY_WITH_TIMEOUT(isTrue(Well, false, true), LongMs);
        // Only new data ends the "NO DATA" state.
        tell("SP,0,3");
        tell("SF,0,2250.5");
        QVERIFY(isTrue(Well, false, true));
        startCards(); // plugged in again
        QTRY_VERIFY_WITH_TIMEOUT(isTrue(Well, false, false), LongMs);

        for (int i = 0; i < 4; ++i) { // the main unit pings, then hangs
            tell("PING");
            QTest::qWait(300);
        }
        QVERIFY(isTrue(Well, false, false));
        pauseMainUnit();
        QTRY_VERIFY_WITH_TIMEOUT(isTrue(Silent, false, false), LongMs);
        continueMainUnit();
        QTRY_VERIFY_WITH_TIMEOUT(isTrue(Well, false, false), LongMs);

        m_main.reset(); // killed
        QTRY_VERIFY_WITH_TIMEOUT(isTrue(Lost, false, false), LongMs);
        startMainUnit(); // back, but this process does not open the line again
        QTest::qWait(3000);
        QVERIFY(isTrue(Lost, false, false));
        startWindow(); // as the service does
        QTRY_VERIFY_WITH_TIMEOUT(isTrue(Well, false, false), LongMs);
    }

private:
    QString path(const QString& name) const { return m_parent->filePath(name); }

    // Starts a simulator and replaces the devices of the previous one with its own.
    std::unique_ptr<Program> startSimulator(
        const QString& name, const QStringList& options, const QStringList& devices)
    {
        const QString directory = path(name);
        auto simulator = std::make_unique<Program>(
            QStringLiteral(QN740_SIM), QStringList{u"--dir"_s, directory} + options);
        const QByteArray ready = "sim: ready " + directory.toUtf8();
        if (!QTest::qWaitFor([&] { return simulator->has(ready); }, LongMs)) {
            QTest::qFail("the simulator does not start", __FILE__, __LINE__);
        }
        for (const QString& device : devices) {
            const QString link = path(u"dev/"_s + device);
            QFile::remove(link);
            QFile::link(directory + u'/' + device, link);
        }
        return simulator;
    }

    void startMainUnit() { m_main = startSimulator(u"main"_s, {}, {u"ttyO1"_s}); }

    void pauseMainUnit() const { ::kill(static_cast<pid_t>(m_main->processId()), SIGSTOP); }
    void continueMainUnit() const { ::kill(static_cast<pid_t>(m_main->processId()), SIGCONT); }

    void startCards()
    {
        m_cards = startSimulator(u"cards"_s, {}, {u"ttyUSB11"_s, u"ttyUSB12"_s, u"ttyUSB13"_s});
    }

    void startScopes()
    {
        m_scopes = startSimulator(
            u"scopes"_s, {u"--scope-mode"_s, u"2"_s}, {u"ttyUSB1"_s, u"ttyUSB2"_s, u"ttyUSB3"_s});
    }

    // Starts the panel's process and replaces one that is running.
    void startPanel()
    {
        m_screen.reset();
        m_panel.reset();
        const quint16 port = RfbClient::freePort();
        m_panel = std::make_unique<Program>(QStringLiteral(QN740_PANEL),
            QStringList{u"-platform"_s, u"vnc:size=800x480:port=%1"_s.arg(port)},
            QStringList{u"QN740_DEV="_s + path(u"dev"_s)});
        m_screen = std::make_unique<RfbClient>();
        QVERIFY2(m_screen->connectTo(port), qPrintable(m_screen->errorString()));
    }

    QColor colour(QPoint at = AtNotice) { return m_screen->picture().pixelColor(at); }
    bool shows(const QColor& expected, QPoint at = AtNotice)
    {
        return QTest::qWaitFor([&] { return colour(at) == expected; }, LongMs);
    }

    // Creates the panel's window in this process and replaces an earlier one.
    void startWindow()
    {
        m_window.reset();
        qputenv("QN740_DEV", path(u"dev"_s).toLocal8Bit());
        m_window = std::make_unique<MainWindow>();
        m_window->show();
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (qobject_cast<QSplashScreen*>(widget) != nullptr) {
                widget->hide();
            }
        }
        QTRY_VERIFY_WITH_TIMEOUT(m_main->has("sim: menus sent"), LongMs);
    }

    // Makes the main unit send a message.
    void tell(const QByteArray& message) { m_main->write(message + '\n'); }

    void showView(Views::View view)
    {
        const auto isThere = [&] { return m_window->rooms().views->current() == view; };
        QTRY_VERIFY_WITH_TIMEOUT(m_window->rooms().spectrum->card() != nullptr, LongMs);
        for (int i = 0; i < 3 && !isThere(); ++i) {
            clickOn(part<QPushButton>(*m_window, "scopesButton"));
        }
        QVERIFY(isThere());
    }

    const SpectrumChart* chart() const { return m_window->rooms().spectrum->card()->chart(0); }

    // Returns whether everything that the screen says is true: the text of the notice, and whether
    // the scopes and a visible chart are marked as having no data.
    bool isTrue(const QString& noticeText, bool scopesStale, bool chartStale) const
    {
        const auto* notice = part<QLabel>(*m_window, "noticeLabel");
        bool ok = notice->text() == noticeText && notice->isVisible() == !noticeText.isEmpty();
        const Rooms& rooms = m_window->rooms();
        ok = ok && rooms.scopes->magPhasePlot()->isDimmed() == notice->isVisible();
        if (rooms.views->current() == Views::Scopes) {
            for (int demodulator = 1; demodulator <= 3; ++demodulator) {
                ok = ok && rooms.scopes->scope(demodulator)->stale() == scopesStale;
            }
        }
        if (rooms.views->current() == Views::Spectrum) {
            ok = ok && chart()->stale() == chartStale;
        }
        return ok;
    }

    std::unique_ptr<QTemporaryDir> m_parent;
    std::unique_ptr<Program> m_main;
    std::unique_ptr<Program> m_cards;
    std::unique_ptr<Program> m_scopes;
    std::unique_ptr<Program> m_panel;
    std::unique_ptr<RfbClient> m_screen;
    std::unique_ptr<MainWindow> m_window;
};

QN740_TEST_MAIN(tst_GlassTellsTheTruth)
#include "tst_GlassTellsTheTruth.moc"
