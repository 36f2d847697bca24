#pragma once

#include "VelmoUI/Modules/NotchModule.h"

namespace velmo {

/// Notes and tasks.
class NotesModule : public NotchModule {
public:
    QString id() const override { return QStringLiteral("notes"); }
    QString title() const override { return QStringLiteral("Notas"); }
    QString symbol() const override { return QStringLiteral("square.and.pencil"); }
    View makeView(const ModuleContext &context) override;
};

} // namespace velmo
