#include "VelmoUI/Modules/Timers/TimersModule.h"

#include "VelmoUI/App/AppServices.h"
#include "VelmoUI/Modules/Timers/TimersPageModel.h"

namespace velmo {

NotchModule::View TimersModule::makeView(const ModuleContext &context)
{
    return {QUrl(QStringLiteral("qrc:/qt/qml/Velmo/Modules/Timers/TimersPage.qml")),
            std::make_unique<TimersPageModel>(context.services)};
}

} // namespace velmo
