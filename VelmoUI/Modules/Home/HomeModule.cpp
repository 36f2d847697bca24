#include "VelmoUI/Modules/Home/HomeModule.h"

#include "VelmoUI/App/AppServices.h"
#include "VelmoUI/Modules/Home/HomePageModel.h"
#include "VelmoUI/Modules/Home/HomeView.h"

namespace velmo {

std::optional<double> HomeModule::contentWidth(const AppServices &services) const
{
    return HomeLayout::idealWidth(HomeView::cards(services),
                                  !services.settings.settings().hasCompletedOnboarding);
}

NotchModule::View HomeModule::makeView(const ModuleContext &context)
{
    return {QUrl(QStringLiteral("qrc:/qt/qml/Velmo/Modules/Home/HomePage.qml")),
            std::make_unique<HomePageModel>(context)};
}

} // namespace velmo
