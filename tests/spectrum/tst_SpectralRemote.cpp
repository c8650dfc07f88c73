#include "spectrum/CardSide.h"
#include "spectrum/SpectralCard.h"
#include "spectrum/SpectralRemote.h"
#include "spectrum/SpectrumChart.h"
#include "support/Heap.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalServer>
#include <QLocalSocket>

using namespace Qt::StringLiterals;

class tst_SpectralRemote : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_devices = std::make_unique<DeviceDirectory>();
        m_path = m_devices->path() + u"/spectra"_s;
        qputenv("QN740_SPECTRUM_SOCKET", m_path.toLocal8Bit());
        m_card = std::make_unique<SpectralCard>(nullptr, 0, u"absent"_s);
    }

    void cleanup()
    {
        m_card.reset();
        qunsetenv("QN740_SPECTRUM_SOCKET");
        m_devices.reset();
    }

    void without_the_variable_there_is_no_socket()
    {
        qunsetenv("QN740_SPECTRUM_SOCKET");
        const SpectralRemote unset(m_card.get());
        QVERIFY(!unset.isListening());
        qputenv("QN740_SPECTRUM_SOCKET", "");
        const SpectralRemote empty(m_card.get());
        QVERIFY(!empty.isListening());
    }

    void a_spectrum_is_one_line_of_json()
    {
        SpectralRemote remote(m_card.get());
        QLocalSocket reader;
        connectReader(reader, remote);
        m_card->SetSpan(1, 9);
        m_card->setRf(2250.5, 1);
        emit m_card->specUpdate(QByteArray("\x00\x01\xff", 3), 1);
        QTRY_VERIFY(reader.canReadLine());
        const QByteArray line = reader.readLine();
        QCOMPARE(line,
            QByteArray("{\"channel\":1,\"centre\":2250.5,\"span\":43.347002,"
                       "\"levels\":[-120,-119.5,7.5]}\n"));
        const QJsonObject object = QJsonDocument::fromJson(line).object();
        QCOMPARE(object.value(u"channel"_s).toInt(), 1);
        QCOMPARE(object.value(u"centre"_s).toDouble(), 2250.5);
        QCOMPARE(object.value(u"span"_s).toDouble(), 43.347002);
        QCOMPARE(object.value(u"levels"_s).toArray().size(), 3);
    }

    void a_spectrum_from_the_card_s_port_reaches_the_reader()
    {
        Pty& pty = m_devices->add(u"ttyUSB11"_s);
        SpectralCard card(nullptr, 0, u"ttyUSB11"_s);
        SpectralRemote remote(&card);
        QLocalSocket reader;
        connectReader(reader, remote);
        card.UpdateCmds();
        pty.write(cardSide::spectrum(QByteArray(512, cardSide::level(-50))));
        QTRY_VERIFY(reader.canReadLine());
        const auto object = QJsonDocument::fromJson(reader.readLine()).object();
        QCOMPARE(object.value(u"levels"_s).toArray().size(), 512);
        QCOMPARE(object.value(u"levels"_s).toArray().at(17).toDouble(), -50.0);
    }

    void every_reader_gets_every_spectrum()
    {
        SpectralRemote remote(m_card.get());
        QLocalSocket first;
        QLocalSocket second;
        connectReader(first, remote);
        connectReader(second, remote);
        for (int i = 0; i < 5; ++i) {
            emit m_card->specUpdate("abc", i % 3);
        }
        for (QLocalSocket* reader : {&first, &second}) {
            int lines = 0;
            QTRY_VERIFY((lines += takeLines(*reader), lines == 5));
        }
    }

    void a_vanished_reader_is_forgotten()
    {
        SpectralRemote remote(m_card.get());
        {
            QLocalSocket reader;
            connectReader(reader, remote);
            emit m_card->specUpdate("abc", 0);
            reader.abort();
        }
        for (int i = 0; i < 100; ++i) {
            emit m_card->specUpdate("abc", 0);
        }
        QTRY_COMPARE(remote.readers(), 0);
        emit m_card->specUpdate("abc", 0);
    }

    void a_reader_that_reads_nothing_has_a_bounded_backlog()
    {
        SpectralRemote remote(m_card.get());
        QLocalSocket lazy;
        lazy.setReadBufferSize(1);
        connectReader(lazy, remote);
        const QByteArray points(4096, 'p');
        qint64 largest = 0;
        for (int i = 0; i < 2000; ++i) {
            emit m_card->specUpdate(points, 0);
            largest = qMax(largest, remote.backlog());
            if (i % 100 == 0) {
                QCoreApplication::processEvents();
            }
        }
        QVERIFY2(largest > 0 && largest <= SpectralRemote::MaxBacklogBytes,
            qPrintable(QString::number(largest)));
    }

    void readers_that_hang_or_vanish_leave_the_memory_as_it_was()
    {
        SpectralRemote remote(m_card.get());
        const QByteArray points(4096, 'p');
        qsizetype early = 0;
        constexpr int Rounds = 120;
        for (int round = 0; round < Rounds; ++round) {
            QLocalSocket hanging;
            hanging.setReadBufferSize(1);
            QLocalSocket reading;
            connectReader(hanging, remote);
            connectReader(reading, remote);
            for (int i = 0; i < 40; ++i) {
                emit m_card->specUpdate(points, i % 3);
                QCoreApplication::processEvents();
                takeLines(reading);
            }
            QVERIFY(remote.backlog() > 0);
            hanging.abort();
            reading.abort();
            QTRY_COMPARE(remote.readers(), 0);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            early = round == Rounds / 4 ? heapInUse() : early;
        }
        const qsizetype growth = heapInUse() - early;
        QVERIFY2(growth < 64 * 1024, qPrintable(QString::number(growth)));
    }

    void a_reader_that_hangs_does_not_slow_down_the_others()
    {
        SpectralRemote remote(m_card.get());
        QLocalSocket hanging;
        hanging.setReadBufferSize(1);
        QLocalSocket reading;
        connectReader(hanging, remote);
        connectReader(reading, remote);
        int lines = 0;
        for (int i = 1; i <= 400; ++i) {
            emit m_card->specUpdate(QByteArray(4096, 'p'), 0);
            QTRY_VERIFY((lines += takeLines(reading), lines == i));
        }
        QVERIFY(remote.backlog() > 0);
    }

    void a_slow_reader_gets_whole_lines_only()
    {
        SpectralRemote remote(m_card.get());
        QLocalSocket slow;
        connectReader(slow, remote);
        for (int i = 0; i < 500; ++i) {
            emit m_card->specUpdate(QByteArray(4096, 'p'), 0);
        }
        QTRY_COMPARE(remote.backlog(), 0);
        emit m_card->specUpdate("last", 2);
        int lines = 0;
        bool last = false;
        const auto read = [&] {
            while (slow.canReadLine()) {
                const auto object = QJsonDocument::fromJson(slow.readLine()).object();
                const auto size = object.value(u"levels"_s).toArray().size();
                last = object.value(u"channel"_s).toInt() == 2 && size == 4;
                lines += last || size == 4096 ? 1 : -100000;
            }
            return last;
        };
        QTRY_VERIFY(read());
        QVERIFY2(lines > 1 && lines < 500, qPrintable(QString::number(lines)));
    }

    void what_readers_send_is_thrown_away()
    {
        SpectralRemote remote(m_card.get());
        QLocalSocket chatty;
        connectReader(chatty, remote);
        chatty.write(QByteArray(200000, 'x'));
        QTRY_COMPARE(chatty.bytesToWrite(), 0);
        emit m_card->specUpdate("abc", 0);
        QTRY_VERIFY(chatty.canReadLine());
    }

    void too_many_readers_are_turned_away()
    {
        SpectralRemote remote(m_card.get());
        std::vector<std::unique_ptr<QLocalSocket>> readers;
        for (int i = 0; i < SpectralRemote::MaxReaders + 3; ++i) {
            readers.push_back(std::make_unique<QLocalSocket>());
            readers.back()->connectToServer(m_path);
        }
        QTRY_COMPARE(remote.readers(), SpectralRemote::MaxReaders);
        QTRY_COMPARE(readers.back()->state(), QLocalSocket::UnconnectedState);
    }

    void a_socket_that_nobody_serves_is_taken_over()
    {
        QVERIFY(
            QProcess::execute(u"python3"_s,
                {u"-c"_s,
                    u"import socket,sys; s=socket.socket(socket.AF_UNIX); s.bind(sys.argv[1])"_s,
                    m_path}) == 0);
        QVERIFY(QFileInfo::exists(m_path));
        const SpectralRemote remote(m_card.get());
        QVERIFY(remote.isListening());
    }

    void a_socket_that_is_served_and_a_plain_file_are_left_alone()
    {
        QLocalServer other;
        QVERIFY(other.listen(m_path));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"no spectra at"_s));
        const SpectralRemote remote(m_card.get());
        QVERIFY(!remote.isListening());
        QVERIFY(other.isListening());
        other.close();

        QFile file(m_path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("precious");
        file.close();
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"no spectra at"_s));
        const SpectralRemote second(m_card.get());
        QVERIFY(!second.isListening());
        QCOMPARE(QFileInfo(m_path).size(), 8);
    }

    void a_relative_path_starts_at_the_working_directory()
    {
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_devices->path()));
        qputenv("QN740_SPECTRUM_SOCKET", "here");
        {
            SpectralRemote remote(m_card.get());
            QVERIFY(remote.isListening());
            QVERIFY(QFileInfo::exists(m_devices->path() + u"/here"_s));
            m_path = m_devices->path() + u"/here"_s;
            QLocalSocket reader;
            connectReader(reader, remote);
            // The socket is in use and left alone.
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"no spectra at .*/here"_s));
            const SpectralRemote second(m_card.get());
            QVERIFY(!second.isListening() && remote.isListening());
        }
        QVERIFY(!QFileInfo::exists(m_devices->path() + u"/here"_s));
        QVERIFY(QDir::setCurrent(before));
    }

    void the_socket_is_removed_with_the_forwarder()
    {
        {
            const SpectralRemote remote(m_card.get());
            QVERIFY(QFileInfo::exists(m_path));
        }
        QVERIFY(!QFileInfo::exists(m_path));
    }

    void others_on_the_machine_cannot_read()
    {
        const SpectralRemote remote(m_card.get());
        const auto permissions = QFileInfo(m_path).permissions();
        QVERIFY(!(permissions & (QFile::ReadOther | QFile::WriteOther)));
    }

private:
    void connectReader(QLocalSocket& reader, SpectralRemote& remote)
    {
        const int before = remote.readers();
        reader.connectToServer(m_path);
        QTRY_COMPARE(remote.readers(), before + 1);
    }

    static int takeLines(QLocalSocket& reader)
    {
        int lines = 0;
        while (reader.canReadLine()) {
            reader.readLine();
            ++lines;
        }
        return lines;
    }

    std::unique_ptr<DeviceDirectory> m_devices;
    QString m_path;
    std::unique_ptr<SpectralCard> m_card;
};

QN740_TEST_MAIN(tst_SpectralRemote)
#include "tst_SpectralRemote.moc"
