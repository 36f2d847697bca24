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

std::vector<std::pair<const NotchModule *, NotchModule::Offer>> HomeCardSources::offers() const
{
    std::vector<std::pair<const NotchModule *, NotchModule::Offer>> offers;
    for (NotchModule *module : modules.visible(settings.settings())) {
        if (auto offer = module->offer(); offer && offer->isShown())
            offers.emplace_back(module, std::move(*offer));
    }
    return offers;
}

std::vector<HomeLayout::Item> HomeCardSources::items() const
{
    std::vector<HomeLayout::Item> items;
    if (hasWelcome())
        items.push_back({HomeLayout::welcomeWidth, HomeLayout::welcomeWidth});
    for (const auto &[module, offer] : offers())
        items.push_back({offer.width, offer.width});
    for (const NotchModule::Card &card : shown())
        items.push_back(HomeLayout::item(card.card));
    return items;
}

} // namespace velmo
