// What a block of a scope costs, from bytes to decoded samples and from samples to painted pixels,
// each compared with the simplest code that could do it. The ratios of the same run are printed at
// the end.
//
//   --callgrind=NAME   runs one of the measured pieces 200 times and nothing else; "list" names
//                      them
//   --ratios           prints what is compared with what: title|piece|reference|goal
// Both are for bench/run --pieces.
#include "scopes/ConstellationPlot.h"
#include "scopes/EyePlot.h"
#include "scopes/IqBlockDecoder.h"
#include "scopes/PlotView.h"
#include "scopes/SdiDecoder.h"
#include "scopes/SdiPlot.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QPainter>
#include <QPointF>
#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <time.h>
#include <vector>

namespace {

constexpr QSize PlotSize(262, 262); // a constellation on the scopes page
constexpr QSize EyeSize(262, 155);  // one of the two eyes
constexpr QSize SdiSize(262, 310);
constexpr int CallgrindRuns = 200;

// A shaped signal is not needed here: points near four corners, and smooth curves for the eye.
struct Data
{
    QVector<double> i{QVector<double>(256)};
    QVector<double> q{QVector<double>(256)};
    QByteArray bytes;

    explicit Data(quint32 seed)
    {
        std::mt19937 random(seed);
        std::normal_distribution<double> noise(0.0, 0.05);
        for (int k = 0; k < 256; ++k) {
            i[k] = (random() % 2 == 0 ? -0.5 : 0.5) + noise(random);
            q[k] = (random() % 2 == 0 ? -0.5 : 0.5) + noise(random);
        }
        bytes.resize(1536);
        for (int k = 0; k < 256; ++k) {
            char* record = bytes.data() + k * 6;
            qToBigEndian(static_cast<quint16>(k), record);
            qToBigEndian(static_cast<qint16>(i.at(k) * 32768), record + 2);
            qToBigEndian(static_cast<qint16>(q.at(k) * 32768), record + 4);
        }
    }

    // Samples of a curve that swings between the decisions, four per symbol.
    QVector<double> shaped() const
    {
        QVector<double> samples(256);
        for (int k = 0; k < 256; ++k) {
            const double from = i.at(k / 4);
            const double to = i.at(std::min(255, k / 4 + 1));
            const double part = 0.5 - 0.5 * std::cos((k % 4) / 4.0 * 3.14159265358979);
            samples[k] = from + (to - from) * part;
        }
        return samples;
    }
};

// ---- from bytes to samples

// A decoder and the plots that keep its newest block, as in the panel.
struct Receiver
{
    IqBlockDecoder decoder;
    QVector<double> i;
    QVector<double> q;

