#include "VelmoCore/Calendar/RecurrenceRule.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <cmath>

namespace velmo::ICSParser {

namespace {

constexpr std::int64_t secondsPerDay = 86400;
constexpr std::int64_t firstDay = -719'528; ///< 1 January of year 0, in days since 1970
constexpr std::int64_t lastDay = 2'932'896; ///< 31 December 9999

std::int64_t floorDiv(std::int64_t value, std::int64_t divisor)
{
    return value / divisor - (value % divisor < 0 ? 1 : 0);
}

std::int64_t floorMod(std::int64_t value, std::int64_t divisor)
{
    return value - floorDiv(value, divisor) * divisor;
}

/// Monday is 0.
int weekdayOf(std::int64_t day)
{
    return int(floorMod(day + 3, 7));
}

/// A month of the calendar, counted from January of year 0.
struct Month {
    std::int64_t first; ///< its first day, since 1970
    int number;         ///< 1 to 12
    int length;
};

Month monthAt(std::int64_t index)
{
    using namespace std::chrono;
    const std::int64_t yearNumber = floorDiv(index, 12);
    const int number = int(index - yearNumber * 12) + 1;
    const year_month month{year(int(yearNumber)), std::chrono::month(unsigned(number))};
    const auto length = (month / last).day();
    return {sys_days(month / 1).time_since_epoch().count(), number, int(unsigned(length))};
}

std::chrono::year_month_day dateOf(std::int64_t day)
{
    return std::chrono::sys_days(std::chrono::days(day));
}

std::int64_t monthIndexOf(std::int64_t day)
{
    const auto date = dateOf(day);
    return std::int64_t(int(date.year())) * 12 + unsigned(date.month()) - 1;
}

/// Bits of the days of a month that fall on the weekdays in `weekdays`.
std::uint32_t daysOn(std::uint8_t weekdays, const Month &month)
{
    std::uint32_t days = 0;
    for (int day = 1; day <= month.length; ++day)
        days |= std::uint32_t(weekdays >> (weekdayOf(month.first) + day - 1) % 7 & 1) << day;
    return days;
}

/// The candidates of a rule, period by period; period 0 holds the event's start. Days are counted
/// since 1970. A daily rule goes by months too: its days are a mask of each.
class Periods {
public:
    Periods(const RecurrenceRule &rule, std::int64_t startDay)
        : m_rule(rule), m_startDay(startDay),
          m_startMonthDay(int(unsigned(dateOf(startDay).day()))), m_first(unitOf(startDay)),
          m_step(rule.frequency == Frequency::daily ? 1 : rule.interval)
    {
    }

    /// The period with that day, or the one before if it lies between two.
    std::int64_t periodAt(std::int64_t day) const
    {
        return floorDiv(unitOf(day) - m_first, m_step);
    }

    /// No candidate of this period or of a later one is before this day.
    std::int64_t firstDayOf(std::int64_t period) const
    {
        const std::int64_t unit = m_first + period * m_step;
        switch (m_rule.frequency) {
        case Frequency::weekly:
            return unit * 7 - 3;
        case Frequency::yearly:
            return monthAt(unit * 12).first;
        default:
            return monthAt(unit).first;
        }
    }

    /// The days of a period in order.
    const std::vector<std::int64_t> &candidates(std::int64_t period)
    {
        m_days.clear();
        const std::int64_t unit = m_first + period * m_step;
        if (m_rule.frequency == Frequency::weekly) {
            addWeek(unit * 7 - 3);
        } else if (m_rule.frequency == Frequency::yearly) {
            for (int month = 0; month < 12; ++month)
                addMonth(monthAt(unit * 12 + month));
        } else {
            addMonth(monthAt(unit));
        }
        if (m_rule.hasPositions)
            keepPositions();
        return m_days;
    }

    /// How many candidates periods have from `begin` (at least 1) up to before `end`. Nothing where
    /// that takes a look at each.
    std::optional<std::int64_t> countAtOnce(std::int64_t begin, std::int64_t end) const
    {
        if (m_rule.hasMonths || m_rule.hasPositions)
            return std::nullopt;
        if (m_rule.frequency == Frequency::weekly)
            return (end - begin) * std::popcount(weekdaysOfWeek());
        if (m_rule.frequency == Frequency::daily && !m_rule.hasMonthDays)
            return dailyBefore(firstDayOf(end)) - dailyBefore(firstDayOf(begin));
        return std::nullopt;
    }

private:
    std::int64_t unitOf(std::int64_t day) const
    {
        switch (m_rule.frequency) {
        case Frequency::weekly:
            return floorDiv(day + 3, 7);
        case Frequency::yearly:
            return int(dateOf(day).year());
        default:
            return monthIndexOf(day);
        }
    }

