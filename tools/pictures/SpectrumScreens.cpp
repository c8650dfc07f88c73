// The spectrum page with one to three charts.
#include "tools/pictures/PanelPictures.h"
#include "tools/pictures/Screens.h"

#include "app/MainWindow.h"
#include "app/Rooms.h"
#include "app/Views.h"
#include "spectrum/SpectralCard.h"
#include "spectrum/SpectrumChart.h"
#include "spectrum/SpectrumMessages.h"
#include "tools/screen/Screen.h"

#include <QComboBox>
#include <QWindow>
#include <QtTest/qtestmouse.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int Charts = 3;
constexpr int FewSpectraMs = 700;
constexpr int SomeSpectraMs = 2500;
constexpr int ManySpectraMs = 4000;

void show(PanelPictures& panel, int charts)
{
    for (int channel = 0; channel < Charts; ++channel) {
        panel.say(u"SH,%1,%2"_s.arg(channel).arg(channel < charts ? 1 : 0));
    }
}

void choose(PanelPictures& panel, const QList<int>& spans)
{
    for (int channel = 0; channel < Charts; ++channel) {
        panel.say(u"SP,%1,%2"_s.arg(channel).arg(spans.at(channel)));
    }
}

// One to three charts, each with the narrowest and the widest span.
void takeCharts(PanelPictures& panel)
{
    const QStringList names{u"spectrum-one"_s, u"spectrum-two"_s, u"spectrum-three"_s};
    for (int charts = 1; charts <= Charts; ++charts) {
        show(panel, charts);
        for (const int span : {0, 9}) {
            choose(panel, {span, span, span});
            PanelPictures::settle(SomeSpectraMs);
            panel.take(names.at(charts - 1) + (span == 0 ? u"-narrow"_s : u"-wide"_s));
        }
    }
}

void takeSpanList(PanelPictures& panel)
{
    constexpr int ListMs = 200;
    auto* lowest = panel.window().rooms().spectrum->card()->findChild<QComboBox*>(u"cboSpan3"_s);
    clickOn(lowest);
    PanelPictures::settle(ListMs);
    panel.take(u"spectrum-span-list"_s);
    lowest->hidePopup();
}

void takeReadings(PanelPictures& panel)
{
    SpectralCard& card = *panel.window().rooms().spectrum->card();
    show(panel, 1);
    panel.pressButton(&card, u"Max Hold"_s);
    PanelPictures::settle(ManySpectraMs);
    panel.take(u"spectrum-max-hold"_s);
    panel.pressButton(&card, u"Average"_s);
    clickOn(card.chart(0));
    PanelPictures::settle(SomeSpectraMs);
    // Without a trace there is no reading, and the plot is as much higher as a line of text.
    constexpr int MaxWaits = 60;
    for (int i = 0; i < MaxWaits && !card.chart(0)->marker().valid; ++i) {
        PanelPictures::settle();
    }
    panel.take(u"spectrum-marker"_s);
    panel.pressButton(&card, u"Average"_s);
    panel.pressButton(&card, u"Max Hold"_s);
    card.chart(0)->clearMarker();
}

SpectralCard& cardOf(PanelPictures& panel)
{
    return *panel.window().rooms().spectrum->card();
}

// Touches the keys beside the enlarged chart, one after the other, and takes a picture.
void takeAfter(PanelPictures& panel, const QStringList& keys, const QString& picture)
{
    for (const QString& key : keys) {
        panel.pressButton(&cardOf(panel), key);
    }
    PanelPictures::settle(FewSpectraMs);
    panel.take(picture);
}

// One chart on the whole page, with each page of its keys and what they do.
void takeEnlargedChart(PanelPictures& panel)
{
    panel.pressButton(&cardOf(panel), u"Tools"_s);
    PanelPictures::settle(ManySpectraMs);
    panel.take(u"spectrum-enlarged"_s);
    takeAfter(panel, {u"Trace"_s, u"Log 64"_s}, u"spectrum-keys-trace"_s);
    takeAfter(panel, {u"No Avg"_s, u"Max Hold"_s, u"Min Hold"_s}, u"spectrum-holds"_s);
    takeAfter(panel, {u"Max Hold"_s, u"Min Hold"_s, u"Power 64"_s, u"Back"_s, u"Scale"_s},
        u"spectrum-keys-scale"_s);
    takeAfter(panel, {u"Auto"_s}, u"spectrum-scale-auto"_s);
    takeAfter(panel, {u"5 dB"_s}, u"spectrum-scale-5"_s);
    takeAfter(panel, {u"2 dB"_s}, u"spectrum-scale-2"_s);
    const QString down = u"Ref ▼"_s; // by 2 dB; the peak would lie below a scale of 1 dB
    takeAfter(panel, {down, down, down, down, down, u"1 dB"_s}, u"spectrum-scale-1"_s);
    takeAfter(panel, {u"Full"_s, u"Back"_s, u"Markers"_s, u"Peak"_s}, u"spectrum-keys-markers"_s);
    takeAfter(panel, {u"Delta"_s, u"Next peak"_s}, u"spectrum-delta"_s);
    takeAfter(panel, {u"Delta"_s, u"Off"_s, u"Off"_s, u"Back"_s, u"Measure"_s},
        u"spectrum-keys-measure"_s);
}

