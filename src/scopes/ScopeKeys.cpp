#include "scopes/ScopeKeys.h"

#include "touch/KeyStyle.h"
#include "touch/TextButton.h"

#include <QVBoxLayout>

namespace {

constexpr int Spacing = 3;

using Persistence = DensityImage::Persistence;

} // namespace

ScopeKeys::ScopeKeys(QWidget* parent)
    : QWidget(parent)
{
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Spacing);
    addKey(
        QStringLiteral("Fitted range"), "fittedRangeKey",
        [](Scope& scope) { scope.setFixedRange(false); },
        [](const Scope& scope) { return !scope.fixedRange(); }, true);
    addKey(
        QStringLiteral("Fixed range"), "fixedRangeKey",
        [](Scope& scope) { scope.setFixedRange(true); },
        [](const Scope& scope) { return scope.fixedRange(); }, true);
    addKey(
        QStringLiteral("Freeze"), "freezeKey",
        [](Scope& scope) { scope.setFrozen(!scope.isFrozen()); },
        [](const Scope& scope) { return scope.isFrozen(); }, false);
    addPersistenceKeys();
    addKey(
        QStringLiteral("Clear"), "clearKey", [](Scope& scope) { scope.clearPlots(); }, {}, false);
    refresh();
}

void ScopeKeys::addPersistenceKeys()
{
    const auto add = [this](const QString& text, const char* name, Persistence persistence) {
        addKey(
            text, name, [persistence](Scope& scope) { scope.setPersistence(persistence); },
            [persistence](const Scope& scope) { return scope.persistence() == persistence; }, true);
    };
    add(QStringLiteral("Persistence short"), "shortPersistenceKey", Persistence::Short);
    add(QStringLiteral("Persistence long"), "longPersistenceKey", Persistence::Long);
    add(QStringLiteral("Persistence infinite"), "infinitePersistenceKey", Persistence::Infinite);
}

TextButton* ScopeKeys::addKey(const QString& text, const char* name,
    const std::function<void(Scope&)>& press, const std::function<bool(const Scope&)>& isOn,
    bool needsRange)
{
    auto* button = new TextButton(text, this, TextButton::DarkWhenDisabled);
    button->setObjectName(QLatin1String(name));
    button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Expanding);
    connect(button, &QPushButton::clicked, this, [this, press] {
        if (m_scope != nullptr) {
            press(*m_scope);
        }
    });
    layout()->addWidget(button);
    m_keys.push_back({button, isOn, needsRange});
    return button;
}

void ScopeKeys::setScope(Scope* scope)
{
    if (m_scope != nullptr) {
        m_scope->disconnect(this);
    }
    m_scope = scope;
    if (m_scope != nullptr) {
        connect(m_scope, &Scope::lookChanged, this, &ScopeKeys::refresh);
    }
    refresh();
}

void ScopeKeys::showKey(const Key& key) const
{
    const bool usable = m_scope != nullptr && (!key.needsRange || m_scope->hasRange());
    const bool on = usable && key.isOn && key.isOn(*m_scope);
    // Setting a style sheet costs more than comparing it.
    const QString sheet = on ? keyStyle::on() : keyStyle::enabled(false);
    if (key.button->styleSheet() != sheet) {
        key.button->setStyleSheet(sheet);
    }
    keyMarks::Marks marks;
    if (key.isOn) {
        marks.lamp = on ? keyMarks::Lamp::On : keyMarks::Lamp::Off;
    }
    key.button->setMarks(marks);
    key.button->setEnabled(usable);
}

void ScopeKeys::refresh() const
{
    for (const Key& key : m_keys) {
        showKey(key);
    }
}
