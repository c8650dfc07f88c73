// These tests play the service manager: they read what the real panel tells it, and stop the panel
// to see that it falls silent.
#include "app/ServiceNotifier.h"
#include "support/Program.h"
#include "support/Pty.h"
#include "support/TestMain.h"

#include <QTemporaryDir>
#include <QWidget>

#include <csignal>
#include <cstddef>
#include <cstring>
#include <memory>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int LongMs = 20000;
constexpr int WatchdogMs = 400;

// The socket of a service manager. Each datagram is kept with the lines it consists of.
class ServiceManager
{
public:
    explicit ServiceManager(const QByteArray& name)
        : m_socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0))
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::memcpy(address.sun_path, name.constData(), static_cast<std::size_t>(name.size()));
        if (name.startsWith('@')) {
            address.sun_path[0] = '\0';
        }
        const auto length = static_cast<socklen_t>(
            offsetof(sockaddr_un, sun_path) + static_cast<std::size_t>(name.size()));
        m_bound = ::bind(m_socket, reinterpret_cast<const sockaddr*>(&address), length) == 0;
    }
    ~ServiceManager() { ::close(m_socket); }
    ServiceManager(const ServiceManager&) = delete;
    ServiceManager& operator=(const ServiceManager&) = delete;

    bool isBound() const { return m_bound; }

    // All datagrams so far, separated by blank lines.
    const QByteArray& heard()
    {
        char bytes[512];
        for (ssize_t n = 0; (n = ::recv(m_socket, bytes, sizeof bytes, 0)) > 0;) {
            m_heard += QByteArray(bytes, static_cast<qsizetype>(n)) + "\n\n";
        }
        return m_heard;
    }

    QByteArray take()
    {
        heard();
        return std::exchange(m_heard, {});
    }

private:
    int m_socket;
    bool m_bound = false;
    QByteArray m_heard;
};

class Environment
{
public:
    Environment(const char* name, const QByteArray& value)
        : m_name(name)
    {
        qputenv(name, value);
    }
    ~Environment() { qunsetenv(m_name); }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    const char* m_name;
};

} // namespace

