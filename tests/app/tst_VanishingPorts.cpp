// These tests pull the plug of the panel's ports at every point of a transaction, as an adapter
// does that is unplugged: the other end hangs up and the device is gone. They check that each loss
// is logged once, that the event loop comes to rest, that the rest of the panel goes on, and that
// the ports other than the main unit's come back by themselves.
#include "app/Rooms.h"
#include "app/ScopesFixture.h"
#include "link/LinkControl.h"
#include "link/LinkModeDialog.h"
#include "link/keySerial.h"
#include "spectrum/CardSide.h"
#include "support/PopUps.h"
#include "support/TestMain.h"

#include <QAbstractEventDispatcher>
#include <QDir>
#include <QLocalSocket>
#include <QMessageBox>

namespace {

enum Moment {
    Idle,
    Halves,       // half a block, half a reply and half a message have come
    Requests,     // the cards have been asked and have not answered
    Spectrum,     // spectra are drawn
    Scopes,       // scopes are drawn
    Forwarding,   // a program reads what the scopes receive
    NumberPad,    // of the operator
    SliderTimer,  // the slider has sent, and holds back what it sends next
    EditorOfUnit, // holds the line
    LinkDialog,   // is open
    Box,          // a message box stands
};

const QStringList OtherPorts{
    u"ttyUSB1"_s, u"ttyUSB4"_s, u"ttyUSB11"_s, u"ttyUSB12"_s, u"ttyUSB13"_s};

QStringList lost; // the ports whose loss was logged
QtMessageHandler otherHandler = nullptr;

void takeLog(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (text.contains(QLatin1String(" was lost: "))) {
        lost += text.section(QLatin1Char(' '), 0, 0);
    } else {
        otherHandler(type, context, text);
    }
}

// Whether this process has the other end of a line open.
bool isOpen(const Pty& line)
{
    const QDir descriptors(u"/proc/self/fd"_s);
    const auto names = descriptors.entryList(QDir::Files | QDir::System);
    return std::any_of(names.begin(), names.end(), [&](const QString& name) {
        return QFile::symLinkTarget(descriptors.filePath(name)) == line.slavePath();
    });
}

// Returns how often the event loop wakes up in a tenth of a second.
int wakings()
{
    int count = 0;
    const QObject context;
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake,
        &context, [&count] { ++count; });
    QTest::qWait(100);
    return count;
}
constexpr int ManyWakings = 200; // charts, scopes and timers need some; a busy loop has thousands

} // namespace

class tst_VanishingPorts : public ScopesFixture
{
    Q_OBJECT

    Pty& line(const QString& name) { return *m_lines.at(name); }

    void plug(const QString& name) { m_lines[name] = &m_devices->add(name); }
    void unplug(const QString& name) { m_devices->remove(name); }

    bool answersPing()
    {
        m_pty->takeReceived();
        m_pty->write(framed("PING"));
        return QTest::qWaitFor([this] { return m_pty->received().contains(framed("PONG")); });
    }

    // Whether a block of the second scope's line reaches its scope.
    bool scopesGoOn()
    {
        const Scope& scope = *m_window->rooms().scopes->findChild<Scope*>(u"scope2"_s);
        QSignalSpy blocks(&scope, &Scope::rcv_eye_msg);
        m_scopeLines[2]->write(steady(100, 200));
        return QTest::qWaitFor([&] { return blocks.size() == 1; });
    }

    void say(const QList<QByteArray>& bodies)
    {
        for (const QByteArray& body : bodies) {
            QVERIFY(m_pty->write(framed(body)));
        }
        QVERIFY(answersPing());
    }

    void showSpectrum()
    {
        clickOnScopes();
        clickOn(part<QPushButton>(*m_window, "scopesButton"));
        QTRY_VERIFY(!cardSide::only(line(u"ttyUSB11"_s), "RFFT").isEmpty());
    }

    static QByteArray reply()
    {
        return cardSide::k7150Spectrum(0, cardSide::carrier(106, 50, -30));
    }

