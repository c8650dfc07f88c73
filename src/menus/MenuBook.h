#pragma once

#include "menus/MenuLimits.h"
#include "menus/NameIndex.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QStackedLayout>
#include <QString>
#include <QWidget>

class Key;
class KeyBoard;

/// All menus of the panel, in the order of creation, each with its page in the main window's stack.
///
/// The messages find menus and keys through this class, by name and identifier. The book keeps the
/// menus' stack numbers true: when a page leaves the stack, the numbers above it go down by one.
class MenuBook : public QObject
{
    Q_OBJECT

public:
    /// Makes a book without menus.
    /// \param stack where the menus' pages go, not owned
    explicit MenuBook(QStackedLayout* stack, QObject* parent = nullptr);
    ~MenuBook() override;

    /// \return the first menu of this name, nullptr when there is none. Case counts.
    KeyBoard* find(const QString& name) const;

    /// \return the first key with this identifier in \a menu, nullptr when there is none or no
    /// menu.
    static Key* findKey(const KeyBoard* menu, const QString& keyId);

    /// \return the first key with this identifier in the first menu of this name, nullptr when the
    ///         menu or the key does not exist.
    Key* findKey(const QString& menuName, const QString& keyId) const;

    /// \return the first menu of this name; when there is none, a new plain menu of 6 by 6 cells.
    KeyBoard* findOrCreate(const QString& name);

    /// Takes over a menu that has been built: it becomes the last of the list and gets its page in
    /// the stack.
    void add(KeyBoard* menu);

    /// Takes over a page that is not a menu itself. It becomes the last page of the stack and is
    /// deleted together with the menus.
    void addPage(QWidget* page);

    /// Schedules all menus, their keys and the other pages for deletion and forgets them at once.
    /// Their pages leave the stack when they are deleted.
    void clear();

    QList<KeyBoard*> pages;   ///< The menus, in the order of creation.
    MenuLimits limits{*this}; ///< What messages may still define.

signals:
    /// Emitted when a key of any menu sends a message, frame characters included.
    void keyboard_response_message(QString message);

private:
    void pageRemoved(int index);

    QStackedLayout* m_stack;
    mutable NameIndex<KeyBoard> m_index;
    QList<QPointer<QWidget>> m_otherPages;
};
