#pragma once

#include "VelmoUI/Modules/Frame/NotchModule.h"
#include "VelmoUI/Modules/System/SystemPageModel.h"

namespace velmo {

/// How the machine is doing.
class SystemModule : public NotchModule {
public:
    explicit SystemModule(const SystemSources &sources);

    QString id() const override { return QStringLiteral("system"); }
    QString title() const override { return QStringLiteral("Sistema"); }
    QString symbol() const override { return QStringLiteral("gauge.medium"); }
    std::vector<PermissionKind> permissions() const override { return {PermissionKind::bluetooth}; }
    View makeView(PanelPort &panel) override;
    std::vector<Card> cards() override;
    void start() override;

private:
    const SystemSources m_sources;
};

} // namespace velmo
