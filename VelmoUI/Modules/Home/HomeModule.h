#pragma once

#include "VelmoUI/Modules/Frame/NotchModule.h"
#include "VelmoUI/Modules/Home/FavoriteApps.h"
#include "VelmoUI/Modules/Home/HomeCardSources.h"

namespace velmo {

/// The cards of all modules side by side, and the user's favourite applications.
class HomeModule : public NotchModule {
public:
    /// All of them outlive this object.
    HomeModule(SettingsStore &settings, ModuleRegistry &modules, HotKeyController &hotKeys,
               ActivityCenter &activity, Applications &applications, Scheduler &scheduler);

    QString id() const override { return QStringLiteral("home"); }
    QString title() const override { return QStringLiteral("Início"); }
    QString symbol() const override { return QStringLiteral("house.fill"); }
    std::optional<double> contentWidth() const override;
    View makeView(PanelPort &panel) override;
    std::vector<Card> cards() override;
    std::vector<SettingsSection> settings() override;

private:
    const HomeCardSources m_sources;
    HotKeyController &m_hotKeys;
    FavoriteApps m_favorites;
};

} // namespace velmo
