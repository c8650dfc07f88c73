#pragma once

#include "app/Dispatcher.h"
#include "wire/Commands.h"

#include <utility>

/// \return the table that the dispatcher works by: each command word with the slot that carries out
/// its messages. \param window has the slots and has to outlive the table
/// \tparam Window MainWindow; a parameter, so that the main window may include this header
template <class Window>
QList<Dispatcher::Entry> slotTable(Window& window)
{
    namespace word = wire::word;
    using Slot = void (Window::*)(const QStringList& fields);
    static constexpr std::pair<QLatin1String, Slot> Rows[]{
        {word::AK, &Window::process_AK_key},
        {word::SK, &Window::process_SK_key},
        {word::CK, &Window::process_CK_key},
        {word::CV, &Window::process_CV_key},
        // Quirk: "CM" leads to the handler of the main menus; process_CM_key has no word. See
        // "Quirks" in docs/architecture.md.
        {word::CM, &Window::process_MM_key},
        {word::SB, &Window::process_SB_key},
        {word::DB, &Window::process_DB_key},
        {word::Ping, &Window::process_PING},
        {word::Slave, &Window::process_slave},
        {word::SQ, &Window::process_SQ},
        {word::SM, &Window::process_SM},
        {word::Ver, &Window::process_VER},
        {word::SH, &Window::process_SH},
        {word::MS, &Window::process_MM_key_PAX},
        {word::Pax, &Window::process_PAX},
        {word::LC, &Window::process_LC},
        {word::EI, &Window::process_EI_key},
        {word::SP, &Window::process_SP_key},
        {word::IK, &Window::process_IK_key},
        {word::SF, &Window::process_SF_key},
        {word::HM, &Window::process_HM_key},
        {word::ST, &Window::process_ST},
        {word::PM, &Window::process_PM},
        {word::Clear, &Window::process_CLEAR},
    };
    QList<Dispatcher::Entry> table;
    for (const auto& row : Rows) {
        table.append({row.first,
            [&window, slot = row.second](const QStringList& fields) { (window.*slot)(fields); }});
    }
    return table;
}
