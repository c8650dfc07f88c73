#include "sim/card/CardPort.h"

#include "sim/line/PseudoTerminal.h"

#include <QTimer>

#include <numeric>

namespace {

constexpr qsizetype MaxHeard = 256; // longer than any request
constexpr qsizetype AddressSize = 4;
constexpr qsizetype CommandSize = 10; // with its padding
constexpr double OlderBytesPerSecond = 92160.0;
constexpr double K7150BytesPerSecond = 23040.0;

const QByteArray Address = QByteArrayLiteral("0190");

char sum(const QByteArray& bytes)
{
    const auto add = [](quint8 total, char byte) {
        return static_cast<quint8>(total + static_cast<quint8>(byte));
    };
    return static_cast<char>(std::accumulate(bytes.begin(), bytes.end(), quint8{0}, add));
}

// -1 when there is no digit
int digitAt(const QByteArray& text, qsizetype at)
{
    const char c = at < text.size() ? text.at(at) : ' ';
    return c >= '0' && c <= '9' ? c - '0' : -1;
}

} // namespace

CardPort::CardPort(Type type, PseudoTerminal& line, CardSpectrum& spectrum,
    const CardFaults& faults, int points, QObject* parent)
    : QObject(parent)
    , m_type(type)
    , m_line(line)
    , m_spectrum(spectrum)
    , m_faults(faults)
    , m_points(points == PointsOfSpan ? PointsOfSpan : qBound(1, points, MaxPoints))
{
    m_clock.start();
    connect(&line, &PseudoTerminal::received, this, &CardPort::take);
    connect(&line, &PseudoTerminal::closed, this, [this] { m_heard.clear(); });
}

void CardPort::take(const QByteArray& bytes)
{
    m_heard += bytes;
    while (takeOne()) {
    }
    if (m_heard.size() > MaxHeard) {
        m_heard.clear();
    }
}

// Answers the first request in what was heard. Returns false when there is none.
bool CardPort::takeOne()
{
    const qsizetype from = m_heard.indexOf('[');
    const qsizetype to = from < 0 ? -1 : m_heard.indexOf(']', from);
    if (to < 0 || to + 1 >= m_heard.size()) {
        return false;
    }
    const QByteArray frame = m_heard.mid(from, to + 1 - from);
    const bool right = m_heard.at(to + 1) == sum(frame);
    // after a wrong one the next may begin anywhere
    m_heard.remove(0, right ? to + 2 : from + 1);
    if (right) {
        answer(frame.mid(1, frame.size() - 2));
    } else {
        ++m_refused;
    }
    return true;
}

void CardPort::answer(const QByteArray& request)
{
    if (!request.startsWith(Address) || request.size() != AddressSize + CommandSize) {
        return;
    }
    const QByteArray bytes = reply(request.mid(AddressSize));
    if (bytes.isEmpty()) {
        return;
    }
    ++m_answered;
    const CardFaults::Spoilt spoilt = m_faults.pass(bytes);
    if (spoilt.bytes.isEmpty()) {
        return;
    }
    const double pace = m_type == Type::K7150 ? K7150BytesPerSecond : OlderBytesPerSecond;
    const auto onTheLine = static_cast<int>(1000.0 * static_cast<double>(bytes.size()) / pace);
    QTimer::singleShot(onTheLine + spoilt.delayMs, Qt::PreciseTimer, this,
        [this, out = spoilt.bytes] { m_line.write(out); });
}

QByteArray CardPort::reply(const QByteArray& command)
{
    const QByteArray word = command.left(4);
    const auto text = [&word](
                          const QByteArray& data) { return "[" + Address + word + data + "]\r"; };
    if (word == "RFFT") {
        return spectrumReply(digitAt(command, 4));
    }
    if (word == "RNME") {
        return text("SpectralSweep");
    }
    if (word == "RVER") {
        return text("1.23");
    }
    if (word == "RNFT" || word == "RTRM") {
        return text(digitsReply(command));
    }
    if ((word == "CNFT" || word == "CTRM") && setDigit(command)) {
        return text(command.mid(4, 2));
    }
    return {};
}

QByteArray CardPort::digitsReply(const QByteArray& command)
{
    const bool spans = command.startsWith("RNFT");
    QByteArray digits;
    for (int channel = 0; channel < CardSpectrum::Channels; ++channel) {
        digits += QByteArray::number(spans ? m_spectrum.span(channel) : m_spectrum.trim(channel));
    }
    return digits;
}

bool CardPort::setDigit(const QByteArray& command)
{
    const int channel = digitAt(command, 4);
    const int digit = digitAt(command, 5);
    return command.startsWith("CNFT") ? m_spectrum.setSpan(channel, digit)
                                      : m_spectrum.setTrim(channel, digit);
}

QByteArray CardPort::spectrumReply(int channel)
{
    if (channel < 0 || channel >= CardSpectrum::Channels) {
        return {};
    }
    const double seconds = static_cast<double>(m_clock.elapsed()) / 1000.0;
    const int count =
        m_points == PointsOfSpan ? CardSpectrum::bins(m_spectrum.span(channel)) : m_points;
    const QByteArray points = m_spectrum.points(channel, count, seconds);
    if (m_type == Type::Older) {
        return "[" + Address + "RFFT" + QByteArray::number(count).rightJustified(4, '0') + points;
    }
    QByteArray bytes = "[" + Address + "RFFT";
    bytes += static_cast<char>(count >> 8);
    bytes += static_cast<char>(count & 0xff);
    bytes += static_cast<char>(channel);
    return bytes + points;
}
