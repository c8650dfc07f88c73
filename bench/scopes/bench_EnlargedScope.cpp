// What a block of each of three demodulators costs the scopes page, from samples to painted pixels:
// with the three scopes side by side and nothing measured, and with everything on, one scope
// enlarged, its figures measured and painted at their full pace, and the other two receiving.
//
//   --callgrind=NAME   runs one of the measured pieces 200 times and nothing else; "list" names
//                      them
//   --ratios           prints what is compared with what: title|piece|reference|goal
// Both are for bench/run --pieces. Without an option the times are printed.
#include "scopes/FigureStrip.h"
#include "scopes/PlotView.h"
#include "scopes/ScopesPage.h"
#include "sim/scope/SignalModel.h"
#include "wire/IqBlock.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <QTimerEvent>

#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize PageSize(800, 428);
constexpr int CallgrindRuns = 200;
constexpr int Signals = 16;    // blocks of a signal, which come again and again
constexpr int WarmUpRuns = 60; // until the range is fitted and the meters are full

// A line brings 7.5 blocks per second, and the figures follow twice per second, those of an eye
// once: in 15 rounds there are four measurements, or two.
constexpr int Rounds = 15;
constexpr int Measurements = 1000 / Scope::FiguresMs * 2;
constexpr int EyeMeasurements = 1000 / Scope::EyeFiguresMs * 2;

// As "SM" carries them.
constexpr int Constellation = 1;
constexpr int EyePattern = 2;

struct Block
{
    QVector<double> i;
    QVector<double> q;
};

std::vector<Block> signalOf(const QString& text, int samplesPerSymbol)
{
    QString fault;
    SignalModel model(SignalSettings::fromText(text, fault));
    std::vector<Block> blocks(Signals);
    for (Block& block : blocks) {
        QVector<int> i;
        QVector<int> q;
        model.append(iqBlock::Records, samplesPerSymbol, i, q);
        for (int k = 0; k < iqBlock::Records; ++k) {
            block.i += static_cast<double>(i.at(k)) / iqBlock::FullScale;
            block.q += static_cast<double>(q.at(k)) / iqBlock::FullScale;
        }
    }
    return blocks;
}

// The scopes page, and what paints it as the screen does.
class Page
{
public:
    Page(int mode, const QString& signal)
        : m_measurements(mode == EyePattern ? EyeMeasurements : Measurements)
        , m_blocks(signalOf(signal, mode == EyePattern ? iqBlock::EyeSamplesPerSymbol : 1))
    {
        m_page.setFixedSize(PageSize);
        for (int n = 1; n <= ScopesPage::Demodulators; ++n) {
            m_page.setMode(n, *ScopeMode::ofMessage(mode));
        }
        m_page.show();
        QApplication::processEvents();
    }

    // The first scope alone, with everything on; otherwise all three, and nothing is measured.
    void setEnlarged(bool enlarged)
    {
        if (enlarged) {
            m_page.enlarge(1);
        } else {
            m_page.showAll();
        }
        QApplication::processEvents();
    }

    // One block for each scope. Nothing runs by itself: the event loop is not entered.
    void round()
    {
        for (int n = 1; n <= ScopesPage::Demodulators; ++n) {
            Block block = m_blocks[m_turn++ % m_blocks.size()];
            m_page.scope(n)->plotEyeConsData(block.i, block.q);
        }
        m_measured += m_measurements;
        if (m_page.enlarged() != 0 && m_measured >= Rounds) {
            m_measured -= Rounds;
            measure();
        }
        for (int n = 1; n <= ScopesPage::Demodulators; ++n) {
            for (auto* view : m_page.scope(n)->findChildren<PlotView*>()) {
                paint(*view, view->dataArea());
            }
        }
    }

    QString readout() const { return m_page.scope(1)->readout(); }

private:
    void measure()
    {
        auto* timer = m_page.scope(1)->findChild<QTimer*>(u"measureTimer"_s);
        QTimerEvent event(timer->timerId());
        QCoreApplication::sendEvent(timer, &event);
        auto* strip = m_page.findChild<FigureStrip*>();
        const QRegion changed = strip->takeChanged();
        if (!changed.isEmpty()) {
            strip->render(&m_window, changed.boundingRect().topLeft(), changed, {});
        }
    }

    void paint(QWidget& widget, const QRect& area)
    {
        if (widget.isVisible() && !area.isEmpty()) {
            widget.render(&m_window, area.topLeft(), QRegion(area), QWidget::RenderFlags());
        }
    }

