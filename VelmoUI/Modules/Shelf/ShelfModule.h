#pragma once

#include "VelmoUI/Modules/NotchModule.h"

namespace velmo {

class ShelfModule : public NotchModule {
public:
    QString id() const override { return QStringLiteral("shelf"); }
    QString title() const override { return QStringLiteral("Prateleira"); }
    QString symbol() const override { return QStringLiteral("tray.full"); }
    View makeView(const ModuleContext &context) override;
};

} // namespace velmo
