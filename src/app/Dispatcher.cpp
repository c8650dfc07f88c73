#include "app/Dispatcher.h"

#include "app/MainWindow.h"
#include "wire/Commands.h"
#include "wire/Log.h"
#include "wire/Message.h"

#include <array>

namespace {

// A command word and the slot that carries it out.
struct Entry
{
    QLatin1String word;
    void (MainWindow::*slot)(const QStringList& fields);
};

namespace word = wire::word;

constexpr std::array<Entry, 24> Table{{
    {word::AK, &MainWindow::process_AK_key},
    {word::SK, &MainWindow::process_SK_key},
    {word::CK, &MainWindow::process_CK_key},
    {word::CV, &MainWindow::process_CV_key},
    // Quirk: "CM" leads to the handler of the main menus; process_CM_key has no word. See "Quirks"
    // in docs/architecture.md.
    {word::CM, &MainWindow::process_MM_key},
    {word::SB, &MainWindow::process_SB_key},
    {word::DB, &MainWindow::process_DB_key},
    {word::Ping, &MainWindow::process_PING},
    {word::Slave, &MainWindow::process_slave},
    {word::SQ, &MainWindow::process_SQ},
    {word::SM, &MainWindow::process_SM},
    {word::Ver, &MainWindow::process_VER},
    {word::SH, &MainWindow::process_SH},
    {word::MS, &MainWindow::process_MM_key_PAX},
    {word::Pax, &MainWindow::process_PAX},
    {word::LC, &MainWindow::process_LC},
    {word::EI, &MainWindow::process_EI_key},
    {word::SP, &MainWindow::process_SP_key},
    {word::IK, &MainWindow::process_IK_key},
    {word::SF, &MainWindow::process_SF_key},
    {word::HM, &MainWindow::process_HM_key},
    {word::ST, &MainWindow::process_ST},
    {word::PM, &MainWindow::process_PM},
    {word::Clear, &MainWindow::process_CLEAR},
}};

const QLoggingCategory& categoryOf(wire::Room room)
{
    switch (room) {
    case wire::Room::Link:
        return logLink();
    case wire::Room::Menus:
        return logMenus();
    case wire::Room::Scopes:
        return logScopes();
    case wire::Room::Spectrum:
        return logSpectrum();
    }
    return logLink();
}

// Logs, at debug level, what is wrong with a message, as far as the table of command words tells;
// the slots log the rest.
void logFault(const QString& word, const QStringList& fields)
{
    const wire::Command* command = wire::findCommand(wire::toPanel(), word);
    const QLoggingCategory& category =
        categoryOf(command != nullptr ? command->room : wire::Room::Link);
    if (!category.isDebugEnabled()) {
        return;
    }
    const QString reason = wire::whyIgnored(word, fields);
    if (!reason.isEmpty()) {
        wire::logIgnored(category, reason);
    }
}

} // namespace

Dispatcher::Dispatcher(MainWindow& window)
    : m_window(window)
{
}

bool Dispatcher::dispatch(const QString& message) const
{
    QStringList fields = wire::fields(message);
    const QString word = fields.takeFirst();
    logFault(word, fields);
    for (const Entry& entry : Table) {
        if (word == entry.word) {
            (m_window.*entry.slot)(fields);
            return true;
        }
    }
    return false;
}

QStringList Dispatcher::words()
{
    QStringList words;
    for (const Entry& entry : Table) {
        words += entry.word;
    }
    return words;
}