class tst_Service : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        m_address = QFile::encodeName(m_directory->filePath(u"notify"_s));
        m_manager = std::make_unique<ServiceManager>(m_address);
        QVERIFY(m_manager->isBound());
    }

    void the_panel_is_ready_after_its_first_page_and_tells_its_state()
    {
        DeviceDirectory devices;
        devices.add(u"ttyO1"_s);
        Program panel(QString::fromUtf8(QN740_PANEL), {}, environment(devices));
        QTRY_VERIFY_WITH_TIMEOUT(
            m_manager->heard().contains("READY=1\nSTATUS=menus 2, link up\n\n"), LongMs);
        QVERIFY2(!m_manager->heard().contains("WATCHDOG"), m_manager->heard());
    }

    void a_line_that_is_lost_is_told_at_once()
    {
        DeviceDirectory devices;
        Pty& line = devices.add(u"ttyO1"_s);
        Program panel(QString::fromUtf8(QN740_PANEL), {}, environment(devices));
        QTRY_VERIFY_WITH_TIMEOUT(m_manager->heard().contains("READY=1\n"), LongMs);
        line.close();
        QTRY_VERIFY_WITH_TIMEOUT(
            m_manager->heard().contains("\n\nSTATUS=menus 2, link closed\n\n"), LongMs);
    }

    void the_number_of_menus_comes_with_the_next_sign_of_life()
    {
        DeviceDirectory devices;
        Pty& line = devices.add(u"ttyO1"_s);
        Program panel(
            QString::fromUtf8(QN740_PANEL), {}, environment(devices) << watchdogVariable());
        QTRY_VERIFY_WITH_TIMEOUT(m_manager->heard().contains("READY=1\n"), LongMs);
        QVERIFY(line.write(framed("AK,Menu,1,Label,0,R1:A:,,,0,,,1")));
        QTRY_VERIFY_WITH_TIMEOUT(
            m_manager->heard().contains("WATCHDOG=1\nSTATUS=menus 3, link up\n\n"), LongMs);
    }

    void a_panel_that_is_stopped_misses_its_signs_of_life()
    {
        DeviceDirectory devices;
        devices.add(u"ttyO1"_s);
        Program panel(
            QString::fromUtf8(QN740_PANEL), {}, environment(devices) << watchdogVariable());
        QTRY_VERIFY_WITH_TIMEOUT(m_manager->heard().count("WATCHDOG=1") >= 3, LongMs);
        ::kill(static_cast<pid_t>(panel.processId()), SIGSTOP);
        QTest::qWait(WatchdogMs / 4); // what was sent before it stopped
        m_manager->take();
        QTest::qWait(2 * WatchdogMs);
        QCOMPARE(m_manager->take(), QByteArray());
        ::kill(static_cast<pid_t>(panel.processId()), SIGCONT);
        QTRY_VERIFY_WITH_TIMEOUT(m_manager->heard().contains("WATCHDOG=1"), LongMs);
    }

    void with_the_settings_of_the_service_file_a_stopped_panel_misses_its_interval()
    {
        const QStringList unit = serviceSettings();
        QVERIFY(unit.contains(u"Type=notify"_s) && unit.contains(u"Restart=always"_s));
        const auto intervalMs = static_cast<int>(number(unit, u"WatchdogSec="_s) * 1000);
        QVERIFY(intervalMs > 0);
        DeviceDirectory devices;
        Pty& line = devices.add(u"ttyO1"_s);
        Program panel(QString::fromUtf8(QN740_PANEL), {},
            environment(devices) << unit.filter(u"QT_MESSAGE_PATTERN="_s)
                                 << u"WATCHDOG_USEC=%1000"_s.arg(intervalMs));
        const auto startMs = static_cast<int>(number(unit, u"TimeoutStartSec="_s) * 1000);
        QTRY_VERIFY_WITH_TIMEOUT(m_manager->heard().contains("READY=1\n"), startMs);
        QTRY_VERIFY_WITH_TIMEOUT(m_manager->heard().contains("WATCHDOG=1"), intervalMs);
        line.close(); // the pattern gives a warning its priority
        QTRY_VERIFY_WITH_TIMEOUT(panel.errors().contains("<4>qn740.link: ttyO1 was lost"), LongMs);
        ::kill(static_cast<pid_t>(panel.processId()), SIGSTOP);
        m_manager->take();
        QVERIFY(!QTest::qWaitFor([this] { return !m_manager->heard().isEmpty(); }, intervalMs));
    }

    void signs_of_life_go_on_while_an_editor_is_open()
    {
        DeviceDirectory devices;
        Pty& line = devices.add(u"ttyO1"_s);
        Program panel(QString::fromUtf8(QN740_PANEL), {},
            environment(devices) << watchdogVariable()
                                 << u"QT_LOGGING_RULES=qn740.link.debug=true"_s);
        QTRY_VERIFY_WITH_TIMEOUT(m_manager->heard().contains("WATCHDOG=1"), LongMs);
        QVERIFY(line.write(framed("IK,Frequency,1,R1:FREQ:,0 100,1,,Enter,5")));
        QTRY_VERIFY_WITH_TIMEOUT(panel.errors().contains("in \\x02IK"), LongMs);
        m_manager->take();
        QTRY_VERIFY_WITH_TIMEOUT(m_manager->heard().count("WATCHDOG=1") >= 2, LongMs);
    }

    void a_watchdog_of_another_process_is_not_fed()
    {
        DeviceDirectory devices;
        devices.add(u"ttyO1"_s);
        Program panel(QString::fromUtf8(QN740_PANEL), {},
            environment(devices) << watchdogVariable() << u"WATCHDOG_PID=1"_s);
        QTRY_VERIFY_WITH_TIMEOUT(m_manager->heard().contains("READY=1"), LongMs);
        QTest::qWait(WatchdogMs);
        QVERIFY2(!m_manager->heard().contains("WATCHDOG"), m_manager->heard());
    }

    void the_end_of_the_panel_is_told()
    {
        DeviceDirectory devices;
        devices.add(u"ttyO1"_s);
        Program panel(QString::fromUtf8(QN740_PANEL), {}, environment(devices));
        QTRY_VERIFY_WITH_TIMEOUT(m_manager->heard().contains("READY=1"), LongMs);
        panel.terminate();
        QVERIFY(panel.ends());
        QCOMPARE(panel.exitCode(), 0);
        QVERIFY2(m_manager->heard().endsWith("STOPPING=1\n\n"), m_manager->heard());
    }

    void a_window_that_is_not_painted_gives_no_sign_of_life()
    {
        const Environment socket("NOTIFY_SOCKET", m_address);
        const Environment watchdog("WATCHDOG_USEC", QByteArray::number(WatchdogMs * 1000));
        QWidget window;
        const ServiceNotifier notifier(&window, [] { return u"all well"_s; });
        QCOMPARE(notifier.interval().count(), WatchdogMs / 2);
        QTest::qWait(WatchdogMs);
        QCOMPARE(m_manager->take(), QByteArray()); // not even that it is ready
        window.show();
        QTRY_COMPARE(m_manager->heard().left(25), QByteArray("READY=1\nSTATUS=all well\n\n"));
        QTRY_VERIFY(m_manager->heard().contains("WATCHDOG=1\n\n")); // the status has not changed
        window.hide();
        m_manager->take();
        QTest::qWait(2 * WatchdogMs);
        QCOMPARE(m_manager->take(), QByteArray());
    }

    void an_abstract_socket_is_reached()
    {
        const QByteArray address = "@qn740-test-" + QByteArray::number(::getpid());
        ServiceManager manager(address);
        QVERIFY(manager.isBound());
        const Environment socket("NOTIFY_SOCKET", address);
        QWidget window;
        const ServiceNotifier notifier(&window, [] { return u"all well"_s; });
        window.show();
        QTRY_COMPARE(manager.heard(), QByteArray("READY=1\nSTATUS=all well\n\n"));
    }

    void an_address_that_is_none_is_not_used_data()
    {
        QTest::addColumn<QByteArray>("address");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("relative path") << QByteArray("notify");
        QTest::newRow("abstract without a name") << QByteArray("@");
        QTest::newRow("longer than an address can be") << '/' + QByteArray(200, 'x');
    }

    void an_address_that_is_none_is_not_used()
    {
        QFETCH(QByteArray, address);
        const Environment socket("NOTIFY_SOCKET", address);
        const Environment watchdog("WATCHDOG_USEC", "400000");
        QWidget window;
        const ServiceNotifier notifier(&window, [] { return QString(); });
        QVERIFY(!notifier.isWanted());
        QCOMPARE(notifier.interval().count(), 0);
        QCOMPARE(window.findChildren<QWidget*>().size(), 0);
    }

    void a_watchdog_interval_that_is_no_number_is_none()
    {
        const Environment socket("NOTIFY_SOCKET", m_address);
        const Environment watchdog("WATCHDOG_USEC", "-5");
        QWidget window;
        const ServiceNotifier notifier(&window, [] { return QString(); });
        QVERIFY(notifier.isWanted());
        QCOMPARE(notifier.interval().count(), 0);
    }

