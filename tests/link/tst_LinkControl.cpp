#include "link/LinkControl.h"
#include "link/LinkMode.h"
#include "link/LinkModeDialog.h"
#include "link/keySerial.h"
#include "support/Pty.h"
#include "support/TestMain.h"
#include "wire/Message.h"

#include <QFileInfo>
#include <QRadioButton>
#include <QRegularExpression>
#include <QSettings>
#include <QSignalSpy>

#include <array>
#include <cstring>

#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

// How often a file of a folder was put in the place of another.
class Renames
{
public:
    explicit Renames(const QString& folder)
        : m_notify(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        // With the first half of each renaming as well: the kernel reports equal events that follow
        // each other once.
        inotify_add_watch(
            m_notify, QFile::encodeName(folder).constData(), IN_MOVED_FROM | IN_MOVED_TO);
    }
    ~Renames() { ::close(m_notify); }
    Q_DISABLE_COPY_MOVE(Renames)

    int count() const
    {
        int count = 0;
        alignas(inotify_event) std::array<char, 65536> events{};
        const ssize_t size = ::read(m_notify, events.data(), events.size());
        for (ssize_t at = 0; at < size;) {
            inotify_event event{};
            std::memcpy(&event, events.data() + at, sizeof event);
            count += (event.mask & IN_MOVED_TO) != 0 ? 1 : 0;
            at += static_cast<ssize_t>(sizeof event + event.len);
        }
        return count;
    }

private:
    int m_notify;
};

} // namespace

