#pragma once

#include "scopes/Scope.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <vector>

class TextButton;

/// The column of keys beside an enlarged scope: range, freeze, persistence, clear.
///
/// A key that stands for something that is on is green and its lamp is lit. Keys for what the
/// scope's present plot does not have cannot be pressed.
class ScopeKeys : public QWidget
{
    Q_OBJECT

public:
    /// Creates the keys; they do nothing until there is a scope.
    explicit ScopeKeys(QWidget* parent = nullptr);

    /// Sets the scope that the keys change and whose state they show; nullptr for none.
    void setScope(Scope* scope);

private:
    struct Key
    {
        TextButton* button;
        std::function<bool(const Scope&)> isOn; // none: the key has no lamp
        bool needsRange;                        // of no use for a plot without one
    };

    TextButton* addKey(const QString& text, const char* name,
        const std::function<void(Scope&)>& press, const std::function<bool(const Scope&)>& isOn,
        bool needsRange);
    void addPersistenceKeys();
    void showKey(const Key& key) const;
    void refresh() const;

    QPointer<Scope> m_scope;
    std::vector<Key> m_keys;
};
