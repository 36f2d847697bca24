#include "VelmoCore/Home/HomeCard.h"

#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

namespace velmo {
namespace {

using Cards = std::vector<HomeCard>;
using enum HomeCard;

ModuleSettings settings(const StringList &order, const StringList &hidden = {})
{
    ModuleSettings settings;
    settings.homeCardOrder = order;
    settings.hiddenHomeCards = hidden;
    return settings;
}

} // namespace

TEST(HomeCards, StandInTheUsersOrderWithTheActiveOnesFirst)
{
    ModuleSettings wanted = settings({u"system"_qs, u"balloon"_qs, u"focus"_qs}, {u"music"_qs});
    EXPECT_EQ(HomeCards::ordered(wanted),
              (Cards{system, focus, favorites, music, agenda, shelf, notes, clipboard, captures}));
    const std::set<HomeCard> available{favorites, music, agenda, focus, system};
    const std::set<HomeCard> active{music, agenda, focus};
    EXPECT_EQ(HomeCards::shown(available, active, wanted),
              (Cards{focus, agenda, system, favorites}));
    wanted.promoteActiveHomeCards = false;
    EXPECT_EQ(HomeCards::shown(available, active, wanted),
              (Cards{system, focus, favorites, agenda}));
}

TEST(HomeLayout, FillsAsFewPagesAsHoldItsCards)
{
    const Cards all{favorites, music, agenda, focus, shelf, notes, clipboard, system, captures};
    const Cards built{favorites, focus, shelf, notes, clipboard, system};
    const auto first = [&](std::size_t count) { return Cards(all.begin(), all.begin() + count); };
    struct Case {
        Cards cards;
        bool hasWelcome;
        double width;
        std::vector<std::size_t> perPage;
    };
    std::vector<Case> cases = {
        {{}, false, 650, {}},
        {{}, true, 650, {0}},
        {{focus}, false, 650, {1}},
        {{music}, false, 10, {1}},
        {built, false, 146 + 790, {6}}, // all at their least
        {built, false, 935, {3, 3}},    // no longer
        {built, true, 1024, {3, 3}},
        {first(7), false, 1024, {3, 4}}, // not 6 and an orphan
        {first(7), false, 1144, {7}},
        {first(9), false, 1024, {5, 4}},
        {first(9), false, 650, {3, 3, 3}},
        {{music, shelf}, true, 400, {0, 2}},
        {{music, shelf, favorites, focus}, false, 500, {2, 2}}, // not 1 and 3
    };
    for (const double width : {1024, 1144, 1264}) { // compact, regular, large
        for (std::size_t count = 1; count <= built.size(); ++count)
            cases.push_back({Cards(built.begin(), built.begin() + count), false, width, {count}});
    }
    for (const auto &[cards, hasWelcome, width, perPage] : cases) {
        SCOPED_TRACE(testing::Message() << cards.size() << " cards in " << width);
        std::vector<std::size_t> counts;
        std::vector<HomeLayout::Item> items;
        if (hasWelcome)
            items.push_back({280, 280});
        std::ranges::transform(cards, std::back_inserter(items), HomeLayout::item);
        const auto places = HomeLayout::places(items, width, 8);
        ASSERT_EQ(places.size(), items.size());
        std::map<int, double> edges;
        for (std::size_t index = 0; index < places.size(); ++index) {
            const auto [page, own] = places[index];
            EXPECT_GE(own, std::min(items[index].least, width));
            EXPECT_EQ(own, std::floor(own));
            edges[page] += own + 8;
            counts.resize(std::size_t(page) + 1);
            counts[std::size_t(page)] += hasWelcome && index == 0 ? 0 : 1;
        }
        for (const auto &[page, edge] : edges)
            EXPECT_EQ(edge, width + 8) << "from side to side";
        EXPECT_EQ(counts, perPage);
    }
    const std::vector items{HomeLayout::item(favorites), HomeLayout::item(shelf)};
    EXPECT_EQ(HomeLayout::places(items, 800, 8),
              (std::vector<HomeLayout::Place>{{0, 292}, {0, 500}}));
}

TEST(HomeLayout, MakesIconsAsLargeAsTheyFit)
{
    const std::tuple<int, double, double, int> cases[] = {
        {0, 120, 90, 1}, {1, 120, 90, 1},  {2, 120, 90, 2},  {6, 120, 90, 3},
        {7, 120, 90, 4}, {12, 120, 90, 4}, {12, 280, 90, 6}, {12, 700, 90, 12},
    };
    for (const auto &[count, width, height, columns] : cases)
        EXPECT_EQ(HomeLayout::iconColumns(count, width, height, 56), columns)
            << count << " in " << width;
}

} // namespace velmo
