#pragma once

#include <QObject>
#include <QPointer>
#include <QStackedLayout>
#include <QWidget>

/// Which page of the window's stack is shown, and the numbers under which pages are known.
///
/// The menu area shows one of three views: a menu page, the scopes page or the spectrum page. Pages
/// come and go with the main unit's messages; a stored number follows its page: when a page leaves
/// the stack, the numbers above it go down by one. The number of a page that is itself gone keeps
/// its value, and showing it changes nothing.
class Views : public QObject
{
    Q_OBJECT

public:
    /// What the menu area shows.
    enum View {
        Menus = 0,   ///< a menu page
        Scopes = 1,  ///< the demodulators' scopes
        Spectrum = 2 ///< the spectrum page
    };

    /// A page of the stack with its index there.
    class Page
    {
    public:
        /// \return the index in the stack; -1 until there is a page.
        int index() const { return m_index; }
        /// \return the page; nullptr when it is gone or was never there.
        QWidget* widget() const { return m_widget; }

    private:
        friend class Views;
        int m_index = -1;
        QPointer<QWidget> m_widget;
    };

    /// \param stack the window's stacked layout, not owned
    explicit Views(QStackedLayout* stack, QObject* parent = nullptr);

    /// Adds the page that is shown in place of a menu page that is gone, until the next one comes.
    void addWaitingPage();

    /// Makes \a widget, which is in the stack, the page that \a page stands for.
    void set(Page Views::*page, QWidget* widget);

    /// Shows a page; one that is gone or was never there changes nothing on the screen.
    void show(Page Views::*page);

    /// Shows a menu page and remembers it as the menu page last shown; the view is Menus.
    void showMenu(QWidget* widget);

    /// Makes the view Menus. \param page the menu page to show; nullptr when it is gone, and the
    /// waiting page is shown instead
    void returnToMenus(QWidget* page);

    /// \return the view that is on the screen.
    View current() const { return m_current; }
    /// Changes the view, but not the page on the screen.
    void setCurrent(View view);

    /// \return the view that follows the current one: from the menus the scopes, then the spectrum,
    /// if there is one, then the menus.
    View next() const;
    /// Goes over to the next view and shows its page.
    void showNext();

    /// \return whether this page of the stack is on top.
    bool isShown(const QWidget* page) const
    {
        return m_stack != nullptr && m_stack->currentWidget() == page;
    }

    /// \return whether a scope or spectrum display occupies the menu area.
    bool displayActive() const { return m_current != Menus; }

    Page menu;     ///< the menu page last shown
    Page mainMenu; ///< the main menu of the name "Main"
    Page paxMenu;  ///< the PAX main menu
    Page scopes;   ///< the page of the three scopes
    Page spectrum; ///< the page of the spectral card

signals:
    /// Emitted when the view was changed, and when the one that follows it has become another.
    void changed(Views::View current, Views::View next);

private:
    void bringUp(QWidget* page);
    void removed(int index);
    void announce();

    QPointer<QStackedLayout> m_stack; // goes before this object when the window goes
    QPointer<QWidget> m_waiting;
    View m_current = Menus;
};
