#pragma once

#include "wire/LineServer.h"

#include <QByteArray>
#include <QObject>
#include <QPointer>

class SpectralCard;

/// Passes every spectrum of a card on to whoever connects to a local socket, for recording and for
/// plotting elsewhere. The environment variable QN740_SPECTRUM_SOCKET names the socket's path; when
/// it is unset or empty, there is no socket.
///
/// One line of JSON per spectrum, levels in dB, frequencies in MHz, lowest frequency first:
///   {"channel":0,"centre":70,"span":1.199056,"levels":[-98.5,-97,...]}
///
/// LineServer sends the lines: a reader that does not keep up loses whole ones.
class SpectralRemote : public QObject
{
    Q_OBJECT

public:
    /// The number of readers that are served at the same time; further ones are turned away.
    static constexpr int MaxReaders = LineServer::MaxReaders;
    /// A reader's backlog in bytes beyond which spectra are dropped.
    static constexpr qint64 MaxBacklogBytes = LineServer::MaxBacklogBytes;

    /// Opens the socket if the environment variable names one.
    explicit SpectralRemote(SpectralCard* card, QObject* parent = nullptr);

    /// Whether readers can connect.
    bool isListening() const { return m_server.isListening(); }
    /// The number of readers that are connected.
    int readers() const { return m_server.readers(); }
    /// The bytes that the slowest reader has not taken yet.
    qint64 backlog() const { return m_server.backlog(); }

    /// Writes a spectrum as a line of JSON.
    /// \param points one byte per point, as in SpectralCard::specUpdate().
    /// \param channel 0 to 2.
    /// \param centre in MHz.
    /// \param span the analysed width in MHz.
    /// \return the line with its line feed.
    static QByteArray line(const QByteArray& points, int channel, double centre, double span);

public slots:
    /// Sends a spectrum to all readers, with the centre and the span that its channel has now.
    void forward(const QByteArray& points, int channel);

private:
    QPointer<SpectralCard> m_card;
    LineServer m_server;
};
