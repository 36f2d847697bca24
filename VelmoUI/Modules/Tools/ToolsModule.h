#pragma once

#include "VelmoUI/Modules/NotchModule.h"

namespace velmo {

/// What can be done with files.
class ToolsModule : public NotchModule {
public:
    QString id() const override { return QStringLiteral("tools"); }
    QString title() const override { return QStringLiteral("Ferramentas"); }
    QString symbol() const override { return QStringLiteral("wrench.and.screwdriver"); }
    View makeView(const ModuleContext &context) override;
};

} // namespace velmo
