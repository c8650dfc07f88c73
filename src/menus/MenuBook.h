#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QStackedLayout>
#include <QString>
#include <QWidget>

class Key;
class KeyBoard;

// All menus of the panel, in the order of creation, each with its page in the main window's stack.
//
// The book keeps the menus' stack numbers true: when a page leaves the stack, the numbers above it
// go down by one.
class MenuBook : public QObject
{
    Q_OBJECT

public:
    // stack: where the menus' pages go, not owned.
    explicit MenuBook(QStackedLayout* stack, QObject* parent = nullptr);
    ~MenuBook() override;

    // Out: the first menu of this name, nullptr when there is none.
    KeyBoard* find(const QString& name) const;

    // Out: the first key with this identifier in the menu; nullptr when there is none or no menu.
    static Key* findKey(const KeyBoard* menu, const QString& keyId);

    // Out: the menu of this name; a plain one of 6 by 6 cells is made when there is none.
    KeyBoard* findOrCreate(const QString& name);

    // Takes over a menu that has been built: it becomes the last of the list and gets its page in
    // the stack.
    void add(KeyBoard* menu);

    // Takes over a page that is no menu of its own; it gets its place in the stack and goes with
    // the menus.
    void addPage(QWidget* page);

    // Schedules all menus, their keys and the other pages for deletion and forgets them. They leave
    // the stack when that is carried out.
    void clear();

    QList<KeyBoard*> pages;

signals:
    // What any key of any menu sends.
    void keyboard_response_message(QString message);

private:
    void removed(int index);

    QStackedLayout* m_stack;
    QList<QPointer<QWidget>> m_otherPages;
};
