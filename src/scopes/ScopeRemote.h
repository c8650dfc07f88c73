#pragma once

#include "wire/LineServer.h"

#include <QByteArray>
#include <QObject>
#include <QVector>

class ScopesPage;

/// Passes everything that the scopes of a page receive on to whoever connects to a local socket,
/// for recording and for plotting elsewhere. The environment variable QN740_SCOPE_SOCKET names the
/// socket's path; when it is unset or empty, there is no socket.
///
/// A block of samples or an SDI record is two lines: a header in JSON, then the data in base64
/// (RFC 4648):
///   {"demodulator":1,"type":"iq","samples":256,"encoding":"base64 int16 big-endian interleaved"}
///   AAEAAgAD...
///   {"demodulator":2,"type":"sdi","samples":5,"encoding":"base64 uint8"}
///   AQIDBAU=
///
/// The samples are I, Q, I, Q and so on, 32,768 being full scale, as the demodulator has sent them
/// but for the first I, which has the value of the second. LineServer sends the lines: a reader
/// that does not keep up loses both lines of a block. Nothing is encoded while nobody is connected.
class ScopeRemote : public QObject
{
    Q_OBJECT

public:
    /// Opens the socket if the environment variable names one.
    /// \param page the scopes whose data are passed on.
    explicit ScopeRemote(const ScopesPage& page, QObject* parent = nullptr);

    /// \return the socket.
    const LineServer& server() const { return m_server; }

    /// \return the two lines of a block.
    /// \param i, q samples in parts of full scale, -1 to 1; of two lengths the shorter one counts.
    static QByteArray block(int demodulator, const QVector<double>& i, const QVector<double>& q);
    /// \return the two lines of an SDI record.
    static QByteArray record(int demodulator, const QByteArray& bytes);

private:
    LineServer m_server;
};
