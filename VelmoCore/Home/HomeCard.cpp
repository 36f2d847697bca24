#include "VelmoCore/Home/HomeCard.h"

#include <algorithm>
#include <array>

namespace velmo {

namespace {

struct Facts {
    HomeCard card;
    const char16_t *moduleID;
    const char16_t *title;
    double width;
};

/// In the order in which they show unless the user has one.
constexpr std::array facts = {
    Facts{HomeCard::favorites, nullptr, u"Favoritos", 146},
    Facts{HomeCard::music, nullptr, u"Música", 348},
    Facts{HomeCard::agenda, u"calendar", u"Agenda", 250},
    Facts{HomeCard::focus, u"timers", u"Foco", 158},
    Facts{HomeCard::shelf, u"shelf", u"Prateleira", 250},
    Facts{HomeCard::notes, u"notes", u"Notas", 250},
    Facts{HomeCard::clipboard, u"clipboard", u"Clipboard", 240},
    Facts{HomeCard::system, u"system", u"Sistema", 214},
    Facts{HomeCard::captures, u"captures", u"Capturas", 220},
};

const Facts &of(HomeCard card)
{
    return *std::ranges::find(facts, card, &Facts::card);
}

} // namespace

QString HomeCards::name(HomeCard card)
{
    return QString::fromLatin1(boost::describe::enum_to_string(card, ""));
}

std::optional<QString> HomeCards::moduleID(HomeCard card)
{
    const char16_t *id = of(card).moduleID;
    return id ? std::optional(QString::fromUtf16(id)) : std::nullopt;
}

QString HomeCards::title(HomeCard card)
{
    return QString::fromUtf16(of(card).title);
}

double HomeCards::width(HomeCard card)
{
    return of(card).width;
}

std::vector<HomeCard> HomeCards::ordered(const ModuleSettings &settings)
{
    std::vector<HomeCard> cards;
    for (const Facts &each : facts)
        cards.push_back(each.card);
    std::ranges::stable_sort(cards, {}, [&](HomeCard card) {
        return std::ranges::find(settings.homeCardOrder, name(card)) -
               settings.homeCardOrder.begin();
    });
    return cards;
}

std::vector<HomeCard> HomeCards::shown(const std::set<HomeCard> &available,
                                       const std::set<HomeCard> &active,
                                       const ModuleSettings &settings)
{
    std::vector<HomeCard> cards = ordered(settings);
    std::erase_if(cards, [&](HomeCard card) {
        const auto &hidden = settings.hiddenHomeCards;
        return !available.contains(card) || std::ranges::find(hidden, name(card)) != hidden.end();
    });
    if (settings.promoteActiveHomeCards)
        std::stable_partition(cards.begin(), cards.end(),
                              [&](HomeCard card) { return active.contains(card); });
    return cards;
}

double HomeLayout::idealWidth(const std::vector<HomeCard> &cards, bool hasWelcome)
{
    double width = margins + (hasWelcome ? welcomeWidth : 0);
    for (const HomeCard card : cards)
        width += HomeCards::width(card) + cardGap;
    return width;
}

std::vector<std::vector<HomeCard>> HomeLayout::pages(const std::vector<HomeCard> &cards,
                                                     bool hasWelcome, double width)
{
    std::vector<std::vector<HomeCard>> pages(1);
    double left = width - (hasWelcome ? welcomeWidth : 0);
    bool isPageFree = hasWelcome; // the welcome card may stand alone
    for (const HomeCard card : cards) {
        const double needed = HomeCards::width(card) + cardGap;
        if (needed > left + cardGap && (isPageFree || !pages.back().empty())) {
            pages.emplace_back();
            left = width;
            isPageFree = false;
        }
        pages.back().push_back(card);
        left -= needed;
    }
    return pages;
}

} // namespace velmo
