#pragma once

#include "app/Views.h"

#include <QStackedLayout>

class BoxMessages;
class ChoiceLists;
class DisplayLoan;
class LinkControl;
class MenuMessages;
class MenuNavigation;
class MessageBoxes;
class ResendLine;
class ScopeMessages;
class ScopesPage;
class SpectrumMessages;

/// The objects that carry out what comes to the main window's slots, made and connected with one
/// another and with the window.
///
/// The rooms do not know each other. What one of them has to say to another goes by signal, and
/// here is where the signals are connected. What a connection calls does not reach for this
/// struct, because the objects, children of the window, outlive it.
struct Rooms
{
    /// Makes and connects everything but the scopes page. No line is opened yet.
    /// \param window the parent of all objects
    explicit Rooms(QWidget* window);

    /// Makes the scopes page and opens its ports and the line for re-sent messages.
    void addScopes();

    bool hasOlderCard;                      ///< the panel was started with "-noK7150"
    QWidget* central;                       ///< the window's menu area
    QStackedLayout* stack;                  ///< the pages of the menu area
    Views* views;                           ///< which page is shown, and the pages' numbers
    MenuMessages* menus;                    ///< the menus and the messages that define them
    MenuNavigation* navigation;             ///< brings menus to the screen
    LinkControl* link;                      ///< everything that is sent, and the link mode
    BoxMessages* boxes;                     ///< the messages about message boxes
    MessageBoxes* messageBoxes;             ///< the message boxes over the panel
    ResendLine* resendLine;                 ///< the line for re-sent messages
    SpectrumMessages* spectrum;             ///< the spectrum page and its messages
    ChoiceLists* choices;                   ///< the lists of scope modes and spans
    ScopesPage* scopes = nullptr;           ///< the page of the three scopes
    ScopeMessages* scopeMessages = nullptr; ///< the messages about the scopes
    DisplayLoan* loan = nullptr;            ///< lends displays to the PAX main menu

private:
    void addStartPages();
    void connectSpectrum();
    void connectScopeMessages();
    void connectLoan();

    QWidget* m_window;
};