    void take(const char* bytes, qsizetype size)
    {
        benchmark::DoNotOptimize(decoder.take(bytes, size));
        if (decoder.blockReady()) {
            i = decoder.i();
            q = decoder.q();
        }
    }
};

void decode(Receiver& receiver, const QByteArray& bytes)
{
    receiver.take(bytes.constData(), bytes.size());
    benchmark::ClobberMemory();
}

// In pieces as the line delivers them: none is a whole block.
void decodeInPieces(Receiver& receiver, const QByteArray& bytes)
{
    constexpr qsizetype Piece = 184;
    for (qsizetype at = 0; at < bytes.size(); at += Piece) {
        receiver.take(bytes.constData() + at, std::min(Piece, bytes.size() - at));
    }
    benchmark::ClobberMemory();
}

// Only the conversion of the same 1,536 bytes.
void bareLoop(const QByteArray& bytes, QVector<double>& i, QVector<double>& q)
{
    const char* record = bytes.constData();
    double* toI = i.data();
    double* toQ = q.data();
    for (int k = 0; k < 256; ++k, record += 6) {
        toI[k] = qFromBigEndian<qint16>(record + 2) * (1.0 / 32768.0);
        toQ[k] = qFromBigEndian<qint16>(record + 4) * (1.0 / 32768.0);
    }
    benchmark::DoNotOptimize(toI);
    benchmark::DoNotOptimize(toQ);
    benchmark::ClobberMemory();
}

// SDI records as they are read from the line: a byte in front, the start byte, five bytes.
std::vector<QByteArray> sdiReads()
{
    std::vector<QByteArray> reads;
    std::mt19937 random(5);
    for (int k = 0; k < 128; ++k) {
        QByteArray read("\x00\xff", 2);
        for (int n = 0; n < SdiDecoder::RecordBytes; ++n) {
            read.append(static_cast<char>(random() % 255));
        }
        reads.push_back(read);
    }
    return reads;
}

// Only the five bytes of the same read.
void bareSdiLoop(const QByteArray& read)
{
    QByteArray record(SdiDecoder::RecordBytes, Qt::Uninitialized);
    char* to = record.data();
    for (int n = 0; n < SdiDecoder::RecordBytes; ++n) {
        to[n] = read.at(2 + n);
    }
    benchmark::DoNotOptimize(to);
    benchmark::ClobberMemory();
}

// ---- from samples to pixels

// Paints a plot as the screen does when new data have come: the data area alone, onto the window's
// picture.
class Painted
{
public:
    Painted(PlotContent& content, QSize size)
        : m_window(size, QImage::Format_RGB32)
    {
        m_window.fill(Qt::black);
        m_view.setContent(&content);
        m_view.resize(size);
        m_view.grab();
    }
    ~Painted() { m_view.setContent(nullptr); }

