// A line of the waterfall beside a bare picture that is scrolled, and every measurement beside a
// bare sum over the bins.
#include "parts/Groups.h"
#include "spectrum/ChannelMeasurements.h"
#include "spectrum/PeakSearch.h"
#include "spectrum/SpectrumChart.h"
#include "spectrum/SpectrumTrace.h"
#include "spectrum/Waterfall.h"
#include "support/Row.h"

#include <QCoreApplication>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <random>
#include <vector>

namespace {

constexpr int Points = 550; // of the 20 MHz span
constexpr int Averages = 16;
constexpr int Different = 32; // spectra, so that nothing is cached
constexpr int Lines = 60;
constexpr int Repeats = 200; // of a measurement
constexpr int Rounds = 51;
constexpr QSize LinesSize(544, 150); // of the waterfall of an enlarged chart

// The compiler cannot leave out what ends here.
volatile double seen = 0.0;

// A carrier of 4 MHz over noise, as in the statistics of one FFT.
QByteArray spectrumOf(unsigned seed)
{
    std::mt19937 random(seed);
    std::exponential_distribution<double> power(1.0);
    QByteArray bytes(Points, '\0');
    for (int i = 0; i < Points; ++i) {
        const bool isCarrier = std::abs(i - Points / 2) < Points / 10;
        const double level = (isCarrier ? -25.0 : -100.0) + 10.0 * std::log10(power(random));
        bytes[i] = static_cast<char>(std::lround(std::clamp((level + 120.0) * 2.0, 0.0, 255.0)));
    }
    return bytes;
}

const std::vector<QByteArray>& spectra()
{
    static const std::vector<QByteArray> list = [] {
        std::vector<QByteArray> made;
        for (unsigned seed = 0; seed < Different; ++seed) {
            made.push_back(spectrumOf(seed));
        }
        return made;
    }();
    return list;
}

// A picture that is moved down by a line of one colour, and painted.
class ScrolledPicture : public QWidget
{
public:
    ScrolledPicture()
        : m_image(LinesSize, QImage::Format_RGB32)
    {
        setAttribute(Qt::WA_OpaquePaintEvent);
        m_image.fill(Qt::black);
        resize(LinesSize);
    }

    void add(int colour)
    {
        const qsizetype line = m_image.bytesPerLine();
        uchar* bits = m_image.bits();
        std::memmove(bits + line, bits, static_cast<size_t>(line * (m_image.height() - 1)));
        std::memset(bits, colour, static_cast<size_t>(line));
    }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).drawImage(0, 0, m_image); }

private:
    QImage m_image;
};

void waterfall()
{
    Waterfall ours;
    ours.resize(LinesSize);
    ours.setPlot(0, LinesSize.width() - 1);
    ours.setRange(SpectrumChart::LowestLevel, SpectrumChart::HighestLevel);
    ScrolledPicture peer;
    for (QWidget* widget : {static_cast<QWidget*>(&ours), static_cast<QWidget*>(&peer)}) {
        widget->show();
    }
    QCoreApplication::processEvents();
    size_t next = 0;
    const auto addOurs = [&] {
        for (int i = 0; i < Lines; ++i) {
            ours.addSpectrum(spectra()[next++ % Different]);
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
        trace.add(spectra()[next++ % Different]);
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
    for (const QByteArray& bytes : spectra()) {
        SpectrumTrace trace;
        trace.add(bytes);
        list.push_back({trace.powers(), 70.0, 20.0, 1.0});
        levels.push_back(trace.levels());
    }
    size_t next = 0;
    const auto one = [&]() -> const MeasuredSpectrum& { return list[next++ % Different]; };
    row(
        "peak", [&] { return peakSearch::highest(levels[next++ % Different]).level; }, bare);
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
    trace.add(spectra().front());
    const QVector<float> powers = trace.powers();
    const auto bare = [&powers] { return sum(powers); };
    traces(bare);
    measurements(bare);
}

} // namespace groups
