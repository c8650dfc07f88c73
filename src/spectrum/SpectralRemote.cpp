#include "spectrum/SpectralRemote.h"

#include "spectrum/SpectralCard.h"
#include "spectrum/SpectrumTrace.h"
#include "wire/Log.h"

#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>

#include <sys/stat.h>

namespace {

constexpr int ProbeMs = 100;
constexpr qint64 MaxUnreadBytes = 4096;

// Whether a panel that was killed has left this socket behind, and nobody serves it now.
bool isAbandoned(const QString& path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISSOCK(status.st_mode)) {
        return false;
    }
    QLocalSocket probe;
    probe.connectToServer(path);
    return !probe.waitForConnected(ProbeMs);
}

QByteArray number(double value)
{
    return QByteArray::number(value, 'g', 12);
}

} // namespace

SpectralRemote::SpectralRemote(SpectralCard* card, QObject* parent)
    : QObject(parent)
    , m_card(card)
{
    connect(&m_server, &QLocalServer::newConnection, this, &SpectralRemote::takeReaders);
    const QString path = qEnvironmentVariable("QN740_SPECTRUM_SOCKET");
    if (!path.isEmpty()) {
        // QLocalServer would put a relative path into the directory for temporary files.
        listen(QFileInfo(path).absoluteFilePath());
        connect(card, &SpectralCard::specUpdate, this, &SpectralRemote::forward);
    }
}

SpectralRemote::~SpectralRemote()
{
    for (QLocalSocket* reader : std::as_const(m_readers)) {
        reader->disconnect(this);
        reader->abort();
    }
}

void SpectralRemote::listen(const QString& path)
{
    if (isAbandoned(path)) {
        QFile::remove(path);
    }
    // Listening would replace whatever stands there.
    if (QFileInfo::exists(path)) {
        qCWarning(logSpectrum).noquote() << "no spectra at" << path << ": in use";
        return;
    }
    m_server.setSocketOptions(QLocalServer::UserAccessOption | QLocalServer::GroupAccessOption);
    if (!m_server.listen(path)) {
        qCWarning(logSpectrum).noquote()
            << "no spectra at" << path << ':' << m_server.errorString();
    }
}

void SpectralRemote::takeReaders()
{
    while (QLocalSocket* reader = m_server.nextPendingConnection()) {
        if (m_readers.size() >= MaxReaders) {
            reader->abort();
            reader->deleteLater();
            continue;
        }
        reader->setReadBufferSize(MaxUnreadBytes);
        connect(reader, &QLocalSocket::readyRead, reader, [reader] { reader->readAll(); });
        connect(reader, &QLocalSocket::disconnected, this, [this, reader] { forget(reader); });
        m_readers += reader;
    }
}

void SpectralRemote::forget(QLocalSocket* reader)
{
    m_readers.removeOne(reader);
    reader->deleteLater();
}

qint64 SpectralRemote::backlog() const
{
    qint64 slowest = 0;
    for (const QLocalSocket* reader : m_readers) {
        slowest = qMax(slowest, reader->bytesToWrite());
    }
    return slowest;
}

QByteArray SpectralRemote::line(const QByteArray& points, int channel, double centre, double span)
{
    static const QVector<QByteArray> levels = [] {
        QVector<QByteArray> texts;
        for (int byte = 0; byte < 256; ++byte) {
            texts += number(SpectrumTrace::level(static_cast<quint8>(byte)));
        }
        return texts;
    }();
    QByteArray text;
    text.reserve(80 + points.size() * 7);
    text += "{\"channel\":" + QByteArray::number(channel) + ",\"centre\":" + number(centre) +
        ",\"span\":" + number(span) + ",\"levels\":[";
    for (qsizetype i = 0; i < points.size(); ++i) {
        if (i > 0) {
            text += ',';
        }
        text += levels.at(static_cast<quint8>(points.at(i)));
    }
    text += "]}\n";
    return text;
}

void SpectralRemote::forward(const QByteArray& points, int channel)
{
    if (m_readers.isEmpty() || m_card == nullptr) {
        return;
    }
    const int span = m_card->getSpan(channel);
    const double width = SpectralCard::m_spanTable.value(span).spanMHz;
    const QByteArray text = line(points, channel, m_card->centre(channel), width);
    const QList<QLocalSocket*> readers =
        m_readers; // a copy, because writing may make a reader disconnect
    for (QLocalSocket* reader : readers) {
        if (reader->bytesToWrite() + text.size() <= MaxBacklogBytes) {
            reader->write(text);
        }
    }
}
