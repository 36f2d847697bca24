#pragma once

#include "VelmoUI/Modules/NotchModule.h"

namespace velmo {

class ClipboardModule : public NotchModule {
public:
    QString id() const override { return QStringLiteral("clipboard"); }
    QString title() const override { return QStringLiteral("Clipboard"); }
    QString symbol() const override { return QStringLiteral("doc.on.clipboard"); }
    View makeView(const ModuleContext &context) override;
};

} // namespace velmo
