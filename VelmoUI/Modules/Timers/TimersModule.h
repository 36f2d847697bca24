#pragma once

#include "VelmoUI/Modules/NotchModule.h"

namespace velmo {

/// Countdowns and the pomodoro.
class TimersModule : public NotchModule {
public:
    QString id() const override { return QStringLiteral("timers"); }
    QString title() const override { return QStringLiteral("Timers"); }
    QString symbol() const override { return QStringLiteral("timer"); }
    View makeView(const ModuleContext &context) override;
};

} // namespace velmo
