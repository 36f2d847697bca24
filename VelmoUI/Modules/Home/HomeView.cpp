#include "VelmoUI/Modules/Home/HomeView.h"

#include "VelmoSystem/Ports/PowerInfo.h"
#include "VelmoUI/App/AppServices.h"

namespace velmo {

bool HomeView::isActive(HomeCard card, const AppServices &services)
{
    if (card != HomeCard::system)
        return false;
    const auto battery = services.platform.power.battery();
    return battery && battery->percent <= lowBattery && !battery->isCharging;
}

std::set<HomeCard> HomeView::available(const AppServices &services)
{
    std::set<HomeCard> cards{HomeCard::favorites};
    if (services.modules.find(*HomeCards::moduleID(HomeCard::system)))
        cards.insert(HomeCard::system);
    return cards;
}

std::vector<HomeCard> HomeView::cards(const AppServices &services)
{
    const std::set<HomeCard> there = available(services);
    std::set<HomeCard> active;
    for (const HomeCard card : there) {
        if (isActive(card, services))
            active.insert(card);
    }
    return HomeCards::shown(there, active, services.settings.settings());
}

} // namespace velmo
