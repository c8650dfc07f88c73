#pragma once

#include <QStackedLayout>

// The sub-pages of a menu, of which one is shown at a time.
class StackLayout : public QStackedLayout
{
    Q_OBJECT

public:
    explicit StackLayout(QWidget* parent = nullptr);

public slots:
    // Shows the next page, after the last one the first. Without pages: nothing.
    void setNextIndex();
};
