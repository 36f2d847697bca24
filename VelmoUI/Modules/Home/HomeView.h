#pragma once

#include "VelmoCore/Home/HomeCard.h"

#include <set>

namespace velmo {

class AppServices;

/// Which cards Home has now.
namespace HomeView {

/// How little battery counts as low.
inline constexpr int lowBattery = 15;

/// Whether the card matters now.
bool isActive(HomeCard card, const AppServices &services);

/// The cards that there are: each comes with what it shows.
std::set<HomeCard> available(const AppServices &services);

/// The cards to show, in order.
std::vector<HomeCard> cards(const AppServices &services);

} // namespace HomeView
} // namespace velmo