    std::uint8_t weekdaysOfWeek() const
    {
        return m_rule.hasDays ? m_rule.anyWeekday : std::uint8_t(1U << weekdayOf(m_startDay));
    }

    /// Days of a daily rule before `day`. Weekdays repeat after seven steps.
    std::int64_t dailyBefore(std::int64_t day) const
    {
        const std::int64_t steps =
            floorDiv(day - m_startDay + m_rule.interval - 1, m_rule.interval);
        std::int64_t count = 0;
        for (std::int64_t step = 0; step < std::min<std::int64_t>(steps, 7); ++step) {
            const int weekday = weekdayOf(m_startDay + step * m_rule.interval);
            if (!m_rule.hasDays || m_rule.anyWeekday >> weekday & 1)
                count += (steps - 1 - step) / 7 + 1;
        }
        return count;
    }

    void addWeek(std::int64_t monday)
    {
        for (int weekday = 0; weekday < 7; ++weekday) {
            if (!(weekdaysOfWeek() >> weekday & 1))
                continue;
            const std::int64_t day = monday + weekday;
            if (!m_rule.hasMonths || m_rule.months >> unsigned(dateOf(day).month()) & 1)
                m_days.push_back(day);
        }
    }

    void addMonth(const Month &month)
    {
        if (m_rule.hasMonths && !(m_rule.months >> month.number & 1))
            return;
        const bool isYearly = m_rule.frequency == Frequency::yearly;
        if (isYearly && !m_rule.hasMonths &&
            month.number != int(unsigned(dateOf(m_startDay).month())))
            return;
        const std::uint32_t whole = std::uint32_t((std::uint64_t(2) << month.length) - 2);
        std::uint32_t days = whole & (m_rule.frequency == Frequency::daily ? daysOfDaily(month)
                                                                           : daysOfMonth(month));
        for (; days != 0; days &= days - 1)
            m_days.push_back(month.first + std::countr_zero(days) - 1);
    }

    std::uint32_t daysOfDaily(const Month &month) const
    {
        std::uint32_t days = 0;
        const std::int64_t begin = std::max(month.first, m_startDay);
        const std::int64_t skipped = floorMod(m_startDay - begin, m_rule.interval);
        for (std::int64_t day = begin + skipped; day < month.first + month.length;
             day += m_rule.interval)
            days |= 1U << (day - month.first + 1);
        if (m_rule.hasDays)
            days &= daysOn(m_rule.anyWeekday, month);
        return m_rule.hasMonthDays ? days & monthDays(month) : days;
    }

    std::uint32_t daysOfMonth(const Month &month) const
    {
        if (!m_rule.hasDays && !m_rule.hasMonthDays)
            return 1U << m_startMonthDay;
        const std::uint32_t days = m_rule.hasMonthDays ? monthDays(month) : ~0U;
        return m_rule.hasDays ? days & weekdays(month) : days;
    }

    std::uint32_t monthDays(const Month &month) const
    {
        std::uint32_t days = m_rule.monthDays;
        for (std::uint32_t left = m_rule.lastMonthDays; left != 0; left &= left - 1) {
            const int day = month.length + 1 - std::countr_zero(left);
            days |= day >= 1 ? 1U << day : 0U;
        }
        return days;
    }

    std::uint32_t weekdays(const Month &month) const
    {
        std::uint32_t days = daysOn(m_rule.everyWeekday, month);
        for (int weekday = 0; weekday < 7; ++weekday) {
            const std::uint8_t nth = m_rule.weekdays[std::size_t(weekday)];
            const std::uint8_t nthLast = m_rule.lastWeekdays[std::size_t(weekday)];
            if (!(nth | nthLast))
                continue;
            const int first = 1 + (weekday - weekdayOf(month.first) + 7) % 7;
            const int last = first + (month.length - first) / 7 * 7;
            for (int n = 1; n <= 5; ++n) {
                const int ahead = first + 7 * (n - 1);
                const int back = last - 7 * (n - 1);
                days |= nth >> n & 1 && ahead <= month.length ? 1U << ahead : 0U;
                days |= nthLast >> n & 1 && back >= 1 ? 1U << back : 0U;
            }
        }
        return days;
    }

    void keepPositions()
    {
        // Each day is a period of its own here.
        if (m_rule.frequency == Frequency::daily) {
            if (!m_rule.positions[1] && !m_rule.lastPositions[1])
                m_days.clear();
            return;
        }
        const std::size_t size = m_days.size();
        std::size_t kept = 0;
        for (std::size_t i = 0; i < size; ++i) {
            if (m_rule.positions[i + 1] || m_rule.lastPositions[size - i])
                m_days[kept++] = m_days[i];
        }
        m_days.resize(kept);
    }