    int m_measurements; // in the time of Rounds
    ScopesPage m_page;
    std::vector<Block> m_blocks;
    QImage m_window{PageSize, QImage::Format_RGB32};
    size_t m_turn = 0;
    int m_measured = 0;
};

struct Piece
{
    const char* name;
    int mode;
    const char* signal;
    bool isEnlarged;
};

constexpr Piece Pieces[] = {
    {"eyes/three side by side", EyePattern, "qpsk:snr=20", false},
    {"eyes/one enlarged, everything on", EyePattern, "qpsk:snr=20", true},
    {"eyes of 2 samples/three side by side", EyePattern, "qpsk:snr=20:sps=2", false},
    {"eyes of 2 samples/one enlarged, everything on", EyePattern, "qpsk:snr=20:sps=2", true},
    {"eyes of 16 samples/three side by side", EyePattern, "qpsk:snr=20:sps=16", false},
    {"eyes of 16 samples/one enlarged, everything on", EyePattern, "qpsk:snr=20:sps=16", true},
    {"eyes of noise/three side by side", EyePattern, "qpsk:snr=-10", false},
    {"eyes of noise/one enlarged, everything on", EyePattern, "qpsk:snr=-10", true},
    {"constellations/three side by side", Constellation, "16qam:snr=25", false},
    {"constellations/one enlarged, everything on", Constellation, "16qam:snr=25", true},
    {"constellations of noise/three side by side", Constellation, "qpsk:snr=-10", false},
    {"constellations of noise/one enlarged, everything on", Constellation, "qpsk:snr=-10", true},
};

struct Ratio
{
    const char* title;
    const char* over;
    const char* under;
};

constexpr Ratio Ratios[] = {
    {"eyes: everything on / side by side", "eyes/one enlarged, everything on",
        "eyes/three side by side"},
    {"eyes of 2 samples: everything on / side by side",
        "eyes of 2 samples/one enlarged, everything on", "eyes of 2 samples/three side by side"},
    {"eyes of 16 samples: everything on / side by side",
        "eyes of 16 samples/one enlarged, everything on", "eyes of 16 samples/three side by side"},
    {"eyes of noise: everything on / side by side", "eyes of noise/one enlarged, everything on",
        "eyes of noise/three side by side"},
    {"constellations: everything on / side by side", "constellations/one enlarged, everything on",
        "constellations/three side by side"},
    {"constellations of noise: everything on / side by side",
        "constellations of noise/one enlarged, everything on",
        "constellations of noise/three side by side"},
};
constexpr const char* Goal = "at most 1.5";

// Callgrind collects inside this function only.
[[gnu::noinline]] void repeatForCallgrind(Page& page)
{
    for (int k = 0; k < CallgrindRuns; ++k) {
        page.round();
    }
}

void warmUp(Page& page, const Piece& piece)
{
    page.setEnlarged(piece.isEnlarged);
    for (int k = 0; k < WarmUpRuns; ++k) {
        page.round();
    }
}

int runForCallgrind(const std::string& wanted)
{
    for (const Piece& piece : Pieces) {
        if (piece.name == wanted) {
            Page page(piece.mode, QString::fromLatin1(piece.signal));
            warmUp(page, piece);
            repeatForCallgrind(page);
            return 0;
        }
        if (wanted == "list") {
            std::printf("%s\n", piece.name);
        }
    }
    return wanted == "list" ? 0 : 1;
}

void printTimes()
{
    for (const Piece& piece : Pieces) {
        Page page(piece.mode, QString::fromLatin1(piece.signal));
        warmUp(page, piece);
        QElapsedTimer elapsed;
        elapsed.start();
        repeatForCallgrind(page);
        std::printf("%-58s %10.0f ns per round\n", piece.name,
            static_cast<double>(elapsed.nsecsElapsed()) / CallgrindRuns);
        std::printf("    %s\n", qPrintable(page.readout().replace('\n'_L1, u", "_s)));
    }
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    if (argc > 1 && std::strcmp(argv[1], "--ratios") == 0) {
        for (const Ratio& ratio : Ratios) {
            std::printf("%s|%s|%s|%s\n", ratio.title, ratio.over, ratio.under, Goal);
        }
        return 0;
    }
    const std::string option = "--callgrind=";
    if (argc > 1 && std::string(argv[1]).rfind(option, 0) == 0) {
        return runForCallgrind(std::string(argv[1]).substr(option.size()));
    }
    printTimes();
    return 0;
}
