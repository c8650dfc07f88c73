#include "scopes/ScopeRemote.h"

#include "scopes/Scope.h"
#include "scopes/ScopesPage.h"
#include "wire/IqBlock.h"
#include "wire/Log.h"

#include <QtEndian>

#include <algorithm>
#include <cmath>

namespace {

constexpr qsizetype WordBytes = 2;
constexpr double MinWord = -32768.0;
constexpr double MaxWord = 32767.0;

// The word of the line from which a sample was made.
void putWord(double sample, char* to)
{
    const double word = std::clamp(std::round(sample * iqBlock::FullScale), MinWord, MaxWord);
    qToBigEndian(static_cast<qint16>(word), to);
}

QByteArray lines(int demodulator, const char* type, qsizetype samples, const char* encoding,
    const QByteArray& data)
{
    return "{\"demodulator\":" + QByteArray::number(demodulator) + ",\"type\":\"" + type +
        "\",\"samples\":" + QByteArray::number(samples) + ",\"encoding\":\"" + encoding + "\"}\n" +
        data.toBase64() + '\n';
}

} // namespace

ScopeRemote::ScopeRemote(const ScopesPage& page, QObject* parent)
    : QObject(parent)
    , m_server("QN740_SCOPE_SOCKET", QStringLiteral("scope data"), logScopes)
{
    if (!m_server.isWanted()) {
        return;
    }
    for (int demodulator = 1; demodulator <= ScopesPage::Demodulators; ++demodulator) {
        const Scope* const scope = page.scope(demodulator);
        connect(scope, &Scope::rcv_eye_msg, this,
            [this, demodulator](const QVector<double>& i, const QVector<double>& q) {
                if (m_server.readers() > 0) {
                    m_server.send(block(demodulator, i, q));
                }
            });
        connect(scope, &Scope::rcv_sdi_msg, this, [this, demodulator](const QByteArray& bytes) {
            if (m_server.readers() > 0) {
                m_server.send(record(demodulator, bytes));
            }
        });
    }
}

QByteArray ScopeRemote::block(int demodulator, const QVector<double>& i, const QVector<double>& q)
{
    const qsizetype samples = std::min(i.size(), q.size());
    QByteArray words(2 * samples * WordBytes, Qt::Uninitialized);
    char* to = words.data();
    for (qsizetype k = 0; k < samples; ++k, to += 2 * WordBytes) {
        putWord(i.at(k), to);
        putWord(q.at(k), to + WordBytes);
    }
    return lines(demodulator, "iq", samples, "base64 int16 big-endian interleaved", words);
}

QByteArray ScopeRemote::record(int demodulator, const QByteArray& bytes)
{
    return lines(demodulator, "sdi", bytes.size(), "base64 uint8", bytes);
}