    // Does `then` at a moment. Editors run an event loop of their own until `then` is done.
    void at(Moment moment, const std::function<void()>& then)
    {
        switch (moment) {
        case Halves:
            QVERIFY(line(u"ttyUSB1"_s).write(steady(1, 2).left(700)));
            QVERIFY(line(u"ttyUSB4"_s).write("\x02HAL"));
            showSpectrum();
            QVERIFY(line(u"ttyUSB11"_s).write(reply().left(40)));
            break;
        case Requests:
            showSpectrum();
            break;
        case Spectrum:
            showSpectrum();
            for (int answered = 0; answered < 4;) {
                QCoreApplication::processEvents();
                cardSide::answerPolls(line(u"ttyUSB11"_s), answered, reply());
            }
            break;
        case Scopes:
            clickOnScopes();
            QVERIFY(scopesGoOn());
            break;
        case Forwarding:
            m_reader.connectToServer(m_socket);
            QVERIFY(QTest::qWaitFor(
                [this] { return m_reader.state() == QLocalSocket::ConnectedState; }));
            QTRY_VERIFY(scopesGoOn() && m_reader.bytesAvailable() > 0);
            break;
        case NumberPad:
        case SliderTimer:
            inEditor(moment == NumberPad ? u"Number"_s : u"Slider"_s, then);
            return;
        case EditorOfUnit:
            inEditorOfUnit(then);
            return;
        case LinkDialog:
            clickOn(part<QPushButton>(*m_window, "linkButton"));
            QTRY_VERIFY(m_window->findChild<LinkModeDialog*>() != nullptr);
            break;
        case Box:
            say({"DB,Antenna fault,1"});
            break;
        default:
            break;
        }
        then();
    }

    void inEditor(const QString& key, const std::function<void()>& then)
    {
        say({"AK,Test,n,Number,1,CMD ,0 100,0,,7,0,1", "AK,Test,s,Slider,3,CMD ,100 0,10,,50,0,1",
            "SK,Test"});
        bool done = false;
        whenModal([&](QWidget* editor) {
            if (QPushButton* up = buttonWithText(editor, u"UP"_s)) {
                clickOn(up);
                clickOn(up);
            }
            then();
            done = editor->isVisible();
            editor->close();
        });
        clickOn(buttonWithText(m_window.get(), key));
        QVERIFY(done);
    }

    void inEditorOfUnit(const std::function<void()>& then)
    {
        bool done = false;
        whenModal([&](QWidget* editor) {
            then();
            done = editor->isVisible();
            popUps::press(editor, u"OK"_s);
        });
        QVERIFY(m_pty->write(framed("IK,Gain,3,CMD ,60 0,10,")));
        QTRY_VERIFY(done && QApplication::activeModalWidget() == nullptr);
    }

    static void addMoments()
    {
        QTest::addColumn<int>("moment");
        QTest::newRow("nothing is under way") << int(Idle);
        QTest::newRow("half of everything has come") << int(Halves);
        QTest::newRow("requests wait for their replies") << int(Requests);
        QTest::newRow("spectra are drawn") << int(Spectrum);
        QTest::newRow("scopes are drawn") << int(Scopes);
        QTest::newRow("a program reads scope data") << int(Forwarding);
        QTest::newRow("the number pad is open") << int(NumberPad);
        QTest::newRow("the slider's timer runs") << int(SliderTimer);
        QTest::newRow("an editor of the unit is open") << int(EditorOfUnit);
        QTest::newRow("the link dialog is open") << int(LinkDialog);
        QTest::newRow("a message box stands") << int(Box);
    }

private slots:
    void initTestCase() { otherHandler = qInstallMessageHandler(takeLog); }
    void cleanupTestCase() { qInstallMessageHandler(otherHandler); }

