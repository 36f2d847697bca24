#include "VelmoCore/Home/HomeCard.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

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

using HomeLayout::Item;
using Items = std::span<const Item>;

double total(Items items, double Item::*width, double gap)
{
    double sum = -gap;
    for (const Item &item : items)
        sum += item.*width + gap;
    return sum;
}

bool fits(Items items, double width, double gap)
{
    return items.size() == 1 || total(items, &Item::least, gap) <= width;
}

/// How good a page is, less being better: even fillings cost least, and one alone much.
double cost(Items items, double gap, bool isOnly)
{
    constexpr double alone = 1e9;
    const double filled = total(items, &Item::wanted, gap);
    return filled * filled + (items.size() == 1 && !isOnly ? alone : 0);
}

/// Where each page ends: the cheapest way to cut the row into as few pages as hold it.
std::vector<std::size_t> pageEnds(Items items, double width, double gap)
{
    struct Way {
        double cost = std::numeric_limits<double>::infinity();
        std::vector<std::size_t> ends;
    };
    const std::size_t count = items.size();
    // The best way to have so many items on the pages so far.
    std::vector<Way> ways(count + 1);
    ways[0] = {.cost = 0};
    while (ways[count].ends.empty() && count > 0) {
        std::vector<Way> longer(count + 1);
        for (std::size_t end = 1; end <= count; ++end) {
            for (std::size_t first = 0; first < end; ++first) {
                const Items page = items.subspan(first, end - first);
                const double sum = ways[first].cost + cost(page, gap, count == 1);
                if (sum >= longer[end].cost || !fits(page, width, gap))
                    continue;
                longer[end] = {sum, ways[first].ends};
                longer[end].ends.push_back(end);
            }
        }
        ways = std::move(longer);
    }
    return ways[count].ends;
}

/// The widths that fill the page: in proportion, but none below its least.
std::vector<double> shared(Items items, double width, double gap)
{
    const double room = width - gap * double(items.size() - 1);
    std::vector<double> widths(items.size(), 0); // of those that can't shrink further
    double rest = room;
    double wanted = total(items, &Item::wanted, 0);
    for (bool isNews = true; isNews && items.size() > 1;) {
        isNews = false;
        const double factor = wanted > 0 ? rest / wanted : 0;
        for (std::size_t index = 0; index < items.size(); ++index) {
            const Item &item = items[index];
            if (widths[index] == 0 && item.wanted * factor < item.least) {
                widths[index] = item.least;
                rest -= item.least;
                wanted -= item.wanted;
                isNews = true;
            }
        }
    }
    double edge = 0;
    for (std::size_t index = 0; index < items.size(); ++index) {
        const double start = std::round(edge);
        edge += widths[index] > 0 ? widths[index] : rest * items[index].wanted / wanted;
        widths[index] = std::round(edge) - start;
    }
    return widths;
}

} // namespace

QString HomeCards::name(HomeCard card)
{
    return QString::fromLatin1(boost::describe::enum_to_string(card, ""));
}

std::optional<HomeCard> HomeCards::find(const QString &name)
{
    HomeCard card{};
    const bool isKnown = boost::describe::enum_from_string(name.toUtf8().constData(), card);
    return isKnown ? std::optional(card) : std::nullopt;
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

HomeLayout::Item HomeLayout::item(HomeCard card)
{
    const double wanted = HomeCards::width(card);
    return {wanted, std::min(wanted, leastCardWidth)};
}

double HomeLayout::idealWidth(std::span<const Item> items)
{
    double width = margins;
    for (const Item &item : items)
        width += item.wanted + roomByCard;
    return width;
}

std::vector<HomeLayout::Place> HomeLayout::places(std::span<const Item> items, double width,
                                                  double gap)
{
    std::vector<Place> places;
    int page = 0;
    for (const std::size_t end : pageEnds(items, width, gap)) {
        const std::size_t first = places.size();
        for (const double own : shared(items.subspan(first, end - first), width, gap))
            places.push_back({page, own});
        ++page;
    }
    return places;
}

int HomeLayout::iconColumns(int count, double width, double height, double largest)
{
    int best = std::max(count, 1);
    double bestSide = 0;
    for (int columns = best; columns >= 1; --columns) {
        const int rows = (count + columns - 1) / columns;
        const double side = std::min({width / columns, height / std::max(rows, 1), largest});
        if (side > bestSide) {
            bestSide = side;
            best = columns;
        }
    }
    return best;
}

} // namespace velmo