class tst_LinkControl : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QSettings(u"TORVA"_s, u"QN740KB"_s).clear();
        m_devices = std::make_unique<DeviceDirectory>();
        m_unit = &m_devices->add(u"ttyO1"_s);
        m_window = std::make_unique<QWidget>();
        m_window->setGeometry(0, 0, 800, 480);
        m_link = new LinkControl(m_window.get());
        m_link->open(u"ttyO1"_s);
    }

    void cleanup()
    {
        m_window.reset();
        m_devices.reset();
    }

    void nothing_is_written_to_a_line_that_is_not_open()
    {
        LinkControl link(m_window.get());
        link.write(u"D2:SPEN:1"_s); // there is no port yet
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"ttyO9"_s));
        link.open(u"ttyO9"_s);
        QTest::failOnWarning(QRegularExpression(u"."_s));
        link.write(u"D2:SPEN:1"_s);
    }

    void the_state_of_the_line_is_told()
    {
        m_devices->add(u"ttyO2"_s);
        LinkControl link(m_window.get());
        const QSignalSpy told(&link, &LinkControl::healthChanged);
        link.open(u"ttyO2"_s);
        QCOMPARE(told.size(), 1);
        QCOMPARE(told.at(0).at(0).value<LinkState>(), LinkState::Alive);
    }

    void messages_are_widened_for_the_link_mode_and_texts_are_not_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QByteArray>("sent");
        QTest::newRow("none") << 0 << framed("D2:FREQ R1:AGC");
        QTest::newRow("diversity") << 1 << framed("D1 D2 D3:FREQ R1 R2:AGC");
        QTest::newRow("frequency diversity") << 2 << framed("D1 D2 D3:FREQ R1:AGC");
    }

    void messages_are_widened_for_the_link_mode_and_texts_are_not()
    {
        QFETCH(int, mode);
        m_link->setMode(mode);
        m_link->send(QString::fromLatin1(framed("D2:FREQ R1:AGC")));
        QTRY_VERIFY(m_unit->received().endsWith('\x04'));
        QTEST(m_unit->takeReceived(), "sent");
        m_link->write(u"D2:SPEN:1"_s);
        QTRY_COMPARE(m_unit->received(), QByteArray("D2:SPEN:1"));
    }

    // The event loop first paints the key that was pressed.
    void a_message_leaves_before_the_event_loop_goes_on()
    {
        for (const QByteArray& message : {framed("R1:FREQ:1"), framed("R1:FREQ:2")}) {
            m_link->send(QString::fromLatin1(message));
            QCOMPARE(m_link->serial()->port()->bytesToWrite(), 0);
            pollfd line{m_unit->master(), POLLIN, 0};
            constexpr int LongMs = 5000;
            QCOMPARE(::poll(&line, 1, LongMs), 1); // not an event loop
            QCOMPARE(m_unit->takeReceived(), message);
        }
    }

    void a_message_that_comes_while_the_line_is_full_waits_and_the_line_stays_open()
    {
        const int line = m_link->serial()->port()->handle();
        const QByteArray filling(1000, 'x');
        qsizetype full = 0;
        ssize_t count = 0;
        while ((count = ::write(line, filling.constData(), filling.size())) > 0) {
            full += count;
        }
        m_link->send(QString::fromLatin1(framed("R1:FREQ:1")));
        QVERIFY(m_link->serial()->isOpen());
        QByteArray received;
        QTRY_VERIFY((received += m_unit->takeReceived(), received.endsWith('\x04')));
        QCOMPARE(received, QByteArray(full, 'x') + framed("R1:FREQ:1"));
        QVERIFY(m_link->serial()->isOpen());
    }

    void each_write_is_logged_with_its_direction()
    {
        QLoggingCategory::setFilterRules(u"qn740.link.debug=true"_s);
        QTest::ignoreMessage(
            QtDebugMsg, QRegularExpression(u"^\\d+\\.\\d{3} out \\\\x02PONG\\\\x04$"_s));
        m_link->answerPing();
        QLoggingCategory::setFilterRules(u""_s);
        QTRY_COMPARE(m_unit->received(), framed("PONG"));
    }

    void the_line_goes_with_its_owner()
    {
        const QPointer<keySerial> serial(m_link->serial());
        QVERIFY(serial != nullptr);
        m_window.reset();
        QVERIFY(serial == nullptr);
    }

    void unsent_bytes_are_limited()
    {
        const QString message(100'000, u'x');
        for (int i = 0; i < 30; ++i) {
            m_link->write(message);
        }
        const qint64 waiting = m_link->serial()->port()->bytesToWrite();
        QVERIFY(waiting > LinkControl::MaxUnsentBytes - message.size());
        QVERIFY(waiting < LinkControl::MaxUnsentBytes + message.size());
    }

    void nothing_is_added_once_the_limit_is_reached()
    {
        const QSerialPort* port = m_link->serial()->port();
        m_link->write(QString(100'000, u'x')); // some of it leaves at once
        const qint64 waiting = port->bytesToWrite();
        QVERIFY(waiting > 0);
        m_link->write(QString(LinkControl::MaxUnsentBytes - waiting - 1, u'x'));
        QCOMPARE(port->bytesToWrite(), LinkControl::MaxUnsentBytes - 1);
        m_link->write(u"y"_s);
        QCOMPARE(port->bytesToWrite(), LinkControl::MaxUnsentBytes);
        m_link->write(u"z"_s);
        QCOMPARE(port->bytesToWrite(), LinkControl::MaxUnsentBytes);
    }

    void nothing_is_sent_on_a_line_that_is_not_open()
    {
        QWidget window;
        LinkControl link(&window);
        link.answerPing(); // was never opened
        QVERIFY(link.serial()->port() == nullptr);
        link.open(u"ttyO9"_s);
        link.answerPing();
        QVERIFY(!link.serial()->port()->isOpen());
    }

    void the_mode_message_queries_and_sets_the_mode_data()
    {
        QTest::addColumn<QStringList>("fields");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("label");
        QTest::addColumn<bool>("isStored");
        QTest::newRow("none") << QStringList{u"0"_s} << 0 << "" << true;
        QTest::newRow("diversity") << QStringList{u"1"_s} << 1 << "Diversity Mode" << true;
        QTest::newRow("frequency diversity")
            << QStringList{u"2"_s} << 2 << "Frequency Diversity Mode" << true;
        QTest::newRow("unknown mode") << QStringList{u"7"_s} << 2 << QString() << true;
        QTest::newRow("not a number") << QStringList{u"x"_s} << 2 << QString() << false;
        QTest::newRow("empty") << QStringList{u""_s} << 2 << QString() << false;
    }

    void the_mode_message_queries_and_sets_the_mode()
    {
        QFETCH(QStringList, fields);
        QFETCH(int, mode);
        QFETCH(QString, label);
        m_link->setMode(2);
        const QSignalSpy changed(m_link, &LinkControl::modeChanged);
        m_link->takeModeMessage(fields);
        QCOMPARE(m_link->mode(), mode);
        QCOMPARE(changed.value(0).value(0).toString(), label);
        QTEST(QSettings(u"TORVA"_s, u"QN740KB"_s).contains("Slave"), "isStored");
        m_link->takeModeMessage({});
        QTRY_COMPARE(m_unit->received(), framed("Slave," + QByteArray::number(mode)));
    }

    // Each time costs two flushes of the disk.
    void modes_that_come_together_are_stored_once()
    {
        linkMode::store(1);
        handleModes();
        const Renames stored(QFileInfo(QSettings(u"TORVA"_s, u"QN740KB"_s).fileName()).path());
        QVERIFY(m_unit->write((framed("Slave,0") + framed("Slave,2")).repeated(50)));
        QTRY_COMPARE(m_handled, 100);
        QCOMPARE(linkMode::stored(), 2); // before the event loop goes on
        const int count = stored.count();
        QVERIFY2(count >= 1 && count <= 3, QByteArray::number(count));
        QVERIFY(m_unit->write(framed("Slave,0")));
        QTRY_COMPARE(m_handled, 101);
        QCOMPARE(linkMode::stored(), 0);
    }

    void a_mode_is_stored_though_its_turn_goes_on()
    {
        handleModes();
        bool isStored = false;
        connect(m_link->serial(), &keySerial::valid_mess_in, m_link, [&](const QString& message) {
            if (message.contains(u"IK"_s)) { // an editor
                isStored = QTest::qWaitFor([] { return linkMode::stored() == 2; });
            }
        });
        QVERIFY(m_unit->write(framed("Slave,2") + framed("IK")));
        QTRY_COMPARE(m_handled, 2);
        QVERIFY(isStored);
    }

    void the_stored_mode_is_restored_and_shown_if_known()
    {
        const QSignalSpy changed(m_link, &LinkControl::modeChanged);
        linkMode::store(1);
        m_link->restoreMode();
        QCOMPARE(m_link->mode(), 1);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(changed.at(0).at(0).toString(), u"Diversity Mode"_s);
        linkMode::store(7);
        m_link->restoreMode();
        QCOMPARE(m_link->mode(), 7);
        QCOMPARE(changed.size(), 1);
        m_link->setMode(2);
        m_link->storeMode();
        QCOMPARE(linkMode::stored(), 2);
    }

    void the_dialog_opens_once_and_sends_the_mode_as_if_it_had_been_chosen()
    {
        const QSignalSpy opened(m_link, &LinkControl::dialogOpened);
        const QSignalSpy closed(m_link, &LinkControl::dialogClosed);
        m_link->setMode(1);
        m_link->openDialog();
        QVERIFY(dialog()->isVisible());
        m_link->openDialog();
        QCOMPARE(opened.size(), 1);
        QTRY_COMPARE(m_unit->received(), framed("Slave,1"));
        QCOMPARE(linkMode::stored(), 1);
        QVERIFY(closed.isEmpty());
        dialog()->close();
        QCOMPARE(closed.size(), 1);
        m_link->openDialog();
        QCOMPARE(opened.size(), 2);
    }

    void the_choice_of_the_operator_is_shown_sent_and_stored()
    {
        const QSignalSpy changed(m_link, &LinkControl::modeChanged);
        m_link->openDialog();
        QTRY_COMPARE(m_unit->received(), framed("Slave,0"));
        m_unit->takeReceived();
        for (const int mode : {1, 2, 0}) {
            dialog()->setMode(mode);
            QCOMPARE(m_link->mode(), mode);
            QCOMPARE(linkMode::stored(), mode);
            QCOMPARE(changed.constLast().at(0).toString(), linkMode::label(mode));
            QTRY_COMPARE(m_unit->received(), framed("Slave," + QByteArray::number(mode)));
            m_unit->takeReceived();
        }
    }

    void an_open_dialog_follows_the_main_unit_silently()
    {
        m_link->openDialog();
        QTRY_COMPARE(m_unit->received(), framed("Slave,0"));
        m_unit->takeReceived();
        m_link->takeModeMessage({u"2"_s});
        QVERIFY(dialog()->findChild<QRadioButton*>(u"frequencyDiversityLinking"_s)->isChecked());
        m_link->answerPing();
        QTRY_COMPARE(m_unit->received(), framed("PONG"));
    }

    void unchecking_a_mode_changes_nothing()
    {
        m_link->setMode(1);
        m_link->toggleMode(2, false);
        QCOMPARE(m_link->mode(), 1);
        m_link->answerPing();
        QTRY_COMPARE(m_unit->received(), framed("PONG"));
    }

private:
    void handleModes()
    {
        m_handled = 0;
        connect(
            m_link->serial(), &keySerial::valid_mess_in, m_link, [this](const QString& message) {
                if (message.contains(u"Slave"_s)) {
                    m_link->takeModeMessage(wire::fields(message).mid(1));
                }
                ++m_handled;
            });
    }

    LinkModeDialog* dialog() const { return m_window->findChild<LinkModeDialog*>(); }

    std::unique_ptr<DeviceDirectory> m_devices;
    Pty* m_unit = nullptr;
    int m_handled = 0;
    std::unique_ptr<QWidget> m_window;
    LinkControl* m_link = nullptr;
};

QN740_TEST_MAIN(tst_LinkControl)
#include "tst_LinkControl.moc"
