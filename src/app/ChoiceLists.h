#pragma once

#include <QObject>
#include <QString>

#include <optional>

/// The lists in which the operator chooses a scope mode or a span.
///
/// The rooms of the scopes and of the spectrum do not know the pop-ups: they ask by a signal, the
/// main window connects it to one of these slots, and connects the answer back. A slot returns when
/// the list is closed. The panel may be gone by then; nothing is answered in that case.
class ChoiceLists : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Opens a list and answers by the signal of the same kind. \param choices items as "value
    /// text", separated by ":"
    ///@{
    /// \param present text or value of the item that is in effect now, if it is known
    void askScopeMode(int demodulator, const QString& choices, const QString& present = {});
    void askSpan(const QString& choices, std::optional<int> present = std::nullopt);
    ///@}

signals:
    /// Emitted when the list was closed. \param choice the value of the item; empty when the
    /// operator has cancelled
    ///@{
    void scopeModeChosen(int demodulator, const QString& choice);
    void spanChosen(const QString& choice);
    ///@}
};
