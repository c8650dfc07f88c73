#include "app/Dispatcher.h"

#include "wire/Commands.h"
#include "wire/Limits.h"
#include "wire/Log.h"
#include "wire/Message.h"

#include <utility>

namespace {

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

bool logsAnything()
{
    return wire::logsIgnored(logLink()) || wire::logsIgnored(logMenus()) ||
        wire::logsIgnored(logScopes()) || wire::logsIgnored(logSpectrum());
}

// Logs, at debug level, what is wrong with a message, as far as the table of command words shows;
// the slots log the rest.
void logFault(const QString& word, const QStringList& fields)
{
    if (!logsAnything()) {
        return;
    }
    const wire::Command* command = wire::findCommand(wire::toPanel(), word);
    const QLoggingCategory& category =
        categoryOf(command != nullptr ? command->room : wire::Room::Link);
    if (!wire::logsIgnored(category)) {
        return;
    }
    const QString reason = wire::whyIgnored(word, fields);
    if (!reason.isEmpty()) {
        wire::logIgnored(category, reason);
    }
}

} // namespace

Dispatcher::Dispatcher(QList<Entry> table)
    : m_table(std::move(table))
    , m_tooManyFields(
          &logLink, QStringLiteral("a message has %1 fields or more").arg(wire::MaxFields))
{
}

bool Dispatcher::dispatch(const QString& message) const
{
    QStringList fields = wire::fields(message);
    if (fields.size() >= wire::MaxFields) {
        m_tooManyFields.add();
    }
    const QString word = fields.takeFirst();
    logFault(word, fields);
    for (const Entry& entry : m_table) {
        if (word == entry.word) {
            entry.handler(fields);
            return true;
        }
    }
    return false;
}

QStringList Dispatcher::words() const
{
    QStringList words;
    for (const Entry& entry : m_table) {
        words += entry.word;
    }
    return words;
}
