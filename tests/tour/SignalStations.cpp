// The scopes page with signals that are made here, block by block, so that the pictures are the
// same each time: what every modulation and every fault of a receiver looks like.
#include "app/Rooms.h"
#include "tour/Tour.h"

#include "app/MainWindow.h"
#include "app/Views.h"
#include "scopes/ScopesPage.h"
#include "sim/ScopeBytes.h"
#include "sim/SignalModel.h"
#include "wire/IqBlock.h"

#include <QCoreApplication>

#include <array>

namespace {

constexpr int Blocks = 50; // until the range is fitted and the plots glow
constexpr int Records = 100;
constexpr quint32 Seed = 11;

// as "SM" carries them
constexpr int Constellation = 1;
constexpr int EyePattern = 2;
constexpr int Sdi = 3;

struct Shown
{
    int mode;
    const char* signal; // as qn740-sim's option --signal takes it
};

struct Sheet
{
    const char* picture;
    const char* magnitudesAndPhase; // of "PM"
    std::array<Shown, 3> scopes;
};

constexpr std::array Sheets{
    Sheet{"signal-eyes-bpsk-qpsk-oqpsk", "PM,0,100,100",
        {{{EyePattern, "bpsk"}, {EyePattern, "qpsk"}, {EyePattern, "oqpsk"}}}},
    Sheet{"signal-constellations-bpsk-qpsk-oqpsk", "PM,0.125,90,80",
        {{{Constellation, "bpsk"}, {Constellation, "qpsk"}, {Constellation, "oqpsk"}}}},
    Sheet{"signal-eyes-8psk-16qam-qpsk-8-db", "PM,0.25,80,60",
        {{{EyePattern, "8psk"}, {EyePattern, "16qam"}, {EyePattern, "qpsk:snr=8"}}}},
    Sheet{"signal-constellations-8psk-16qam-qpsk-8-db", "PM,0.375,72,55",
        {{{Constellation, "8psk"}, {Constellation, "16qam"}, {Constellation, "qpsk:snr=8"}}}},
    Sheet{"signal-eyes-offset-clipped-sdi", "PM,0.625,60,40",
        {{{EyePattern, "qpsk:offset=0.00003"}, {EyePattern, "qpsk:clip=0.4"}, {Sdi, ""}}}},
    Sheet{"signal-constellations-offset-clipped-imbalance", "PM,0.75,30,20",
        {{{Constellation, "qpsk:offset=0.00003"}, {Constellation, "16qam:clip=0.4"},
            {Constellation, "16qam:snr=30:imbalance=3:skew=8"}}}},
    Sheet{"signal-constellations-phase-noise-overdriven", "PM,1,10,0",
        {{{Constellation, "qpsk:snr=30:phase=6"}, {Constellation, "16qam:snr=30:phase=3"},
            {Constellation, "16qam:snr=30:level=1"}}}},
};

// Whatever the scope has seen before: empty, and its range as at the start.
void beginAnew(Scope& scope)
{
    QVector<double> full(iqBlock::Records, 1.0);
    scope.plotEyeConsData(full, full);
    scope.clearPlots();
}

void plotRecords(Scope& scope)
{
    for (quint32 number = 0; number < Records; ++number) {
        QByteArray record = scopeBytes::sdiRecord(number).right(SdiDecoder::RecordBytes);
        scope.plotSdiData(record);
    }
}

void plotBlocks(Tour& tour, Scope& scope, const Shown& shown)
{
    QString fault;
    SignalModel model(SignalSettings::fromText(shown.signal, fault), Seed);
    if (!fault.isEmpty()) {
        tour.fail(fault);
    }
    const int perSymbol = shown.mode == EyePattern ? iqBlock::EyeSamplesPerSymbol : 1;
    for (int block = 0; block < Blocks; ++block) {
        QVector<int> i;
        QVector<int> q;
        model.append(iqBlock::Records, perSymbol, i, q);
        IqBlockDecoder decoder;
        const QByteArray bytes = scopeBytes::block(i, q);
        decoder.take(bytes.constData(), bytes.size());
        QVector<double> decodedI = decoder.i();
        QVector<double> decodedQ = decoder.q();
        scope.plotEyeConsData(decodedI, decodedQ);
        scope.grab(); // each block is painted, as at the line's pace
    }
}

} // namespace

void visitSignals(Tour& tour)
{
    // the unit's own signals end, and with them the phase and magnitudes that it tells
    for (const char* off : {"SM,1,0", "SM,2,0", "SM,3,0"}) {
        tour.unit(off);
    }
    showView(tour, Views::Scopes);
    for (const Sheet& sheet : Sheets) {
        tour.unit(sheet.magnitudesAndPhase);
        // from here to the picture nothing is read: a last block of the unit's may still be under
        // way on a slow machine
        for (int demodulator = 1; demodulator <= ScopesPage::Demodulators; ++demodulator) {
            const Shown& shown = sheet.scopes.at(static_cast<size_t>(demodulator - 1));
            // not by the unit, which would send signals of its own
            tour.window().process_SM({QString::number(demodulator), QString::number(shown.mode)});
        }
        QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers); // the page's layout
        for (int demodulator = 1; demodulator <= ScopesPage::Demodulators; ++demodulator) {
            const Shown& shown = sheet.scopes.at(static_cast<size_t>(demodulator - 1));
            Scope& scope = *tour.window().rooms().scopes->scope(demodulator);
            beginAnew(scope);
            if (shown.mode == Sdi) {
                plotRecords(scope);
            } else {
                plotBlocks(tour, scope, shown);
            }
        }
        tour.picture(sheet.picture);
    }
    for (const char* off : {"SM,1,0", "SM,2,0", "SM,3,0"}) {
        tour.unit(off);
    }
    showView(tour, Views::Menus);
}
