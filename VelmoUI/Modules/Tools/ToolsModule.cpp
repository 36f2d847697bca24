#include "VelmoUI/Modules/Tools/ToolsModule.h"

#include "VelmoUI/Modules/Tools/ToolsPageModel.h"

namespace velmo {

NotchModule::View ToolsModule::makeView(const ModuleContext &context)
{
    return {QUrl(QStringLiteral("qrc:/qt/qml/Velmo/Modules/Tools/ToolsPage.qml")),
            std::make_unique<ToolsPageModel>(context)};
}

} // namespace velmo
