// The scopes page with signals that are made here, block by block, so that the pictures are the
// same each time: what every modulation and every fault of a receiver looks like.
#include "tools/pictures/PanelPictures.h"
#include "tools/pictures/ScopeSignals.h"
#include "tools/pictures/Screens.h"

#include "app/MainWindow.h"
#include "app/Rooms.h"
#include "app/Views.h"
#include "scopes/ScopesPage.h"
#include "scopes/StcMagPhasePlot.h"
#include "wire/IqBlock.h"

#include <QCoreApplication>

#include <array>

using namespace Qt::StringLiterals;

namespace {

// as "SM" carries them
constexpr int Constellation = 1;
constexpr int EyePattern = 2;
constexpr int Sdi = 3;

struct Shown
{
    int mode;
    QString signal; // as qn740-sim's option --signal takes it
};

struct Sheet
{
    QString picture;
    QString magnitudesAndPhase; // of "PM"
    std::array<Shown, 3> scopes;
};

const std::array Sheets{
    Sheet{u"signal-eyes-bpsk-qpsk-oqpsk"_s, u"PM,0,100,100"_s,
        {{{EyePattern, u"bpsk"_s}, {EyePattern, u"qpsk"_s}, {EyePattern, u"oqpsk"_s}}}},
    Sheet{u"signal-constellations-bpsk-qpsk-oqpsk"_s, u"PM,0.125,90,80"_s,
        {{{Constellation, u"bpsk"_s}, {Constellation, u"qpsk"_s}, {Constellation, u"oqpsk"_s}}}},
    Sheet{u"signal-eyes-8psk-16qam-qpsk-8-db"_s, u"PM,0.25,80,60"_s,
        {{{EyePattern, u"8psk"_s}, {EyePattern, u"16qam"_s}, {EyePattern, u"qpsk:snr=8"_s}}}},
    Sheet{u"signal-constellations-8psk-16qam-qpsk-8-db"_s, u"PM,0.375,72,55"_s,
        {{{Constellation, u"8psk"_s}, {Constellation, u"16qam"_s},
            {Constellation, u"qpsk:snr=8"_s}}}},
    Sheet{u"signal-eyes-offset-clipped-sdi"_s, u"PM,0.625,60,40"_s,
        {{{EyePattern, u"qpsk:offset=0.00003"_s}, {EyePattern, u"qpsk:clip=0.4"_s}, {Sdi, {}}}}},
    Sheet{u"signal-constellations-offset-clipped-imbalance"_s, u"PM,0.75,30,20"_s,
        {{{Constellation, u"qpsk:offset=0.00003"_s}, {Constellation, u"16qam:clip=0.4"_s},
            {Constellation, u"16qam:snr=30:imbalance=3:skew=8"_s}}}},
    Sheet{u"signal-constellations-phase-noise-overdriven"_s, u"PM,1,10,0"_s,
        {{{Constellation, u"qpsk:snr=30:phase=6"_s}, {Constellation, u"16qam:snr=30:phase=3"_s},
            {Constellation, u"16qam:snr=30:level=1"_s}}}},
};

// What a scope shows when its line brings nothing any more, and the display below when nothing
// newer can come.
void takeSilence(PanelPictures& panel)
{
    constexpr int MaxWaits = 100; // five seconds; a scope waits for two
    ScopesPage& page = *panel.window().rooms().scopes;
    const auto allStale = [&page] {
        return page.scope(1)->stale() && page.scope(2)->stale() && page.scope(3)->stale();
    };
    for (int waits = 0; waits < MaxWaits && !allStale(); ++waits) {
        PanelPictures::settle();
    }
    panel.take(u"signal-no-data"_s);
    page.magPhasePlot()->setDimmed(true);
    panel.take(u"signal-no-data-magnitudes-dimmed"_s);
    page.magPhasePlot()->setDimmed(false);
}

} // namespace

void takeSignals(PanelPictures& panel)
{
    // the unit's own signals end, and with them the phase and magnitudes that it tells
    for (const QString& off : {u"SM,1,0"_s, u"SM,2,0"_s, u"SM,3,0"_s}) {
        panel.say(off);
    }
    panel.showView(Views::Scopes);
    for (const Sheet& sheet : Sheets) {
        panel.say(sheet.magnitudesAndPhase);
        // from here to the picture nothing is read: a last block of the unit's may still be under
        // way on a slow machine
        for (int demodulator = 1; demodulator <= ScopesPage::Demodulators; ++demodulator) {
            const Shown& shown = sheet.scopes.at(static_cast<size_t>(demodulator - 1));
            // not by the unit, which would send signals of its own
            panel.window().process_SM({QString::number(demodulator), QString::number(shown.mode)});
        }
        QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers); // the page's layout
        for (int demodulator = 1; demodulator <= ScopesPage::Demodulators; ++demodulator) {
            const Shown& shown = sheet.scopes.at(static_cast<size_t>(demodulator - 1));
            Scope& scope = *panel.window().rooms().scopes->scope(demodulator);
            scopeSignals::beginAnew(scope);
            if (shown.mode == Sdi) {
                scopeSignals::plotRecords(scope);
            } else {
                const int perSymbol = shown.mode == EyePattern ? iqBlock::EyeSamplesPerSymbol : 1;
                const QString fault = scopeSignals::plotBlocks(scope, shown.signal, perSymbol);
                if (!fault.isEmpty()) {
                    panel.fail(fault);
                }
            }
        }
        panel.take(sheet.picture);
        if (sheet.picture.contains("sdi"_L1)) {
            takeSilence(panel);
        }
    }
    for (const QString& off : {u"SM,1,0"_s, u"SM,2,0"_s, u"SM,3,0"_s}) {
        panel.say(off);
    }
    panel.showView(Views::Menus);
}
