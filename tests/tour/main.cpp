// Walks through the panel's screens against the simulated unit and leaves a picture of each.
#include "app/Identity.h"
#include "tour/Tour.h"

#include <QApplication>
#include <QCommandLineParser>

#include <cstdio>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    identity::apply();
    identity::applyLook(application);
    QApplication::setQuitOnLastWindowClosed(false);

    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addPositionalArgument("DIR", "where the pictures go");
    const QCommandLineOption menu("menu", "the menus of FILE instead of the built-in ones", "FILE");
    parser.addOption(menu);
    const QCommandLineOption quick("quick", "do not wait until scopes and spectra have filled");
    parser.addOption(quick);
    parser.process(application);
    if (parser.positionalArguments().size() != 1) {
        parser.showHelp(1);
    }

    if (parser.isSet(quick)) {
        Tour::hurry();
    }
    Tour tour(parser.positionalArguments().constFirst(), parser.value(menu));
    if (!tour.start()) {
        return 1;
    }
    if (parser.isSet(menu)) {
        visitAllMenus(tour);
    } else {
        visitMenus(tour);
        visitSignals(tour);
        visitSpectrum(tour);
        visitMainMenus(tour);
        visitEditors(tour);
        visitScopes(tour);
        visitStart(tour);
    }
    std::printf("%d pictures\n", tour.pictures());
    return tour.succeeded() ? 0 : 1;
}
