// The replies of a spectral card, in both layouts, and what is measured on their spectra.
#include "Target.h"

#include "spectrum/BusFrame.h"
#include "spectrum/ChannelMeasurements.h"
#include "spectrum/PlainBuffer.h"
#include "spectrum/SpectralRemote.h"
#include "spectrum/SpectrumTrace.h"

#include <QJsonDocument>

#include <cmath>
#include <optional>

using bus::Layout;
using Found = bus::ReplyBuffer::Found;

namespace {

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
