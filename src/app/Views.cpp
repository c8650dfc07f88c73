#include "app/Views.h"

#include <QLabel>

Views::Views(QStackedLayout* stack, QObject* parent)
    : QObject(parent)
    , m_stack(stack)
{
    connect(stack, &QStackedLayout::widgetRemoved, this, &Views::removed);
}

void Views::addWaitingPage()
{
    auto* label = new QLabel(QStringLiteral("Waiting for the main unit"));
    label->setObjectName(QStringLiteral("waitingPage"));
    label->setAlignment(Qt::AlignCenter);
    label->setStyleSheet(
        QStringLiteral("background-color: black; color: #919191; font-size: 22px;"));
    m_waiting = label;
    m_stack->addWidget(label);
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
    // the stack shows whatever page comes next when the one on the screen goes
    if (m_current == Menus && menu.m_widget == nullptr && m_waiting != nullptr) {
        m_stack->setCurrentWidget(m_waiting);
    }
}
