#pragma once

#include "touch/KeyButton.h"

#include <QString>

/// The "More..." key of a sub-page, which says beside its text which page this is and how many
/// there are: "2/3".
///
/// text() is "More..." alone; the page is painted. Where both have no room side by side, the page
/// stands under the text.
class MoreKey : public KeyButton
{
    Q_OBJECT

public:
    /// Height of the letters of the page, in pixels.
    static constexpr int PagePixels = 14;

    /// Makes the key of the last sub-page of a menu.
    /// \param page the sub-page of this key, counted from 1
    explicit MoreKey(int page, QWidget* parent = nullptr);

    /// Sets how many sub-pages the menu has, the page of the key by default.
    void setPageCount(int pages);

    /// \return what is painted beside the text: "2/3".
    QString pageText() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int m_page;
    int m_pages;
};
