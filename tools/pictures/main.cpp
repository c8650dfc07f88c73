// qn740-pictures: a picture of every screen of the panel, driven by the simulated unit, or of all
// that a menu file defines.
#include "app/Identity.h"
#include "sim/unit/MenuFile.h"
#include "tools/pictures/PanelPictures.h"
#include "tools/pictures/PaperHtml.h"
#include "tools/pictures/PaperPanel.h"
#include "tools/pictures/Screens.h"
#include "tools/screen/OwnScreen.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFile>
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

// Writes each picture of the paper to DIRECTORY/NAME.png and prints its path.
bool writePictures(const Paper& paper, const QDir& directory)
{
    bool written = directory.mkpath(u"."_s);
    const auto pictures = paper.pictures();
    for (const PaperPicture& picture : pictures) {
        const QString path = directory.filePath(picture.name + u".png"_s);
        const bool saved = written && picture.image.save(path);
        std::fprintf(
            saved ? stdout : stderr, saved ? "%s\n" : "cannot write %s\n", qPrintable(path));
        written = saved;
    }
    std::printf("%d pictures\n", static_cast<int>(pictures.size()));
    return written;
}

bool writePage(const Paper& paper, const QString& path, const QString& directory)
{
    const QString folder = directory.isEmpty()
        ? QString()
        : QFileInfo(path).absoluteDir().relativeFilePath(QFileInfo(directory).absoluteFilePath());
    const QByteArray page = paperHtml::page(paper, folder);
    QFile file(path);
    const bool written = file.open(QIODevice::WriteOnly) && file.write(page) == page.size();
    if (!written) {
        std::fprintf(stderr, "%s: %s\n", qPrintable(path), qPrintable(file.errorString()));
    }
    return written;
}

// Draws a menu file: into the directory, into a page, or into a page with its pictures in the
// directory. Either may be empty.
int takeMenuFile(const QString& file, const QString& page, const QString& directory)
{
    const MenuFile menus = MenuFile::load(file);
    for (const QString& error : menus.errors()) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
    }
    if (!menus.errors().isEmpty()) {
        return 1;
    }
    const Paper paper = PaperPanel().draw(menus, file);
    for (const QString& fault : paper.faults) {
        std::fprintf(stderr, "%s\n", qPrintable(fault));
    }
    const bool done = (directory.isEmpty() || writePictures(paper, QDir(directory))) &&
        (page.isEmpty() || writePage(paper, page, directory));
    return done && paper.faults.isEmpty() ? 0 : 1;
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
    takeEnlargedScopes(panel);
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
    const OwnScreen screen;
    QApplication application(argc, argv);
    identity::apply();
    identity::applyLook(application);
    QApplication::setQuitOnLastWindowClosed(false);

    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addPositionalArgument(u"DIR"_s, u"where the pictures go"_s, u"[DIR]"_s);
    const QCommandLineOption menu(u"menu"_s,
        u"every menu and every editor of FILE instead of the panel's screens"_s, u"FILE"_s);
    parser.addOption(menu);
    const QCommandLineOption html(u"html"_s,
        u"with --menu: one page of it all; the pictures are in the page, or in DIR"_s, u"PAGE"_s);
    parser.addOption(html);
    const QCommandLineOption quick(
        u"quick"_s, u"do not wait until scopes and spectra have filled"_s);
    parser.addOption(quick);
    parser.process(application);
    const QStringList directories = parser.positionalArguments();
    const bool complete = parser.isSet(html) ? parser.isSet(menu) : !directories.isEmpty();
    if (directories.size() > 1 || !complete) {
        parser.showHelp(1);
    }

    if (parser.isSet(quick)) {
        PanelPictures::setQuick();
    }
    const QString directory = directories.value(0);
    return parser.isSet(menu) ? takeMenuFile(parser.value(menu), parser.value(html), directory)
                              : takeEverything(directory);
}
