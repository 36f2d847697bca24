#include "VelmoUI/Modules/System/SystemModule.h"

#include "VelmoUI/Modules/System/SystemPageModel.h"

namespace velmo {

NotchModule::View SystemModule::makeView(const ModuleContext &context)
{
    return {QUrl(QStringLiteral("qrc:/qt/qml/Velmo/Modules/System/SystemPage.qml")),
            std::make_unique<SystemPageModel>(context.services)};
}

} // namespace velmo
