#pragma once

#include "VelmoUI/Modules/NotchModule.h"

namespace velmo {

class HomeModule : public NotchModule {
public:
    QString id() const override { return QStringLiteral("home"); }
    QString title() const override { return QStringLiteral("Início"); }
    QString symbol() const override { return QStringLiteral("house.fill"); }
    std::optional<double> contentWidth(const AppServices &services) const override;
    View makeView(const ModuleContext &context) override;
};

} // namespace velmo
