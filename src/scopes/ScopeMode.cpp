#include "scopes/ScopeMode.h"

#include "scopes/Scope.h"

QString ScopeMode::choices()
{
    return QStringLiteral("0 Eye Pattern:1 Constellation:2 Off:");
}

std::optional<ScopeMode> ScopeMode::ofChoice(int choice)
{
    switch (choice) {
    case 0:
        return ofMessage(2);
    case 1:
        return ofMessage(1);
    case 2:
        return ofMessage(0);
    default:
        return std::nullopt;
    }
}

std::optional<ScopeMode> ScopeMode::ofMessage(int mode)
{
    switch (mode) {
    case 0:
        return ScopeMode{QStringLiteral("Demod %1 Off"), Scope::EyePattern, 0, 0};
    case 1:
        return ScopeMode{QStringLiteral("Demod %1 Constellation"), Scope::Constellation, 2, 1};
    case 2:
        return ScopeMode{QStringLiteral("Demod %1 Eye Pattern"), Scope::EyePattern, 1, 2};
    case 3:
        return ScopeMode{QStringLiteral("Demod %1 SDI"), Scope::Sdi, 3, 3};
    default:
        return std::nullopt;
    }
}
