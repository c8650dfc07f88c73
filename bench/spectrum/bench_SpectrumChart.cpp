// The time from the last byte of a spectrum reply to the painted chart, compared with a bare
// QPainter polyline of the same points on a widget of the same size, and with QCustomPlot as one
// would first use it. The three take turns, so that other load on the machine affects all of them
// alike. Then what 20 spectra per second cost.
//
// Included in the time of the chart: putting the reply's bytes into the bus's reply buffer, finding
// the reply, making it a record, giving it to the card's page, turning it into decibels, and
// painting the chart immediately into the window's picture. Not included: reading the port, and the
// wait for the paint. The bare polyline and the naive plot start from the points; their time is
// turning them into decibels and painting. The share of a core includes everything, from the line
// to the window.
//
//   bench_SpectrumChart                        times, ratios and the share of a core
//   bench_SpectrumChart --count WHO POINTS N   N spectra of one of "chart", "all" (a chart with all
//                                              that can be switched on), "bare", "naive", to be
//                                              counted by callgrind; bench/run --pieces does that
#include "spectrum/BusFrame.h"
#include "spectrum/SpectralCard.h"
#include "spectrum/SpectrumChart.h"
#include "spectrum/SpectrumTrace.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QMainWindow>
#include <QPainter>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <random>
#include <sys/resource.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr QSize PageSize(800, 430);
constexpr int Spectra = 32; // Different ones, so that nothing is cached.
constexpr int Runs = 301;

// Noise with a carrier in the middle.
QByteArray spectrum(int points, unsigned seed)
{
    std::mt19937 random(seed);
    std::normal_distribution<double> noise(0.0, 2.5);
    QByteArray bytes(points, '\0');
    for (int i = 0; i < points; ++i) {
        const double distance = (static_cast<double>(i) / points - 0.5) * 20.0;
        const double level = std::max(-98.0, -20.0 - distance * distance) + noise(random);
        bytes[i] = static_cast<char>(std::lround(std::clamp((level + 120.0) * 2.0, 0.0, 255.0)));
    }
    return bytes;
}

QByteArray reply(const QByteArray& points)
{
    return "[0190RFFT" + QByteArray::number(points.size()).rightJustified(4, '0') + points;
}

std::vector<QByteArray> spectra(int points)
{
    std::vector<QByteArray> list;
    for (unsigned seed = 0; seed < Spectra; ++seed) {
        list.push_back(spectrum(points, seed));
    }
    return list;
}

// The panel's own page with one chart shown.
class Chart
{
public:
    explicit Chart(int points)
    {
        for (const QByteArray& one : spectra(points)) {
            m_replies.push_back(reply(one));
        }
        m_window.setFixedSize(PageSize);
        m_card = new SpectralCard(&m_window, 0, QStringLiteral("absent"));
        m_card->SetChartAreaVisible(1, false);
        m_card->SetChartAreaVisible(2, false);
        m_window.setCentralWidget(m_card);
        m_window.show();
        QCoreApplication::processEvents();
    }

    QSize size() const { return m_card->chart(0)->size(); }

    // Averages, holds, a scale of its own, four markers and their differences.
    void switchAllOn()
    {
        SpectrumChart& chart = *m_card->chart(0);
        chart.setAveraging(16);
        chart.setMaxHold(true);
        chart.setMinHold(true);
        draw();
        chart.autoScale();
        for (const double part : {-0.3, -0.1, 0.0, 0.2}) {
            chart.addMarker(chart.centre() + part * chart.spanMHz());
        }
        chart.setMarkerDelta(true);
    }

    void draw()
    {
        m_buffer.append(m_replies[m_next++ % Spectra]);
        CmdMsg message;
        m_buffer.take(message, bus::Layout::Decimal);
        m_card->CommSpectral_Command(message);
        m_card->chart(0)->repaint();
    }

private:
    std::vector<QByteArray> m_replies;
    bus::ReplyBuffer m_buffer;
    QMainWindow m_window;
    SpectralCard* m_card;
    size_t m_next = 0;
};

class BareWidget : public QWidget
{
public:
    explicit BareWidget(int points)
        : m_spectra(spectra(points))
    {
        setAttribute(Qt::WA_OpaquePaintEvent);
    }

