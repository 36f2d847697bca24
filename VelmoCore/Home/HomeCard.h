#pragma once

#include "VelmoCore/Settings/AppSettings.h"

#include <boost/describe.hpp>

#include <optional>
#include <set>
#include <span>
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
std::optional<HomeCard> find(const QString &name);
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

/// Something on a page: how wide it is best, and how wide at least, in points.
struct Item {
    double wanted = 0;
    double least = 0;
};

struct Place {
    int page = 0;
    double width = 0; ///< points, whole ones

    bool operator==(const Place &) const = default;
};
BOOST_DESCRIBE_STRUCT(Place, (), (page, width))

Item item(HomeCard card);

/// The width that Home asks for, in points.
double idealWidth(std::span<const Item> items);

/// On which page of that width each of the items stands, `gap` apart, and how wide: on as few pages
/// as hold them shrunk, about as much on each, none alone where it can be helped. What is on a page
/// fills it from side to side.
std::vector<Place> places(std::span<const Item> items, double width, double gap);

/// In how many columns so many icons become largest within `largest`, fewest rows first.
int iconColumns(int count, double width, double height, double largest);

} // namespace HomeLayout
} // namespace velmo
