#include "support/Heap.h"
#include "support/TestMain.h"
#include "wire/LocalListener.h"
#include "wire/LocalPeer.h"
#include "wire/LocalSocket.h"
#include "wire/Log.h"

#include <QAbstractEventDispatcher>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <array>
#include <cerrno>

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr const char* Variable = "QN740_TEST_SOCKET";

LocalListener::Purpose purpose()
{
    return {Variable, u"numbers"_s, 0600, logScopes};
}

// What can be read from a socket that does not block, without waiting.
QByteArray takeAll(int socket)
{
    QByteArray taken;
    std::array<char, 65536> bytes{};
    ssize_t count = 0;
    while ((count = ::recv(socket, bytes.data(), bytes.size(), MSG_DONTWAIT)) > 0) {
        taken.append(bytes.data(), count);
    }
    return taken;
}

} // namespace

class tst_LocalPeer : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        m_path = m_directory->filePath(u"socket"_s);
        std::array<int, 2> ends{};
        QCOMPARE(
            ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, ends.data()), 0);
        m_own = ends[0]; // closed by the peer
        m_other = ends[1];
    }

    void cleanup()
    {
        closeOther();
        qunsetenv(Variable);
        m_directory.reset();
    }

    void a_turn_reads_so_many_bytes_data()
    {
        QTest::addColumn<qsizetype>("readBytes");
        QTest::addColumn<QList<qsizetype>>("sizes");
        using Sizes = QList<qsizetype>;
        QTest::newRow("three") << qsizetype{3} << Sizes{3, 3, 3, 1};
        QTest::newRow("one") << qsizetype{1} << Sizes(10, 1);
        QTest::newRow("at least one") << qsizetype{0} << Sizes(10, 1);
        QTest::newRow("all") << LocalPeer::DefaultReadBytes << Sizes{10};
    }

    void a_turn_reads_so_many_bytes()
    {
        QFETCH(qsizetype, readBytes);
        QFETCH(QList<qsizetype>, sizes);
        LocalPeer peer(m_own, nullptr, readBytes);
        QByteArray received;
        QList<qsizetype> receivedSizes;
        connect(&peer, &LocalPeer::received, this, [&](const QByteArray& bytes) {
            received += bytes;
            receivedSizes += bytes.size();
        });
        QCOMPARE(::send(m_other, "0123456789", 10, 0), 10);
        QTRY_COMPARE(received, QByteArray("0123456789"));
        QCOMPARE(receivedSizes, sizes);
    }

    void a_turn_reads_no_more_than_4096_bytes()
    {
        LocalPeer peer(m_own, nullptr, 2 * LocalPeer::DefaultReadBytes);
        const QSignalSpy received(&peer, &LocalPeer::received);
        const QByteArray block(5000, 'x');
        QCOMPARE(::send(m_other, block.constData(), 5000, 0), 5000);
        QTRY_COMPARE(received.size(), 2);
        QCOMPARE(LocalPeer::DefaultReadBytes, 4096);
    }

    void the_end_is_told_once_data()
    {
        QTest::addColumn<bool>("isReset");
        QTest::newRow("closed") << false;
        QTest::newRow("closed with bytes that it has not read") << true;
    }

    void the_end_is_told_once()
    {
        QFETCH(bool, isReset);
        LocalPeer peer(m_own);
        const QSignalSpy gone(&peer, &LocalPeer::gone);
        if (isReset) {
            peer.send("abc");
        }
        closeOther();
        QTRY_COMPARE(gone.size(), 1);
        for (int turn = 0; turn < 5; ++turn) {
            QCoreApplication::processEvents();
        }
        QCOMPARE(gone.size(), 1);
    }

    void what_is_sent_to_one_that_has_gone_does_not_wait()
    {
        LocalPeer peer(m_own);
        const QSignalSpy gone(&peer, &LocalPeer::gone);
        closeOther();
        peer.send("abc");
        QCOMPARE(gone.size(), 1);
        QCOMPARE(peer.unsent(), 0);
    }

    void what_has_to_wait_is_sent_in_order_and_then_that_is_told_once()
    {
        LocalPeer peer(m_own);
        const QSignalSpy sent(&peer, &LocalPeer::sent);
        QByteArray blocks;
        for (char letter = 'a'; letter <= 'e'; ++letter) {
            const QByteArray block(100'000, letter);
            peer.send(block);
            blocks += block;
        }
        QVERIFY(peer.unsent() > 0);
        QByteArray taken;
        QTRY_VERIFY((taken += takeAll(m_other), taken.size() >= blocks.size()));
        QTRY_COMPARE(sent.size(), 1);
        QVERIFY(taken == blocks);
        QCOMPARE(peer.unsent(), 0);
    }

    void nothing_is_told_of_what_need_not_wait()
    {
        LocalPeer peer(m_own);
        const QSignalSpy sent(&peer, &LocalPeer::sent);
        const QSignalSpy gone(&peer, &LocalPeer::gone);
        errno = EPIPE; // of something else
        peer.send({});
        peer.send("abc");
        for (int turn = 0; turn < 5; ++turn) {
            QCoreApplication::processEvents();
        }
        QCOMPARE(takeAll(m_other), QByteArray("abc"));
        QCOMPARE(sent.size(), 0);
        QCOMPARE(gone.size(), 0);
    }

    void the_memory_of_what_had_to_wait_is_given_back()
    {
        LocalPeer peer(m_own);
        const qsizetype before = heapInUse();
        constexpr qsizetype Size = 1'000'000;
        peer.send(QByteArray(Size, 'x'));
        qsizetype taken = 0;
        QTRY_VERIFY((taken += takeAll(m_other).size(), taken == Size));
        QTRY_COMPARE(peer.unsent(), 0);
        const qsizetype growth = heapInUse() - before;
        QVERIFY2(growth < Size / 4, QByteArray::number(growth));
    }

    void a_path_may_fill_the_address_but_for_its_end_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<bool>("fits");
        QTest::newRow("107 characters") << 107 << true;
        QTest::newRow("108 characters") << 108 << false;
    }

    void a_path_may_fill_the_address_but_for_its_end()
    {
        QFETCH(int, length);
        QFETCH(bool, fits);
        const QString path = m_path.leftJustified(length, u'x');
        const int socket = localSocket::listenAt(path, 0600);
        const int reason = errno;
        QCOMPARE(socket >= 0, fits);
        QCOMPARE(QFileInfo::exists(path), fits);
        if (fits) {
            ::close(socket);
        } else {
            QCOMPARE(socket, -1);
            QCOMPARE(reason, ENAMETOOLONG);
            QCOMPARE(localSocket::connectTo(path), -1);
            QVERIFY(!localSocket::isAbandoned(path));
        }
    }

    void a_file_at_the_path_is_left_alone_and_the_reason_is_told()
    {
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(localSocket::listenAt(m_path, 0600), -1);
        QCOMPARE(errno, EADDRINUSE);
        QVERIFY(file.exists());
        QVERIFY(!localSocket::isAbandoned(m_path));
        QCOMPARE(localSocket::connectTo(m_path), -1);
        QCOMPARE(errno, ECONNREFUSED);
    }

    void the_file_of_a_socket_has_its_permissions_whatever_the_process_masks()
    {
        const mode_t before = ::umask(077);
        const int socket = localSocket::listenAt(m_path, 0664);
        ::umask(before);
        struct stat status = {};
        QCOMPARE(::stat(QFile::encodeName(m_path).constData(), &status), 0);
        QCOMPARE(status.st_mode & 0777, mode_t{0664});
        const int connected = localSocket::connectTo(m_path);
        QVERIFY(connected >= 0);
        QVERIFY(!localSocket::isAbandoned(m_path));
        ::close(connected);
        ::close(socket);
        QVERIFY(localSocket::isAbandoned(m_path));
    }

    void thirty_one_programs_can_wait()
    {
        const int socket = localSocket::listenAt(m_path, 0600);
        QList<int> waiting;
        int connected = 0;
        while ((connected = localSocket::connectTo(m_path)) >= 0) {
            waiting += connected;
        }
        QCOMPARE(errno, EAGAIN);
        QCOMPARE(connected, -1);
        QCOMPARE(waiting.size(), 31); // one more than listen() is told
        waiting += socket;
        for (const int one : waiting) {
            ::close(one);
        }
    }

    // A program that was started without a standard input has the number 0 free.
    void a_socket_may_have_the_number_0()
    {
        qputenv(Variable, m_path.toLocal8Bit());
        LocalListener served(purpose());
        const QSignalSpy taken(&served, &LocalListener::connected);
        const int connecting = localSocket::connectTo(m_path);
        const int input = ::dup(0);
        ::close(0);
        while (QCoreApplication::eventDispatcher()->processEvents(QEventLoop::AllEvents)) {
        }
        ::close(0);
        qputenv(Variable, m_path.toLocal8Bit() + '0');
        const bool isListening = LocalListener(purpose()).isListening();
        const int refused = localSocket::connectTo(m_path + u'1');
        ::dup2(input, 0);
        ::close(input);
        ::close(connecting);
        QCOMPARE(taken.size(), 1);
        QCOMPARE(taken.at(0).at(0).toInt(), 0);
        QVERIFY(isListening);
        QCOMPARE(refused, -1);
    }

    void a_listener_is_wanted_when_the_variable_names_a_path_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("isWanted");
        QTest::addColumn<bool>("isListening");
        QTest::newRow("unset") << QString() << false << false;
        QTest::newRow("usable") << u"socket"_s << true << true;
        QTest::newRow("not usable") << u"nowhere/socket"_s << true << false;
    }

    void a_listener_is_wanted_when_the_variable_names_a_path()
    {
        QFETCH(QString, path);
        QFETCH(bool, isWanted);
        QFETCH(bool, isListening);
        if (isWanted) {
            qputenv(Variable, m_directory->filePath(path).toLocal8Bit());
        }
        if (isWanted && !isListening) {
            QTest::ignoreMessage(QtWarningMsg,
                QRegularExpression(u"^no numbers at .*nowhere/socket : No such file"_s));
        }
        const LocalListener listener(purpose());
        QCOMPARE(listener.isWanted(), isWanted);
        QCOMPARE(listener.isListening(), isListening);
    }

    void all_programs_that_wait_are_taken_in_one_turn()
    {
        qputenv(Variable, m_path.toLocal8Bit());
        LocalListener listener(purpose());
        QList<int> taken;
        connect(&listener, &LocalListener::connected, this, [&](int socket) { taken += socket; });
        listener.takeLate(); // nobody waits
        QList<int> connected;
        for (int k = 0; k < 3; ++k) {
            connected += localSocket::connectTo(m_path);
        }
        QTRY_VERIFY(!taken.isEmpty());
        QCOMPARE(taken.size(), 3);
        connected += localSocket::connectTo(m_path);
        QTRY_COMPARE(taken.size(), 4);
        for (const int socket : taken + connected) {
            QVERIFY(socket >= 0);
            ::close(socket);
        }
    }

private:
    void closeOther()
    {
        if (m_other >= 0) {
            ::close(m_other);
        }
        m_other = -1;
    }

    std::unique_ptr<QTemporaryDir> m_directory;
    QString m_path;
    int m_own = -1;
    int m_other = -1;
};

QN740_TEST_MAIN(tst_LocalPeer)
#include "tst_LocalPeer.moc"