    const RecurrenceRule &m_rule;
    std::int64_t m_startDay;
    int m_startMonthDay;
    std::int64_t m_first; ///< the unit (week, month or year) of period 0
    std::int64_t m_step;
    std::vector<std::int64_t> m_days;
};

/// Whole seconds since 1970 within the four-digit years.
std::int64_t wholeSeconds(Date date)
{
    const double seconds = date.time_since_epoch().count();
    if (!(seconds > double(firstDay * secondsPerDay)))
        return firstDay * secondsPerDay;
    return std::int64_t(std::floor(std::min(seconds, double((lastDay + 1) * secondsPerDay - 1))));
}

/// One expansion from its first accepted date to its last.
class Expansion {
public:
    Expansion(const RecurrenceRule &rule, Date start, ZoneClock &zone, Effort &effort)
        : m_rule(rule), m_zone(zone), m_effort(effort), m_start(start),
          m_fraction(start.time_since_epoch().count() - double(wholeSeconds(start))),
          m_localStart(zone.localFromUtc(wholeSeconds(start))),
          m_periods(rule, floorDiv(m_localStart, secondsPerDay)),
          m_timeOfDay(floorMod(m_localStart, secondsPerDay))
    {
    }

    std::vector<Date> dates(Date from, Date end)
    {
        // A zone's change of clocks moves a date by a day at most.
        const std::int64_t begin = std::max<std::int64_t>(m_periods.periodAt(dayOf(from) - 2), 0);
        const std::int64_t lastPeriod = m_periods.periodAt(dayOf(end) + 2);
        if (m_rule.count && begin > 0 && !skipTo(begin))
            return {};
        std::vector<Date> dates;
        for (std::int64_t period = begin; period <= lastPeriod; ++period) {
            if (--m_effort.periods < 0)
                break;
            for (const std::int64_t day : m_periods.candidates(period)) {
                const Date date = dateAt(day);
                if (date < m_start)
                    continue;
                const bool isOver = m_rule.count && m_counted >= *m_rule.count;
                if (isOver || !(date < end) || day > lastDay || --m_effort.dates < 0)
                    return dates;
                ++m_counted;
                if (date >= from)
                    dates.push_back(date);
            }
        }
        return dates;
    }

private:
    std::int64_t dayOf(Date date)
    {
        return floorDiv(m_zone.localFromUtc(wholeSeconds(date)), secondsPerDay);
    }

    Date dateAt(std::int64_t day)
    {
        const std::int64_t utc = m_zone.utcFromLocal(day * secondsPerDay + m_timeOfDay);
        return Date{Seconds(double(utc) + m_fraction)};
    }

    /// Counts what the periods before `begin` accept; false if the rule ends in there.
    bool skipTo(std::int64_t begin)
    {
        for (const std::int64_t day : m_periods.candidates(0))
            m_counted += dateAt(day) < m_start ? 0 : 1;
        if (const auto count = m_periods.countAtOnce(1, begin)) {
            m_counted += *count;
            return m_counted < *m_rule.count;
        }
        for (std::int64_t period = 1; period < begin && m_counted < *m_rule.count; ++period) {
            if (--m_effort.periods < 0)
                return false;
            m_counted += std::int64_t(m_periods.candidates(period).size());
        }
        return m_counted < *m_rule.count;
    }

    const RecurrenceRule &m_rule;
    ZoneClock &m_zone;
    Effort &m_effort;
    Date m_start;
    double m_fraction;
    std::int64_t m_localStart;
    Periods m_periods;
    std::int64_t m_timeOfDay;
    std::int64_t m_counted = 0;
};

} // namespace

std::vector<Date> expand(const RecurrenceRule &rule, Date start, ZoneClock &zone, Date from,
                         Date until, Effort &effort)
{
    Date end = until;
    if (rule.until)
        end = std::min(end, Date{Seconds(double(*rule.until) + 1)});
    if (!(from < end))
        return {};
    return Expansion(rule, start, zone, effort).dates(from, end);
}

std::vector<Date> expand(const QString &rule, Date start, const QTimeZone &zone, Date from,
                         Date until)
{
    ZoneBook zones;
    ZoneClock clock(zone);
    const auto read = readRule(rule, clock, zones);
    // Every day of the four-digit years.
    Effort effort{4'000'000, 10'000'000};
    return read ? expand(*read, start, clock, from, until, effort) : std::vector<Date>();
}

} // namespace velmo::ICSParser
