#include "VelmoCore/Calendar/CalendarDays.h"

#include "VelmoCore/Calendar/ZoneClock.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace velmo::CalendarDays {

namespace {

constexpr std::int64_t dayLength = 86400;
const QDate epoch(1970, 1, 1);

/// Cuts events at the borders of a zone's days, from one day to another.
class Calendar {
public:
    Calendar(QDate first, QDate last, const QTimeZone &zone)
        : m_clock(zone), m_from(startOf(first)), m_to(startOf(last.addDays(1)))
    {
    }

    /// Calls `body` with each day that the event touches, its start and its end.
    template <class Body>
    void eachDay(const CalendarEvent &event, Body body)
    {
        const bool hasLength = event.end > event.start;
        if (event.start >= m_to || (hasLength ? event.end <= m_from : event.start < m_from))
            return;
        QDate day = dayAt(std::max(event.start, m_from));
        for (Date start = startOf(day); start < m_to; day = day.addDays(1)) {
            const Date end = startOf(day.addDays(1));
            body(day, start, end);
            if (event.end <= end)
                return;
            start = end;
        }
    }

private:
    QDate dayAt(Date date)
    {
        const auto utc = std::int64_t(std::floor(date.time_since_epoch().count()));
        const auto local = double(m_clock.localFromUtc(utc));
        return epoch.addDays(qint64(std::floor(local / dayLength)));
    }

    /// The first moment of a day, which may lack its midnight.
    Date startOf(QDate day)
    {
        return Date(Seconds(double(m_clock.utcFromLocal(epoch.daysTo(day) * dayLength))));
    }

    ZoneClock m_clock;
    Date m_from;
    Date m_to;
};

} // namespace

std::vector<Day> list(const std::vector<CalendarEvent> &events, QDate first, QDate last,
                      const QTimeZone &zone)
{
    if (!first.isValid() || !last.isValid())
        return {};
    Calendar calendar(first, last, zone);
    std::map<QDate, std::vector<Part>> byDay;
    for (const CalendarEvent &event : events) {
        calendar.eachDay(event, [&](QDate day, Date start, Date end) {
            const bool fills = event.start <= start && event.end >= end;
            byDay[day].push_back({event, std::max(event.start, start),
                                  std::max(event.start, std::min(event.end, end)),
                                  event.isAllDay || fills});
        });
    }
    std::vector<Day> days;
    for (auto &[day, parts] : byDay) {
        std::ranges::stable_sort(parts, {}, [](const Part &part) {
            return std::pair(!part.event.isAllDay, part.start);
        });
        days.push_back({day, std::move(parts)});
    }
    return days;
}

std::vector<Week> month(const std::vector<CalendarEvent> &events, QDate date,
                        Qt::DayOfWeek firstWeekday, const QTimeZone &zone)
{
    if (!date.isValid())
        return {};
    const QDate firstOfMonth(date.year(), date.month(), 1);
    const QDate first = firstOfMonth.addDays(-((firstOfMonth.dayOfWeek() - firstWeekday + 7) % 7));
    const qint64 length = first.daysTo(firstOfMonth) + date.daysInMonth();
    std::vector<Week> weeks(std::size_t((length + 6) / 7));
    const auto at = [&](qint64 day) -> MonthDay & {
        return weeks[std::size_t(day / 7)][std::size_t(day % 7)];
    };
    const qint64 count = qint64(weeks.size()) * 7;
    for (qint64 day = 0; day < count; ++day) {
        const QDate shown = first.addDays(day);
        at(day) = {shown, shown.month() == date.month()};
    }
    Calendar calendar(first, first.addDays(count - 1), zone);
    for (const CalendarEvent &event : events) {
        calendar.eachDay(event,
                         [&](QDate day, Date, Date) { at(first.daysTo(day)).hasEvents = true; });
    }
    return weeks;
}

} // namespace velmo::CalendarDays