private:
    QStringList environment(const DeviceDirectory& devices) const
    {
        return {u"QN740_DEV="_s + devices.path(),
            u"NOTIFY_SOCKET="_s + QString::fromLocal8Bit(m_address)};
    }
    // The lines of the service file, with what stands in "Environment=" as "NAME=value".
    static QStringList serviceSettings()
    {
        QFile file(QStringLiteral(QN740_ROOT "/packaging/systemd/qn740-panel.service.in"));
        if (!file.open(QIODevice::ReadOnly)) {
            return {};
        }
        QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
        for (QString& text : lines) {
            if (text.startsWith(u"Environment="_s)) {
                text = text.section(u'=', 1).remove(u'"').replace(u"%%"_s, u"%"_s);
            }
        }
        return lines;
    }
    static double number(const QStringList& lines, const QString& name)
    {
        return lines.filter(name).value(0).mid(name.size()).toDouble();
    }
    static QString watchdogVariable() { return u"WATCHDOG_USEC=%1"_s.arg(WatchdogMs * 1000); }

    std::unique_ptr<QTemporaryDir> m_directory;
    QByteArray m_address;
    std::unique_ptr<ServiceManager> m_manager;
};

QN740_TEST_MAIN(tst_Service)
#include "tst_Service.moc"