    void paint()
    {
        m_view.render(&m_window, m_view.dataArea().topLeft(), QRegion(m_view.dataArea()),
            QWidget::RenderFlags());
    }
    // Returns whether any pixel has the line's colour: a plot that paints nothing must not be
    // measured.
    bool hasData() const
    {
        for (int y = 0; y < m_window.height(); ++y) {
            for (int x = 0; x < m_window.width(); ++x) {
                const QColor color = m_window.pixelColor(x, y);
                if (color.red() > color.green() + 60) {
                    return true;
                }
            }
        }
        return false;
    }
    QSize dataSize() const { return m_view.dataArea().size(); }

private:
    PlotView m_view;
    QImage m_window;
};

// The simplest picture of the same points in the same size: cleared, one call, no axes.
void bareDots(QImage& picture, const std::vector<const Data*>& blocks)
{
    picture.fill(Qt::black);
    QPainter painter(&picture);
    QPen pen(Qt::red, 3);
    painter.setPen(pen);
    const double scaleX = picture.width() / 2.0;
    const double scaleY = picture.height() / 2.0;
    QVector<QPointF> points;
    points.reserve(static_cast<qsizetype>(blocks.size()) * 256);
    for (const Data* data : blocks) {
        for (int k = 0; k < 256; ++k) {
            points.append({scaleX + data->i.at(k) * scaleX, scaleY - data->q.at(k) * scaleY});
        }
    }
    painter.drawPoints(points.constData(), static_cast<int>(points.size()));
}

void bareTraces(QImage& picture, const std::vector<double>& traces)
{
    picture.fill(Qt::black);
    QPainter painter(&picture);
    painter.setPen(QPen(Qt::red, 0));
    const double stepX = (picture.width() - 1.0) / (EyePlot::PointsPerTrace - 1);
    const double scaleY = picture.height() / 2.0;
    QVector<QPointF> line(EyePlot::PointsPerTrace);
    for (size_t at = 0; at < traces.size(); at += EyePlot::PointsPerTrace) {
        for (int n = 0; n < EyePlot::PointsPerTrace; ++n) {
            line[n] = {n * stepX, scaleY - traces[at + static_cast<size_t>(n)] * scaleY};
        }
        painter.drawPolyline(line.constData(), static_cast<int>(line.size()));
    }
}

void bareStrips(QImage& picture, const SdiPlot& plot)
{
    picture.fill(Qt::black);
    QPainter painter(&picture);
    painter.setPen(QPen(Qt::red, 0));
    const double stepX = (picture.width() - 1.0) / (SdiPlot::Records - 1);
    const double stripHeight = static_cast<double>(picture.height()) / SdiPlot::RecordBytes;
    QVector<QPointF> line(static_cast<qsizetype>(plot.records().size()));
    for (int strip = 0; strip < SdiPlot::RecordBytes; ++strip) {
        int n = 0;
        for (const QByteArray& record : plot.records()) {
            const double level = static_cast<uchar>(record.at(strip)) / 255.0;
            line[n] = {n * stepX, (strip + 1 - level) * stripHeight};
            ++n;
        }
        painter.drawPolyline(line.constData(), static_cast<int>(line.size()));
    }
}

// QCustomPlot as its examples use it: a graph with scatter points, replotted for each block.
class NaiveConstellation
{
public:
    NaiveConstellation()
    {
        m_plot.resize(PlotSize);
        m_plot.addGraph();
        m_plot.graph(0)->setLineStyle(QCPGraph::lsNone);
        m_plot.graph(0)->setPen(QPen(Qt::red));
        m_plot.graph(0)->setScatterStyle(QCPScatterStyle(QCPScatterStyle::ssDisc, 3));
        m_plot.xAxis->setRange(-1, 1);
        m_plot.yAxis->setRange(-1, 1);
    }
    void paint(const std::vector<const Data*>& blocks)
    {
        QVector<double> i;
        QVector<double> q;
        for (const Data* data : blocks) {
            i += data->i;
            q += data->q;
        }
        m_plot.graph(0)->setData(i, q);
        m_plot.replot(QCustomPlot::rpImmediateRefresh);
    }

private:
    QCustomPlot m_plot;
};

class NaiveEye
{
public:
    NaiveEye()
    {
        m_plot.resize(EyeSize);
        m_plot.xAxis->setRange(0, EyePlot::PointsPerTrace - 1);
        m_plot.yAxis->setRange(-1, 1);
        for (int n = 0; n < EyePlot::PointsPerTrace; ++n) {
            m_keys.append(n);
        }
    }
    void paint(const std::vector<double>& traces)
    {
        m_plot.clearGraphs();
        for (size_t at = 0; at < traces.size(); at += EyePlot::PointsPerTrace) {
            const auto begin = traces.begin() + static_cast<std::ptrdiff_t>(at);
            m_plot.addGraph()->setData(
                m_keys, QVector<double>(begin, begin + EyePlot::PointsPerTrace), true);
            m_plot.graph()->setPen(QPen(Qt::red));
        }
        m_plot.replot(QCustomPlot::rpImmediateRefresh);
    }

private:
    QCustomPlot m_plot;
    QVector<double> m_keys;
};

class NaiveSdi
{
public:
    NaiveSdi()
    {
        m_plot.resize(SdiSize);
        m_plot.xAxis->setRange(0, SdiPlot::Records - 1);
        m_plot.yAxis->setRange(0, SdiPlot::RecordBytes);
        for (int n = 0; n < SdiPlot::Records; ++n) {
            m_keys.append(n);
        }
        for (int strip = 0; strip < SdiPlot::RecordBytes; ++strip) {
            m_plot.addGraph()->setPen(QPen(Qt::red));
        }
    }
    void paint(const SdiPlot& plot)
    {
        for (int strip = 0; strip < SdiPlot::RecordBytes; ++strip) {
            QVector<double> values;
            for (const QByteArray& record : plot.records()) {
                values.append(strip + static_cast<uchar>(record.at(strip)) / 255.0);
            }
            m_plot.graph(strip)->setData(m_keys, values, true);
        }
        m_plot.replot(QCustomPlot::rpImmediateRefresh);
    }

private:
    QCustomPlot m_plot;
    QVector<double> m_keys;
};

// ---- everything that is measured, by name

struct Pieces
{
    std::vector<Data> blocks;
    Receiver whole;
    Receiver pieces;
    QVector<double> bareI{QVector<double>(256)};
    QVector<double> bareQ{QVector<double>(256)};
    ConstellationPlot constellation;
    EyePlot eye{QStringLiteral("I (% FS)")};
    Painted constellationView{constellation, PlotSize};
    Painted eyeView{eye, EyeSize};
    SdiDecoder sdiDecoder;
    SdiPlot sdi;
    Painted sdiView{sdi, SdiSize};
    QImage strips{sdiView.dataSize(), QImage::Format_RGB32};
    NaiveSdi naiveSdi;
    std::vector<QByteArray> reads = sdiReads();
    QImage dots{constellationView.dataSize(), QImage::Format_RGB32};
    QImage lines{eyeView.dataSize(), QImage::Format_RGB32};
    NaiveConstellation naiveConstellation;
    NaiveEye naiveEye;
    std::vector<QVector<double>> shaped;
    std::vector<std::vector<double>> traces;
    size_t turn = 0;

