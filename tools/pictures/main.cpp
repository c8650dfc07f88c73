// qn740-pictures: a picture of every screen of the panel, driven by the simulated unit.
#include "app/Identity.h"
#include "tools/pictures/PanelPictures.h"
#include "tools/pictures/Screens.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTemporaryFile>

#include <cstdio>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

int result(const std::vector<const PanelPictures*>& runs)
{
    int count = 0;
    bool succeeded = true;
    for (const PanelPictures* run : runs) {
        count += run->count();
        succeeded = succeeded && run->succeeded();
    }
    std::printf("%d pictures\n", count);
    return succeeded ? 0 : 1;
}

int takeMenuFile(const QString& directory, const QString& file)
{
    PanelPictures panel(directory, file);
    if (!panel.start()) {
        return 1;
    }
    takeAllMenus(panel);
    return result({&panel});
}

int takeEverything(const QString& directory)
{
    QTemporaryFile menus;
    if (!menus.open() || menus.write("SB,0,No menus\n") < 0 || !menus.flush()) {
        return 1;
    }
    PanelPictures bare(directory, menus.fileName());
    if (!bare.start()) {
        return 1;
    }
    takePaxBeforeSpectrum(bare);
    bare.stop();

    PanelPictures panel(directory, QString());
    if (!panel.start()) {
        return 1;
    }
    takeMenus(panel);
    takeSignals(panel);
    takeEnlarged(panel);
    takeSpectrum(panel);
    takeMainMenus(panel);
    takeEditors(panel);
    takeScopes(panel);
    takeStart(panel);
    takeNotices(panel);
    return result({&bare, &panel});
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
    const QString directory = parser.positionalArguments().constFirst();
    return parser.isSet(menu) ? takeMenuFile(directory, parser.value(menu))
                              : takeEverything(directory);
}
