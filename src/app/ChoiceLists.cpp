#include "app/ChoiceLists.h"

#include "popups/PopUpKeyBoard.h"

#include <QPointer>

namespace {

constexpr int ModeRows = 3;
constexpr int ModeColumns = 3;
constexpr int SpanRows = 3;
constexpr int SpanColumns = 4;

} // namespace

void ChoiceLists::askScopeMode(int demodulator, const QString& choices, const QString& present)
{
    const QPointer<ChoiceLists> self(this);
    PopUpKeyBoard list;
    list.setNote(QStringLiteral("Demod %1").arg(demodulator));
    list.setPresent({present, std::nullopt});
    const QString choice =
        list.new_pop_keyboard(choices, QStringLiteral("Scope Mode"), ModeRows, ModeColumns, false);
    if (self != nullptr) {
        emit scopeModeChosen(demodulator, choice);
    }
}

void ChoiceLists::askSpan(const QString& choices, std::optional<int> present)
{
    const QPointer<ChoiceLists> self(this);
    PopUpKeyBoard list;
    if (present) {
        list.setPresent({QString(), *present});
    }
    const QString choice =
        list.new_pop_keyboard(choices, QStringLiteral("Span"), SpanRows, SpanColumns, false);
    if (self != nullptr) {
        emit spanChosen(choice);
    }
}