    size_t next = 0;

protected:
    void paintEvent(QPaintEvent*) override
    {
        const QByteArray& bytes = m_spectra[next % Spectra];
        const auto count = static_cast<int>(bytes.size());
        const double step = static_cast<double>(width() - 1) / (count - 1);
        const double perDB = (height() - 1) / 130.0;
        m_line.resize(count);
        for (int i = 0; i < count; ++i) {
            const double level = SpectrumTrace::level(static_cast<quint8>(bytes.at(i)));
            m_line[i] = QPointF(i * step, (10.0 - level) * perDB);
        }
        QPainter painter(this);
        painter.fillRect(rect(), Qt::black);
        painter.setPen(QPen(Qt::yellow, 0));
        painter.drawPolyline(m_line);
    }

private:
    std::vector<QByteArray> m_spectra;
    QPolygonF m_line;
};

class Bare
{
public:
    Bare(int points, const QSize& size)
        : m_widget(points)
    {
        m_widget.setFixedSize(size);
        m_widget.show();
        QCoreApplication::processEvents();
    }

    void draw()
    {
        ++m_widget.next;
        m_widget.repaint();
    }

private:
    BareWidget m_widget;
};

class Naive
{
public:
    Naive(int points, const QSize& size)
        : m_spectra(spectra(points))
        , m_keys(points)
        , m_values(points)
    {
        m_plot.addGraph();
        m_plot.graph(0)->setPen(QPen(Qt::yellow));
        m_plot.setBackground(Qt::black);
        m_plot.xAxis->setRange(69.4, 70.6);
        m_plot.yAxis->setRange(-120, 10);
        m_plot.setFixedSize(size);
        m_plot.show();
        QCoreApplication::processEvents();
    }

    void draw()
    {
        const QByteArray& bytes = m_spectra[m_next++ % Spectra];
        const auto count = static_cast<int>(bytes.size());
        for (int i = 0; i < count; ++i) {
            m_keys[i] = 69.4 + 1.2 * i / (count - 1);
            m_values[i] = SpectrumTrace::level(static_cast<quint8>(bytes.at(i)));
        }
        m_plot.graph(0)->setData(m_keys, m_values);
        m_plot.replot(QCustomPlot::rpImmediateRefresh);
    }

private:
    std::vector<QByteArray> m_spectra;
    QVector<double> m_keys;
    QVector<double> m_values;
    QCustomPlot m_plot;
    size_t m_next = 0;
};

double microseconds(const std::function<void()>& draw)
{
    QElapsedTimer elapsed;
    elapsed.start();
    draw();
    return static_cast<double>(elapsed.nsecsElapsed()) / 1000.0;
}

double median(std::vector<double>& runs)
{
    const auto middle = runs.begin() + static_cast<std::ptrdiff_t>(runs.size() / 2);
    std::nth_element(runs.begin(), middle, runs.end());
    return *middle;
}

void compare(int points)
{
    Chart chart(points);
    Bare bare(points, chart.size());
    Naive naive(points, chart.size());
    std::vector<double> chartRuns;
    std::vector<double> bareRuns;
    std::vector<double> naiveRuns;
    for (int i = 0; i < Runs; ++i) {
        chartRuns.push_back(microseconds([&chart] { chart.draw(); }));
        bareRuns.push_back(microseconds([&bare] { bare.draw(); }));
        naiveRuns.push_back(microseconds([&naive] { naive.draw(); }));
    }
    const double ours = median(chartRuns);
    const double barest = median(bareRuns);
    const double first = median(naiveRuns);
    std::printf("%5d points, %d x %d: chart %.0f us, bare polyline %.0f us, naive plot %.0f us; "
                "chart / bare %.2f, naive / chart %.1f\n",
        points, chart.size().width(), chart.size().height(), ours, barest, first, ours / barest,
        first / ours);
}

// The card at the other end of a pseudo-terminal, in a process of its own. It answers each request
// for a spectrum.
[[noreturn]] void playCard(int master, int points)
{
    std::vector<QByteArray> replies;
    for (const QByteArray& one : spectra(points)) {
        replies.push_back(reply(one));
    }
    size_t next = 0;
    char buffer[256];
    QByteArray heard;
    while (true) {
        const ssize_t n = ::read(master, buffer, sizeof buffer);
        if (n <= 0) {
            ::usleep(1000); // The line is not open.
            continue;
        }
        heard.append(buffer, n);
        while (heard.contains("RFFT")) {
            heard.remove(0, heard.indexOf("RFFT") + 4);
            const QByteArray& answer = replies[next++ % Spectra];
            for (qsizetype done = 0; done < answer.size();) {
                const ssize_t written = ::write(
                    master, answer.constData() + done, static_cast<size_t>(answer.size() - done));
                done += written > 0 ? written : 0;
            }
        }
        heard = heard.right(8);
    }
}

