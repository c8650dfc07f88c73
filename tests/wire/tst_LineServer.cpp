#include "support/Heap.h"
#include "support/TestMain.h"
#include "wire/LineServer.h"
#include "wire/Log.h"

#include <QAbstractEventDispatcher>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

constexpr const char* Variable = "QN740_TEST_SOCKET";

std::unique_ptr<LineServer> makeServer()
{
    return std::make_unique<LineServer>(Variable, u"numbers"_s, logScopes);
}

int newSocket()
{
    return ::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0);
}

sockaddr_un addressOf(const QString& path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray name = QFile::encodeName(path);
    std::copy_n(
        name.cbegin(), qMin<size_t>(name.size(), sizeof address.sun_path - 1), address.sun_path);
    return address;
}

int takeLines(QLocalSocket& reader)
{
    int lines = 0;
    while (reader.canReadLine()) {
        reader.readLine();
        ++lines;
    }
    return lines;
}

} // namespace

class tst_LineServer : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        m_path = m_directory->filePath(u"socket"_s);
        qputenv(Variable, m_path.toLocal8Bit());
    }

    void cleanup()
    {
        qunsetenv(Variable);
        m_directory.reset();
    }

    void a_socket_exists_only_when_the_variable_names_one_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<bool>("isThere");
        QTest::newRow("unset") << QByteArray() << false;
        QTest::newRow("empty") << QByteArray("") << false;
        QTest::newRow("a path") << QByteArray("path") << true;
    }

    void a_socket_exists_only_when_the_variable_names_one()
    {
        QFETCH(QByteArray, value);
        if (value.isNull()) {
            qunsetenv(Variable);
        } else if (value.isEmpty()) {
            qputenv(Variable, value);
        }
        const auto server = makeServer();
        QTEST(server->isListening(), "isThere");
        QTEST(server->isWanted(), "isThere");
        QTEST(QFileInfo::exists(m_path), "isThere");
    }

    void every_reader_gets_every_block()
    {
        const auto server = makeServer();
        QLocalSocket first;
        QLocalSocket second;
        connectReader(first, *server);
        connectReader(second, *server);
        for (int k = 0; k < 5; ++k) {
            server->send("one\ntwo\n");
        }
        for (QLocalSocket* reader : {&first, &second}) {
            int lines = 0;
            QTRY_VERIFY((lines += takeLines(*reader), lines == 10));
        }
    }

    void the_ninth_reader_is_turned_away()
    {
        const auto server = makeServer();
        std::vector<std::unique_ptr<QLocalSocket>> readers;
        for (int k = 0; k < LineServer::MaxReaders; ++k) {
            readers.push_back(std::make_unique<QLocalSocket>());
            connectReader(*readers.back(), *server);
        }
        QCOMPARE(LineServer::MaxReaders, 8);
        QLocalSocket ninth;
        ninth.connectToServer(m_path);
        QTRY_COMPARE(ninth.state(), QLocalSocket::UnconnectedState);
        QCOMPARE(server->readers(), 8);
        readers.pop_back();
        QTRY_COMPARE(server->readers(), 7);
        connectReader(ninth, *server);
    }

    void a_slow_reader_loses_whole_blocks_and_has_a_bounded_backlog()
    {
        const auto server = makeServer();
        QLocalSocket slow;
        slow.setReadBufferSize(1);
        connectReader(slow, *server);
        QLocalSocket fast;
        connectReader(fast, *server);
        const QByteArray block = "head\n" + QByteArray(8000, 'p') + '\n';
        int lines = 0;
        for (int k = 1; k <= 300; ++k) {
            server->send(block);
            QVERIFY(server->backlog() <= LineServer::MaxBacklogBytes);
            QTRY_VERIFY((lines += takeLines(fast), lines == 2 * k)); // it loses nothing
        }
        QVERIFY(server->backlog() > 0);
        slow.setReadBufferSize(0);
        QByteArray taken;
        QTRY_VERIFY((taken += slow.readAll(), server->backlog() == 0));
        server->send("last\n");
        QTRY_VERIFY((taken += slow.readAll(), taken.endsWith("last\n")));
        taken.chop(5);
        const auto blocks = taken.size() / block.size();
        QVERIFY2(blocks > 1 && blocks < 300, qPrintable(QString::number(blocks)));
        QVERIFY(taken == block.repeated(blocks)); // whole ones only
    }

    void a_block_may_fill_the_whole_backlog_but_not_more_data()
    {
        QTest::addColumn<qint64>("bytes");
        QTest::addColumn<qint64>("sent");
        QTest::newRow("as long") << LineServer::MaxBacklogBytes << LineServer::MaxBacklogBytes;
        QTest::newRow("longer") << LineServer::MaxBacklogBytes + 1 << qint64{0};
    }

    void a_block_may_fill_the_whole_backlog_but_not_more()
    {
        QFETCH(qint64, bytes);
        QFETCH(qint64, sent);
        const auto server = makeServer();
        QLocalSocket reader;
        connectReader(reader, *server);
        server->send(QByteArray(static_cast<qsizetype>(bytes), 'p'));
        QCOMPARE(server->backlog() > 0, sent > 0);
        QByteArray taken;
        QTRY_VERIFY((taken += reader.readAll(), taken.size() >= sent));
        server->send("last\n");
        QTRY_VERIFY((taken += reader.readAll(), taken.endsWith("last\n")));
        QCOMPARE(taken.size(), sent + 5);
    }

    void readers_that_come_and_go_leave_the_memory_as_it_was()
    {
        const auto server = makeServer();
        qsizetype early = 0;
        constexpr int Rounds = 120;
        for (int round = 0; round < Rounds; ++round) {
            QLocalSocket hanging;
            hanging.setReadBufferSize(1);
            connectReader(hanging, *server);
            for (int k = 0; k < 40; ++k) {
                server->send(QByteArray(16000, 'p') + '\n');
            }
            hanging.abort();
            QTRY_COMPARE(server->readers(), 0);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            early = round == Rounds / 4 ? heapInUse() : early;
        }
        const qsizetype growth = heapInUse() - early;
        QVERIFY2(growth < 64 * 1024, qPrintable(QString::number(growth)));
    }

    void what_readers_send_is_thrown_away()
    {
        const auto server = makeServer();
        QLocalSocket chatty;
        connectReader(chatty, *server);
        chatty.write(QByteArray(2'000'000, 'x')); // more than the system keeps for a reader
        QTRY_COMPARE(chatty.bytesToWrite(), 0);
        server->send("abc\n");
        QTRY_VERIFY(chatty.canReadLine());
    }

    void what_stands_at_the_path_already_is_left_alone()
    {
        const auto first = makeServer();
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"no numbers at .*: in use"_s));
        QVERIFY(!makeServer()->isListening());
        QVERIFY(first->isListening() && QFileInfo::exists(m_path));

        QFile file(m_directory->filePath(u"file"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("precious");
        file.close();
        qputenv(Variable, file.fileName().toLocal8Bit());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"no numbers at .*: in use"_s));
        QVERIFY(!makeServer()->isListening());
        QCOMPARE(QFileInfo(file).size(), 8);
    }

    // A program that has not accepted its connections for a while serves its socket all the same.
    void the_socket_of_a_busy_program_is_left_alone()
    {
        const int busy = newSocket();
        const sockaddr_un address = addressOf(m_path);
        const auto* at = reinterpret_cast<const sockaddr*>(&address);
        QCOMPARE(::bind(busy, at, sizeof address), 0);
        QCOMPARE(::listen(busy, 0), 0);
        QVector<int> waiting;
        do {
            waiting += newSocket();
        } while (::connect(waiting.constLast(), at, sizeof address) == 0);
        QCOMPARE(errno, EAGAIN);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"no numbers at .*: in use"_s));
        QVERIFY(!makeServer()->isListening());
        QVERIFY(QFileInfo::exists(m_path));
        waiting += busy;
        for (const int socket : waiting) {
            ::close(socket);
        }
    }

    void the_socket_that_a_killed_program_has_left_is_taken()
    {
        const int killed = newSocket();
        const sockaddr_un address = addressOf(m_path);
        QCOMPARE(::bind(killed, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        ::close(killed);
        QVERIFY(QFileInfo::exists(m_path));
        QVERIFY(makeServer()->isListening());
    }

    void a_path_that_cannot_be_used_is_reported()
    {
        qputenv(Variable, m_directory->filePath(u"nowhere/socket"_s).toLocal8Bit());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"no numbers at .*nowhere"_s));
        QVERIFY(!makeServer()->isListening());
    }

    void a_path_that_is_too_long_for_a_socket_is_reported()
    {
        qputenv(Variable, m_directory->filePath(QString(200, u'x')).toLocal8Bit());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"no numbers at .*xxx"_s));
        QVERIFY(!makeServer()->isListening());
    }

    void a_reader_that_comes_while_no_file_is_free_is_served_with_a_later_block()
    {
        const auto server = makeServer();
        rlimit before = {};
        QCOMPARE(::getrlimit(RLIMIT_NOFILE, &before), 0);
        const int connecting = newSocket();
        const sockaddr_un address = addressOf(m_path);
        rlimit none = before;
        none.rlim_cur = static_cast<rlim_t>(connecting) + 1; // the sockets so far, no more
        QCOMPARE(::setrlimit(RLIMIT_NOFILE, &none), 0);
        const int connected =
            ::connect(connecting, reinterpret_cast<const sockaddr*>(&address), sizeof address);
        int turns = 0;
        while (QCoreApplication::eventDispatcher()->processEvents(QEventLoop::AllEvents)) {
            ++turns;
            QVERIFY2(turns < 100, "the event loop turns at full speed");
        }
        QCOMPARE(::setrlimit(RLIMIT_NOFILE, &before), 0);
        QCOMPARE(connected, 0);
        QCOMPARE(server->readers(), 0);
        server->send("one\n");
        QCOMPARE(server->readers(), 1);
        char bytes[8] = {};
        QCOMPARE(::recv(connecting, bytes, sizeof bytes, 0), 4);
        QCOMPARE(QByteArray(bytes), "one\n");
        ::close(connecting);
    }

    void the_socket_goes_with_the_server_and_is_not_for_others()
    {
        {
            const auto server = makeServer();
            const auto permissions = QFileInfo(m_path).permissions();
            QVERIFY(!(permissions & (QFile::ReadOther | QFile::WriteOther)));
            QVERIFY(permissions & QFile::WriteUser);
            QVERIFY(permissions & QFile::WriteGroup);
        }
        QVERIFY(!QFileInfo::exists(m_path));
    }

private:
    void connectReader(QLocalSocket& reader, const LineServer& server)
    {
        const int before = server.readers();
        reader.connectToServer(m_path);
        QTRY_COMPARE(server.readers(), before + 1);
    }

    std::unique_ptr<QTemporaryDir> m_directory;
    QString m_path;
};

QN740_TEST_MAIN(tst_LineServer)
#include "tst_LineServer.moc"
