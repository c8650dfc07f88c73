#include "app/Views.h"

Views::Views(QStackedLayout* stack, QObject* parent)
    : QObject(parent)
    , m_stack(stack)
{
    connect(stack, &QStackedLayout::widgetRemoved, this, &Views::removed);
}

void Views::set(Page Views::*page, QWidget* widget)
{
    (this->*page).m_widget = widget;
    (this->*page).m_index = m_stack->indexOf(widget);
}

void Views::show(Page Views::*page)
{
    if (QWidget* widget = (this->*page).m_widget) {
        m_stack->setCurrentWidget(widget);
    }
}

void Views::showMenu(QWidget* widget)
{
    set(&Views::menu, widget);
    m_current = Menus;
    show(&Views::menu);
}

void Views::removed(int index)
{
    for (Page* page : {&menu, &mainMenu, &paxMenu, &scopes, &spectrum}) {
        const bool there = page->m_widget != nullptr && m_stack->indexOf(page->m_widget) >= 0;
        if (there && page->m_index > index) {
            --page->m_index;
        }
    }
}
