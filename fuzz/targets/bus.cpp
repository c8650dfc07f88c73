// The replies of a spectral card, in both layouts, and what is measured on their spectra.
#include "Target.h"

#include "spectrum/BusFrame.h"
#include "spectrum/ChannelMeasurements.h"
#include "spectrum/SpectralRemote.h"
#include "spectrum/SpectrumTrace.h"

#include <QJsonDocument>

#include <cmath>
#include <optional>

using bus::Layout;
using Found = bus::ReplyBuffer::Found;

namespace {

// The same rules without any memory of earlier searches.
struct PlainBuffer
{
    QByteArray bytes;

    std::optional<CmdMsg> add(const QByteArray& piece, Layout layout)
    {
        bytes += piece;
        const qsizetype header = bytes.indexOf(bus::SpectrumHeader);
        if (header >= 0) {
            bytes = bytes.mid(header);
            return spectrum(layout);
        }
        const qsizetype open = bytes.indexOf('[');
        const qsizetype close = bytes.indexOf("]\r");
        if (open < 0 || close < 0) {
            return {};
        }
        const QString text = QString::fromLatin1(bytes);
        const qsizetype length = close - open - 9;
        bytes.clear();
        return CmdMsg(text.mid(open + 1, 4), text.mid(open + 5, 4),
            length < 0 ? text.mid(open + 9) : text.mid(open + 9, length));
    }

    std::optional<CmdMsg> spectrum(Layout layout)
    {
        const bool isK7150 = layout == Layout::K7150;
        const qsizetype from = isK7150 ? 11 : 13;
        if (bytes.size() < from) {
            return {};
        }
        const auto byteAt = [this](qsizetype at) { return static_cast<quint8>(bytes.at(at)); };
        const qsizetype length =
            isK7150 ? (byteAt(9) << 8 | byteAt(10)) + 1 : std::max(0, bytes.mid(9, 4).toInt());
        if (bytes.size() < from + length) {
            return {};
        }
        const QString text = QString::fromLatin1(bytes);
        bytes.clear();
        return CmdMsg(text.mid(1, 4), text.mid(5, 4), text.mid(from, length));
    }
};

void measure(const QByteArray& points, SpectrumTrace& trace)
{
    using namespace channelMeasurements;
    trace.add(points);
    FUZZ_CHECK(trace.peak() < trace.size());
    for (const float level : trace.levels()) {
        FUZZ_CHECK(std::isfinite(level));
    }
    const MeasuredSpectrum spectrum{
        trace.powers(), 70.0, 1.2, qMax(1.0, trace.independentSpectra())};
    const ChannelPower power = channelPower(spectrum, 70.0, 0.4);
    FUZZ_CHECK(power.state != State::Valid || std::isfinite(power.level));
    const CarrierToNoise ratio = carrierToNoise(spectrum);
    FUZZ_CHECK(ratio.state != State::Valid || std::isfinite(ratio.ratio));
    const Bandwidth band = occupiedBandwidth(spectrum);
    FUZZ_CHECK(band.state != State::Valid || band.width() >= 0.0);
    static_cast<void>(bandwidthBelow(spectrum, 3.0));
    static_cast<void>(noiseFloor(spectrum));
    static_cast<void>(frequencyError(spectrum));
    const QByteArray line = SpectralRemote::line(points, 0, 70.0, 1.2);
    FUZZ_CHECK(!QJsonDocument::fromJson(line).isNull());
}

void take(const QList<QByteArray>& reads, Layout layout)
{
    bus::ReplyBuffer buffer;
    PlainBuffer plain;
    SpectrumTrace trace;
    trace.setAveraging(4);
    trace.setMaxHold(true);
    trace.setMinHold(true);
    for (const QByteArray& read : reads) {
        buffer.append(read);
        CmdMsg reply;
        const Found found = buffer.take(reply, layout);
        const auto expected = plain.add(read, layout);
        FUZZ_CHECK((found == Found::Reply || found == Found::Spectrum) == expected.has_value());
        FUZZ_CHECK(buffer.size() == plain.bytes.size());
        if (!expected) {
            continue;
        }
        FUZZ_CHECK(reply.address == expected->address && reply.command == expected->command);
        FUZZ_CHECK(reply.data == expected->data);
        FUZZ_CHECK(reply.getChannelAddressInt() >= -99 && reply.getCardAddressInt() <= 99);
        if (found == Found::Spectrum) {
            measure(reply.data.toLatin1(), trace);
        }
    }
}

void checkRequest(const QByteArray& input)
{
    const QString text = QString::fromLatin1(input);
    for (const bool withChecksum : {false, true}) {
        FUZZ_CHECK(bus::requestOf(bus::frame(text, '[', ']', withChecksum), withChecksum) == text);
    }
}

} // namespace

void fuzz::takeBus(const QByteArray& input)
{
    for (const Layout layout : {Layout::Decimal, Layout::K7150}) {
        take({input}, layout);
        take(pieces(input, 1), layout);
        take(pieces(input, 100), layout);
    }
    checkRequest(input);
}
