// A line of the waterfall beside a bare picture that is scrolled, and every measurement beside a
// bare sum over the bins.
#include "parts/Groups.h"
#include "spectrum/ChannelMeasurements.h"
#include "spectrum/PeakSearch.h"
#include "spectrum/SpectrumChart.h"
#include "spectrum/SpectrumTrace.h"
#include "spectrum/Waterfall.h"
#include "support/Row.h"
#include "support/ScrolledPicture.h"
#include "support/Spectra.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

namespace {

constexpr int Averages = 16;
constexpr int Lines = 60;
constexpr int Repeats = 200; // of a measurement
constexpr int Rounds = 51;
constexpr QSize LinesSize = bench::ScrolledPicture::Size;

// The compiler cannot leave out what ends here.
volatile double seen = 0.0;

void waterfall()
{
    Waterfall ours;
    ours.resize(LinesSize);
    ours.setPlot(0, LinesSize.width() - 1);
    ours.setRange(SpectrumChart::LowestLevel, SpectrumChart::HighestLevel);
    bench::ScrolledPicture peer;
    for (QWidget* widget : {static_cast<QWidget*>(&ours), static_cast<QWidget*>(&peer)}) {
        widget->show();
    }
    QCoreApplication::processEvents();
    size_t next = 0;
    const auto addOurs = [&] {
        for (int i = 0; i < Lines; ++i) {
            ours.addSpectrum(bench::spectra()[next++ % bench::DifferentSpectra]);
            ours.repaint();
        }
    };
    const auto addPeer = [&peer] {
        for (int i = 0; i < Lines; ++i) {
            peer.add(i);
            peer.repaint();
        }
    };
    addOurs();
    addPeer();
    bench::measure(
        "waterfall", Rounds, {{"ours", {}, addOurs, Lines}, {"peer", {}, addPeer, Lines}});
}

double sum(const QVector<float>& powers)
{
    double total = 0.0;
    for (const float power : powers) {
        total += static_cast<double>(power);
    }
    return total;
}

std::function<void()> repeated(const std::function<double()>& work)
{
    return [work] {
        for (int i = 0; i < Repeats; ++i) {
            seen = work();
        }
    };
}

// Every measurement takes the spectra by turns, as the peer does.
void row(const char* name, const std::function<double()>& work, const std::function<double()>& bare)
{
    bench::measure(QByteArray("measure.") + name, Rounds,
        {{"ours", {}, repeated(work), Repeats}, {"peer", {}, repeated(bare), Repeats}});
}

void traces(const std::function<double()>& bare)
{
    size_t next = 0;
    const auto add = [&next](SpectrumTrace& trace) {
        trace.add(bench::spectra()[next++ % bench::DifferentSpectra]);
        return static_cast<double>(trace.levels().constFirst());
    };
    SpectrumTrace newest;
    row(
        "trace", [&] { return add(newest); }, bare);
    SpectrumTrace average;
    average.setAveraging(Averages);
    row(
        "average", [&] { return add(average); }, bare);
}

void measurements(const std::function<double()>& bare)
{
    namespace measured = channelMeasurements;
    std::vector<MeasuredSpectrum> list;
    std::vector<QVector<float>> levels;
    for (const QByteArray& bytes : bench::spectra()) {
        SpectrumTrace trace;
        trace.add(bytes);
        list.push_back({trace.powers(), 70.0, 20.0, 1.0});
        levels.push_back(trace.levels());
    }
    size_t next = 0;
    const auto one = [&]() -> const MeasuredSpectrum& {
        return list[next++ % bench::DifferentSpectra];
    };
    row(
        "peak", [&] { return peakSearch::highest(levels[next++ % bench::DifferentSpectra]).level; },
        bare);
    row(
        "power", [&] { return measured::channelPower(one(), 70.0, 8.0).level; }, bare);
    row(
        "obw", [&] { return measured::occupiedBandwidth(one()).width(); }, bare);
    row(
        "xdb", [&] { return measured::bandwidthBelow(one(), 3.0).width(); }, bare);
    row(
        "floor", [&] { return measured::noiseFloor(one()).level; }, bare);
    row(
        "cn", [&] { return measured::carrierToNoise(one()).ratio; }, bare);
    row(
        "error", [&] { return measured::frequencyError(one()).error; }, bare);
}

} // namespace

namespace groups {

void spectrum()
{
    waterfall();
    SpectrumTrace trace;
    trace.add(bench::spectra().front());
    const QVector<float> powers = trace.powers();
    const auto bare = [&powers] { return sum(powers); };
    traces(bare);
    measurements(bare);
}

} // namespace groups
