// One scope enlarged: a touch on its plot, then a signal that is computed here.
#include "tools/pictures/PanelPictures.h"
#include "tools/pictures/ScopeSignals.h"
#include "tools/pictures/Screens.h"

#include "app/MainWindow.h"
#include "app/Rooms.h"
#include "app/Views.h"
#include "scopes/ScopesPage.h"
#include "tools/screen/Part.h"
#include "tools/screen/Screen.h"
#include "wire/IqBlock.h"

#include <QCoreApplication>
#include <QPushButton>
#include <QTimer>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int Demodulator = 1;

// as "SM" carries them
constexpr int Off = 0;
constexpr int Constellation = 1;
constexpr int EyePattern = 2;
constexpr int Sdi = 3;

struct Sheet
{
    QString picture;
    int mode;
    QString signal; // as qn740-sim's option --signal takes it
};

const std::array Sheets{
    Sheet{u"enlarged-bpsk"_s, Constellation, u"bpsk:snr=18"_s},
    Sheet{u"enlarged-qpsk"_s, Constellation, u"qpsk:snr=20:imbalance=1:skew=4"_s},
    Sheet{u"enlarged-8psk"_s, Constellation, u"8psk:snr=24"_s},
    Sheet{u"enlarged-16qam"_s, Constellation, u"16qam:snr=26"_s},
    Sheet{u"enlarged-unknown"_s, Constellation, u"qpsk:snr=1"_s},
    Sheet{u"enlarged-eye"_s, EyePattern, u"qpsk:snr=24"_s},
    Sheet{u"enlarged-eye-5.5-samples"_s, EyePattern, u"qpsk:snr=24:sps=5.5"_s},
    Sheet{u"enlarged-eye-assumed"_s, EyePattern, u"qpsk:snr=-12"_s},
};

Scope& scope(PanelPictures& panel)
{
    return *panel.window().rooms().scopes->scope(Demodulator);
}

void press(PanelPictures& panel, const char* key)
{
    clickOn(part<QPushButton>(panel.window(), key));
}

// Not by the unit, which would send signals of its own.
void show(PanelPictures& panel, const Sheet& sheet)
{
    panel.window().process_SM({QString::number(Demodulator), QString::number(sheet.mode)});
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers); // the page's layout
    scopeSignals::beginAnew(scope(panel));
    if (sheet.mode == Sdi) {
        scopeSignals::plotRecords(scope(panel));
    } else {
        const int perSymbol = sheet.mode == EyePattern ? iqBlock::EyeSamplesPerSymbol : 1;
        const QString fault = scopeSignals::plotBlocks(scope(panel), sheet.signal, perSymbol);
        if (!fault.isEmpty()) {
            panel.fail(fault);
        }
    }
    part<QTimer>(scope(panel), "measureTimer")->start(0); // the numbers follow now, not soon
    PanelPictures::settle();
    if (sheet.mode == EyePattern) { // a newly folded eye was begun anew
        scopeSignals::plotBlocks(scope(panel), sheet.signal, iqBlock::EyeSamplesPerSymbol);
    }
}

// What the keys do.
void takeKeys(PanelPictures& panel)
{
    const QString signal = u"qpsk:snr=16:level=0.3"_s;
    show(panel, {{}, Constellation, signal}); // SDI records before it have no range
    press(panel, "fixedRangeKey");
    show(panel, {{}, Constellation, signal});
    panel.take(u"enlarged-fixed-range"_s);
    press(panel, "fittedRangeKey");
    press(panel, "infinitePersistenceKey");
    show(panel, {{}, Constellation, signal});
    panel.take(u"enlarged-infinite"_s);
    press(panel, "shortPersistenceKey");
    press(panel, "freezeKey");
    panel.take(u"enlarged-frozen"_s);
    press(panel, "scopeTitle");
    panel.take(u"scopes-one-frozen"_s);
}

} // namespace

void takeEnlargedScopes(PanelPictures& panel)
{
    panel.showView(Views::Scopes);
    clickOn(part<QWidget>(scope(panel), "plotI"));
    for (const Sheet& sheet : Sheets) {
        show(panel, sheet);
        panel.take(sheet.picture);
    }
    show(panel, {{}, Sdi, {}});
    panel.take(u"enlarged-sdi"_s);
    takeKeys(panel);
    panel.window().process_SM({QString::number(Demodulator), QString::number(Off)});
    panel.showView(Views::Menus);
}
