#include "VelmoUI/Modules/Home/HomeView.h"

#include "VelmoSystem/Ports/PowerInfo.h"
#include "VelmoUI/App/AppServices.h"

#include <algorithm>

namespace velmo {

bool HomeView::isActive(HomeCard card, const AppServices &services)
{
    switch (card) {
    case HomeCard::focus:
        return services.timers.isRunning();
    case HomeCard::notes: {
        const Date now = services.platform.scheduler.now();
        return std::ranges::any_of(services.notes.tasks(),
                                   [&](const TaskItem &task) { return task.isOverdue(now); });
    }
    case HomeCard::system: {
        const auto battery = services.platform.power.battery();
        return battery && battery->percent <= lowBattery && !battery->isCharging;
    }
    default:
        return false;
    }
}

std::set<HomeCard> HomeView::available(const AppServices &services)
{
    std::set<HomeCard> cards{HomeCard::favorites};
    for (const HomeCard card : {HomeCard::focus, HomeCard::notes, HomeCard::shelf,
                                HomeCard::clipboard, HomeCard::system}) {
        if (services.modules.find(*HomeCards::moduleID(card)))
            cards.insert(card);
    }
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
