#include "VelmoCore/Home/HomeCard.h"

#include "tests/support/Printers.h"

#include <gtest/gtest.h>

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

TEST(HomeLayout, AsksForTheWidthOfItsCards)
{
    EXPECT_EQ(HomeLayout::idealWidth({}, false), 72);
    EXPECT_EQ(HomeLayout::idealWidth({}, true), 72 + 290);
    EXPECT_EQ(HomeLayout::idealWidth({favorites, system}, true), 156 + 224 + 72 + 290);
}

TEST(HomeLayout, GoesOnOnAnotherPageWhereTheCardsDoNotFit)
{
    using Pages = std::vector<Cards>;
    const Cards cards{favorites, system, music};
    EXPECT_EQ(HomeLayout::pages(cards, false, 146 + 10 + 214 + 10 + 348), (Pages{cards}));
    EXPECT_EQ(HomeLayout::pages(cards, false, 727), (Pages{{favorites, system}, {music}}));
    EXPECT_EQ(HomeLayout::pages(cards, true, 500), (Pages{{favorites}, {system}, {music}}));
    EXPECT_EQ(HomeLayout::pages(cards, true, 300), (Pages{{}, {favorites}, {system}, {music}}));
    EXPECT_EQ(HomeLayout::pages({music}, false, 10), (Pages{{music}}));
    EXPECT_EQ(HomeLayout::pages({}, false, 500), (Pages{{}}));
}

} // namespace velmo
