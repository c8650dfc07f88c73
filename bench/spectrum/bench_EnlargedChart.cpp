// What one enlarged chart with all that belongs to it costs, compared with the page of three
// charts, and what a line of the waterfall costs, compared with a bare picture that is scrolled.
//
// A page is given 60 spectra, as many as come in three seconds, and its readings follow twelve
// times, as they do in that time. Spectra begin as the bytes of the card's reply, and each is
// painted at once. With three charts, each gets every third spectrum, on the enlarged page too,
// where the two others are not painted. "alone" is the page whose other channels are hidden.
//
//   bench_EnlargedChart                  times and ratios
//   bench_EnlargedChart --count WHO N    N times three seconds of "three", "enlarged", "alone" or
//                                        "alone-enlarged", or 60 × N lines of "waterfall" or
//                                        "scroll", to be counted by callgrind; bench/run --pieces
//                                        does that
#include "spectrum/BusFrame.h"
#include "spectrum/ChartKeys.h"
#include "spectrum/ReadoutPace.h"
#include "spectrum/SpectralCard.h"
#include "spectrum/SpectrumChart.h"
#include "spectrum/SpectrumTrace.h"
#include "spectrum/Waterfall.h"
#include "support/ScrolledPicture.h"
#include "support/Spectra.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMainWindow>
#include <QPushButton>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

namespace {

constexpr QSize PageSize(800, 430);
constexpr int Span = 6;
constexpr int Channels = 3;
constexpr int Spectra = 60;   // of three seconds
constexpr int PerReadout = 5; // spectra between two readings

class Page
{
public:
    Page(int channels, bool enlarged)
        : m_channels(channels)
    {
        for (const QByteArray& one : bench::spectra()) {
            m_replies.push_back(
                "[0190RFFT" + QByteArray::number(one.size()).rightJustified(4, '0') + one);
        }
        m_window.setFixedSize(PageSize);
        m_card = new SpectralCard(&m_window, 0, QStringLiteral("absent"));
        for (int channel = 0; channel < Channels; ++channel) {
            m_card->SetSpan(channel, Span);
            m_card->SetChartAreaVisible(channel, channel < channels);
        }
        m_window.setCentralWidget(m_card);
        m_window.show();
        QCoreApplication::processEvents();
        if (enlarged) {
            switchEverythingOn();
        }
        for (int channel = 0; channel < Channels; ++channel) {
            for (const ReadoutPace* pace : m_card->chart(channel)->findChildren<ReadoutPace*>()) {
                m_paces += pace->findChildren<QTimer*>();
            }
        }
    }

    // Three seconds.
    void run()
    {
        for (int i = 0; i < Spectra; ++i) {
            m_buffer.append(m_replies[m_next++ % bench::DifferentSpectra]);
            CmdMsg message;
            m_buffer.take(message, bus::Layout::Decimal);
            SpectrumChart* chart = m_card->chart(i % m_channels);
            chart->addSpectrum(message.data.toLatin1());
            if (chart->isVisible()) {
                chart->repaint();
            }
            if (m_waterfall != nullptr && i % m_channels == 0) {
                m_waterfall->repaint();
            }
            if (i % PerReadout == 0) {
                readOut();
            }
        }
    }

private:
    void press(const char* text)
    {
        const auto keys = m_card->findChild<ChartKeys*>()->findChildren<QPushButton*>();
        for (QPushButton* key : keys) {
            if (key->isVisible() && key->text() == QLatin1String(text)) {
                key->click();
                QCoreApplication::processEvents();
                return;
            }
        }
        std::fprintf(stderr, "no key %s\n", text);
    }

    void switchEverythingOn()
    {
        m_card->setEnlarged(0);
        QCoreApplication::processEvents();
        m_card->chart(0)->addSpectrum(bench::spectra().front());
        for (const char* key : {"Trace", "Log 64", "Max Hold", "Min Hold", "Back", "Markers",
                 "Peak", "Delta", "Back", "Measure", "C/N", "Back"}) {
            press(key);
        }
        for (const double offset : {-5.0, 5.0}) {
            m_card->chart(0)->addMarker(m_card->centre(0) + offset);
        }
        m_waterfall = m_card->findChild<Waterfall*>();
    }

    // Lets the time between two readings pass for all charts.
    void readOut()
    {
        for (QTimer* pace : std::as_const(m_paces)) {
            if (pace->isActive()) {
                pace->stop();
                QMetaObject::invokeMethod(pace, "timeout", Qt::DirectConnection);
            }
        }
        QCoreApplication::sendPostedEvents();
    }

    int m_channels;
    std::vector<QByteArray> m_replies;
    bus::ReplyBuffer m_buffer;
    QMainWindow m_window;
    SpectralCard* m_card;
    Waterfall* m_waterfall = nullptr;
    QList<QTimer*> m_paces;
    size_t m_next = 0;
};

// The waterfall alone, without its chart.
class Lines
{
public:
    Lines()
    {
        m_waterfall.resize(bench::ScrolledPicture::Size);
        m_waterfall.setPlot(0, bench::ScrolledPicture::Size.width() - 1);
        m_waterfall.setRange(SpectrumChart::LowestLevel, SpectrumChart::HighestLevel);
        m_waterfall.show();
        QCoreApplication::processEvents();
    }

    void run()
    {
        for (int i = 0; i < Spectra; ++i) {
            m_waterfall.addSpectrum(bench::spectra()[m_next++ % bench::DifferentSpectra]);
            m_waterfall.repaint();
        }
    }

private:
    Waterfall m_waterfall;
    size_t m_next = 0;
};

// A bare picture.
class Scrolled
{
public:
    Scrolled()
    {
        m_picture.show();
        QCoreApplication::processEvents();
    }

    void run()
    {
        for (int i = 0; i < Spectra; ++i) {
            m_picture.add(i);
            m_picture.repaint();
        }
    }

private:
    bench::ScrolledPicture m_picture;
};

std::function<void()> runner(const QString& who)
{
    const auto of = [](auto subject) { return [subject] { subject->run(); }; };
    if (who == QLatin1String("waterfall")) {
        return of(std::make_shared<Lines>());
    }
    if (who == QLatin1String("scroll")) {
        return of(std::make_shared<Scrolled>());
    }
    const int channels = who.startsWith(QLatin1String("alone")) ? 1 : Channels;
    return of(std::make_shared<Page>(channels, who.endsWith(QLatin1String("enlarged"))));
}

// The median time of three seconds, in milliseconds.
double milliseconds(const QString& who)
{
    constexpr int Runs = 31;
    const auto run = runner(who);
    std::vector<double> times;
    for (int i = 0; i < Runs; ++i) {
        QElapsedTimer elapsed;
        elapsed.start();
        run();
        times.push_back(static_cast<double>(elapsed.nsecsElapsed()) / 1e6);
    }
    std::nth_element(times.begin(), times.begin() + Runs / 2, times.end());
    return times.at(Runs / 2);
}

void compare(const char* one, const char* other)
{
    const double first = milliseconds(QLatin1String(one));
    const double second = milliseconds(QLatin1String(other));
    std::printf("%s %.2f ms, %s %.2f ms, ratio %.2f\n", one, first, other, second, first / second);
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    if (argc == 4 && qstrcmp(argv[1], "--count") == 0) {
        const auto run = runner(QString::fromLatin1(argv[2]));
        for (int i = 0; i < atoi(argv[3]); ++i) {
            run();
        }
        return 0;
    }
    compare("enlarged", "three");
    compare("alone-enlarged", "alone");
    compare("waterfall", "scroll");
    return 0;
}
