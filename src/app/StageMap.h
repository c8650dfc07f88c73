#pragma once

#include <QPointF>
#include <QRect>
#include <QSize>
#include <QTransform>

/// Where the panel's pixels are on a screen on which it stands turned and in the middle.
///
/// All lengths are in the screen's own pixels. The panel's point (0, 0) is its top left corner as
/// the operator sees it. A panel that is larger than the screen begins at the top left.
class StageMap
{
public:
    StageMap() = default;
    /// \param screen   size of the screen, as it is mounted
    /// \param panel    size of the panel, scaled and not turned
    /// \param rotation by how many degrees the panel is turned clockwise: 0, 90, 180 or 270
    StageMap(const QSize& screen, const QSize& panel, int rotation);

    /// \return what turns a picture of the panel and puts it in its place.
    const QTransform& toScreen() const { return m_toScreen; }
    /// \return the pixels of the screen that show these pixels of the panel.
    QRect toScreen(const QRect& panelRect) const { return m_toScreen.mapRect(panelRect); }
    /// \return the panel's point at a pixel of the screen; whole pixels stay whole.
    QPointF toPanel(const QPointF& screenPixel) const;

private:
    QTransform m_toScreen;
};
