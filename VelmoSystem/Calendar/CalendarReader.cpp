#include "VelmoSystem/Calendar/CalendarReader.h"

#include "VelmoCore/Calendar/ICSParser.h"

#include <algorithm>
#include <set>

namespace velmo {

namespace {

/// Of the windows that a feed is unrolled over.
constexpr std::size_t mostKept = 64;

CalendarEvent eventOf(const ICSOccurrence &occurrence, const CalendarSubscription &feed)
{
    // A feed says nothing of its colour: each has its own among those that can be told apart.
    constexpr CalendarColor colors[] = {{0.35, 0.67, 1.0}, {0.30, 0.84, 0.54}, {1.0, 0.62, 0.26},
                                        {0.71, 0.55, 1.0}, {1.0, 0.42, 0.60},  {1.0, 0.84, 0.29}};
    const auto start = qint64(occurrence.start.time_since_epoch().count());
    return {.id = QStringLiteral("ics:%1:%2:%3")
                      .arg(uuidText(feed.id), occurrence.uid, QString::number(start)),
            .title = occurrence.title,
            .start = occurrence.start,
            .end = occurrence.end,
            .isAllDay = occurrence.isAllDay,
            .calendarTitle = feed.name,
            .color = colors[qHash(feed.url) % std::size(colors)],
            .location = occurrence.location,
            .meeting = MeetingLinks::first({occurrence.url, occurrence.location, occurrence.notes}),
            .canEdit = false};
}

} // namespace

std::vector<CalendarEvent> CalendarReader::events(const CalendarSources &sources, Date from,
                                                  Date to)
{
    std::vector<CalendarEvent> events =
        StoredEvents::events(sources.calendars, sources.stored, from, to);
    for (const CalendarFeed &feed : sources.feeds) {
        for (const ICSOccurrence &occurrence : occurrences(feed, from, to))
            events.push_back(eventOf(occurrence, feed.subscription));
    }
    std::erase_if(m_unrolled, [&](const auto &one) {
        return std::ranges::none_of(sources.feeds, [&](const CalendarFeed &feed) {
            return feed.subscription.id == one.second.feed && feed.revision == one.second.revision;
        });
    });
    std::ranges::stable_sort(events, {}, &CalendarEvent::start);
    std::set<std::tuple<QString, Date, Date>> known;
    std::erase_if(events, [&](const CalendarEvent &event) {
        return !known.emplace(event.title, event.start, event.end).second;
    });
    return events;
}

const std::vector<ICSOccurrence> &CalendarReader::occurrences(const CalendarFeed &feed, Date from,
                                                              Date to)
{
    if (m_unrolled.size() >= mostKept)
        m_unrolled.clear();
    const auto seconds = [](Date date) {
        return QString::number(date.time_since_epoch().count(), 'f', 0);
    };
    const Uuid &id = feed.subscription.id;
    auto &unrolled = m_unrolled[uuidText(id) + u'|' + seconds(from) + u'|' + seconds(to)];
    if (unrolled.revision != feed.revision)
        unrolled = {id, feed.revision,
                    ICSParser::occurrences(QString::fromUtf8(feed.text), from, to)};
    return unrolled.occurrences;
}

} // namespace velmo
