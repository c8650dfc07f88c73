#include "app/Identity.h"

#include <QApplication>
#include <QFont>
#include <QPixmapCache>
#include <QStyle>
#include <QStyleFactory>

namespace {
constexpr int FontPixels = 13;
} // namespace

namespace identity {

QString version()
{
    return QStringLiteral("1.1.6.4");
}

void apply()
{
    QCoreApplication::setApplicationVersion(version());
    QCoreApplication::setOrganizationName(QStringLiteral("TORVA"));
    QCoreApplication::setOrganizationDomain(QStringLiteral("torva.example"));
    QCoreApplication::setApplicationName(QStringLiteral("QN740-Keyboard"));
}

void applyLook(QApplication& application)
{
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(FontPixels);
    QApplication::setFont(font);
    application.setPalette(QApplication::style()->standardPalette());
    // Every painting of a button that a style sheet colours makes a new cache entry, whose name the
    // cache keeps for good: about 260 bytes per painting, from power-on to power-off.
    QPixmapCache::setCacheLimit(0);
}

} // namespace identity
