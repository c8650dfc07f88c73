#include "scopes/ScopeRemote.h"
#include "scopes/ScopesPage.h"
#include "scopes/Streams.h"
#include "support/Pty.h"
#include "support/TestMain.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace {

constexpr int Sdi = 3; // as "SM" carries it
constexpr int EyePattern = 2;

// The example of docs/integration.md, between its fences.
QString exampleReader()
{
    QFile file(QStringLiteral(QN740_SOURCE "/docs/integration.md"));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QString text = QString::fromUtf8(file.readAll());
    const qsizetype from = text.indexOf(u"```python\nimport base64"_s);
    const qsizetype begin = text.indexOf('\n'_L1, from) + 1;
    return from < 0 ? QString() : text.mid(begin, text.indexOf(u"```"_s, begin) - begin);
}

} // namespace

class tst_ScopeRemote : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_devices = std::make_unique<DeviceDirectory>();
        m_path = m_devices->path() + u"/scopes"_s;
        qputenv("QN740_SCOPE_SOCKET", m_path.toLocal8Bit());
    }

    void cleanup()
    {
        qunsetenv("QN740_SCOPE_SOCKET");
        m_devices.reset();
    }

    void without_the_variable_there_is_no_socket()
    {
        qunsetenv("QN740_SCOPE_SOCKET");
        const ScopesPage page;
        const ScopeRemote remote(page);
        QVERIFY(!remote.server().isListening());
        QVERIFY(!QFileInfo::exists(m_path));
    }

    void a_block_is_a_header_and_its_samples()
    {
        const QVector<double> i{-1.0, 32767 / 32768.0, 0.0};
        const QVector<double> q{1 / 32768.0, -2 / 32768.0, 0.5};
        const QByteArrayList lines = ScopeRemote::block(3, i, q).split('\n');
        QCOMPARE(lines.size(), 3);
        QCOMPARE(lines.at(0),
            QByteArray("{\"demodulator\":3,\"type\":\"iq\",\"samples\":3,"
                       "\"encoding\":\"base64 int16 big-endian interleaved\"}"));
        QCOMPARE(
            QByteArray::fromBase64(lines.at(1)).toHex(), QByteArray("800000017ffffffe00004000"));
        QVERIFY(lines.at(2).isEmpty());
    }

    void a_record_is_a_header_and_its_bytes()
    {
        QCOMPARE(ScopeRemote::record(2, "\x01\x02\x03\x04\x05"),
            QByteArray("{\"demodulator\":2,\"type\":\"sdi\",\"samples\":5,"
                       "\"encoding\":\"base64 uint8\"}\nAQIDBAU=\n"));
    }

    void what_each_port_brings_reaches_the_reader_bit_by_bit()
    {
        std::array<Pty*, 3> ports{};
        for (int n = 0; n < 3; ++n) {
            ports.at(static_cast<size_t>(n)) = &m_devices->add(u"ttyUSB%1"_s.arg(n + 1));
        }
        ScopesPage page;
        const ScopeRemote remote(page);
        QLocalSocket reader;
        connectReader(reader, remote);
        page.setMode(2, *ScopeMode::ofMessage(EyePattern));
        page.setMode(3, *ScopeMode::ofMessage(Sdi));
        std::mt19937 random(3);
        const QByteArray block = streams::randomBlock(random);
        QVERIFY(ports.at(1)->write(block));
        expectLines(reader, 2, "iq", 256);
        const QByteArray words = QByteArray::fromBase64(m_data);
        QCOMPARE(words.size(), 1024);
        for (qsizetype k = 1; k < 256; ++k) {
            QCOMPARE(words.mid(4 * k, 4), block.mid(6 * k + 2, 4));
        }
        QCOMPARE(words.mid(0, 2), block.mid(8, 2)); // the first I has the value of the second
        QVERIFY(ports.at(2)->write(QByteArray("\0\xff"
                                              "abcde",
            7)));
        expectLines(reader, 3, "sdi", 5);
        QCOMPARE(QByteArray::fromBase64(m_data), QByteArray("abcde"));
        QVERIFY(
            ports.at(0)->write(block)); // one that is off sends nothing, and what comes goes out
        expectLines(reader, 1, "iq", 256);
    }

    void a_scope_that_is_deleted_is_tolerated()
    {
        ScopesPage page;
        const ScopeRemote remote(page);
        delete page.scope(3);
        QLocalSocket reader;
        connectReader(reader, remote);
        emit page.scope(1)->rcv_sdi_msg("abcde");
        expectLines(reader, 1, "sdi", 5);
    }

    void the_example_of_the_document_reads_it()
    {
        const QString example = exampleReader();
        QVERIFY(!example.isEmpty());
        ScopesPage page;
        const ScopeRemote remote(page);
        QProcess python;
        python.start(u"python3"_s, {u"-u"_s, u"-c"_s, example, m_path});
        QTRY_COMPARE(remote.server().readers(), 1);
        QVector<double> i(256, 0.25);
        QVector<double> q(256, -0.5);
        emit page.scope(1)->rcv_eye_msg(i, q);
        emit page.scope(2)->rcv_sdi_msg("\x01\x02\x03\xfe\xff");
        QByteArray output;
        QTRY_VERIFY2((output += python.readAllStandardOutput(), output.count('\n') == 2),
            (output + python.readAllStandardError()).constData());
        QCOMPARE(output,
            QByteArray("Demod 1: 256 pairs, the first is (0.25, -0.5)\n"
                       "Demod 2: record [1, 2, 3, 254, 255]\n"));
        python.kill();
        QVERIFY(python.waitForFinished());
    }

private:
    void connectReader(QLocalSocket& reader, const ScopeRemote& remote)
    {
        reader.connectToServer(m_path);
        QTRY_COMPARE(remote.server().readers(), 1);
    }

    // Expects the two lines of a block and keeps the second in m_data.
    void expectLines(QLocalSocket& reader, int demodulator, const char* type, int samples)
    {
        QTRY_VERIFY(reader.canReadLine());
        const auto header = QJsonDocument::fromJson(reader.readLine()).object();
        QCOMPARE(header.value(u"demodulator"_s).toInt(), demodulator);
        QCOMPARE(header.value(u"type"_s).toString(), QLatin1String(type));
        QCOMPARE(header.value(u"samples"_s).toInt(), samples);
        QTRY_VERIFY(reader.canReadLine());
        m_data = reader.readLine().trimmed();
    }

    std::unique_ptr<DeviceDirectory> m_devices;
    QString m_path;
    QByteArray m_data;
};

QN740_TEST_MAIN(tst_ScopeRemote)
#include "tst_ScopeRemote.moc"
