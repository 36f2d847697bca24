#pragma once

#include "VelmoUI/Modules/NotchModule.h"

#include <QtQml/qqmlregistration.h>

namespace velmo {

/// The page of one panel.
class ShelfPageModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by its module")

public:
    explicit ShelfPageModel(const ModuleContext &context);

private:
    const ModuleContext m_context;
};

} // namespace velmo