void takeMeasurements(PanelPictures& panel)
{
    takeAfter(panel, {u"Channel power"_s}, u"spectrum-channel-power"_s);
    takeAfter(panel, {u"BW −"_s, u"BW −"_s}, u"spectrum-channel-power-chosen"_s);
    takeAfter(panel, {u"Occupied BW"_s}, u"spectrum-occupied-bandwidth"_s);
    takeAfter(panel, {u"-3 dB BW"_s}, u"spectrum-3-db-bandwidth"_s);
    takeAfter(panel, {u"C/N"_s}, u"spectrum-carrier-to-noise"_s);
    takeAfter(panel, {u"Frequency error"_s}, u"spectrum-frequency-error"_s);
    takeAfter(panel, {u"Off"_s, u"Back"_s, u"Trace"_s, u"No Avg"_s, u"Back"_s, u"Close"_s},
        u"spectrum-back"_s);
}

// What a chart shows when a level is at the end of the card's scale. The unit sends no such level,
// so the spectra come from here.
void takeOver(PanelPictures& panel)
{
    constexpr int Points = 474;
    constexpr int Times = 3; // until the readings follow
    constexpr int BetweenMs = 100;
    QByteArray points(Points, 40);
    points.replace(Points / 2 - 10, 20, QByteArray(20, '\xff'));
    for (int i = 0; i < Times; ++i) {
        cardOf(panel).chart(0)->addSpectrum(points);
        PanelPictures::settle(BetweenMs);
    }
    cardOf(panel).chart(0)->addSpectrum(points);
    panel.take(u"spectrum-over"_s);
}

// The keys of the chart that is lent to the PAX main menu.
void takeLentChartKeys(PanelPictures& panel)
{
    const QPoint title(60, 8);
    panel.say(u"PAX,1"_s);
    PanelPictures::settle(SomeSpectraMs);
    panel.whenDialogOpens([&panel](QWidget* dialog) {
        panel.take(u"pax-menu-chart-keys"_s);
        panel.pressButton(dialog, u"Close"_s);
    });
    QTest::mouseClick(panel.window().windowHandle(), Qt::LeftButton, Qt::NoModifier,
        cardOf(panel).chart(0)->mapTo(&panel.window(), title));
    PanelPictures::settle(FewSpectraMs);
    panel.say(u"PAX,0"_s);
    panel.showView(Views::Spectrum);
}

// What a chart shows when its card is gone.
void takeSilence(PanelPictures& panel)
{
    constexpr int MaxWaits = 120; // six seconds; a chart waits for three
    SpectralCard& card = *panel.window().rooms().spectrum->card();
    card.setK7150(u"absent"_s, {}, {});
    takeOver(panel);
    for (int waits = 0; waits < MaxWaits && !card.chart(0)->stale(); ++waits) {
        PanelPictures::settle();
    }
    panel.take(u"spectrum-no-data"_s);
    card.setK7150(u"ttyUSB11"_s, {}, {});
}

} // namespace

void takeSpectrum(PanelPictures& panel)
{
    const QList<int> mixed{6, 3, 4};
    panel.say(u"ST,1"_s);
    panel.showView(Views::Spectrum);
    panel.say(u"HM,0,-30,-80"_s);
    choose(panel, mixed);
    PanelPictures::settle(SomeSpectraMs);
    panel.take(u"spectrum-three"_s);
    takeCharts(panel);
    takeSpanList(panel);
    choose(panel, mixed);
    takeReadings(panel);
    takeEnlargedChart(panel);
    takeMeasurements(panel);
    takeLentChartKeys(panel);
    takeSilence(panel);
    show(panel, Charts);
    panel.showView(Views::Menus);
}
