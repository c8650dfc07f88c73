#pragma once

#include "app/ChoiceLists.h"
#include "app/MenuNavigation.h"
#include "app/Rooms.h"
#include "link/BoxMessages.h"
#include "link/LinkControl.h"
#include "link/MessageBoxes.h"
#include "link/ResendLine.h"
#include "link/keySerial.h"
#include "menus/MainMenus.h"
#include "menus/MenuMessages.h"
#include "scopes/ScopeMessages.h"
#include "scopes/ScopesPage.h"
#include "spectrum/SpectrumMessages.h"

#include <QPushButton>

#include <array>

/// Connects the rooms to the window's slots, but for the scopes.
/// \tparam Window MainWindow; a parameter, so that the main window may include this header
template <class Window>
void connectRooms(const Rooms& rooms, Window& window)
{
    QObject::connect(rooms.link->serial(), &keySerial::valid_mess_in, &window,
        &Window::process_mess, Qt::DirectConnection);
    QObject::connect(
        &rooms.menus->book, &MenuBook::keyboard_response_message, &window, &Window::send_mess);
    QObject::connect(rooms.navigation, &MenuNavigation::response, &window, &Window::send_mess);
    QObject::connect(rooms.spectrum, &SpectrumMessages::response, &window, &Window::send_mess);
    QObject::connect(rooms.resendLine, &ResendLine::received, &window, &Window::send_scope_mess);
    QObject::connect(rooms.boxes, &BoxMessages::boxWanted, &window, &Window::main_messagebox);
    QObject::connect(rooms.boxes, &BoxMessages::closeWanted, &window, &Window::killbox);
    QObject::connect(&window, &Window::killbox, rooms.messageBoxes, &MessageBoxes::closeAll);
    QObject::connect(
        &rooms.navigation->mainMenus(), &MainMenus::spanClicked, &window, &Window::spanClicked);
    QObject::connect(
        rooms.spectrum, &SpectrumMessages::lineColorSet, &window, &Window::setScopeLineColor);
    QObject::connect(
        rooms.choices, &ChoiceLists::scopeModeChosen, &window, &Window::applyScopeChoice);
}

/// Connects the scopes page and its messages to the window's slots, each demodulator to its own.
template <class Window>
void connectScopes(const Rooms& rooms, Window& window)
{
    constexpr std::array EyeSlots{&Window::eye_1_msg, &Window::eye_2_msg, &Window::eye_3_msg};
    constexpr std::array SdiSlots{&Window::sdi_1_msg, &Window::sdi_2_msg, &Window::sdi_3_msg};
    constexpr std::array ModeSlots{
        &Window::togglePlotType_ch1, &Window::togglePlotType_ch2, &Window::togglePlotType_comb};
    for (std::size_t i = 0; i < EyeSlots.size(); ++i) {
        const int demodulator = static_cast<int>(i) + 1;
        Scope* const scope = rooms.scopes->scope(demodulator);
        QObject::connect(scope, &Scope::rcv_eye_msg, &window, EyeSlots.at(i));
        QObject::connect(scope, &Scope::rcv_sdi_msg, &window, SdiSlots.at(i));
        QObject::connect(
            rooms.scopes->modeButton(demodulator), &QPushButton::clicked, &window, ModeSlots.at(i));
    }
    QObject::connect(rooms.scopeMessages, &ScopeMessages::response, &window, &Window::send_mess);
}
