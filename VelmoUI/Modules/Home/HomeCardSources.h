#pragma once

#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"

namespace velmo {

/// The cards that the modules bring. Both outlive this object.
struct HomeCardSources {
    ModuleRegistry &modules;
    SettingsStore &settings;

    /// All that there are, in the order of the modules.
    std::vector<NotchModule::Card> all() const;
    /// Those to show, in order.
    std::vector<NotchModule::Card> shown() const;
    /// What the modules offer before them, by module.
    std::vector<std::pair<const NotchModule *, NotchModule::Offer>> offers() const;
    bool hasWelcome() const { return !settings.settings().hasCompletedOnboarding; }
    /// What Home lays out: the welcome card, the offers, the cards.
    std::vector<HomeLayout::Item> items() const;
};

} // namespace velmo
