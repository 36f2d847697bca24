#pragma once

#include "VelmoCore/Foundation/Date.h"
#include "VelmoCore/Home/HomeCard.h"

namespace velmo {

class AppServices;

/// Which cards Home has now.
namespace HomeView {

/// How soon an event counts as coming, and how little battery as low.
inline constexpr Seconds soon = 900s;
inline constexpr int lowBattery = 15;

/// Whether the card matters now.
bool isActive(HomeCard card, const AppServices &services, Date now);

/// The cards to show, in order. A card is there only with the module behind it.
std::vector<HomeCard> cards(const AppServices &services);

} // namespace HomeView
} // namespace velmo
