#include "VelmoCore/Calendar/RecurrenceRule.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace velmo::ICSParser {

namespace {

using namespace std::chrono_literals;

Date dateOf(const Reading &reading)
{
    return Date{Seconds(double(reading.time))};
}

bool isCancelled(const RawEvent &event)
{
    const auto status = text(event, u"STATUS");
    return status && status->toUpper() == u"CANCELLED";
}

/// An event that is read once, however often it takes place.
struct ReadEvent {
    const RawEvent *event;
    ICSOccurrence occurrence; ///< the first one
    Seconds length;
    ZoneClock *clock;
};

/// What a feed says about the single dates of one UID.
struct Exceptions {
    struct Override {
        const RawEvent *event = nullptr;
        Date original;
        std::optional<ReadEvent> read; ///< once it was needed, unless cancelled
        bool isRead = false;
        bool isUsed = false;
    };
    std::map<Date, Override> overrides;
    std::set<Date> excluded;

    Override *overrideAt(Date date)
    {
        const auto found = overrides.find(date);
        return found == overrides.end() ? nullptr : &found->second;
    }
};

/// Unrolls the events of one feed over a window.
class Unrolling {
public:
    Unrolling(const Feed &feed, Date from, Date to)
        : m_feed(feed), m_zone(feed.zone), m_from(from), m_to(to)
    {
    }

    std::vector<Instance> run()
    {
        collectOverrides();
        for (const RawEvent &event : m_feed.events) {
            if (!event.first(u"RECURRENCE-ID") && !isCancelled(event))
                addMaster(event);
        }
        for (const auto &[exceptions, date] : m_order) {
            auto &override = exceptions->overrides.at(date);
            if (!override.isUsed && !exceptions->excluded.contains(date))
                addOverride(override);
        }
        return std::move(m_found);
    }

private:
    std::optional<Reading> read(const RawEvent &event, QStringView name)
    {
        const Property *property = event.first(name);
        return property ? readDate(property->value, property->params, m_zone, m_zones)
                        : std::nullopt;
    }

    void collectOverrides()
    {
        for (const RawEvent &event : m_feed.events) {
            if (!event.first(u"RECURRENCE-ID"))
                continue;
            const auto uid = text(event, u"UID");
            const auto original = read(event, u"RECURRENCE-ID");
            if (!uid || !original)
                continue;
            auto &exceptions = m_exceptions[*uid];
            if (!exceptions)
                exceptions = std::make_shared<Exceptions>();
            auto &override = exceptions->overrides[dateOf(*original)];
            if (!override.event)
                m_order.emplace_back(exceptions.get(), dateOf(*original));
            override.event = &event;
            override.original = dateOf(*original);
        }
    }

    std::optional<ReadEvent> readTimes(const RawEvent &event)
    {
        const auto start = read(event, u"DTSTART");
        if (!start)
            return std::nullopt;
        ReadEvent found{&event, {}, start->allDay ? 86400s : 0s, start->clock};
        const auto end = read(event, u"DTEND");
        if (end && end->time > start->time)
            found.length = Seconds(double(end->time - start->time));
        else if (const auto duration = text(event, u"DURATION"))
            found.length = parseDuration(*duration).value_or(found.length);
        found.occurrence.start = dateOf(*start);
        found.occurrence.isAllDay = start->allDay;
        return found;
    }

    void readTexts(const RawEvent &event, ICSOccurrence &occurrence)
    {
        occurrence.uid = text(event, u"UID").value_or(QString());
        occurrence.title = text(event, u"SUMMARY").value_or(QStringLiteral("Sem título"));
        occurrence.location = text(event, u"LOCATION");
        occurrence.notes = text(event, u"DESCRIPTION");
        occurrence.url = text(event, u"URL");
        occurrence.calendarName = m_feed.calendarName;
    }

    void collectExcluded(const RawEvent &event, std::set<Date> &excluded)
    {
        for (const Property &property : event.props) {
            if (property.name != u"EXDATE")
                continue;
            for (const QStringView piece : property.value.tokenize(u',')) {
                if (const auto date = readDate(piece, property.params, m_zone, m_zones))
                    excluded.insert(dateOf(*date));
            }
        }
    }

    /// None for a rule that can't be used.
    std::vector<Date> datesOf(const ReadEvent &master, const QString &ruleText)
    {
        const auto rule = readRule(ruleText, *master.clock, m_zones);
        return rule ? expand(*rule, master.occurrence.start, *master.clock, m_from - master.length,
                             m_to, m_effort)
                    : std::vector<Date>();
    }

    std::vector<Date> single(const ReadEvent &event) const
    {
        const Date start = event.occurrence.start;
        return isInWindow(event, start) ? std::vector{start} : std::vector<Date>();
    }

    Exceptions *exceptionsOf(const RawEvent &event) const
    {
        if (m_exceptions.isEmpty())
            return nullptr;
        const auto known = m_exceptions.constFind(text(event, u"UID").value_or(QString()));
        return known == m_exceptions.cend() ? nullptr : known->get();
    }

    void addMaster(const RawEvent &event)
    {
        auto master = readTimes(event);
        if (!master)
            return;
        const Property *rule = event.first(u"RRULE");
        const bool recurs = rule && !rule->value.trimmed().isEmpty();
        const std::vector<Date> dates = recurs ? datesOf(*master, rule->value) : single(*master);
        Exceptions *exceptions = exceptionsOf(event);
        if (dates.empty() && !exceptions)
            return;
        readTexts(event, master->occurrence);
        std::set<Date> excluded;
        collectExcluded(event, excluded);
        for (const Date date : dates) {
            auto *override = recurs && exceptions ? exceptions->overrideAt(date) : nullptr;
            if (override)
                override->isUsed = true;
            if (excluded.contains(date))
                continue;
            if (override)
                addOverride(*override);
            else
                add(*master, date, recurs ? std::optional(date) : std::nullopt);
        }
        if (exceptions)
            exceptions->excluded.merge(excluded);
    }

    void addOverride(Exceptions::Override &override)
    {
        if (!std::exchange(override.isRead, true) && !isCancelled(*override.event)) {
            override.read = readTimes(*override.event);
            if (override.read)
                readTexts(*override.event, override.read->occurrence);
        }
        if (override.read)
            add(*override.read, override.read->occurrence.start, override.original);
    }

    bool isInWindow(const ReadEvent &event, Date start) const
    {
        return start + event.length > m_from && start < m_to;
    }

    void add(const ReadEvent &event, Date start, const std::optional<Date> &original)
    {
        if (!isInWindow(event, start))
            return;
        m_found.push_back({event.occurrence, event.event, original});
        Instance &found = m_found.back();
        found.occurrence.start = start;
        found.occurrence.end = start + event.length;
    }

    const Feed &m_feed;
    ZoneClock m_zone;
    ZoneBook m_zones;
    Date m_from;
    Date m_to;
    Effort m_effort;
    QHash<QString, std::shared_ptr<Exceptions>> m_exceptions; ///< by UID
    std::vector<std::pair<Exceptions *, Date>> m_order;       ///< of the overrides in the feed
    std::vector<Instance> m_found;
};

} // namespace

std::vector<ICSOccurrence> occurrences(const QString &text, Date from, Date to)
{
    const Feed feed = parse(text);
    std::vector<ICSOccurrence> occurrences;
    for (Instance &instance : instances(feed, from, to))
        occurrences.push_back(std::move(instance.occurrence));
    return occurrences;
}

std::vector<Instance> instances(const Feed &feed, Date from, Date to)
{
    return Unrolling(feed, from, to).run();
}

} // namespace velmo::ICSParser