    void init()
    {
        m_home = std::make_unique<QTemporaryDir>();
        m_socket = m_home->filePath(u"scopes"_s);
        qputenv("QN740_SCOPE_SOCKET", m_socket.toLocal8Bit());
        m_devices = std::make_unique<DeviceDirectory>();
        m_pty = &m_devices->add(u"ttyO1"_s);
        m_scopeLines[2] = &m_devices->add(u"ttyUSB2"_s);
        for (const QString& name : OtherPorts) {
            plug(name);
        }
        m_window = std::make_unique<MainWindow>();
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        hideSplash();
        say({"ST,1", "SM,1,2", "SM,2,2"});
        for (const QString& name : OtherPorts) {
            QVERIFY2(isOpen(line(name)), qPrintable(name));
        }
        lost.clear();
    }

    void cleanup()
    {
        m_reader.abort();
        stop();
        qunsetenv("QN740_SCOPE_SOCKET");
    }

    void all_other_ports_vanish_and_come_back_data() { addMoments(); }
    void all_other_ports_vanish_and_come_back()
    {
        QFETCH(int, moment);
        at(Moment(moment), [this, moment] {
            for (const QString& name : OtherPorts) {
                unplug(name);
            }
            QTRY_COMPARE(lost.size(), OtherPorts.size());
            const int count = wakings();
            QVERIFY2(count < ManyWakings, qPrintable(QString::number(count)));
            QVERIFY(scopesGoOn());
            QVERIFY(moment == EditorOfUnit || answersPing());
            for (const QString& name : OtherPorts) {
                plug(name);
            }
            for (const QString& name : OtherPorts) {
                QTRY_VERIFY2_WITH_TIMEOUT(isOpen(line(name)), qPrintable(name), 20000);
            }
        });
        std::sort(lost.begin(), lost.end());
        QStringList all = OtherPorts;
        std::sort(all.begin(), all.end());
        QCOMPARE(lost, all);
        // What was cut short before is not taken for the beginning of what comes now.
        QVERIFY(answersPing());
        m_pty->takeReceived();
        QVERIFY(line(u"ttyUSB4"_s).write("F\x04" + framed("HELLO")));
        QTRY_VERIFY(m_pty->received().endsWith(framed("HELLO")));
        QVERIFY(!m_pty->received().contains("HALF"));
        const Scope& scope = *m_window->rooms().scopes->findChild<Scope*>(u"scope1"_s);
        QSignalSpy blocks(&scope, &Scope::rcv_eye_msg);
        QVERIFY(line(u"ttyUSB1"_s).write(steady(3, 4)));
        QTRY_COMPARE(blocks.size(), 1);
    }

    void the_main_port_vanishes_for_good_data() { addMoments(); }
    void the_main_port_vanishes_for_good()
    {
        QFETCH(int, moment);
        at(Moment(moment), [this] {
            unplug(u"ttyO1"_s);
            QTRY_COMPARE(lost, QStringList(u"ttyO1"_s));
            m_devices->add(u"ttyO1"_s); // the panel does not open it again
            const int count = wakings();
            QVERIFY2(count < ManyWakings, qPrintable(QString::number(count)));
            QVERIFY(scopesGoOn());
        });
        LinkControl& link = *m_window->rooms().link;
        QVERIFY(!link.serial()->isOpen());
        for (int i = 0; i < 1000; ++i) {
            link.send(QString::fromLatin1(framed("CMD 1")));
        }
        QCOMPARE(link.serial()->port()->bytesToWrite(), 0);
        QVERIFY(QApplication::activeModalWidget() == nullptr);
        const QWidget* before = m_window->rooms().stack->currentWidget();
        clickOn(part<QPushButton>(*m_window, "scopesButton")); // still reacts to a touch
        QTRY_VERIFY(m_window->rooms().stack->currentWidget() != before);
        QCOMPARE(lost, QStringList(u"ttyO1"_s));
    }

private:
    std::unique_ptr<QTemporaryDir> m_home;
    QString m_socket;
    QLocalSocket m_reader;
    std::map<QString, Pty*> m_lines;
};

QN740_TEST_MAIN(tst_VanishingPorts)
#include "tst_VanishingPorts.moc"
