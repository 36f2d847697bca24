#include "VelmoUI/Modules/Home/HomeCardSources.h"

#include <algorithm>

namespace velmo {

std::vector<NotchModule::Card> HomeCardSources::all() const
{
    std::vector<NotchModule::Card> all;
    for (NotchModule *module : modules.all())
        std::ranges::move(module->cards(), std::back_inserter(all));
    return all;
}

std::vector<NotchModule::Card> HomeCardSources::shown() const
{
    const std::vector<NotchModule::Card> sources = all();
    std::set<HomeCard> available;
    std::set<HomeCard> active;
    for (const NotchModule::Card &source : sources) {
        available.insert(source.card);
        if (source.isActive())
            active.insert(source.card);
    }
    std::vector<NotchModule::Card> shown;
    for (const HomeCard card : HomeCards::shown(available, active, settings.settings()))
        shown.push_back(*std::ranges::find(sources, card, &NotchModule::Card::card));
    return shown;
}

} // namespace velmo
