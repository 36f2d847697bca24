#include "VelmoUI/Modules/Activity/ActivityModule.h"

#include "VelmoUI/App/AppServices.h"
#include "VelmoUI/Modules/Activity/ActivityPageModel.h"

namespace velmo {

NotchModule::View ActivityModule::makeView(const ModuleContext &context)
{
    return {QUrl(QStringLiteral("qrc:/qt/qml/Velmo/Modules/Activity/ActivityPage.qml")),
            std::make_unique<ActivityPageModel>(context.services)};
}

} // namespace velmo