    std::vector<std::pair<std::string, std::function<void()>>> pieces_;

    Pieces()
    {
        for (quint32 seed = 1; seed <= 16; ++seed) {
            blocks.emplace_back(seed);
            shaped.push_back(blocks.back().shaped());
            traces.push_back(eye.traces(shaped.back()));
        }
        for (const QByteArray& read : reads) {
            sdi.addRecord(read.mid(2));
        }
        const auto nextRead = [this]() -> const QByteArray& {
            return reads[turn++ % reads.size()];
        };
        const auto next = [this]() -> const Data& { return blocks[turn++ % blocks.size()]; };
        const auto one = [next] { return std::vector<const Data*>{&next()}; };
        const auto all = [this] {
            std::vector<const Data*> every;
            for (const Data& data : blocks) {
                every.push_back(&data);
            }
            return every;
        };
        pieces_ = {
            {"decode/ours", [this, next] { decode(whole, next().bytes); }},
            {"decode/ours in pieces of 184",
                [this, next] { decodeInPieces(pieces, next().bytes); }},
            {"decode/bare loop", [this, next] { bareLoop(next().bytes, bareI, bareQ); }},
            {"constellation/ours",
                [this, next] {
                    const Data& data = next();
                    constellation.addBlock(data.i, data.q);
                    constellationView.paint();
                }},
            {"constellation/bare painter", [this, one] { bareDots(dots, one()); }},
            {"constellation/bare painter, the 16 blocks on the screen",
                [this, all] { bareDots(dots, all()); }},
            {"constellation/naive", [this, one] { naiveConstellation.paint(one()); }},
            {"eye/ours",
                [this] {
                    eye.addBlock(shaped[turn++ % shaped.size()]);
                    eyeView.paint();
                }},
            {"eye/bare painter", [this] { bareTraces(lines, traces[turn++ % traces.size()]); }},
            {"eye/naive", [this] { naiveEye.paint(traces[turn++ % traces.size()]); }},
            {"SDI decode/ours",
                [this, nextRead] { benchmark::DoNotOptimize(sdiDecoder.read(nextRead())); }},
            {"SDI decode/bare loop", [nextRead] { bareSdiLoop(nextRead()); }},
            {"SDI/ours",
                [this, nextRead] {
                    sdi.addRecord(nextRead().mid(2));
                    sdiView.paint();
                }},
            {"SDI/bare painter", [this] { bareStrips(strips, sdi); }},
            {"SDI/naive", [this] { naiveSdi.paint(sdi); }},
        };
    }
};

// What is compared with what, and what the ratio should be.
struct Ratio
{
    const char* title;
    const char* over;
    const char* under;
    const char* goal;
};
constexpr Ratio Ratios[] = {
    {"decode: ours / bare loop", "decode/ours", "decode/bare loop", "at most 3"},
    {"decode: ours in pieces / bare loop", "decode/ours in pieces of 184", "decode/bare loop",
        "at most 3"},
    {"constellation: ours / bare painter, one block", "constellation/ours",
        "constellation/bare painter", "at most 1.5"},
    {"constellation: ours / bare painter, all that is seen", "constellation/ours",
        "constellation/bare painter, the 16 blocks on the screen", "at most 1.5"},
    {"constellation: naive / ours", "constellation/naive", "constellation/ours", "at least 2"},
    {"eye: ours / bare painter, one block", "eye/ours", "eye/bare painter", "at most 1.5"},
    {"eye: naive / ours", "eye/naive", "eye/ours", "at least 2"},
    {"SDI decode: ours / bare loop", "SDI decode/ours", "SDI decode/bare loop", "at most 3"},
    {"SDI: ours / bare painter", "SDI/ours", "SDI/bare painter", "at most 1.5"},
    {"SDI: naive / ours", "SDI/naive", "SDI/ours", "at least 2"},
};

// CPU time of this thread, so that what else runs on the machine does not count.
double cpuNanoseconds()
{
    timespec now{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

// Medians of pieces that take turns, so that other load on the machine affects all of them alike.
std::map<std::string, double> medians(const Pieces& pieces)
{
    constexpr int Rounds = 301;
    std::map<std::string, std::vector<double>> times;
    for (int round = 0; round < Rounds; ++round) {
        for (const auto& [name, piece] : pieces.pieces_) {
            const int repeats = name.find("decode") != std::string::npos ? 200 : 4;
            piece();
            const double begin = cpuNanoseconds();
            for (int k = 0; k < repeats; ++k) {
                piece();
            }
            times[name].push_back((cpuNanoseconds() - begin) / repeats);
        }
    }
    std::map<std::string, double> result;
    for (auto& [name, values] : times) {
        std::nth_element(values.begin(), values.begin() + Rounds / 2, values.end());
        result[name] = values[Rounds / 2];
    }
    return result;
}

void printRatios(const Pieces& pieces)
{
    const auto ns = medians(pieces);
    std::printf("\nmedian per block, all pieces taking turns\n");
    for (const auto& [name, piece] : pieces.pieces_) {
        std::printf("  %-58s %10.0f ns\n", name.c_str(), ns.at(name));
    }
    std::printf("ratios\n");
    for (const Ratio& ratio : Ratios) {
        std::printf("  %-58s %10.2f   (goal: %s)\n", ratio.title,
            ns.at(ratio.over) / ns.at(ratio.under), ratio.goal);
    }
}

// Callgrind collects inside this function only.
[[gnu::noinline]] void repeatForCallgrind(const std::function<void()>& piece)
{
    for (int k = 0; k < CallgrindRuns; ++k) {
        piece();
    }
}

int runForCallgrind(const Pieces& pieces, const std::string& wanted)
{
    for (const auto& [name, piece] : pieces.pieces_) {
        if (name == wanted) {
            piece(); // The first run has to do more than the others.
            repeatForCallgrind(piece);
            return 0;
        }
    }
    for (const auto& [name, piece] : pieces.pieces_) {
        std::printf("%s\n", name.c_str());
    }
    return wanted == "list" ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    Pieces pieces; // They work on its members.
    if (argc > 1 && std::strcmp(argv[1], "--ratios") == 0) {
        for (const Ratio& ratio : Ratios) {
            std::printf("%s|%s|%s|%s\n", ratio.title, ratio.over, ratio.under, ratio.goal);
        }
        return 0;
    }
    const std::string option = "--callgrind=";
    if (argc > 1 && std::string(argv[1]).rfind(option, 0) == 0) {
        return runForCallgrind(pieces, std::string(argv[1]).substr(option.size()));
    }
    for (const auto& [name, piece] : pieces.pieces_) {
        benchmark::RegisterBenchmark(name.c_str(), [run = piece](benchmark::State& state) {
            for (auto _ : state) {
                run();
            }
        });
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    printRatios(pieces);
    if (!pieces.constellationView.hasData() || !pieces.eyeView.hasData() ||
        !pieces.sdiView.hasData()) {
        std::fprintf(stderr, "nothing was painted: the figures are void\n");
        return 1;
    }
    return 0;
}
