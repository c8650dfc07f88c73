#pragma once

#include <QStackedLayout>

/// The sub-pages of a plain menu, of which one is shown at a time.
class StackLayout : public QStackedLayout
{
    Q_OBJECT

public:
    /// Makes the layout of \a parent, without pages.
    explicit StackLayout(QWidget* parent = nullptr);

public slots:
    /// Shows the next page, and after the last one the first. Does nothing without pages.
    void setNextIndex();
};