double cpuSeconds()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void shareOfACore(const QString& directory, int points, int charts)
{
    constexpr int Milliseconds = 5000;
    qputenv("QN740_DEV", directory.toLocal8Bit());
    QMainWindow window;
    window.setFixedSize(PageSize);
    auto* card = new SpectralCard(&window, 0, QStringLiteral("ttyUSB11"));
    for (int channel = charts; channel < card::Channels; ++channel) {
        card->SetChartAreaVisible(channel, false);
    }
    window.setCentralWidget(card);
    int spectraSeen = 0;
    QObject::connect(card, &SpectralCard::specUpdate, card, [&spectraSeen] { ++spectraSeen; });
    window.show();
    const auto turn = [](qint64 milliseconds) {
        QEventLoop loop;
        QTimer::singleShot(static_cast<int>(milliseconds), &loop, &QEventLoop::quit);
        loop.exec();
    };
    turn(1000);
    spectraSeen = 0;
    QElapsedTimer elapsed;
    elapsed.start();
    const double before = cpuSeconds();
    turn(Milliseconds);
    const double used = cpuSeconds() - before;
    const double seconds = static_cast<double>(elapsed.nsecsElapsed()) / 1e9;
    std::printf("%d charts, %d points: %.1f spectra per second take %.2f %% of a core\n", charts,
        points, spectraSeen / seconds, 100.0 * used / seconds);
}

int openTerminal(const QString& link)
{
    const int master = ::posix_openpt(O_RDWR | O_NOCTTY);
    ::grantpt(master);
    ::unlockpt(master);
    termios settings{};
    ::tcgetattr(master, &settings);
    ::cfmakeraw(&settings);
    ::tcsetattr(master, TCSANOW, &settings);
    QFile::link(QString::fromLocal8Bit(::ptsname(master)), link);
    return master;
}

int countOne(const QString& who, int points, int times)
{
    const QSize size = Chart(points).size();
    std::function<void()> draw;
    if (who == QLatin1String("chart")) {
        auto chart = std::make_shared<Chart>(points);
        draw = [chart] { chart->draw(); };
    } else if (who == QLatin1String("all")) {
        auto chart = std::make_shared<Chart>(points);
        chart->switchAllOn();
        draw = [chart] { chart->draw(); };
    } else if (who == QLatin1String("bare")) {
        auto bare = std::make_shared<Bare>(points, size);
        draw = [bare] { bare->draw(); };
    } else {
        auto naive = std::make_shared<Naive>(points, size);
        draw = [naive] { naive->draw(); };
    }
    for (int i = 0; i < times; ++i) {
        draw();
    }
    return 0;
}

template <class Drawer>
void drawing(benchmark::State& state, Drawer& drawer)
{
    for (auto _ : state) {
        drawer.draw();
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    constexpr int CardPoints = 1024;
    const QTemporaryDir directory;
    const int master = openTerminal(directory.filePath(QStringLiteral("ttyUSB11")));
    const bool counting = argc == 5 && qstrcmp(argv[1], "--count") == 0;
    const pid_t card = counting ? 0 : ::fork();
    if (!counting && card == 0) {
        playCard(master, CardPoints);
    }
    int result = 0;
    {
        const QApplication application(argc, argv);
        if (counting) {
            return countOne(QString::fromLatin1(argv[2]), atoi(argv[3]), atoi(argv[4]));
        }
        benchmark::Initialize(&argc, argv);
        for (const int points : {512, 1024, 4096}) {
            const auto name = [points](const char* who) {
                return std::string(who) + "/" + std::to_string(points);
            };
            auto chart = std::make_shared<Chart>(points);
            auto bare = std::make_shared<Bare>(points, chart->size());
            auto naive = std::make_shared<Naive>(points, chart->size());
            benchmark::RegisterBenchmark(name("chart").c_str(),
                [chart](benchmark::State& state) { drawing(state, *chart); });
            benchmark::RegisterBenchmark(
                name("bare").c_str(), [bare](benchmark::State& state) { drawing(state, *bare); });
            benchmark::RegisterBenchmark(name("naive").c_str(),
                [naive](benchmark::State& state) { drawing(state, *naive); });
        }
        benchmark::RunSpecifiedBenchmarks();
        for (const int points : {512, 1024, 4096}) {
            compare(points);
        }
        for (const int charts : {1, 3}) {
            shareOfACore(directory.path(), CardPoints, charts);
        }
        benchmark::ClearRegisteredBenchmarks();
    }
    if (card > 0) {
        ::kill(card, SIGKILL);
        ::waitpid(card, nullptr, 0);
    }
    return result;
}
