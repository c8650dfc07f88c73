// qn740-pictures: a picture of every screen of the panel, driven by the simulated unit.
#include "app/Identity.h"
#include "tools/pictures/PanelPictures.h"
#include "tools/pictures/Screens.h"

#include <QApplication>
#include <QCommandLineParser>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

void takeDefaultMenus(PanelPictures& panel)
{
    takeMenus(panel);
    takeSignals(panel);
    takeSpectrum(panel);
    takeMainMenus(panel);
    takeEditors(panel);
    takeScopes(panel);
    takeStart(panel);
    takeNotices(panel);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    identity::apply();
    identity::applyLook(application);
    QApplication::setQuitOnLastWindowClosed(false);

    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addPositionalArgument(u"DIR"_s, u"where the pictures go"_s);
    const QCommandLineOption menu(
        u"menu"_s, u"the menus of FILE instead of the built-in ones"_s, u"FILE"_s);
    parser.addOption(menu);
    const QCommandLineOption quick(
        u"quick"_s, u"do not wait until scopes and spectra have filled"_s);
    parser.addOption(quick);
    parser.process(application);
    if (parser.positionalArguments().size() != 1) {
        parser.showHelp(1);
    }

    if (parser.isSet(quick)) {
        PanelPictures::setQuick();
    }
    PanelPictures panel(parser.positionalArguments().constFirst(), parser.value(menu));
    if (!panel.start()) {
        return 1;
    }
    if (parser.isSet(menu)) {
        takeAllMenus(panel);
    } else {
        takeDefaultMenus(panel);
    }
    std::printf("%d pictures\n", panel.count());
    return panel.succeeded() ? 0 : 1;
}
