#include "VelmoUI/Modules/Home/HomeModule.h"

#include "VelmoUI/Modules/Home/HomePageModel.h"

namespace velmo {

std::optional<double> HomeModule::contentWidth(const AppServices &) const
{
    return std::nullopt;
}

NotchModule::View HomeModule::makeView(const ModuleContext &context)
{
    return {QUrl(QStringLiteral("qrc:/qt/qml/Velmo/Modules/Home/HomePage.qml")),
            std::make_unique<HomePageModel>(context.services)};
}

} // namespace velmo
