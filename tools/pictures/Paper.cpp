#include "tools/pictures/Paper.h"

QList<PaperPicture> Paper::pictures() const
{
    QList<PaperPicture> all;
    for (const PaperMenu& menu : menus) {
        all += menu.pages;
        for (const PaperKey& key : menu.keys) {
            all += key.editor;
        }
    }
    for (const PaperKey& key : immediate) {
        all += key.editor;
    }
    return all + boxes;
}
