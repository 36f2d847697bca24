#pragma once

#include "VelmoCore/Settings/AppSettings.h"

#include <boost/describe.hpp>

#include <optional>
#include <set>
#include <vector>

namespace velmo {

/// A card of Home.
enum class HomeCard {
    favorites,
    music,
    agenda,
    focus,
    shelf,
    notes,
    clipboard,
    system,
    captures,
};
BOOST_DESCRIBE_ENUM(HomeCard, favorites, music, agenda, focus, shelf, notes, clipboard, system,
                    captures)

/// Which cards Home shows, in which order and how wide.
namespace HomeCards {

/// As stored in the settings.
QString name(HomeCard card);
/// The module that stands behind the card; nothing for `favorites`.
std::optional<QString> moduleID(HomeCard card);
/// What the user calls it.
QString title(HomeCard card);
/// In points.
double width(HomeCard card);

/// The user's order first, the others after it; names of no card are passed over.
std::vector<HomeCard> ordered(const ModuleSettings &settings);

/// Those of `available` that the user hasn't hidden, in order; with `promoteActiveHomeCards` the
/// active ones come first.
std::vector<HomeCard> shown(const std::set<HomeCard> &available, const std::set<HomeCard> &active,
                            const ModuleSettings &settings);

} // namespace HomeCards

namespace HomeLayout {

inline constexpr double cardGap = 10;
inline constexpr double margins = 72;
inline constexpr double welcomeWidth = 290;

/// The width that Home asks for, in points.
double idealWidth(const std::vector<HomeCard> &cards, bool hasWelcome);

/// Which of the cards stand on which page of that width: as many as fit, at least one a page. The
/// first page loses `welcomeWidth` to the welcome card. Never empty.
std::vector<std::vector<HomeCard>> pages(const std::vector<HomeCard> &cards, bool hasWelcome,
                                         double width);

} // namespace HomeLayout
} // namespace velmo
