#pragma once

#include <QObject>
#include <QPointer>
#include <QStackedLayout>
#include <QWidget>

// Which page of the window's stack is shown, and the numbers under which pages are known.
//
// The menu area shows one of three views: a menu page, the scopes page or the spectrum page. Pages
// come and go with the main unit's messages; a stored number follows its page: when a page leaves
// the stack, the numbers above it go down by one. The number of a page that is itself gone keeps
// its value, and showing it changes nothing.
class Views : public QObject
{
    Q_OBJECT

public:
    enum View { Menus = 0, Scopes = 1, Spectrum = 2 };

    // A page of the stack with its index there; -1 until there is one.
    class Page
    {
    public:
        int index() const { return m_index; }
        QWidget* widget() const { return m_widget; }

    private:
        friend class Views;
        int m_index = -1;
        QPointer<QWidget> m_widget;
    };

    // stack: the window's stacked layout, not owned.
    explicit Views(QStackedLayout* stack, QObject* parent = nullptr);

    // Adds the page that is shown in place of a menu page that is gone, until the next one comes.
    void addWaitingPage();

    // Makes `widget`, which is in the stack, the page that `page` stands for.
    void set(Page Views::*page, QWidget* widget);

    // Shows a page; one that is gone or was never there changes nothing on the screen.
    void show(Page Views::*page);

    // Shows a menu page and remembers it as the menu page last shown; the view is Menus.
    void showMenu(QWidget* widget);

    View current() const { return m_current; }
    void setCurrent(View view) { m_current = view; }

    // Whether a scope or spectrum display occupies the menu area.
    bool displayActive() const { return m_current != Menus; }

    Page menu;     // the menu page last shown
    Page mainMenu; // "Main"
    Page paxMenu;
    Page scopes;
    Page spectrum;

private:
    void removed(int index);

    QStackedLayout* m_stack;
    QPointer<QWidget> m_waiting;
    View m_current = Menus;
};
