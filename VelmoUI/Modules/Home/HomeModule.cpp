#include "VelmoUI/Modules/Home/HomeModule.h"

#include "VelmoUI/Modules/Home/FavoritesModel.h"
#include "VelmoUI/Modules/Home/HomePageModel.h"
#include "VelmoUI/Modules/Home/HomeSettingsModel.h"

namespace velmo {

namespace {

QUrl qml(const char *name)
{
    return QUrl(QStringLiteral("qrc:/qt/qml/Velmo/Modules/Home/") + QLatin1String(name));
}

} // namespace

HomeModule::HomeModule(SettingsStore &settings, ModuleRegistry &modules, HotKeyController &hotKeys,
                       ActivityCenter &activity, Applications &applications, Scheduler &scheduler)
    : m_sources{modules, settings}, m_hotKeys(hotKeys),
      m_favorites(settings, applications, activity, scheduler)
{
}

std::optional<double> HomeModule::contentWidth() const
{
    return HomeLayout::idealWidth(m_sources.items());
}

NotchModule::View HomeModule::makeView(PanelPort &panel)
{
    return {qml("HomePage.qml"), std::make_unique<HomePageModel>(m_sources, m_hotKeys, panel)};
}

std::vector<NotchModule::Card> HomeModule::cards()
{
    return {{.card = HomeCard::favorites, .make = [this](PanelPort &panel) -> View {
                 return {qml("FavoritesCard.qml"),
                         std::make_unique<FavoritesModel>(m_favorites, panel)};
             }}};
}

std::vector<NotchModule::SettingsSection> HomeModule::settings()
{
    return {{.pane = SettingsPane::modules, .source = qml("HomeSettings.qml"), .make = [this] {
                 return std::make_unique<HomeSettingsModel>(m_sources, m_favorites);
             }}};
}

} // namespace velmo
