// What the panel says about its link to the main unit, and texts that are too long for the status
// bar.
#include "app/MainWindow.h"
#include "tools/pictures/PanelPictures.h"
#include "tools/pictures/Screens.h"
#include "tools/screen/Part.h"

#include <QMessageBox>
#include <QStatusBar>
#include <QWindow>
#include <QtTest/qtestmouse.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int Pings = 4;
constexpr int PingMs = 200;
constexpr QPoint OnStatusText(100, 455);

// The menus of the unit are gone by now.
void defineMenus(PanelPictures& panel)
{
    const QStringList labels{u"RF Frequency"_s, u"IF Bandwidth"_s, u"AGC"_s, u"Attenuator"_s,
        u"RF Gain"_s, u"Squelch"_s, u"Offset"_s, u"Reset"_s};
    panel.say(u"CLEAR"_s);
    for (qsizetype i = 0; i < labels.size(); ++i) {
        panel.say(u"AK,Tuner CH1,k%1,%2,0,R1:%1:,,0,,0,%3,1"_s.arg(i).arg(labels.at(i)).arg(i % 2));
        panel.say(u"MS,PAX,Tuner CH1,k%1"_s.arg(i));
    }
    panel.say(u"SK,Tuner CH1"_s);
}

void takeLongText(PanelPictures& panel)
{
    panel.say(
        u"SB,0,Tuner CH1: no carrier on 2250.5 MHz. Check the antenna cable and the pre-amplifier."_s);
    PanelPictures::settle();
    panel.take(u"status-long"_s);
    QTest::mouseClick(panel.window().windowHandle(), Qt::LeftButton, Qt::NoModifier, OnStatusText);
    PanelPictures::settle();
    panel.take(u"status-whole"_s);
    panel.pressButton(part<QMessageBox>(panel.window(), "statusTextBox"), u"OK"_s);
    panel.say(u"SK,Tuner CH1"_s);
}

} // namespace

void takeNotices(PanelPictures& panel)
{
    defineMenus(panel);
    takeLongText(panel);
    for (int i = 0; i < Pings; ++i) {
        panel.say(u"PING"_s);
        PanelPictures::settle(PingMs);
    }
    panel.waitForNotice();
    panel.take(u"unit-silent"_s);
    panel.say(u"SK,Tuner CH1"_s);
    panel.stopUnit();
    panel.waitForNotice();
    panel.take(u"connection-lost"_s);
    panel.window().paxMenuEnable(true);
    PanelPictures::settle();
    panel.take(u"connection-lost-pax"_s);
    panel.window().paxMenuEnable(false);
}
