#include "menus/MenuBook.h"

#include "menus/KeyBoard.h"

namespace {
constexpr int LastRow = 5;
constexpr int LastCol = 5;
} // namespace

MenuBook::MenuBook(QStackedLayout* stack, QObject* parent)
    : QObject(parent)
    , m_stack(stack)
    , m_index(pages, &KeyBoard::name)
{
    connect(stack, &QStackedLayout::widgetRemoved, this, &MenuBook::pageRemoved);
}

MenuBook::~MenuBook() = default;

KeyBoard* MenuBook::find(const QString& name) const
{
    return m_index.find(name);
}

Key* MenuBook::findKey(const KeyBoard* menu, const QString& keyId)
{
    return menu != nullptr ? menu->findKey(keyId) : nullptr;
}

Key* MenuBook::findKey(const QString& menuName, const QString& keyId) const
{
    return findKey(find(menuName), keyId);
}

KeyBoard* MenuBook::findOrCreate(const QString& name)
{
    KeyBoard* menu = find(name);
    if (menu == nullptr) {
        menu = new KeyBoard;
        menu->new_keyboard(name, LastRow, LastCol);
        add(menu);
    }
    return menu;
}

void MenuBook::add(KeyBoard* menu)
{
    menu->setParent(this);
    pages += menu;
    menu->stackIndex = m_stack->addWidget(menu->frame);
    connect(menu, &KeyBoard::keyboard_response_message, this, &MenuBook::keyboard_response_message);
}

void MenuBook::addPage(QWidget* page)
{
    m_stack->addWidget(page);
    m_otherPages += page;
}

void MenuBook::clear()
{
    for (KeyBoard* menu : std::as_const(pages)) {
        menu->deleteKeys();
        menu->deleteLater();
    }
    pages.clear();
    limits.clear();
    for (const QPointer<QWidget>& page : std::as_const(m_otherPages)) {
        if (page != nullptr) {
            page->deleteLater();
        }
    }
    m_otherPages.clear();
}

void MenuBook::pageRemoved(int index)
{
    for (KeyBoard* menu : std::as_const(pages)) {
        if (menu->stackIndex > index) {
            --menu->stackIndex;
        }
    }
}
