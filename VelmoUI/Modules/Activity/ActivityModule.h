#pragma once

#include "VelmoUI/Modules/NotchModule.h"

namespace velmo {

/// What is going on and what has just happened.
class ActivityModule : public NotchModule {
public:
    QString id() const override { return QStringLiteral("activity"); }
    QString title() const override { return QStringLiteral("Atividade"); }
    QString symbol() const override { return QStringLiteral("waveform.path.ecg"); }
    View makeView(const ModuleContext &context) override;
};

} // namespace velmo
