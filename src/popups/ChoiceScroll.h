#pragma once

#include "touch/FingerScroll.h"

#include <QPointer>

class QGridLayout;

/// The choices of a list that has more rows than fit, in rows of equal height; a finger scrolls
/// them.
class ChoiceScroll : public FingerScroll
{
    Q_OBJECT

public:
    /// Makes empty cells.
    /// \param rows      of all choices
    /// \param shownRows how many of them are visible at a time
    /// \param columns   of the grid
    /// \param spacing   between the cells and right of the last column, in pixels
    ChoiceScroll(int rows, int shownRows, int columns, int spacing);

    /// \return where the choices go.
    QGridLayout* cells() const { return m_cells; }

    /// Scrolls so that a button is in the middle when the list is shown; without a call the list
    /// begins at its start.
    void setFirstShown(QWidget* button);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void scrollToFirstShown();

    int m_rows;
    int m_shownRows;
    QGridLayout* m_cells;
    QPointer<QWidget> m_firstShown;
};
