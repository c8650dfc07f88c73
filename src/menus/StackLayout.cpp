#include "menus/StackLayout.h"

StackLayout::StackLayout(QWidget* parent)
    : QStackedLayout(parent)
{
}

void StackLayout::setNextIndex()
{
    if (count() > 0) {
        setCurrentIndex((currentIndex() + 1) % count());
    }
}
