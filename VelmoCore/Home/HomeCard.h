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

/// What Home asks for beside its cards, and with each of them.
inline constexpr double margins = 72;
inline constexpr double roomByCard = 10;
inline constexpr double welcomeWidth = 280;
/// How far a card shrinks before another page is made, unless it is narrower anyway.
inline constexpr double leastCardWidth = 150;

struct Place {
    HomeCard card = HomeCard::favorites;
    double width = 0; ///< points, whole ones

    bool operator==(const Place &) const = default;
};
BOOST_DESCRIBE_STRUCT(Place, (), (card, width))

/// Cards side by side.
struct Page {
    double welcomeWidth = 0; ///< of the welcome card before the others; 0 where it isn't
    std::vector<Place> cards;

    bool operator==(const Page &) const = default;
};
BOOST_DESCRIBE_STRUCT(Page, (), (welcomeWidth, cards))

/// The width that Home asks for, in points.
double idealWidth(const std::vector<HomeCard> &cards, bool hasWelcome);

/// Which of the cards stand on which page of that width, `gap` apart, and how wide: on as few pages
/// as hold them shrunk, about as much on each, none alone where it can be helped. A page's cards
/// fill it from side to side. The welcome card doesn't shrink. Never empty.
std::vector<Page> pages(const std::vector<HomeCard> &cards, bool hasWelcome, double width,
                        double gap);

/// In how many columns so many icons become largest within `largest`, fewest rows first.
int iconColumns(int count, double width, double height, double largest);

} // namespace HomeLayout
} // namespace velmo
