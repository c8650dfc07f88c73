// The sockets from which other programs read spectra and scope data: readers that come and go, and
// send what nobody has asked for. Each byte is a step: "c" comes, "g" goes, "r" reads, "s" sends a
// block to all; any other byte is sent by the reader that came last.
#include "Target.h"

#include "wire/LineServer.h"
#include "wire/Log.h"

#include <QCoreApplication>
#include <QLocalSocket>
#include <QTemporaryDir>

#include <deque>
#include <memory>

namespace {

constexpr char Variable[] = "QN740_FUZZ_SOCKET";

class Readers
{
public:
    Readers()
        : m_path(m_directory.filePath(QStringLiteral("socket")))
    {
        qputenv(Variable, m_path.toLocal8Bit());
        m_server = std::make_unique<LineServer>(Variable, QStringLiteral("data"), &logLink);
        FUZZ_CHECK(m_server->isListening());
    }

    void take(char byte)
    {
        switch (byte) {
        case 'c':
            come();
            break;
        case 'g':
            if (!m_readers.empty()) {
                m_readers.pop_front();
            }
            break;
        case 'r':
            for (const auto& reader : m_readers) {
                reader->readAll();
            }
            break;
        case 's':
            m_server->send(QByteArray(5000, 'x') + '\n');
            break;
        default:
            if (!m_readers.empty()) {
                m_readers.back()->write(QByteArray(1, byte));
            }
        }
        QCoreApplication::processEvents();
        FUZZ_CHECK(m_server->readers() <= LineServer::MaxReaders);
        FUZZ_CHECK(m_server->backlog() <= LineServer::MaxBacklogBytes);
    }

private:
    void come()
    {
        if (m_readers.size() < LineServer::MaxReaders + 2) {
            m_readers.push_back(std::make_unique<QLocalSocket>());
            m_readers.back()->connectToServer(m_path);
        }
    }

    QTemporaryDir m_directory;
    QString m_path;
    std::unique_ptr<LineServer> m_server;
    std::deque<std::unique_ptr<QLocalSocket>> m_readers;
};

} // namespace

void fuzz::takeReaders(const QByteArray& input)
{
    Readers readers;
    for (const char byte : input) {
        readers.take(byte);
    }
}
