#pragma once

#include "VelmoCore/Calendar/CalendarEvent.h"

#include <QDate>
#include <QTimeZone>

#include <array>
#include <vector>

/// Puts events on the days that they touch. The zone is the user's: days of another would cut the
/// all-day events, which go from midnight to midnight in the user's.
namespace velmo::CalendarDays {

/// What an event has of one day.
struct Part {
    CalendarEvent event; ///< the whole one
    Date start;          ///< of this part
    Date end;            ///< of this part; the event's own on its last day
    bool isWholeDay = false;

    bool operator==(const Part &) const = default;
};

struct Day {
    QDate date;
    std::vector<Part> parts; ///< all-day events first, then by start

    bool operator==(const Day &) const = default;
};

/// The days from `first` to `last`, both included, on which something takes place. The events come
/// in the order of their starts. One that ends at midnight doesn't touch the next day, one without
/// length stands on its day.
std::vector<Day> list(const std::vector<CalendarEvent> &events, QDate first, QDate last,
                      const QTimeZone &zone);

struct MonthDay {
    QDate date;
    bool isInMonth = false;
    bool hasEvents = false;

    bool operator==(const MonthDay &) const = default;
};

using Week = std::array<MonthDay, 7>;

/// The four to six weeks that the month of `date` touches. `firstWeekday` as `QLocale` has it.
std::vector<Week> month(const std::vector<CalendarEvent> &events, QDate date,
                        Qt::DayOfWeek firstWeekday, const QTimeZone &zone);

} // namespace velmo::CalendarDays
