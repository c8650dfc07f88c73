#pragma once

#include <QStackedLayout>

/// The pages of the menu area, of which one is shown.
///
/// The screen decides on the size of the window, never the pages: a full page of keys asks for more
/// than there is and is squeezed. So no page is asked for its size. To answer, each would have to
/// lay out all that it holds and to load the fonts of it, at the start and whenever a page comes or
/// changes, shown or not.
class PageStack : public QStackedLayout
{
    Q_OBJECT

public:
    using QStackedLayout::QStackedLayout;

    /// \reimp
    QSize sizeHint() const override { return {0, 0}; }
    /// \reimp
    QSize minimumSize() const override { return {0, 0}; }
    /// \reimp
    bool hasHeightForWidth() const override { return false; }
};
