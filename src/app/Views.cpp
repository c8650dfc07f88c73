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
    (this->*page).m_index = m_stack != nullptr ? m_stack->indexOf(widget) : -1;
    if (page == &Views::spectrum) {
        announce();
    }
}

void Views::bringUp(QWidget* page)
{
    if (m_stack != nullptr) {
        m_stack->setCurrentWidget(page);
    }
}

void Views::show(Page Views::*page)
{
    if (QWidget* widget = (this->*page).m_widget) {
        bringUp(widget);
    }
}

void Views::showMenu(QWidget* widget)
{
    set(&Views::menu, widget);
    setCurrent(Menus);
    show(&Views::menu);
}

void Views::returnToMenus(QWidget* page)
{
    if (page != nullptr) {
        showMenu(page);
        return;
    }
    setCurrent(Menus);
    if (m_waiting != nullptr) {
        bringUp(m_waiting);
    }
}

void Views::setCurrent(View view)
{
    m_current = view;
    announce();
}

void Views::announce()
{
    emit changed(m_current, next());
}

Views::View Views::next() const
{
    if (m_current == Menus) {
        return Scopes;
    }
    return m_current == Scopes && spectrum.m_widget != nullptr ? Spectrum : Menus;
}

void Views::showNext()
{
    const View view = next();
    if (view != Menus) {
        setCurrent(view);
    }
    switch (view) {
    case Menus:
        return returnToMenus(menu.m_widget);
    case Scopes:
        return show(&Views::scopes);
    case Spectrum:
        return show(&Views::spectrum);
    }
}

void Views::removed(int index)
{
    for (Page* page : {&menu, &mainMenu, &paxMenu, &scopes, &spectrum}) {
        const bool there = page->m_widget != nullptr && m_stack->indexOf(page->m_widget) >= 0;
        if (there && page->m_index > index) {
            --page->m_index;
        }
    }
    // When the page on the screen goes, the stack shows whatever page comes next.
    if (m_current == Menus && menu.m_widget == nullptr && m_waiting != nullptr) {
        bringUp(m_waiting);
    }
}
