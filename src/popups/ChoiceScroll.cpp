#include "popups/ChoiceScroll.h"

#include <QGridLayout>
#include <QScrollBar>

ChoiceScroll::ChoiceScroll(int rows, int shownRows, int columns, int spacing)
    : m_rows(rows)
    , m_shownRows(shownRows)
    , m_cells(nullptr)
{
    auto* contents = new QWidget;
    m_cells = new QGridLayout(contents);
    m_cells->setContentsMargins(0, 0, spacing, 0);
    m_cells->setSpacing(spacing);
    for (int column = 0; column < columns; ++column) {
        m_cells->setColumnStretch(column, 1);
    }
    for (int row = 0; row < rows; ++row) {
        m_cells->setRowStretch(row, 1);
    }
    // A row without any widget would get no height.
    m_cells->addWidget(new QWidget, rows - 1, 0);
    setContents(contents);
    contents->setObjectName(QStringLiteral("scrolledChoices"));
    setStyleSheet(styleSheet() + QStringLiteral("#scrolledChoices {border: none;}"));
}

void ChoiceScroll::setFirstShown(QWidget* button)
{
    m_firstShown = button;
}

// The rows are as high as those beside which "Cancel" stands.
void ChoiceScroll::resizeEvent(QResizeEvent* event)
{
    FingerScroll::resizeEvent(event);
    const int gap = m_cells->spacing();
    const int shown = viewport()->height() + gap;
    widget()->setFixedSize(viewport()->width(), shown * m_rows / m_shownRows - gap);
    verticalScrollBar()->setSingleStep(shown / m_shownRows);
    scrollToFirstShown();
}

void ChoiceScroll::showEvent(QShowEvent* event)
{
    FingerScroll::showEvent(event);
    scrollToFirstShown();
}

void ChoiceScroll::scrollToFirstShown()
{
    // Places are known only when the choices are shown.
    if (m_firstShown != nullptr && isVisible()) {
        const int middle = m_firstShown->geometry().center().y();
        verticalScrollBar()->setValue(middle - viewport()->height() / 2);
    }
}
