#pragma once

#include "VelmoUI/Modules/NotchModule.h"

namespace velmo {

/// How the machine is doing.
class SystemModule : public NotchModule {
public:
    QString id() const override { return QStringLiteral("system"); }
    QString title() const override { return QStringLiteral("Sistema"); }
    QString symbol() const override { return QStringLiteral("gauge.medium"); }
    std::vector<PermissionKind> permissions() const override { return {PermissionKind::bluetooth}; }
    View makeView(const ModuleContext &context) override;
};

} // namespace velmo
